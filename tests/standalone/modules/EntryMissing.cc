#include "ModuleExport.h"

extern "C" KEST_EXPORT int kestSomethingElse(void);

int kestSomethingElse(void)
{
    return 0;
}
