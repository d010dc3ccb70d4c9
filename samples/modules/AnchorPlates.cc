// ANCHOR: how hard the bolts of an anchor plate clamp. The areas come from bolt-catalogue.krx.
#include "samples/modules/BoltCatalogue.h"
#include "standalone/ModuleApi.h"

#include <iomanip>
#include <sstream>

namespace {

constexpr double kProofStress = 600; ///< of property class 8.8, in N/mm2
constexpr double kTightening = 0.7;  ///< the part of the proof stress to which a bolt is tightened

void printClampForces(void* /*context*/)
{
    constexpr int kBoltCounts[] = {4, 6, 8};
    constexpr int kDiameters[] = {12, 16, 20, 24};
    std::ostringstream table;
    table << std::fixed << std::setprecision(0) << "clamp force in kN";
    for (const int count : kBoltCounts) {
        table << std::setw(6) << count << " bolts";
    }
    table << "\n";
    for (const int diameter : kDiameters) {
        table << "M" << std::left << std::setw(16) << diameter << std::right;
        for (const int count : kBoltCounts) {
            table << std::setw(12) << count * boltStressArea(diameter) * kProofStress * kTightening / 1000;
        }
        table << "\n";
    }
    kestPrint(table.str().c_str());
}

} // namespace

int kestModuleEntry()
{
    kestPrint("Anchor plates: ready, with the bolt catalogue\n");
    return kestRegisterCommand("ANCHOR", printClampForces, nullptr) == 1 ? 0 : 1;
}
