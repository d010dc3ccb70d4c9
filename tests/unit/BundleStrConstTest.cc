#include "manifest/BundleStrConst.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <type_traits>

namespace {

struct Constant
{
    const char* name;
    const CStdStr<wchar_t>& constant;
    const wchar_t* text;
};

void PrintTo(const Constant& constant, std::ostream* out)
{
    *out << constant.name;
}

const Constant kConstants[] = {
    {"bundle_InstallPath", BundleStrConst::bundle_InstallPath, L"ApplicationPlugins"},
    {"bundle_AllUserPath", BundleStrConst::bundle_AllUserPath, L"/usr/local/ORRELIN/ApplicationPlugins"},
    {"bundle_UserPath", BundleStrConst::bundle_UserPath, L".config/ORRELIN/ApplicationPlugins"},
    {"xml_FileNameConst", BundleStrConst::xml_FileNameConst, L"PackageContents.xml"},
    {"xml_ApplicationPackage", BundleStrConst::xml_ApplicationPackage, L"ApplicationPackage"},
    {"app_SchemaVersion", BundleStrConst::app_SchemaVersion, L"SchemaVersion"},
    {"app_AppVersion", BundleStrConst::app_AppVersion, L"AppVersion"},
    {"app_Author", BundleStrConst::app_Author, L"Author"},
    {"app_Name", BundleStrConst::app_Name, L"Name"},
    {"app_Description", BundleStrConst::app_Description, L"Description"},
    {"app_Icon", BundleStrConst::app_Icon, L"Icon"},
    {"app_HelpFile", BundleStrConst::app_HelpFile, L"HelpFile"},
    {"app_ProductCode", BundleStrConst::app_ProductCode, L"ProductCode"},
    {"app_UpgradeCode", BundleStrConst::app_UpgradeCode, L"UpgradeCode"},
    {"xml_CompanyDetails", BundleStrConst::xml_CompanyDetails, L"CompanyDetails"},
    {"company_Name", BundleStrConst::company_Name, L"Name"},
    {"company_Phone", BundleStrConst::company_Phone, L"Phone"},
    {"company_URL", BundleStrConst::company_URL, L"URL"},
    {"company_Email", BundleStrConst::company_Email, L"Email"},
    {"xml_DependentBundles", BundleStrConst::xml_DependentBundles, L"DependentBundles"},
    {"xml_DependentBundle", BundleStrConst::xml_DependentBundle, L"DependentBundle"},
    {"xml_DepComponent", BundleStrConst::xml_DepComponent, L"Component"},
    {"dep_UpgradeCode", BundleStrConst::dep_UpgradeCode, L"UpgradeCode"},
    {"dep_VersionMin", BundleStrConst::dep_VersionMin, L"VersionMin"},
    {"dep_VersionMax", BundleStrConst::dep_VersionMax, L"VersionMax"},
    {"xml_RuntimeRequirements", BundleStrConst::xml_RuntimeRequirements, L"RuntimeRequirements"},
    {"run_Arc", BundleStrConst::run_Arc, L"Architecture"},
    {"run_OS", BundleStrConst::run_OS, L"OS"},
    {"run_Platform", BundleStrConst::run_Platform, L"Platform"},
    {"run_SeriesMin", BundleStrConst::run_SeriesMin, L"SeriesMin"},
    {"run_SeriesMax", BundleStrConst::run_SeriesMax, L"SeriesMax"},
    {"xml_Components", BundleStrConst::xml_Components, L"Components"},
    {"xml_ComponentEntry", BundleStrConst::xml_ComponentEntry, L"ComponentEntry"},
    {"entry_ModuleName", BundleStrConst::entry_ModuleName, L"ModuleName"},
    {"entry_AppName", BundleStrConst::entry_AppName, L"AppName"},
    {"entry_LoadCtrlFlag", BundleStrConst::entry_LoadCtrlFlag, L"LoadCtrlFlag"},
    {"entry_PythonVersion", BundleStrConst::entry_PythonVersion, L"PythonVersion"},
    {"entry_LoadStartup", BundleStrConst::entry_LoadStartup, L"LoadOnTARVIXStartup"},
    {"entry_LoadCommand", BundleStrConst::entry_LoadCommand, L"LoadOnCommandInvocation"},
    {"xml_Commands", BundleStrConst::xml_Commands, L"Commands"},
    {"commands_GroupName", BundleStrConst::commands_GroupName, L"GroupName"},
    {"xml_Command", BundleStrConst::xml_Command, L"Command"},
    {"command_Global", BundleStrConst::command_Global, L"Global"},
    {"command_Local", BundleStrConst::command_Local, L"Local"},
    {"command_HelpTopic", BundleStrConst::command_HelpTopic, L"HelpTopic"},
    {"command_StartupCommand", BundleStrConst::command_StartupCommand, L"StartupCommand"},
};

class BundleStrConstTest : public ::testing::TestWithParam<Constant>
{
};

TEST_P(BundleStrConstTest, HoldsItsText)
{
    EXPECT_EQ(GetParam().constant, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Constants, BundleStrConstTest, ::testing::ValuesIn(kConstants),
                         [](const auto& one) { return std::string(one.param.name); });

TEST(BundleStrConstsTest, TheErrorLogsPathIsTheOneNarrowConstant)
{
    static_assert(std::is_same_v<decltype(BundleStrConst::bundle_ErrorLogPath), const std::string>);

    EXPECT_EQ(BundleStrConst::bundle_ErrorLogPath, ".config/ORRELIN/BundleErrorLog.txt");
}

TEST(BundleStrConstsTest, EveryConstantIsAnObjectOfItsOwn)
{
    std::set<const void*> addresses = {&BundleStrConst::bundle_ErrorLogPath};
    for (const Constant& constant : kConstants) {
        EXPECT_TRUE(addresses.insert(&constant.constant).second) << constant.name;
    }
    EXPECT_EQ(addresses.size(), 47U);
}

TEST(BundleStrConstsTest, TheCompanysAndThePackagesNameAreTwoObjectsWithOneText)
{
    EXPECT_NE(&BundleStrConst::company_Name, &BundleStrConst::app_Name);
    EXPECT_EQ(BundleStrConst::company_Name, BundleStrConst::app_Name);
}

TEST(BundleStrConstsTest, TheDependencysAndThePackagesUpgradeCodeAreTwoObjectsWithOneText)
{
    EXPECT_NE(&BundleStrConst::dep_UpgradeCode, &BundleStrConst::app_UpgradeCode);
    EXPECT_EQ(BundleStrConst::dep_UpgradeCode, BundleStrConst::app_UpgradeCode);
}

} // namespace
