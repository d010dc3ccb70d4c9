// A plug-in with one element, for GStreamer's cache. There are many copies of it: each takes its name from its file's.
#include <array>
#include <cstring>
#include <dlfcn.h>
#include <gst/gst.h>
#include <string_view>

namespace {

std::array<char, 64> name;

void describe(void* elementClass, void* /*data*/)
{
    static GstStaticPadTemplate input =
        GST_STATIC_PAD_TEMPLATE("sink", GST_PAD_SINK, GST_PAD_ALWAYS, GST_STATIC_CAPS("text/plain"));
    gst_element_class_set_static_metadata(GST_ELEMENT_CLASS(elementClass), "Drawing aids", "Drawing",
                                          "Draws what is drawn often", "The Drawing Company <help@drawing.example>");
    gst_element_class_add_static_pad_template(GST_ELEMENT_CLASS(elementClass), &input);
}

gboolean addElement(GstPlugin* plugin)
{
    GTypeInfo info{};
    info.class_size = sizeof(GstElementClass);
    info.class_init = describe;
    info.instance_size = sizeof(GstElement);
    const GType type = g_type_register_static(GST_TYPE_ELEMENT, name.data(), &info, GTypeFlags{});
    return gst_element_register(plugin, name.data(), GST_RANK_NONE, type);
}

/// "libaids00042.so" is the plug-in "aids00042".
[[gnu::constructor]] void takeName()
{
    Dl_info own{};
    if (::dladdr(name.data(), &own) == 0) {
        return;
    }
    std::string_view file(own.dli_fname);
    file.remove_prefix(file.rfind('/') + 1 + std::strlen("lib"));
    file = file.substr(0, file.find('.')).substr(0, name.size() - 1);
    std::memcpy(name.data(), file.data(), file.size());
}

} // namespace

extern "C" [[gnu::visibility("default")]] GstPluginDesc gst_plugin_desc;
GstPluginDesc gst_plugin_desc = {GST_VERSION_MAJOR,
                                 GST_VERSION_MINOR,
                                 name.data(),
                                 "Draws what is drawn often",
                                 addElement,
                                 "1.0",
                                 "LGPL",
                                 "aids",
                                 "aids",
                                 "https://drawing.example",
                                 nullptr,
                                 GST_PADDING_INIT};
