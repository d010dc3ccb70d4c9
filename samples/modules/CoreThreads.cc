// THREADS: the table of metric coarse threads, which other modules build on.
#include "samples/modules/CoreThreads.h"
#include "standalone/ModuleApi.h"

#include <iomanip>
#include <sstream>

namespace {

struct Thread
{
    int diameter;
    double pitch;
};

constexpr Thread kThreads[] = {{3, 0.5},   {4, 0.7}, {5, 0.8},  {6, 1},  {8, 1.25}, {10, 1.5},
                               {12, 1.75}, {16, 2},  {20, 2.5}, {24, 3}, {30, 3.5}};

void printThreads(void* /*context*/)
{
    std::ostringstream table;
    table << std::fixed << std::setprecision(2) << "thread   pitch   drill\n";
    for (const Thread& thread : kThreads) {
        table << "M" << std::left << std::setw(5) << thread.diameter << std::right << std::setw(8) << thread.pitch
              << std::setw(8) << thread.diameter - thread.pitch << "\n";
    }
    kestPrint(table.str().c_str());
}

} // namespace

double coreThreadPitch(int diameter)
{
    for (const Thread& thread : kThreads) {
        if (thread.diameter == diameter) {
            return thread.pitch;
        }
    }
    return 0;
}

int kestModuleEntry()
{
    kestPrint("Core threads: ready\n");
    return kestRegisterCommand("THREADS", printThreads, nullptr) == 1 ? 0 : 1;
}
