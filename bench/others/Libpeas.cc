// libpeas finds plug-ins described by key files and brings them into an order that suits their dependencies.
#include "bench/Measured.h"

#include <libpeas/peas.h>
#include <string>

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("usage: kest_bench_libpeas TREE/home\n", stderr);
        return 2;
    }
    const std::string folder = std::string(arguments[1]) + "/../keyfiles";
    const bench::Measured measured;
    PeasEngine* const engine = peas_engine_get_default();
    peas_engine_add_search_path(engine, folder.c_str(), nullptr);
    measured.report(g_list_length(const_cast<GList*>(peas_engine_get_plugin_list(engine))));
    return 0;
}
