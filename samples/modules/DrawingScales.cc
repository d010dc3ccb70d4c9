// MAßSTÄBE: how long a metre is at the usual scales. The letter case of a command name does not matter, with umlauts
// neither; "ß" has no upper case of one character and stays.
#include "standalone/ModuleApi.h"

#include <iomanip>
#include <sstream>

namespace {

void printScales(void* /*context*/)
{
    constexpr int kReductions[] = {1, 2, 5, 10, 20, 50, 100, 200, 500, 1000};
    std::ostringstream table;
    table << "Maßstab    1 m in der Zeichnung\n";
    for (const int reduction : kReductions) {
        table << "1:" << std::left << std::setw(6) << reduction << std::right << std::setw(9) << 1000 / reduction
              << " mm\n";
    }
    kestPrint(table.str().c_str());
}

void printSheetSizes(void* /*context*/)
{
    kestPrint("Blattgrößen: A4 210 × 297, A3 297 × 420, A2 420 × 594, A1 594 × 841, A0 841 × 1189 mm\n");
}

} // namespace

int kestModuleEntry()
{
    const bool hasScales = kestRegisterCommand("Maßstäbe", printScales, nullptr) == 1;
    return hasScales && kestRegisterCommand("Blattgröße", printSheetSizes, nullptr) == 1 ? 0 : 1;
}
