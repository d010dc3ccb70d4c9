#include "cli/rules/AllRules.h"

#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>

namespace {

/// One line a rule: its heading and what its section has to begin with.
std::string expectedSections()
{
    std::ostringstream text;
    for (const cli::Rule* rule : cli::allRules()) {
        text << rule->code << " " << rule->name << ": *" << cli::nameOf(rule->severity) << ".* " << rule->title << "\n";
    }
    return text.str();
}

/// The same of the document; lines are joined, and sections without an example or a mend say so.
std::string foundSections()
{
    std::ostringstream whole;
    whole << std::ifstream(KEST_SOURCE_FOLDER "/docs/findings.md").rdbuf();
    const std::string document = std::regex_replace(whole.str(), std::regex("([^\n])\n(?=[^\n#])"), "$1 ");
    const std::regex section("### ([^\n]*)\n\n(\\*[a-z]+\\.\\* [^\n]*)\n\n([^#]*)");
    std::string text;
    for (std::sregex_iterator one(document.begin(), document.end(), section), end; one != end; ++one) {
        const std::string rest = (*one)[3];
        text += (*one)[1].str() + ": " + (*one)[2].str();
        text += rest.starts_with("Example:") ? "" : " NO EXAMPLE";
        text += rest.find("\n\nMend: ") != std::string::npos ? "\n" : " NO MEND\n";
    }
    return text;
}

TEST(FindingsDocumentTest, EveryRuleHasItsSectionAndEverySectionItsRule)
{
    std::istringstream expected(expectedSections());
    std::istringstream found(foundSections());
    std::string rule;
    std::string section;
    while (std::getline(expected, rule)) {
        std::getline(found, section);
        EXPECT_TRUE(section.starts_with(rule)) << "rule:    " << rule << "\nsection: " << section;
        EXPECT_EQ(section.find(" NO "), std::string::npos) << section;
    }
    EXPECT_FALSE(std::getline(found, section)) << section;
}

} // namespace
