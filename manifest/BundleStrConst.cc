#include "manifest/BundleStrConst.h"

namespace BundleStrConst {

const CStdStr<wchar_t> bundle_InstallPath = "ApplicationPlugins";
const CStdStr<wchar_t> bundle_AllUserPath = "/usr/local/ORRELIN/ApplicationPlugins";
const CStdStr<wchar_t> bundle_UserPath = ".config/ORRELIN/ApplicationPlugins";
const std::string bundle_ErrorLogPath = ".config/ORRELIN/BundleErrorLog.txt";
const CStdStr<wchar_t> xml_FileNameConst = "PackageContents.xml";
const CStdStr<wchar_t> xml_ApplicationPackage = "ApplicationPackage";
const CStdStr<wchar_t> app_SchemaVersion = "SchemaVersion";
const CStdStr<wchar_t> app_AppVersion = "AppVersion";
const CStdStr<wchar_t> app_Author = "Author";
const CStdStr<wchar_t> app_Name = "Name";
const CStdStr<wchar_t> app_Description = "Description";
const CStdStr<wchar_t> app_Icon = "Icon";
const CStdStr<wchar_t> app_HelpFile = "HelpFile";
const CStdStr<wchar_t> app_ProductCode = "ProductCode";
const CStdStr<wchar_t> app_UpgradeCode = "UpgradeCode";
const CStdStr<wchar_t> xml_CompanyDetails = "CompanyDetails";
const CStdStr<wchar_t> company_Name = "Name";
const CStdStr<wchar_t> company_Phone = "Phone";
const CStdStr<wchar_t> company_URL = "URL";
const CStdStr<wchar_t> company_Email = "Email";
const CStdStr<wchar_t> xml_DependentBundles = "DependentBundles";
const CStdStr<wchar_t> xml_DependentBundle = "DependentBundle";
const CStdStr<wchar_t> xml_DepComponent = "Component";
const CStdStr<wchar_t> dep_UpgradeCode = "UpgradeCode";
const CStdStr<wchar_t> dep_VersionMin = "VersionMin";
const CStdStr<wchar_t> dep_VersionMax = "VersionMax";
const CStdStr<wchar_t> xml_RuntimeRequirements = "RuntimeRequirements";
const CStdStr<wchar_t> run_Arc = "Architecture";
const CStdStr<wchar_t> run_OS = "OS";
const CStdStr<wchar_t> run_Platform = "Platform";
const CStdStr<wchar_t> run_SeriesMin = "SeriesMin";
const CStdStr<wchar_t> run_SeriesMax = "SeriesMax";
const CStdStr<wchar_t> xml_Components = "Components";
const CStdStr<wchar_t> xml_ComponentEntry = "ComponentEntry";
const CStdStr<wchar_t> entry_ModuleName = "ModuleName";
const CStdStr<wchar_t> entry_AppName = "AppName";
const CStdStr<wchar_t> entry_LoadCtrlFlag = "LoadCtrlFlag";
const CStdStr<wchar_t> entry_PythonVersion = "PythonVersion";
const CStdStr<wchar_t> entry_LoadStartup = "LoadOnTARVIXStartup";
const CStdStr<wchar_t> entry_LoadCommand = "LoadOnCommandInvocation";
const CStdStr<wchar_t> xml_Commands = "Commands";
const CStdStr<wchar_t> commands_GroupName = "GroupName";
const CStdStr<wchar_t> xml_Command = "Command";
const CStdStr<wchar_t> command_Global = "Global";
const CStdStr<wchar_t> command_Local = "Local";
const CStdStr<wchar_t> command_HelpTopic = "HelpTopic";
const CStdStr<wchar_t> command_StartupCommand = "StartupCommand";

} // namespace BundleStrConst
