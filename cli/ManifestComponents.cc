#include "cli/ManifestComponents.h"

#include "host/LocaleText.h"
#include "host/XmlReader.h"

#include <cwchar>
#include <memory>
#include <utility>

namespace cli {

namespace {

bool hasExtension(std::wstring_view module, std::wstring_view wanted)
{
    const std::size_t point = module.rfind(L'.');
    return localetext::equalIgnoringCase(point == std::wstring_view::npos ? module : module.substr(point), wanted);
}

CStdStr<wchar_t> attributeOf(XmlFilerReader& reader, const wchar_t* name)
{
    CStdStr<wchar_t> value;
    reader.attribute(name, value);
    return value;
}

/// The component at whose start tag `reader` stands.
ManifestComponent componentAt(XmlFilerReader& reader, const std::wstring& folder)
{
    ManifestComponent component;
    if (const std::wstring module = attributeOf(reader, L"ModuleName"); module.starts_with(L"./")) {
        component.path = folder + module.substr(1);
    }
    component.pythonVersion = attributeOf(reader, L"PythonVersion");
    const std::wstring control = attributeOf(reader, L"LoadCtrlFlag");
    const bool isAtStartup = (control.empty() || std::wcstol(control.c_str(), nullptr, 10) == 1) &&
                             !localetext::equalIgnoringCase(attributeOf(reader, L"LoadOnTARVIXStartup"), L"false");
    component.isOnDemand =
        !isAtStartup && localetext::equalIgnoringCase(attributeOf(reader, L"LoadOnCommandInvocation"), L"true");
    return component;
}

} // namespace

bool isPythonScript(std::wstring_view path)
{
    return hasExtension(path, L".py");
}

bool isManagedAssembly(std::wstring_view path)
{
    return hasExtension(path, L".dll");
}

bool ManifestComponent::isPassedOver() const
{
    return isPythonScript(path) && pythonVersion.empty();
}

std::vector<ManifestComponent> readManifestComponents(const std::wstring& path)
{
    std::vector<ManifestComponent> components;
    const std::unique_ptr<XmlFilerReader> reader(kestCreateXmlFilerReader(path.c_str()));
    if (!reader) {
        return components;
    }
    const std::wstring folder = path.substr(0, path.rfind(L'/'));
    CStdStr<wchar_t> name;
    for (reader->readNext(); reader->moreTokens() != 0; reader->readNext()) {
        if (reader->checkStartElement() != 0) {
            continue;
        }
        reader->tokenName(name);
        if (name == L"ComponentEntry") {
            components.push_back(componentAt(*reader, folder));
        } else if (name == L"Command" && !components.empty()) {
            CStdStr<wchar_t> local = attributeOf(*reader, L"Local");
            localetext::upperByGlobalLocale(local);
            if (!local.empty()) {
                components.back().commands.push_back(std::move(local));
            }
        }
    }
    return components;
}

} // namespace cli
