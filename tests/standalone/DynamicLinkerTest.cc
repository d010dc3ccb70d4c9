#include "standalone/DynamicLinker.h"

#include "HostFixture.h"
#include "ModuleFolder.h"

#include "standalone/CommandTable.h"

#include "host/LocaleText.h"

#include <clocale>
#include <dlfcn.h>
#include <sys/stat.h>

using standalone::ModuleLoad;
using standalonetest::writeFile;

namespace {

class DynamicLinkerTest : public standalonetest::HostFixture
{
protected:
    DynamicLinkerTest() { startHost(); }
    ~DynamicLinkerTest() override { std::setlocale(LC_ALL, "C"); }

    static bool load(const std::string& path)
    {
        auto* linker = dynamic_cast<KsRxDynamicLinker*>(ksrxSysRegistry()->at(L"DynamicLinker"));
        return linker->loadModule(localetext::widen(path).c_str(), false, false);
    }

    /// Loads the module at `path`, which fails, and returns the reason in the journal. The console says the same.
    std::string problemOf(const std::string& path)
    {
        console.clear();
        EXPECT_FALSE(load(path));
        const auto noted = running->journal().only<ModuleLoad>();
        EXPECT_FALSE(noted.empty());
        EXPECT_EQ(noted.back().path, localetext::widen(path));
        EXPECT_FALSE(noted.back().loaded);
        EXPECT_EQ(noted.back().loadType, 0);
        EXPECT_EQ(console, path + ": could not be loaded: " + noted.back().problem + "\n");
        return noted.back().problem;
    }

