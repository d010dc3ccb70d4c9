#include "fuzz/ManifestModel.h"

#include "fuzz/RequirementsModel.h"

namespace fuzz {

void ManifestModel::read()
{
    for (const Token& token : document.tokens) {
        if (token.kind == Token::kStart) {
            start(token);
        } else if (token.kind == Token::kEnd) {
            end(token);
        }
        if (!expected.isRuntime) {
            return;
        }
    }
    if (place == Place::kCommands) {
        leaveCommands();
    }
    if (place == Place::kEntry) {
        leaveEntry();
    }
    expected.isReadError = document.isMalformed;
}

void ManifestModel::start(const Token& token)
{
    buffer.clear();
    if (place == Place::kOutside) {
        startOutside(token);
    } else if (place == Place::kDependencies && token.name == L"DependentBundle") {
        readDependency(token);
    } else if ((place == Place::kComponents || place == Place::kEntry) && token.name == L"ComponentEntry") {
        place = Place::kEntry;
        readEntry(token);
    } else if ((place == Place::kEntry || place == Place::kCommands) && token.name == L"Commands") {
        place = Place::kCommands;
        group.groupName = asked(token, L"GroupName");
    } else if (place == Place::kCommands && token.name == L"Command") {
        KestCommand& command = group.commands.emplace_back();
        command.globalName = asked(token, L"Global");
        command.localName = asked(token, L"Local");
    }
}

void ManifestModel::startOutside(const Token& token)
{
    if (token.name == L"ApplicationPackage") {
        readPackage(token);
    } else if (token.name == L"CompanyDetails") {
        readCompany(token);
    } else if (token.name == L"RuntimeRequirements") {
        readRuntime(token);
    } else if (token.name == L"DependentBundles") {
        place = Place::kDependencies;
    } else if (token.name == L"Components") {
        place = Place::kComponents;
    }
}

void ManifestModel::end(const Token& token)
{
    if ((place == Place::kDependencies && token.name == L"DependentBundles") ||
        (place == Place::kComponents && token.name == L"Components")) {
        place = Place::kOutside;
    } else if (place == Place::kEntry && token.name == L"ComponentEntry") {
        leaveEntry();
    } else if (place == Place::kCommands && token.name == L"Commands") {
        leaveCommands();
    }
}

void ManifestModel::leaveCommands()
{
    entry.commands.push_back(group);
    group = {};
    place = Place::kEntry;
}

void ManifestModel::leaveEntry()
{
    expected.components.push_back(entry);
    entry = {};
    place = Place::kComponents;
}

const std::wstring& ManifestModel::asked(const Token& token, const wchar_t* name)
{
    if (host.missingAttribute == hostdouble::MissingAttribute::kEmptiesBuffer) {
        buffer.clear();
    }
    for (auto one = token.attributes.rbegin(); one != token.attributes.rend(); ++one) {
        buffer = one->first == name ? one->second : buffer; // so that the first one of that name is left
    }
    return buffer;
}

void ManifestModel::readPackage(const Token& token)
{
    KestApplicationPackage& package = expected.package;
    package.upgradeCode = asked(token, L"UpgradeCode");
    package.schemaVersion = asked(token, L"SchemaVersion");
    package.appVersion = asked(token, L"AppVersion");
    package.author = asked(token, L"Author");
    package.name = asked(token, L"Name");
    package.description = asked(token, L"Description");
    package.icon = asked(token, L"Icon");
    package.helpFile = asked(token, L"HelpFile");
    package.productCode = asked(token, L"ProductCode");
}

void ManifestModel::readCompany(const Token& token)
{
    expected.company.name = asked(token, L"Name");
    expected.company.phone = asked(token, L"Phone");
    expected.company.url = asked(token, L"URL");
    expected.company.email = asked(token, L"Email");
}

void ManifestModel::readRuntime(const Token& token)
{
    expected.runtime.architecture = asked(token, L"Architecture");
    expected.runtime.os = asked(token, L"OS");
    expected.runtime.platform = asked(token, L"Platform");
    expected.runtime.seriesMin = asked(token, L"SeriesMin");
    expected.runtime.seriesMax = asked(token, L"SeriesMax");
    expected.isRuntime = mismatches(expected.runtime, host).empty();
}

void ManifestModel::readDependency(const Token& token)
{
    const std::wstring upgradeCode = asked(token, L"UpgradeCode");
    if (!upgradeCode.empty()) {
        KestDependentBundle& dependency = expected.dependentBundles.emplace_back();
        dependency.upgradeCode = upgradeCode;
        dependency.versionMin = asked(token, L"VersionMin");
        dependency.versionMax = asked(token, L"VersionMax");
    }
}

void ManifestModel::readEntry(const Token& token)
{
    const std::wstring module = asked(token, L"ModuleName"); // a copy: the buffer goes on
    if (module.empty()) {
        return;
    }
    if (module.substr(0, 2) == L"./") { // the point goes in the buffer too
        buffer = module.substr(1);
        entry.moduleName = expected.bundlePath + buffer;
    }
    entry.appName = asked(token, L"AppName");
    const std::wstring control = asked(token, L"LoadCtrlFlag");
    entry.loadCtrlFlag = control.empty() ? 1 : wholeNumber(control);
    entry.pythonVersion = localetext::utf8(asked(token, L"PythonVersion"));
    // The reader turns a word to upper case in the buffer, where an attribute that is missing finds it.
    const auto isWord = [&](const wchar_t* attribute, const wchar_t* word) {
        asked(token, attribute);
        localetext::upperByGlobalLocale(buffer);
        return buffer == word;
    };
    const bool isKeptBack = isWord(L"LoadOnTARVIXStartup", L"FALSE");
    const bool isOnCommand = isWord(L"LoadOnCommandInvocation", L"TRUE");
    entry.loadFlags =
        (isKeptBack ? 0 : KestComponentEntry::kLoadStartup) | (isOnCommand ? KestComponentEntry::kLoadCommand : 0);
}

} // namespace fuzz
