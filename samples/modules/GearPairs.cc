// GEAR and GEARSERIES: the dimensions of a pair of spur gears, for the table on a gear drawing.
#include "standalone/ModuleApi.h"

#include <cmath>
#include <iomanip>
#include <numbers>
#include <sstream>

namespace {

constexpr double kPressureAngle = 20 * std::numbers::pi / 180;

/// A pair of spur gears without profile shift; lengths in millimetres.
struct GearPair
{
    double module;
    int pinionTeeth;
    int wheelTeeth;

    double centreDistance() const { return module * (pinionTeeth + wheelTeeth) / 2; }

    /// How many pairs of teeth are in contact on average; below 1.1 the gears run roughly.
    double contactRatio() const
    {
        const auto reachOutsideBaseCircle = [this](int teeth) {
            const double tip = tipDiameter(teeth) / 2;
            const double base = pitchDiameter(teeth) / 2 * std::cos(kPressureAngle);
            return std::sqrt(tip * tip - base * base);
        };
        const double pathOfContact = reachOutsideBaseCircle(pinionTeeth) + reachOutsideBaseCircle(wheelTeeth) -
                                     centreDistance() * std::sin(kPressureAngle);
        return pathOfContact / (std::numbers::pi * module * std::cos(kPressureAngle));
    }

    double pitchDiameter(int teeth) const { return module * teeth; }
    double tipDiameter(int teeth) const { return module * (teeth + 2); }
    double rootDiameter(int teeth) const { return module * (teeth - 2.5); }
};

constexpr GearPair kPairOfTheDrawing{2.5, 18, 45};

void printPair(void* /*context*/)
{
    const GearPair& pair = kPairOfTheDrawing;
    std::ostringstream table;
    table << std::fixed << std::setprecision(2) << "Spur gears, module " << pair.module
          << ", pressure angle 20 degrees\n"
          << "                       pinion     wheel\n";
    const auto row = [&table](const char* name, auto pinion, auto wheel) {
        table << std::left << std::setw(19) << name << std::right << std::setw(10) << pinion << std::setw(10) << wheel
              << "\n";
    };
    row("teeth", pair.pinionTeeth, pair.wheelTeeth);
    row("pitch diameter", pair.pitchDiameter(pair.pinionTeeth), pair.pitchDiameter(pair.wheelTeeth));
    row("tip diameter", pair.tipDiameter(pair.pinionTeeth), pair.tipDiameter(pair.wheelTeeth));
    row("root diameter", pair.rootDiameter(pair.pinionTeeth), pair.rootDiameter(pair.wheelTeeth));
    table << "centre distance " << pair.centreDistance() << ", contact ratio " << pair.contactRatio() << "\n";
    kestPrint(table.str().c_str());
}

void printSeries(void* /*context*/)
{
    constexpr double kPreferredModules[] = {1, 1.25, 1.5, 2, 2.5, 3, 4, 5, 6, 8, 10};
    std::ostringstream table;
    table << std::fixed << std::setprecision(3) << "Centre distances for " << kPairOfTheDrawing.pinionTeeth << " and "
          << kPairOfTheDrawing.wheelTeeth << " teeth\n";
    for (const double module : kPreferredModules) {
        const GearPair pair{module, kPairOfTheDrawing.pinionTeeth, kPairOfTheDrawing.wheelTeeth};
        table << "module" << std::setw(7) << module << std::setw(10) << pair.centreDistance() << "\n";
    }
    kestPrint(table.str().c_str());
}

} // namespace

// Called when GEAR or GEARSERIES is first typed. It registers both: the host asks for a module once, not once a
// command.
int kestModuleEntry()
{
    const bool isFirst = kestRegisterCommand("GEAR", printPair, nullptr) == 1;
    return isFirst && kestRegisterCommand("GEARSERIES", printSeries, nullptr) == 1 ? 0 : 1;
}
