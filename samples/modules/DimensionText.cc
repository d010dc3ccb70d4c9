// 标注: the text heights for dimensions on the usual sheets. A command name need not be ASCII: it is UTF-8.
#include "standalone/ModuleApi.h"

#include <iomanip>
#include <sstream>

namespace {

struct Sheet
{
    const char* name;
    int width;
    int height;
    double textHeight;
};

constexpr Sheet kSheets[] = {
    {"A0", 1189, 841, 5}, {"A1", 841, 594, 5}, {"A2", 594, 420, 3.5}, {"A3", 420, 297, 3.5}, {"A4", 297, 210, 3.5}};

void printTextHeights(void* /*context*/)
{
    std::ostringstream table;
    table << std::fixed << std::setprecision(1) << "图幅    幅面尺寸（毫米）    标注字高（毫米）\n";
    for (const Sheet& sheet : kSheets) {
        table << sheet.name << std::setw(11) << sheet.width << " ×" << std::setw(4) << sheet.height << std::setw(16)
              << sheet.textHeight << "\n";
    }
    kestPrint(table.str().c_str());
}

} // namespace

int kestModuleEntry()
{
    return kestRegisterCommand("标注", printTextHeights, nullptr) == 1 ? 0 : 1;
}
