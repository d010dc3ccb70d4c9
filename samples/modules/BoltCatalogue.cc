// BOLTS: hexagon bolts with the areas that carry their load. The pitches come from core-threads.krx.
#include "samples/modules/BoltCatalogue.h"
#include "samples/modules/CoreThreads.h"
#include "standalone/ModuleApi.h"

#include <iomanip>
#include <numbers>
#include <sstream>

namespace {

struct Bolt
{
    int diameter;
    int widthAcrossFlats;
};

constexpr Bolt kBolts[] = {{6, 10}, {8, 13}, {10, 16}, {12, 18}, {16, 24}, {20, 30}, {24, 36}};

void printBolts(void* /*context*/)
{
    std::ostringstream table;
    table << std::fixed << std::setprecision(1) << "bolt   across flats   stress area\n";
    for (const Bolt& bolt : kBolts) {
        table << "M" << std::left << std::setw(3) << bolt.diameter << std::right << std::setw(12)
              << bolt.widthAcrossFlats << " mm" << std::setw(10) << boltStressArea(bolt.diameter) << " mm2\n";
    }
    kestPrint(table.str().c_str());
}

} // namespace

double boltStressArea(int diameter)
{
    const double pitch = coreThreadPitch(diameter);
    if (pitch == 0) {
        return 0;
    }
    const double stressDiameter = diameter - 0.9382 * pitch;
    return std::numbers::pi / 4 * stressDiameter * stressDiameter;
}

int kestModuleEntry()
{
    kestPrint("Bolt catalogue: ready, with the core threads\n");
    return kestRegisterCommand("BOLTS", printBolts, nullptr) == 1 ? 0 : 1;
}