    static bool isOpen(const std::string& path)
    {
        void* module = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        if (module != nullptr) {
            ::dlclose(module);
        }
        return module != nullptr;
    }
};

TEST_F(DynamicLinkerTest, TheRegistryHoldsTheLinkerAndNothingElse)
{
    KsRxObject* found = ksrxSysRegistry()->at(L"DynamicLinker");
    ASSERT_EQ(found, &running->moduleLinker());
    EXPECT_TRUE(found->isA()->isDerivedFrom(KsRxDynamicLinker::desc()));
    EXPECT_FALSE(KsRxDynamicLinker::desc()->isDerivedFrom(found->isA()));
    EXPECT_EQ(ksrxSysRegistry()->at(L"dynamiclinker"), nullptr);
    running.reset();
    EXPECT_EQ(ksrxSysRegistry()->at(L"DynamicLinker"), nullptr);
}

TEST_F(DynamicLinkerTest, ALoadedModulesCommandRuns)
{
    const std::string path = kModules + "/greeting.krx";
    EXPECT_TRUE(load(path));
    EXPECT_TRUE(running->commands().run(L"GREET").ran);
    EXPECT_EQ(console, "entry of greeting\nhello\n");
    EXPECT_EQ(running->commands().moduleOf(L"GREET"), path);
    const auto noted = running->journal().only<ModuleLoad>();
    ASSERT_EQ(noted.size(), 1U);
    EXPECT_EQ(noted[0].path, localetext::widen(path));
    EXPECT_TRUE(noted[0].loaded);
    EXPECT_EQ(noted[0].problem, "");
    const auto registered = running->journal().only<standalone::CommandRegistered>();
    ASSERT_EQ(registered.size(), 1U);
    EXPECT_EQ(registered[0].name, L"GREET");
    EXPECT_EQ(registered[0].module, path);
}

TEST_F(DynamicLinkerTest, AModuleIsEnteredOnceHoweverOftenItIsAskedFor)
{
    std::filesystem::create_symlink(kModules + "/greeting.krx", folder / "alias.krx");
    EXPECT_TRUE(load(kModules + "/greeting.krx"));
    EXPECT_TRUE(load(kModules + "/greeting.krx"));
    EXPECT_TRUE(load(folder / "alias.krx"));
    EXPECT_EQ(console, "entry of greeting\n");
    EXPECT_EQ(running->journal().only<ModuleLoad>().size(), 3U);
}

TEST_F(DynamicLinkerTest, AModuleOutlivesTheHostAndIsEnteredAgainForTheNextOne)
{
    EXPECT_TRUE(load(kModules + "/greeting.krx"));
    running.reset();
    EXPECT_TRUE(isOpen(kModules + "/greeting.krx"));
    startHost();
    EXPECT_FALSE(running->commands().has(L"GREET"));
    EXPECT_TRUE(load(kModules + "/greeting.krx"));
    EXPECT_TRUE(running->commands().has(L"GREET"));
    EXPECT_EQ(console, "entry of greeting\nentry of greeting\n");
}

TEST_F(DynamicLinkerTest, TheLoadTypeAmendsTheNewestLoadOfThePath)
{
    const std::wstring path = localetext::widen(kModules + "/greeting.krx");
    load(kModules + "/greeting.krx");
    load(kModules + "/greeting.krx");
    load(kModules + "/entry-missing.krx");
    KsRxDynamicLinkerImp::setKrxLoadType(path.c_str(), kRxLoadedAtStartup);
    KsRxDynamicLinkerImp::setKrxLoadType(L"/never/asked.krx", kRxLoadedAtStartup);
    std::vector<int> types;
    for (const ModuleLoad& noted : running->journal().only<ModuleLoad>()) {
        types.push_back(noted.loadType);
    }
    EXPECT_EQ(types, (std::vector<int>{0, 2, 0}));
}

TEST_F(DynamicLinkerTest, AnEntryThatRefusesLeavesNothingBehind)
{
    const std::string path = kModules + "/refusing.krx";
    EXPECT_EQ(problemOf(path), "its entry returned 7");
    EXPECT_FALSE(running->commands().has(L"LOST"));
    EXPECT_FALSE(isOpen(path));
    EXPECT_EQ(problemOf(path), "its entry returned 7"); // and it may be tried again
}

TEST_F(DynamicLinkerTest, AnEntryThatThrowsLeavesNothingBehind)
{
    EXPECT_EQ(problemOf(kModules + "/throwing.krx"), "its entry ended with an exception: no licence\\x0Awas found");
    EXPECT_FALSE(running->commands().has(L"LOST"));
    EXPECT_FALSE(isOpen(kModules + "/throwing.krx"));
}

TEST_F(DynamicLinkerTest, AnEntryThatRaisesAnErrorOfTheHostFails)
{
    EXPECT_EQ(problemOf(kModules + "/raising.krx"),
              "its entry ended with error 3 of the host, number 12: the drawing is locked");
    EXPECT_EQ(problemOf(kModules + "/throwing-number.krx"), "its entry ended with an exception of unknown type");
}

TEST_F(DynamicLinkerTest, AModuleWithoutAnEntryFailsWithTheSystemsReason)
{
    const std::string path = kModules + "/entry-missing.krx";
    EXPECT_EQ(problemOf(path), "it does not export kestModuleEntry: " + path + ": undefined symbol: kestModuleEntry");
    EXPECT_FALSE(isOpen(path));
}

TEST_F(DynamicLinkerTest, TheEntryOfANeededLibraryIsNotTheModulesEntry)
{
    EXPECT_EQ(problemOf(kModules + "/entry-elsewhere.krx"), "it does not export kestModuleEntry");
}

TEST_F(DynamicLinkerTest, AnUndefinedSymbolIsNamed)
{
    const std::string path = kModules + "/undefined-symbol.krx";
    EXPECT_EQ(problemOf(path), path + ": undefined symbol: kestNobodyDefinesThis");
}

TEST_F(DynamicLinkerTest, AModuleThatAsksForItselfIsNotEnteredTwice)
{
    const std::string path = kModules + "/self-loading.krx";
    EXPECT_TRUE(load(path));
    EXPECT_EQ(console, path + ": could not be loaded: it is being loaded already, and its own entry asked for it\n" +
                           "refused\n");
    EXPECT_TRUE(load(path));
}

TEST_F(DynamicLinkerTest, WhatIsNoLibraryFailsWithTheSystemsReason)
{
    writeFile(folder / "text.krx", std::string(100, 'x'));
    writeFile(folder / "empty.krx", "");
    EXPECT_EQ(problemOf(folder / "text.krx"), folder / "text.krx" + ": invalid ELF header");
    EXPECT_EQ(problemOf(folder / "empty.krx"), folder / "empty.krx" + ": file too short");
}

TEST_F(DynamicLinkerTest, AModuleForAnotherMachineSaysForWhich)
{
    const std::string own = standalonetest::fileContent(kModules + "/greeting.krx");
    const std::size_t machineAt = 18;
#ifdef __aarch64__
    const std::string ownName = "64-bit Arm";
    const std::vector<std::pair<int, std::string>> others{{62, "64-bit x86"}, {3, "32-bit x86"}};
#else
    const std::string ownName = "64-bit x86";
    const std::vector<std::pair<int, std::string>> others{{183, "64-bit Arm"}, {3, "32-bit x86"}};
#endif
    const auto expectOther = [&](const std::string& content, const std::string& name) {
        writeFile(folder / "other.krx", content);
        EXPECT_EQ(problemOf(folder / "other.krx"), "it is made for " + name + ", and this machine is " + ownName);
    };
    for (const auto& [number, name] : others) {
        std::string content = own;
        content[machineAt] = static_cast<char>(number);
        expectOther(content, name);
    }
    for (const auto& [number, name] :
         {std::pair(40, "32-bit Arm"), std::pair(243, "RISC-V"), std::pair(21, "machine number 21")}) {
        std::string content = own;
        content[machineAt] = static_cast<char>(number);
        expectOther(content, name);
    }
}

TEST_F(DynamicLinkerTest, AModuleThatIsCutShortIsNotMapped)
{
    const std::string own = standalonetest::fileContent(kModules + "/greeting.krx");
    for (const std::size_t size : {std::size_t{1000}, std::size_t{5000}, std::size_t{12000}}) {
        writeFile(folder / "part.krx", own.substr(0, size));
        const std::string problem = problemOf(folder / "part.krx");
        EXPECT_EQ(problem.substr(0, problem.rfind(' ')),
                  "the file is cut short: it has " + std::to_string(size) + " bytes and needs at least");
        EXPECT_LE(std::stoul(problem.substr(problem.rfind(' ') + 1)), own.size());
    }
    writeFile(folder / "part.krx", own.substr(0, 50)); // not even a header
    EXPECT_EQ(problemOf(folder / "part.krx"), folder / "part.krx" + ": file too short");
}

TEST_F(DynamicLinkerTest, WhatIsNoRegularFileIsNotOpened)
{
    ASSERT_EQ(::mkfifo((folder / "pipe.krx").c_str(), 0600), 0);
    std::filesystem::create_directory(folder / "folder.krx");
    EXPECT_EQ(problemOf(folder / "pipe.krx"), "it is not a regular file");
    EXPECT_EQ(problemOf(folder / "folder.krx"), "it is not a regular file");
    EXPECT_EQ(problemOf(folder / "nowhere.krx"), "No such file or directory");
}

TEST_F(DynamicLinkerTest, ANameWithoutAFolderIsNotSearchedFor)
{
    EXPECT_EQ(problemOf("libm.so.6"), "the path names no folder, and modules are not searched for");
    EXPECT_EQ(problemOf(""), "the path names no folder, and modules are not searched for");
}

TEST_F(DynamicLinkerTest, APathIsOpenedWhateverItsEncoding)
{
    for (const char* locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
        for (const char* name : {"/caf\xC3\xA9.krx", "/caf\xE9.krx"}) {
            const std::string path = folder.path + name;
            std::filesystem::copy_file(kModules + "/entry-missing.krx", path,
                                       std::filesystem::copy_options::overwrite_existing);
            load(path);
            const std::string problem = running->journal().only<ModuleLoad>().back().problem;
            EXPECT_TRUE(problem.starts_with("it does not export kestModuleEntry: ")) << problem;
        }
    }
}

} // namespace
