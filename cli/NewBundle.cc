#include "cli/NewBundle.h"

#include "cli/BundleName.h"
#include "cli/Shown.h"
#include "cli/XmlText.h"

#include <algorithm>

namespace cli {

namespace {

// In each text, @NAME@ is the bundle's name and @COMMAND@ that of the command. Neither can hold a quotation mark, a
// backslash or a line end, so that they can stand in a string of any of these languages.

constexpr char kNativeSource[] = R"(// The native module of this bundle: Contents/commands.krx is made of it.
#include "standalone/ModuleApi.h"

static void sayHello(void*)
{
    kestPrint("Hello from @NAME@, on host ");
    kestPrint(kestHostVersion());
    kestPrint("\n");
}

// The host calls this once, when it loads the module. 0 means that all went well.
int kestModuleEntry()
{
    return kestRegisterCommand("@COMMAND@", sayHello, nullptr) ? 0 : 1;
}
)";

constexpr char kNativeBuild[] = R"(cmake_minimum_required(VERSION 3.18)
project(commands LANGUAGES CXX)

# The header comes with kestbundle. Where that is not on the PATH, -DCMAKE_PREFIX_PATH=FOLDER says where it is installed.
find_path(KEST_INCLUDE standalone/ModuleApi.h PATH_SUFFIXES kestbundle REQUIRED)

# A module links nothing: the host that loads it has the functions.
add_library(commands MODULE commands.cc)
target_include_directories(commands PRIVATE ${KEST_INCLUDE})
set_target_properties(commands PROPERTIES
    PREFIX "" SUFFIX ".krx" LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/../Contents)
)";

constexpr char kLispFile[] = R"(;;; The LISP file of this bundle.

(defun say-hello ()
  (kest-print (format nil "Hello from ~a, on host ~a~%" "@NAME@" (kest-host-version))))

(kest-register-command "@COMMAND@" #'say-hello)
)";

constexpr char kPythonFile[] = R"("""The Python script of this bundle."""

import kest


def say_hello():
    kest.print("Hello from @NAME@, on host " + kest.host_version() + "\n")


kest.register_command("@COMMAND@", say_hello)
)";

constexpr char kManagedSource[] = R"(// The assembly of this bundle: Contents/commands.dll is made of it.
public static class Plugin
{
    // The host calls this once, when it loads the assembly.
    public static void Start()
    {
        Kest.RegisterCommand("@COMMAND@", SayHello);
    }

    private static void SayHello()
    {
        Kest.Print("Hello from @NAME@, on host " + Kest.HostVersion() + "\n");
    }
}
)";

constexpr char kMenuHead[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- The menu of this bundle. An item gives a command, one of this bundle, of another or of the host. -->
<MenuFile version="1">
  <Menu title="@NAME@">
)";

std::string filled(std::string_view text, const std::string& name, const std::string& command)
{
    constexpr std::string_view kName = "@NAME@";
    constexpr std::string_view kCommand = "@COMMAND@";
    std::string result;
    while (!text.empty()) {
        if (text.starts_with(kName)) {
            result += name;
            text.remove_prefix(kName.size());
        } else if (text.starts_with(kCommand)) {
            result += command;
            text.remove_prefix(kCommand.size());
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

std::string menuFile(const NewBundle& bundle)
{
    std::string text = filled(kMenuHead, escapedXml(plainUtf8(bundle.name)), "");
    const std::vector<NewBundleCommand> commands = commandsOf(bundle);
    for (const NewBundleCommand& command : commands) {
        const std::string name = escapedXml(plainUtf8(command.name));
        text += "    <Item label=\"";
        text += name;
        text += "\" command=\"";
        text += name;
        text += "\"/>\n";
    }
    if (commands.empty()) {
        text += "    <Item label=\"Line\" command=\"LINE\"/>\n";
    }
    return text + "  </Menu>\n</MenuFile>\n";
}

struct KindName
{
    BundleKind kind;
    const char* name;
};

constexpr KindName kKindNames[] = {
    {BundleKind::kNative, "native"},   {BundleKind::kLisp, "lisp"},   {BundleKind::kPython, "python"},
    {BundleKind::kManaged, "managed"}, {BundleKind::kMenus, "menus"},
};

} // namespace

std::string nameOf(BundleKind kind)
{
    return std::ranges::find(kKindNames, kind, &KindName::kind)->name;
}

std::vector<std::string> bundleKindNames()
{
    std::vector<std::string> names;
    for (const KindName& one : kKindNames) {
        names.emplace_back(one.name);
    }
    return names;
}

BundleKind bundleKindOf(const std::string& name)
{
    return std::ranges::find(kKindNames, name, &KindName::name)->kind;
}

std::vector<NewBundleCommand> commandsOf(const NewBundle& bundle)
{
    std::vector<NewBundleCommand> commands;
    for (const BundleKind kind : bundle.kinds) {
        if (kind != BundleKind::kMenus) {
            commands.push_back({commandNameFor(bundle.name), kind});
        }
    }
    if (commands.size() > 1) {
        for (NewBundleCommand& command : commands) { // each name can have one owner
            const std::string kind = nameOf(command.kind);
            command.name += L"-" + commandNameFor(std::wstring(kind.begin(), kind.end()));
        }
    }
    return commands;
}

std::vector<NewBundleFile> filesOf(const NewBundle& bundle)
{
    std::vector<NewBundleFile> files;
    for (const NewBundleCommand& command : commandsOf(bundle)) {
        const auto add = [&](const char* path, const char* text) {
            files.push_back({path, filled(text, plainUtf8(bundle.name), plainUtf8(command.name))});
        };
        switch (command.kind) {
        case BundleKind::kNative:
            add("Source/commands.cc", kNativeSource);
            add("Source/CMakeLists.txt", kNativeBuild);
            break;
        case BundleKind::kLisp:
            add("Contents/commands.lsp", kLispFile);
            break;
        case BundleKind::kPython:
            add("Contents/commands.py", kPythonFile);
            break;
        case BundleKind::kManaged:
            add("Source/commands.cs", kManagedSource);
            break;
        case BundleKind::kMenus:
            break;
        }
    }
    if (bundle.kinds.contains(BundleKind::kMenus)) {
        files.push_back({"Contents/menu.cuix", menuFile(bundle)});
    }
    files.push_back({"PackageContents.xml", newManifest(bundle)});
    return files;
}

} // namespace cli
