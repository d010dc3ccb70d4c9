#include "cli/rules/FormRules.h"

#include "cli/ManifestVocabulary.h"
#include "cli/NearestName.h"
#include "cli/Shown.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>
#include <optional>
#include <string>

namespace cli {

namespace {

/// A word of the vocabulary that a name may be meant for.
template <typename Word>
struct Meant
{
    const Word* word = nullptr;
    bool isLetterCase = false; ///< it differs in the letter case only
};

template <typename Word>
Meant<Word> meantAmong(std::span<const Word> words, std::wstring_view name)
{
    std::vector<std::string> names;
    for (const Word& word : words) {
        if (localetext::equalIgnoringCase(word.name, name)) {
            return {&word, true};
        }
        names.push_back(plainUtf8(word.name));
    }
    const std::optional<std::string> nearest = nearestName(plainUtf8(name), names);
    const auto found = std::find_if(words.begin(), words.end(),
                                    [&](const Word& word) { return nearest && plainUtf8(word.name) == *nearest; });
    return {found != words.end() ? &*found : nullptr, false};
}

/// Names of other vocabularies: who writes "x:y" or a namespace knows that nobody here reads it.
bool isForeign(std::wstring_view name)
{
    return name.find(L':') != std::wstring_view::npos || name == L"xmlns";
}

/// The element that `name` would be without its prefix; null: it has none, or would be none that is read.
const ElementWord* behindPrefix(std::wstring_view name)
{
    const std::size_t colon = name.find(L':');
    const ElementWord* const word = colon != std::wstring_view::npos ? findElement(name.substr(colon + 1)) : nullptr;
    return word != nullptr && word->isRead ? word : nullptr;
}

/// What an element is to the autoloader, and what it is meant to be.
struct ElementStanding
{
    const ElementWord* meant = nullptr;  ///< null: nothing that is known
    const ElementWord* around = nullptr; ///< the innermost around its content that keeps its content
    bool isGuessed = false;              ///< it, or an element around it, is only taken for what is meant
    bool isCutOff = false;               ///< it, or an element around it, is told to be cut off
};

class FormCheck
{
public:
    FormCheck(const ManifestInput& given, Findings& all) : input(given), findings(all) {}

    void run()
    {
        const auto& elements = input.document.elements;
        standings.resize(elements.size());
        for (std::size_t index = 0; index < elements.size(); ++index) {
            judge(index);
        }
        addRepeated(input.reading.packages);
        addRepeated(input.reading.companies);
    }

private:
    void judge(std::size_t index)
    {
        const ManifestElement& element = input.document.elements[index];
        const bool isOutermost = element.parent == ManifestElement::kNone;
        const ElementWord* const around = isOutermost ? nullptr : standings[element.parent].around;
        ElementStanding& standing = standings[index];
        if (!isOutermost) {
            standing = standings[element.parent];
            standing.meant = nullptr;
        }
        if (isForeign(element.name) && behindPrefix(element.name) == nullptr) {
            return;
        }
        const ElementWord* const known = findElement(element.name);
        standing.meant = known != nullptr ? known : addUnknown(index, isOutermost, around);
        standing.isGuessed = standing.isGuessed || known == nullptr;
        if (standing.meant == nullptr) {
            return;
        }
        const bool isSeen = elementSeen(around, standing.meant->name) != nullptr;
        if (known != nullptr && known->isRead) {
            judgePlace(index, *known, around, isSeen);
        }
        if (isSeen && keepsItsContent(*standing.meant)) {
            standing.around = standing.meant;
        }
        if (known != nullptr) {
            judgeAttributes(index, *known);
        }
    }

    /// An element whose name is looked for, in its place or not. What was in fact read knows more than the vocabulary:
    /// the end of an element inside another of its kind ends both.
    void judgePlace(std::size_t index, const ElementWord& word, const ElementWord* around, bool isSeen)
    {
        const bool isRead = input.reading.isRead[index];
        ElementStanding& standing = standings[index];
        if (&word == around) {
            addNested(index, word);
        } else if (!isSeen && !isRead) {
            addMisplaced(index, word);
        } else if (isSeen && around != nullptr && !isRead && !word.attributes.empty() && !standing.isGuessed &&
                   !standing.isCutOff) {
            standing.isCutOff = true;
            addCutOff(index, word, *around);
        }
    }

    void addNested(std::size_t index, const ElementWord& word)
    {
        const std::string name = named(word.name);
        add(kNestedElement, index, L"",
            "The element " + name + " stands in another " + name +
                (word.attributes.empty() ? ", and its end" : ": its values take the place of that one's, and its end") +
                " counts as the end of that one, too.",
            "Move it behind the end of the outermost " + name + " around it.");
    }

    void addCutOff(std::size_t index, const ElementWord& word, const ElementWord& around)
    {
        const std::string place = named(around.name);
        add(kCutOffElement, index, L"",
            "The element " + named(word.name) + " is passed over: before it stands another " + place + " in its " +
                place + ", and the end of that one counts as the end of both.",
            "Move that other " + place + " behind the end of this one's " + place + ".");
    }

