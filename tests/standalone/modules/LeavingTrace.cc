// A library whose code runs as soon as it is opened, and then leaves the file that the environment names.
#include "ModuleExport.h"

#include "standalone/ModuleApi.h"

#include <cstdio>
#include <cstdlib>

namespace {

struct Trace
{
    Trace()
    {
        const char* const path = std::getenv("KEST_TEST_TRACE");
        if (std::FILE* const file = path != nullptr ? std::fopen(path, "w") : nullptr) {
            std::fclose(file);
        }
    }
};

const Trace kTrace;

} // namespace

extern "C" KEST_EXPORT int kestModuleEntry(void)
{
    return 0;
}
