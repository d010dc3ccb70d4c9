// Stands in for the autoloader library: loading ends with errors of other kinds.
#include <new>
#include <stdexcept>

extern "C" {

[[gnu::visibility("default")]] void excuteCuix() {}

[[gnu::visibility("default")]] void excute()
{
    throw 42;
}

[[gnu::visibility("default")]] void loadIfCmdNeeded(const wchar_t*)
{
    throw std::logic_error("not \x1B[1mnow");
}
}
