#include "cli/rules/ValueRules.h"

#include "cli/ManifestVocabulary.h"
#include "cli/Shown.h"
#include "cli/rules/RuleTexts.h"

#include "host/LocaleText.h"
#include "host/TextLayer.h"
#include "manifest/BundleStrConst.h"

#include <algorithm>
#include <string>

namespace cli {

namespace {

constexpr std::wstring_view kBlanks = L" \t\r\n\u00A0\u200B\u200E\u200F\u2060\uFEFF";

bool isWholeNumber(std::wstring_view text)
{
    text.remove_prefix(!text.empty() && (text.front() == L'-' || text.front() == L'+') ? 1 : 0);
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](wchar_t one) { return one >= L'0' && one <= L'9'; });
}

/// The number that a bound begins with, when something else than blanks follows it; empty: nothing does, or it begins
/// with none. An exponent is left alone: it is read.
std::wstring_view readPartOf(std::wstring_view bound)
{
    constexpr std::wstring_view kDigits = L"0123456789";
    const std::size_t begin = std::min(bound.find_first_of(L"0123456789."), bound.size());
    std::size_t end = std::min(bound.find_first_not_of(kDigits, begin), bound.size());
    if (end < bound.size() && bound[end] == L'.') {
        end = std::min(bound.find_first_not_of(kDigits, end + 1), bound.size());
    }
    const bool isRest = bound.find_first_not_of(kBlanks, end) != std::wstring_view::npos;
    return isRest && bound[end] != L'e' && bound[end] != L'E' ? bound.substr(begin, end - begin) : std::wstring_view();
}

/// Whether more is made of the value than to show it to people.
bool isCompared(const AttributeWord& word)
{
    const std::wstring* const texts[] = {
        &BundleStrConst::app_UpgradeCode, &BundleStrConst::dep_UpgradeCode, &BundleStrConst::run_Arc,
        &BundleStrConst::run_OS,          &BundleStrConst::run_Platform,    &BundleStrConst::command_Local,
    };
    return word.form == ValueForm::kBundlePath || word.form == ValueForm::kPythonVersion ||
           std::find(std::begin(texts), std::end(texts), &word.name) != std::end(texts);
}

/// UTF-8 that was read as one of the encodings with a byte a character, or what a decoder leaves of bytes it cannot
/// read.
bool isDamaged(std::wstring_view text)
{
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isLead = text[at] >= L'\u00C2' && text[at] <= L'\u00C3';
        if (text[at] == L'\uFFFD' ||
            (isLead && at + 1 < text.size() && text[at + 1] >= L'\u0080' && text[at + 1] <= L'\u00BF')) {
            return true;
        }
    }
    return false;
}

/// The version `text`, numbers joined by ".", as these numbers.
std::vector<unsigned long> numbersOf(const std::wstring& text)
{
    std::vector<unsigned long> numbers;
    for (const wchar_t* at = text.c_str();; ++at) {
        wchar_t* end = nullptr;
        numbers.push_back(std::wcstoul(at, &end, 10));
        if (end == at || *end != L'.') {
            break;
        }
        at = end;
    }
    while (!numbers.empty() && numbers.back() == 0) {
        numbers.pop_back();
    }
    return numbers;
}

class ValueLint
{
public:
    ValueLint(const LintInput& given, Findings& all) : input(given), findings(all) {}

    void run()
    {
        for (std::size_t index = 0; index < input.document.elements.size(); ++index) {
            if (input.reading.isRead[index]) {
                judge(index);
            }
        }
        for (const std::size_t index : input.reading.requirements) {
            judgeSeries(index);
        }
        for (const std::size_t index : input.reading.dependencies) {
            judgeVersions(index);
        }
        judgeEncoding();
        judgePackage();
    }

private:
    std::wstring valueOf(std::size_t index, const std::wstring& attribute) const
    {
        const ManifestAttribute* const found = input.document.elements[index].find(attribute);
        return found != nullptr ? found->value : std::wstring();
    }

