// What a manifest says: one plain record for each element that is kept. A text that was not given is empty.
#pragma once

#include "host/StdString.h"

#include <cstdint>
#include <string>
#include <vector>

/// The element ApplicationPackage.
struct KestApplicationPackage
{
    CStdStr<wchar_t> schemaVersion;
    CStdStr<wchar_t> appVersion;
    CStdStr<wchar_t> author;
    CStdStr<wchar_t> name;
    CStdStr<wchar_t> description;
    CStdStr<wchar_t> icon;
    CStdStr<wchar_t> helpFile;
    CStdStr<wchar_t> productCode;
    CStdStr<wchar_t> upgradeCode; ///< the bundle's identity: other bundles depend on it by this text
};

/// One element DependentBundle.
struct KestDependentBundle
{
    CStdStr<wchar_t> upgradeCode; ///< of the bundle depended on; never empty when read from a manifest
    CStdStr<wchar_t> versionMin;
    CStdStr<wchar_t> versionMax;
};

/// The element RuntimeRequirements; when there are several, the last one read.
struct KestRuntimeRequirements
{
    CStdStr<wchar_t> architecture;
    CStdStr<wchar_t> os;
    CStdStr<wchar_t> platform;
    CStdStr<wchar_t> seriesMin;
    CStdStr<wchar_t> seriesMax;
};

/// The element CompanyDetails.
struct KestCompanyDetails
{
    CStdStr<wchar_t> name;
    CStdStr<wchar_t> phone;
    CStdStr<wchar_t> url;
    CStdStr<wchar_t> email;
};

/// One element Command.
struct KestCommand
{
    CStdStr<wchar_t> globalName;
    CStdStr<wchar_t> localName; ///< what the user types; upper case once the bundle's commands are registered
};

/// One element Commands: a group.
struct KestCommands
{
    CStdStr<wchar_t> groupName;
    std::vector<KestCommand> commands; ///< in document order
};

/// One element ComponentEntry.
struct KestComponentEntry
{
    /// Bits of loadFlags.
    static constexpr std::int32_t kLoadStartup = 2; ///< load when the host starts
    static constexpr std::int32_t kLoadCommand = 4; ///< load when one of its commands is first used

    CStdStr<wchar_t> appName;
    CStdStr<wchar_t> moduleName;   ///< the module's full path; empty when the manifest gave none that begins with "./"
    std::int32_t loadCtrlFlag = 0; ///< only 1 allows loading at start-up
    std::string pythonVersion;     ///< UTF-8
    std::int32_t loadFlags = 0;
    std::vector<KestCommands> commands; ///< in document order

    bool loadsAtStartup() const { return loadCtrlFlag == 1 && (loadFlags & kLoadStartup) != 0; }
    /// Its commands are announced, and the first use of one loads it.
    bool loadsOnCommand() const { return !loadsAtStartup() && (loadFlags & kLoadCommand) != 0; }
};
