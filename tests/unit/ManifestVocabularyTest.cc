// The tool's table of a manifest's words, held to what the reader really asks for.
#include "cli/ManifestVocabulary.h"

#include "tests/AutoloaderTest.h"

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace {

using cli::AttributeWord;
using cli::ElementWord;
using hostdouble::Element;
using Names = std::multiset<std::string>;

/// An element that nobody knows.
const std::wstring kUnknown = L"Page";

/// The element with all its attributes, which all have a value.
Element whole(const ElementWord& word)
{
    Element element{word.name};
    for (const AttributeWord& attribute : word.attributes) {
        element.attributes.emplace_back(attribute.name, L"./x");
    }
    return element;
}

Names readAttributesOf(const ElementWord& word)
{
    Names names;
    for (const AttributeWord& attribute : word.attributes) {
        if (attribute.isRead) {
            names.insert("attribute(" + hostdouble::utf8(attribute.name) + ")");
        }
    }
    return names;
}

/// `inner` inside an unknown element, inside `around` and all that it belongs in.
Element placed(const ElementWord* around, Element inner)
{
    inner = Element{kUnknown, {}, {std::move(inner)}};
    for (const ElementWord* one = around; one != nullptr;
         one = one->parent == nullptr ? nullptr : cli::findElement(*one->parent)) {
        inner = Element{one->name, {}, {std::move(inner)}};
    }
    return inner;
}

std::vector<const ElementWord*> places()
{
    std::vector<const ElementWord*> all = {nullptr};
    for (const ElementWord& word : cli::manifestVocabulary()) {
        if (cli::keepsItsContent(word)) {
            all.push_back(&word);
        }
    }
    return all;
}

class ManifestVocabularyTest : public AutoloaderTest
{
protected:
    /// The attributes that the reader asks for, in order.
    std::vector<std::string> asked(const Element& document)
    {
        host.calls.clear();
        host.documents[L"/X/PackageContents.xml"] = document;
        KestBundle bundle(L"/X", L"/X/PackageContents.xml");
        bundle.parseXml();
        return hostdouble::callsTo({"attribute"});
    }

    /// What the reader asks `inner` for, when it stands where `around` says.
    Names askedOf(const Element& inner, const ElementWord* around)
    {
        const std::vector<std::string> before = asked(placed(around, Element{kUnknown}));
        const std::vector<std::string> all = asked(placed(around, inner));
        EXPECT_GE(all.size(), before.size());
        return {all.begin() + static_cast<std::ptrdiff_t>(before.size()), all.end()};
    }
};

TEST_F(ManifestVocabularyTest, TheReaderAsksForTheAttributesOfTheTableAndNoOthersInTheirPlacesAndNoOthers)
{
    for (const ElementWord* around : places()) {
        for (const ElementWord& word : cli::manifestVocabulary()) {
            const std::vector<const ElementWord*> children = cli::childrenOf(word);
            const bool hasOnlyContent = word.attributes.empty() && !children.empty();
            const ElementWord& asking = hasOnlyContent ? *children.front() : word;
            if (&asking == around || &word == around) {
                continue; // an element in one of its own name is nothing to rely on
            }
            Element element = whole(word);
            if (hasOnlyContent) {
                element.children.push_back(whole(asking));
            }
            const bool isSeen = cli::elementSeen(around, word.name) == &word;
            EXPECT_EQ(askedOf(element, around), isSeen ? readAttributesOf(asking) : Names())
                << hostdouble::utf8(word.name) << " in "
                << (around == nullptr ? "no other" : hostdouble::utf8(around->name));
        }
    }
}

TEST_F(ManifestVocabularyTest, EveryElementIsSeenWhereItBelongsUnlessItIsNotReadAtAll)
{
    for (const ElementWord& word : cli::manifestVocabulary()) {
        const ElementWord* parent = word.parent == nullptr ? nullptr : cli::findElement(*word.parent);
        const ElementWord* around = parent != nullptr && cli::keepsItsContent(*parent) ? parent : nullptr;
        EXPECT_EQ(cli::elementSeen(around, word.name), word.isRead ? &word : nullptr) << hostdouble::utf8(word.name);
    }
}

TEST_F(ManifestVocabularyTest, TheTableHoldsEveryWordOfTheVocabularyAndNoOther)
{
    std::ostringstream text;
    text << std::ifstream(KEST_SOURCE_DIR "/manifest/BundleStrConst.cc").rdbuf();
    const std::string source = text.str();
    const std::regex line("(xml|app|company|dep|run|entry|commands|command)_(\\w+) = \"(\\w+)\";");
    Names defined;
    for (std::sregex_iterator one(source.begin(), source.end(), line), end; one != end; ++one) {
        defined.insert((*one)[3]);
    }
    Names listed;
    for (const ElementWord& word : cli::manifestVocabulary()) {
        listed.insert(hostdouble::utf8(word.name));
        for (const AttributeWord& attribute : word.attributes) {
            listed.insert(hostdouble::utf8(attribute.name));
        }
    }
    EXPECT_EQ(listed, defined);
}

TEST_F(ManifestVocabularyTest, WordsAreFoundByTheirNamesLetterForLetter)
{
    const ElementWord* entry = cli::findElement(L"ComponentEntry");
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->name, L"ComponentEntry");
    EXPECT_EQ(cli::findElement(L"componentEntry"), nullptr);
    EXPECT_EQ(cli::findElement(L""), nullptr);
    const AttributeWord* module = cli::findAttribute(*entry, L"ModuleName");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->form, cli::ValueForm::kBundlePath);
    EXPECT_EQ(cli::findAttribute(*entry, L"Modulename"), nullptr);
    EXPECT_EQ(cli::findAttribute(*entry, L"UpgradeCode"), nullptr);
}

TEST_F(ManifestVocabularyTest, ChildrenStandInTheirUsualOrder)
{
    std::vector<std::string> names;
    for (const ElementWord* child : cli::childrenOf(*cli::findElement(L"ApplicationPackage"))) {
        names.push_back(hostdouble::utf8(child->name));
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"CompanyDetails", "RuntimeRequirements", "DependentBundles", "Components"}));
    EXPECT_TRUE(cli::childrenOf(*cli::findElement(L"Command")).empty());
}

} // namespace