    /// Returns the word that the element is taken for, so that what stands in it is judged as it is meant.
    const ElementWord* addUnknown(std::size_t index, bool isOutermost, const ElementWord* around)
    {
        const ManifestElement& element = input.document.elements[index];
        const ElementWord* const parent = isOutermost ? nullptr : standings[element.parent].meant;
        if (!isOutermost && parent == nullptr) {
            return nullptr; // part of an unknown element, which was told
        }
        if (parent != nullptr && findAttribute(*parent, element.name) != nullptr) {
            add(kMisplacedElement, index, L"",
                "The element " + named(element.name) + " is passed over: of " + named(parent->name) +
                    " it is an attribute.",
                "Write it as an attribute of " + named(parent->name) + ".");
            return nullptr;
        }
        if (const ElementWord* const word = behindPrefix(element.name)) {
            add(kMisspeltElement, index, L"",
                "The element " + named(element.name) + " is passed over: its prefix counts as part of its name.",
                "Did you mean " + named(word->name) + "?");
            return elementSeen(around, word->name);
        }
        const Meant<ElementWord> meant = meantAmong(manifestVocabulary(), element.name);
        const std::string name = named(element.name);
        if (meant.word == nullptr) {
            add(kUnknownElement, index, L"", "The element " + name + " is not known, and is passed over.",
                "Leave it if it is meant for another program.");
            return nullptr;
        }
        const std::string right = abridged(std::wstring_view(meant.word->name));
        if (meant.isLetterCase) {
            add(kNameLetterCase, index, L"",
                "The element " + name + " is passed over: letter case counts, and it is called \"" + right + "\".",
                "Write \"" + right + "\", in the end tag too.");
        } else {
            add(kMisspeltElement, index, L"", "The element " + name + " is not known, and is passed over.",
                "Did you mean \"" + right + "\"?");
        }
        return elementSeen(around, meant.word->name);
    }

    void addMisplaced(std::size_t index, const ElementWord& word)
    {
        if (word.name == BundleStrConst::xml_RuntimeRequirements) {
            return; // has a rule of its own
        }
        const std::size_t outer = input.document.elements[index].parent;
        const ElementWord* const parent = outer != ManifestElement::kNone ? standings[outer].meant : nullptr;
        if (parent != nullptr && word.parent != nullptr && parent->name == *word.parent) {
            return; // it stands right in what is misplaced itself, and moves with that
        }
        const std::string place = word.parent != nullptr ? abridged(std::wstring_view(*word.parent)) : "";
        add(kMisplacedElement, index, L"",
            "The element " + named(word.name) + " stands where it is not looked for, and is passed over.",
            place.empty() ? "Make it the outermost element." : "Put it into \"" + place + "\".");
    }

    void judgeAttributes(std::size_t index, const ElementWord& word)
    {
        for (const ManifestAttribute& attribute : input.document.elements[index].attributes) {
            if (isForeign(attribute.name) || findAttribute(word, attribute.name) != nullptr) {
                continue;
            }
            const Meant<AttributeWord> meant = meantAmong(word.attributes, attribute.name);
            const std::string name = named(attribute.name);
            const std::string right = meant.word != nullptr ? abridged(std::wstring_view(meant.word->name)) : "";
            std::string what = "The attribute " + name + " of \"" + abridged(std::wstring_view(word.name)) + "\" is ";
            if (meant.isLetterCase) {
                what.append("passed over: letter case counts, and it is called \"").append(right).append("\".");
                add(kNameLetterCase, index, attribute.name, what, "Write \"" + right + "\".");
            } else if (meant.word != nullptr) {
                add(kMisspeltAttribute, index, attribute.name, what + "not known, and is passed over.",
                    "Did you mean \"" + right + "\"?");
            } else {
                add(kUnknownAttribute, index, attribute.name, what + "not known, and is passed over.",
                    "Leave it if it is meant for another program.");
            }
        }
    }

    /// All but the last of `elements`.
    void addRepeated(const std::vector<std::size_t>& elements)
    {
        for (std::size_t at = 0; at + 1 < elements.size(); ++at) {
            add(kRepeatedElement, elements[at], L"",
                "There are several elements " + named(input.document.elements[elements[at]].name) +
                    ", and only the last one counts.",
                "Keep one of them.");
        }
    }

    void add(const Rule& rule, std::size_t element, std::wstring_view attribute, std::string what, std::string mend)
    {
        Finding finding = findingAt(rule, input, element, attribute, std::move(what));
        finding.subject = attribute.empty() ? input.document.elements[element].name : std::wstring(attribute);
        finding.mend = std::move(mend);
        findings.push_back(std::move(finding));
    }

    const ManifestInput& input;
    Findings& findings;
    std::vector<ElementStanding> standings;
};

} // namespace

std::vector<const Rule*> formRules()
{
    return {&kMisspeltElement, &kMisspeltAttribute, &kNameLetterCase, &kMisplacedElement, &kRepeatedElement,
            &kUnknownElement,  &kUnknownAttribute,  &kNestedElement,  &kCutOffElement};
}

void addFormFindings(const ManifestInput& input, Findings& findings)
{
    FormCheck(input, findings).run();
}

} // namespace cli
