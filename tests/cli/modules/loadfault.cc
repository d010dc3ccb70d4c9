// Stands in for the autoloader library: loading ends with errors of other kinds.
#include "bundle/EntryPoints.h"

#include <new>
#include <stdexcept>

void excuteCuix() {}

void excute()
{
    throw 42;
}

void loadIfCmdNeeded(const wchar_t*)
{
    throw std::logic_error("not \x1B[1mnow");
}
