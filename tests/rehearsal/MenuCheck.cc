#include "tests/rehearsal/MenuCheck.h"

#include "cli/MenuAccount.h"
#include "cli/MenuDifference.h"
#include "cli/rules/Reasons.h"
#include "host/LocaleText.h"
#include "menus/MenuKind.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace rehearsal {

namespace {

using localetext::narrow;

std::string textOf(const cli::Finding& finding)
{
    return std::string(finding.rule->code) + " " + narrow(finding.bundle) + ": " + finding.what + " " + finding.mend;
}

using Texts = std::set<std::string>;

/// `findings` are about `component`, and among those told `everywhere`.
void expectTold(const cli::ExaminedBundle& bundle, const cli::ExaminedComponent& component,
                const cli::Findings& findings, const Texts& everywhere)
{
    EXPECT_FALSE(findings.empty()) << narrow(component.record.moduleName) << " has no finding";
    for (const cli::Finding& finding : findings) {
        EXPECT_EQ(finding.bundle, bundle.folder) << textOf(finding);
        EXPECT_TRUE(everywhere.contains(textOf(finding))) << textOf(finding) << " is told among menus only";
    }
    const bool isNamed =
        !bundle.isKept() || findings.empty() || findings.front().subject == component.record.moduleName;
    EXPECT_TRUE(isNamed) << textOf(findings.front());
    const bool isTurn = !findings.empty() && findings.front().rule->code == "KB702";
    EXPECT_TRUE(!isTurn || findings.size() > 1) << textOf(findings.front()) << " And why is that?";
}

} // namespace

void expectMenuFindings(const cli::Examination& examination)
{
    Texts everywhere;
    for (const cli::Finding& finding : cli::findReasons(examination)) {
        everywhere.insert(textOf(finding));
    }
    const cli::MenuAccount account = cli::menuAccount(examination);
    std::set<const cli::ExaminedComponent*> leftOut;
    for (const cli::UnregisteredMenu& menu : account.unregistered) {
        expectTold(*menu.bundle, *menu.component, menu.findings, everywhere);
        leftOut.insert(menu.component);
    }
    for (const cli::MenuEntry& entry : account.entries) {
        if (entry.component != nullptr && entry.entry.empty()) {
            expectTold(*entry.bundle, *entry.component, entry.findings, everywhere);
        }
    }
    const auto entries = cli::menuEntries(examination.hostMenus.after);
    const std::set<std::wstring> listed(entries.begin(), entries.end());
    for (const cli::ExaminedBundle& bundle : examination.bundles) {
        for (const cli::ExaminedComponent& component : bundle.components) {
            const bool isMenu = menuKindOf(component.record.moduleName) != MenuKind::kOther;
            const bool isListed = !component.menu.empty() && listed.contains(component.menu);
            EXPECT_TRUE(!isMenu || leftOut.contains(&component) != isListed) << narrow(component.record.moduleName);
        }
    }
}

} // namespace rehearsal
