#include "cli/ManifestWords.h"

#include "host/LocaleText.h"
#include "host/XmlReader.h"

#include <memory>

namespace cli {

namespace {

bool isSilentKind(std::wstring_view module)
{
    const std::size_t point = module.rfind(L'.');
    const std::wstring_view extension = point == std::wstring_view::npos ? module : module.substr(point);
    return localetext::equalIgnoringCase(extension, L".py") || localetext::equalIgnoringCase(extension, L".dll");
}

} // namespace

ManifestWords readManifestWords(const std::wstring& path)
{
    ManifestWords words;
    const std::unique_ptr<XmlFilerReader> reader(kestCreateXmlFilerReader(path.c_str()));
    if (!reader) {
        return words;
    }
    CStdStr<wchar_t> name;
    for (reader->readNext(); reader->moreTokens() != 0; reader->readNext()) {
        if (reader->checkStartElement() != 0) {
            continue;
        }
        reader->tokenName(name);
        CStdStr<wchar_t> value;
        if (name == L"Command") {
            reader->attribute(L"Local", value);
            localetext::upperByGlobalLocale(value);
            if (!value.empty()) {
                words.commands.push_back(std::move(value));
            }
        } else if (name == L"ComponentEntry") {
            reader->attribute(L"ModuleName", value);
            words.hasSilentComponents = words.hasSilentComponents || isSilentKind(value);
        }
    }
    return words;
}

} // namespace cli
