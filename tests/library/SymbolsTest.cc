// What the library's file shows to the world. Whoever moves it does so in the lists below, on purpose.
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
    const std::regex layout("(.*) [A-Za-z]( +[0-9a-f]+){0,2} *");
    std::set<std::string> names;
    for (const std::string& line : linesOf("nm -D -C " + options + " --format=posix " KEST_LIBRARY_FILE)) {
        std::smatch parts; // "name type [value [size]]"; a name of C++ can hold blanks
        EXPECT_TRUE(std::regex_match(line, parts, layout)) << line;
        names.insert(parts[1]);
    }
    return names;
}

const char* const kConstants[] = {
    "bundle_InstallPath",
    "bundle_AllUserPath",
    "bundle_UserPath",
    "bundle_ErrorLogPath[abi:cxx11]",
    "xml_FileNameConst",
    "xml_ApplicationPackage",
    "app_SchemaVersion",
    "app_AppVersion",
    "app_Author",
    "app_Name",
    "app_Description",
    "app_Icon",
    "app_HelpFile",
    "app_ProductCode",
    "app_UpgradeCode",
    "xml_CompanyDetails",
    "company_Name",
    "company_Phone",
    "company_URL",
    "company_Email",
    "xml_DependentBundles",
    "xml_DependentBundle",
    "xml_DepComponent",
    "dep_UpgradeCode",
    "dep_VersionMin",
    "dep_VersionMax",
    "xml_RuntimeRequirements",
    "run_Arc",
    "run_OS",
    "run_Platform",
    "run_SeriesMin",
    "run_SeriesMax",
    "xml_Components",
    "xml_ComponentEntry",
    "entry_ModuleName",
    "entry_AppName",
    "entry_LoadCtrlFlag",
    "entry_PythonVersion",
    "entry_LoadStartup",
    "entry_LoadCommand",
    "xml_Commands",
    "commands_GroupName",
    "xml_Command",
    "command_Global",
    "command_Local",
    "command_HelpTopic",
    "command_StartupCommand",
};

TEST(SymbolsTest, TheLibraryExportsTheEntryPointsAndTheConstantsAndNothingElse)
{
    std::set<std::string> expected = {"excute", "excuteCuix", "loadIfCmdNeeded"};
    for (const char* constant : kConstants) {
        expected.insert(std::string("BundleStrConst::") + constant);
    }
    EXPECT_EQ(namesOf("--defined-only"), expected);
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
#endif
    const std::set<std::string> hostOperations = {
        "CStringArray::Add(CStdStr<wchar_t> const&)",
        "CStringArray::GetSize() const",
        "CStringArray::RemoveAll()",
        "CStringArray::operator[](int)",
        "CStringArray::~CStringArray()",
        "Database::convertMenuToCuix(CStdStr<wchar_t> const&, CStdStr<wchar_t>&)",
        "FindFirstFileW",
        "FindNextFileW",
        "GetCurrentDirectoryW",
        "GetKestProgramPath",
        "GetModuleHandleW",
        "GetProcAddress",
        "KestCommandString2TypeMap::addEntry(wchar_t const*, int)",
        "KestCrashRecorder::record(VxErrorStatus const*)",
        "KestGetCommandString2TypeMap()",
        "KsRxClass::isDerivedFrom(KsRxClass const*) const",
        "KsRxDictionary::at(wchar_t const*) const",
        "KsRxDynamicLinker::desc()",
        "KsRxDynamicLinkerImp::setKrxLoadType(wchar_t const*, eRxKrxLoadType)",
        "KsString::KsString()",
        "KsString::KsString(char const*)",
        "KsString::ansiPtr() const",
        "KsString::assign(wchar_t const*)",
        "KsString::compare(wchar_t const*) const",
        "KsString::utf8Ptr() const",
        "KsString::~KsString()",
        "LoadLibraryW",
        "SetCurrentDirectoryW",
        "TarvixConfig::getValue(TarvixConfig::Path, wchar_t const*, KestVariant&) const",
        "TarvixConfig::productName() const",
        "TarvixConfig::setValue(TarvixConfig::Path, wchar_t const*, KestVariant const&)",
        "VxErrorStatus::VxErrorStatus(Kest::ErrorStatus, wchar_t const*, int)",
        "_tarswprintf",
        "_wfopen",
        "_wtof",
        "_wtoi",
        "kds_queueexpr",
        "kestConfig()",
        "kestCreateXmlFilerReader",
        "kestGetCrashRecorder()",
        "ksedGetVar(wchar_t const*, resbuf*)",
        "ksrxSysRegistry()",
        "updateCStringManagerData",
    };
    std::set<std::string> asked;
    for (const std::string& name : namesOf("--undefined-only")) {
        const bool isRunTime =
            name.find('@') != std::string::npos || name.rfind("_ITM_", 0) == 0 || name.rfind("__", 0) == 0;
        if (!isRunTime) {
            asked.insert(name);
        }
    }
    EXPECT_EQ(asked, hostOperations);
}

TEST(SymbolsTest, AConstantIsReachedByItsName)
{
    const OpenedLibrary library;
    const auto* name = static_cast<const CStdStr<wchar_t>*>(library.find("_ZN14BundleStrConst17xml_FileNameConstE"));
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(*name, L"PackageContents.xml");
}

} // namespace
