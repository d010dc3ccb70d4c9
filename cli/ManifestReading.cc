#include "cli/ManifestReading.h"

#include "manifest/Bundle.h"
#include "manifest/BundleStrConst.h"

#include <memory>
#include <mutex>
#include <utility>

namespace cli {

namespace {

struct Token
{
    std::size_t element;
    bool isStart;
};

std::vector<Token> tokensOf(const ManifestDocument& document)
{
    std::vector<Token> tokens;
    std::vector<std::size_t> open;
    const auto closeUntil = [&](std::size_t parent) {
        for (; !open.empty() && open.back() != parent; open.pop_back()) {
            tokens.push_back({open.back(), false});
        }
    };
    for (std::size_t element = 0; element < document.elements.size(); ++element) {
        closeUntil(document.elements[element].parent);
        open.push_back(element);
        tokens.push_back({element, true});
    }
    closeUntil(ManifestElement::kNone);
    return tokens;
}

/// Hands a document over token by token. Each of the vocabulary's constants names one thing: which one it is asked for
/// tells what the autoloader takes the element for, and how many records it has by then, which record it becomes.
class NotingReader final : public XmlFilerReader
{
public:
    NotingReader(const ManifestDocument& read, const KestBundle& reading, ManifestReading& filled)
        : document(read), bundle(reading), noted(filled), tokens(tokensOf(read))
    {
        noted.isRead.assign(document.elements.size(), false);
    }

    int checkStartElement() override { return isOnToken() && tokens[current].isStart ? 0 : 1; }
    int checkEndElement() override { return isOnToken() && !tokens[current].isStart ? 0 : 1; }
    int moreTokens() override { return current == kBefore || isOnToken() ? 1 : 0; }
    int readOk() override { return 1; } // a complaint would go to a log that nobody has opened
    void readNext() override { ++current; }

    void tokenName(CStdStr<wchar_t>& name) override
    {
        if (!isOnToken()) {
            name.clear();
        } else if (element().name == BundleStrConst::xml_RuntimeRequirements) {
            name = BundleStrConst::xml_CompanyDetails; // recognised in the same places, and needs no host to be read
        } else {
            name = element().name;
        }
    }

    void attribute(const CStdStr<wchar_t>& name, CStdStr<wchar_t>& value) override
    {
        value.clear();
        if (!isOnToken()) {
            return;
        }
        if (const ManifestAttribute* found = element().find(name)) {
            value = found->value;
        }
        note(name, tokens[current].element);
    }

private:
    static constexpr std::size_t kBefore = static_cast<std::size_t>(-1);

    bool isOnToken() const { return current < tokens.size(); }
    const ManifestElement& element() const { return document.elements[tokens[current].element]; }

    void note(const CStdStr<wchar_t>& asked, std::size_t index)
    {
        noted.isRead[index] = true;
        if (&asked == &BundleStrConst::app_UpgradeCode) {
            noted.packages.push_back(index);
        } else if (&asked == &BundleStrConst::company_Name) {
            const bool isRequirement = element().name == BundleStrConst::xml_RuntimeRequirements;
            (isRequirement ? noted.requirements : noted.companies).push_back(index);
        } else if (&asked == &BundleStrConst::dep_VersionMin) { // asked of none that is no dependency after all
            noted.dependencies.push_back(index);
        } else if (&asked == &BundleStrConst::entry_ModuleName) {
            newest().entry = index;
        } else if (&asked == &BundleStrConst::command_Local) {
            newest().commands.push_back(index);
        }
    }

    /// The component whose record is being made.
    ComponentElements& newest()
    {
        noted.components.resize(bundle.components.size() + 1);
        return noted.components.back();
    }

    const ManifestDocument& document;
    const KestBundle& bundle;
    ManifestReading& noted;
    std::vector<Token> tokens;
    std::size_t current = kBefore;
};

} // namespace

ManifestReading readingOf(const ManifestDocument& document)
{
    static std::mutex turn; // the autoloader reads on one thread, and all its reading shares a buffer
    const std::lock_guard<std::mutex> mine(turn);
    ManifestReading reading;
    KestBundle bundle; // without a manager, which only complaints need
    bundle.xmlReader = std::make_unique<NotingReader>(document, bundle, reading);
    bundle.readXmlNodeName();
    return reading;
}

} // namespace cli
