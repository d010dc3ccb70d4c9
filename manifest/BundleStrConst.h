// The vocabulary: the names of the manifest's elements and attributes, file names and search paths.
//
// Each constant is built once when the library is loaded, in the order of this list, and lives until it is unloaded.
// All are exported. Constants with equal texts are different objects on purpose: each names one thing.
#pragma once

#include "host/StdString.h"

#include <string>

#pragma GCC visibility push(default)
namespace BundleStrConst {

// Where bundles are looked for, and where problems are written.
extern const CStdStr<wchar_t> bundle_InstallPath; ///< follows the host's program folder, which ends with "/"
extern const CStdStr<wchar_t> bundle_AllUserPath;
extern const CStdStr<wchar_t> bundle_UserPath; ///< follows HOME and "/"
extern const std::string bundle_ErrorLogPath;  ///< narrow; follows HOME and "/"

// The manifest's file name.
extern const CStdStr<wchar_t> xml_FileNameConst;

// Element ApplicationPackage and what it holds.
extern const CStdStr<wchar_t> xml_ApplicationPackage;
extern const CStdStr<wchar_t> app_SchemaVersion;
extern const CStdStr<wchar_t> app_AppVersion;
extern const CStdStr<wchar_t> app_Author;
extern const CStdStr<wchar_t> app_Name;
extern const CStdStr<wchar_t> app_Description;
extern const CStdStr<wchar_t> app_Icon;
extern const CStdStr<wchar_t> app_HelpFile;
extern const CStdStr<wchar_t> app_ProductCode;
extern const CStdStr<wchar_t> app_UpgradeCode;

// Element CompanyDetails and what it holds.
extern const CStdStr<wchar_t> xml_CompanyDetails;
extern const CStdStr<wchar_t> company_Name;
extern const CStdStr<wchar_t> company_Phone;
extern const CStdStr<wchar_t> company_URL;
extern const CStdStr<wchar_t> company_Email;

// Element DependentBundles and what it holds.
extern const CStdStr<wchar_t> xml_DependentBundles;
extern const CStdStr<wchar_t> xml_DependentBundle;
extern const CStdStr<wchar_t> xml_DepComponent; ///< not read; part of the vocabulary
extern const CStdStr<wchar_t> dep_UpgradeCode;
extern const CStdStr<wchar_t> dep_VersionMin;
extern const CStdStr<wchar_t> dep_VersionMax;

// Element RuntimeRequirements and what it holds.
extern const CStdStr<wchar_t> xml_RuntimeRequirements;
extern const CStdStr<wchar_t> run_Arc;
extern const CStdStr<wchar_t> run_OS;
extern const CStdStr<wchar_t> run_Platform;
extern const CStdStr<wchar_t> run_SeriesMin;
extern const CStdStr<wchar_t> run_SeriesMax;

// Element Components and what it holds.
extern const CStdStr<wchar_t> xml_Components;
extern const CStdStr<wchar_t> xml_ComponentEntry;
extern const CStdStr<wchar_t> entry_ModuleName;
extern const CStdStr<wchar_t> entry_AppName;
extern const CStdStr<wchar_t> entry_LoadCtrlFlag;
extern const CStdStr<wchar_t> entry_PythonVersion;
extern const CStdStr<wchar_t> entry_LoadStartup;
extern const CStdStr<wchar_t> entry_LoadCommand;

// Element Commands and what it holds.
extern const CStdStr<wchar_t> xml_Commands;
extern const CStdStr<wchar_t> commands_GroupName;
extern const CStdStr<wchar_t> xml_Command;
extern const CStdStr<wchar_t> command_Global;
extern const CStdStr<wchar_t> command_Local;
extern const CStdStr<wchar_t> command_HelpTopic;      ///< not read; part of the vocabulary
extern const CStdStr<wchar_t> command_StartupCommand; ///< not read; part of the vocabulary

} // namespace BundleStrConst
#pragma GCC visibility pop
