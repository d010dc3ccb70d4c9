// What the library's file shows to the world.
#include "tests/library/Contract.h"
#include "tests/library/OpenedLibrary.h"

#include "host/StdString.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <regex>
#include <set>

namespace {

std::vector<std::string> linesOf(const std::string& command)
{
    struct Close
    {
        void operator()(std::FILE* pipe) const { EXPECT_EQ(pclose(pipe), 0); }
    };
    const std::unique_ptr<std::FILE, Close> pipe(popen(command.c_str(), "r"));
    std::vector<std::string> lines;
    char buffer[4096];
    while (std::fgets(buffer, sizeof buffer, pipe.get()) != nullptr) {
        std::string line = buffer;
        line.erase(line.find_last_not_of('\n') + 1);
        lines.push_back(line);
    }
    return lines;
}

std::set<std::string> namesOf(const std::string& options)
{
    const std::regex layout("([^ ]+) [A-Za-z]( +[0-9a-f]+){0,2} *"); // "name type [value [size]]"
    std::set<std::string> names;
    for (const std::string& line : linesOf("nm -D " + options + " --format=posix " KEST_LIBRARY_FILE)) {
        std::smatch parts;
        EXPECT_TRUE(std::regex_match(line, parts, layout)) << line;
        names.insert(parts[1]);
    }
    return names;
}

/// Each name with what it stands for.
std::vector<std::string> readable(const std::set<std::string>& names)
{
    std::vector<std::string> lines;
    for (const std::string& name : names) {
        lines.push_back(name + " " + demangled(name.c_str()));
    }
    return lines;
}

TEST(SymbolsTest, TheLibraryExportsTheEntryPointsAndTheConstantsAndNothingElse)
{
    expectContract("exports.txt", readable(namesOf("--defined-only")));
}

TEST(SymbolsTest, NoSymbolIsUniqueInTheProcess)
{
    // Such a symbol would keep the library from ever being unloaded.
    for (const std::string& line : linesOf("nm -a -C --format=posix " KEST_LIBRARY_FILE)) {
        EXPECT_EQ(line.find(" u "), std::string::npos) << line;
    }
}

TEST(SymbolsTest, TheLibraryHasItsSonameAndNeedsNothingButTheRunTime)
{
    const std::set<std::string> allowed = {
        "libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6", "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"};
    const std::regex sanitizer("lib(asan|ubsan|clang_rt).*"); // in instrumented builds only
    std::string soname;
    for (const std::string& line : linesOf("readelf -d " KEST_LIBRARY_FILE)) {
        const std::size_t open = line.find('[');
        const std::string name = open == std::string::npos ? "" : line.substr(open + 1, line.find(']') - open - 1);
        if (line.find("(NEEDED)") != std::string::npos) {
            EXPECT_TRUE(allowed.contains(name) || std::regex_match(name, sanitizer)) << name;
        }
        if (line.find("(SONAME)") != std::string::npos) {
            soname = name;
        }
    }
    EXPECT_EQ(soname, "libkestbundle.so.0");
}

TEST(SymbolsTest, TheHostOperationsAskedForAreThese)
{
#ifdef KEST_INSTRUMENTED
    GTEST_SKIP() << "the sanitizers' run time stands between the library and the C library's symbols";
#else
    std::set<std::string> asked;
    for (const std::string& name : namesOf("--undefined-only")) {
        const bool isRunTime =
            name.find('@') != std::string::npos || name.rfind("_ITM_", 0) == 0 || name.rfind("__", 0) == 0;
        if (!isRunTime) {
            asked.insert(name);
        }
    }
    expectContract("host-operations.txt", readable(asked));
#endif
}

TEST(SymbolsTest, AConstantIsReachedByItsName)
{
    const OpenedLibrary library;
    const auto* name = static_cast<const CStdStr<wchar_t>*>(library.find("_ZN14BundleStrConst17xml_FileNameConstE"));
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(*name, L"PackageContents.xml");
}

} // namespace