    void judge(std::size_t index)
    {
        const ManifestElement& element = input.document.elements[index];
        const ElementWord* const word = findElement(element.name);
        for (const ManifestAttribute& attribute : element.attributes) {
            const AttributeWord* const known = word != nullptr ? findAttribute(*word, attribute.name) : nullptr;
            if (known == nullptr || attribute.value.empty()) {
                continue;
            }
            const std::string written = abridged(std::wstring_view(attribute.name)) + "=" + named(attribute.value);
            if (known->form == ValueForm::kWholeNumber && !isWholeNumber(attribute.value)) {
                add(kNotAWholeNumber, index, attribute.name,
                    written + " is no whole number; it is read as " + std::to_string(_wtoi(attribute.value.c_str())) +
                        ".",
                    "Write a whole number; only 1 has the component load at start-up.");
            }
            const bool isSurrounded = kBlanks.find(attribute.value.front()) != std::wstring_view::npos ||
                                      kBlanks.find(attribute.value.back()) != std::wstring_view::npos;
            if (isCompared(*known) && isSurrounded) {
                add(kSurroundingBlank, index, attribute.name,
                    written + " has a blank, or a character that nobody sees, at one of its ends; it counts as part "
                              "of the value.",
                    "Remove what stands around the value.");
            }
            if (isDamaged(attribute.value)) {
                add(kDamagedText, index, attribute.name,
                    written + " looks as if it was decoded wrongly when it was written.",
                    "Write the text anew, and save the file as UTF-8.");
            }
        }
    }

    void judgeSeries(std::size_t index)
    {
        const std::wstring min = valueOf(index, BundleStrConst::run_SeriesMin);
        const std::wstring max = valueOf(index, BundleStrConst::run_SeriesMax);
        const double lowest = _wtof(min.c_str()); // the library's own reading of a bound; 0 is none
        const double highest = _wtof(max.c_str());
        if (highest != 0.0 && lowest > highest) {
            add(kEmptySeries, index, BundleStrConst::run_SeriesMin,
                "SeriesMin=" + named(min) + " is above SeriesMax=" + named(max) +
                    ": no host has such a version, and the bundle is always dropped.",
                "Exchange the two bounds, or leave one out. 26.10 is the number 26.1.");
        }
        judgeBound(index, BundleStrConst::run_SeriesMin, min);
        judgeBound(index, BundleStrConst::run_SeriesMax, max);
    }

    void judgeBound(std::size_t index, const std::wstring& attribute, const std::wstring& bound)
    {
        const std::wstring_view part = readPartOf(bound);
        if (!part.empty() && _wtof(bound.c_str()) != 0.0) { // else it bounds nothing, which is told as that
            add(kPartlyReadBound, index, attribute,
                abridged(attribute) + "=" + named(bound) + " is read as " + abridged(part) +
                    ": only the number that it begins with counts.",
                "Write a number with a point and nothing else, such as 26.5.");
        }
    }

    void judgeVersions(std::size_t index)
    {
        const std::wstring min = valueOf(index, BundleStrConst::dep_VersionMin);
        const std::wstring max = valueOf(index, BundleStrConst::dep_VersionMax);
        if (!max.empty() && numbersOf(min) > numbersOf(max)) {
            add(kEmptyVersionRange, index, BundleStrConst::dep_VersionMin,
                "VersionMin=" + named(min) + " is above VersionMax=" + named(max) + ": no version lies between them.",
                "Exchange the two bounds, or leave one out.");
        }
    }

    void judgeEncoding()
    {
        const std::wstring name = localetext::widen(input.document.encoding);
        if (!name.empty() && !localetext::equalIgnoringCase(name, L"UTF-8")) {
            add(kOtherEncoding, 0, L"",
                "The manifest is written in the encoding " + named(name) + "; every reader of XML knows UTF-8.",
                "Save the file as UTF-8, and declare that.");
        }
    }

    void judgePackage()
    {
        if (input.reading.packages.empty()) {
            return;
        }
        const std::size_t package = input.reading.packages.back();
        for (const std::wstring* attribute : {&BundleStrConst::app_Name, &BundleStrConst::app_AppVersion}) {
            if (valueOf(package, *attribute).empty()) {
                add(kIncompletePackage, package, *attribute,
                    "The bundle has no " + abridged(std::wstring_view(*attribute)) +
                        ", by which people know it in lists.",
                    "Give ApplicationPackage the attribute " + abridged(std::wstring_view(*attribute)) + ".");
            }
        }
    }

    void add(const Rule& rule, std::size_t element, std::wstring_view attribute, std::string what, std::string mend)
    {
        Finding finding = findingAt(rule, input, element, attribute, std::move(what));
        finding.subject = attribute;
        finding.mend = std::move(mend);
        findings.push_back(std::move(finding));
    }

    const LintInput& input;
    Findings& findings;
};

} // namespace

std::vector<const Rule*> valueRules()
{
    return {&kNotAWholeNumber, &kSurroundingBlank, &kEmptySeries,       &kEmptyVersionRange,
            &kDamagedText,     &kOtherEncoding,    &kIncompletePackage, &kPartlyReadBound};
}

void addValueFindings(const LintInput& input, Findings& findings)
{
    ValueLint(input, findings).run();
}

} // namespace cli
