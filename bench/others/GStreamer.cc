// GStreamer reads what it knows of its plug-ins from its cache, which an earlier run has written.
#include "bench/Measured.h"

#include <cstdlib>
#include <gst/gst.h>
#include <string>

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("usage: kest_bench_gstreamer TREE/home\n", stderr);
        return 2;
    }
    const std::string tree = std::string(arguments[1]) + "/..";
    ::setenv("GST_PLUGIN_SYSTEM_PATH_1_0", (tree + "/gstreamer").c_str(), 1);
    ::setenv("GST_REGISTRY_1_0", (tree + "/gstreamer.cache").c_str(), 1);
    ::setenv("GST_REGISTRY_FORK", "no", 1);
    const bench::Measured measured;
    gst_init(nullptr, nullptr);
    GList* const plugins = gst_registry_get_plugin_list(gst_registry_get());
    measured.report(g_list_length(plugins));
    return 0;
}
