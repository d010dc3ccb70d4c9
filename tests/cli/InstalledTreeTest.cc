// The tool as it is installed, away from the folder in which it was built.
#include "tests/cli/ToolTest.h"

#include <dlfcn.h>
#include <filesystem>

namespace {

using nlohmann::json;

class InstalledTreeTest : public ToolTest
{
protected:
    void SetUp() override
    {
        std::filesystem::remove_all(path("tool"));
        const std::string command = "'" KEST_CMAKE "' --install '" KEST_BUILD_FOLDER "' --prefix '" + path("tool") +
                                    "' > '" + path("log") + "' 2>&1";
        ASSERT_EQ(std::system(command.c_str()), 0) << contentOf(path("log"));
    }
};

TEST_F(InstalledTreeTest, EverythingThatTheToolOpensIsFoundBesideIt)
{
    std::string entries = onDemandEntry("./late.lsp", {"late"});
    if (void* library = ::dlopen("libpython3.11.so", RTLD_LAZY)) {
        ::dlclose(library);
        entries += scriptEntry("./hello.py", "python3.11");
    }
    const std::string bundle = install("Mixed.bundle", manifestOf(entries));
    write(bundle + "/hello.py", "import kest\nkest.print('Python\\n')\n");
    write(bundle + "/late.lsp", "(kest-register-command \"LATE\" (lambda () (kest-print \"LISP\")))\n");
    const bool hasPython = entries.find(".py") != std::string::npos;
    const json report = runJson({"--command", "late"});
    EXPECT_EQ(report["startOutput"], hasPython ? "Python\n" : "");
    EXPECT_EQ(report["commandRuns"][0]["output"], KEST_HAS_LISP != 0 ? "LISP" : "");
    EXPECT_EQ(std::filesystem::exists(path("tool/lib/VxManagedCommand.dll")), KEST_HAS_MANAGED != 0);
    EXPECT_EQ(std::filesystem::exists(path("tool/lib/kest/Kest.dll")), KEST_HAS_MANAGED != 0);
    for (const char* file : {"include/kestbundle/standalone/ModuleApi.h", "share/man/man1/kestbundle-run.1",
                             "share/bash-completion/completions/kestbundle", "share/zsh/site-functions/_kestbundle"}) {
        EXPECT_TRUE(std::filesystem::exists(path("tool/") + file)) << file;
    }
}

} // namespace
