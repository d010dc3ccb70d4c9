#include "tests/rehearsal/MendCheck.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace rehearsal {

namespace {

std::string movedPath(const MendTree& tree, const std::string& folder)
{
    const auto moved = tree.moved.find(folder);
    return moved != tree.moved.end() ? moved->second : folder;
}

/// How often the findings of `looked` are `told`, whatever else the sentences say.
std::size_t countOf(const Looked& looked, const Told& told, const MendTree& tree, bool isAtLine)
{
    return static_cast<std::size_t>(
        std::count_if(looked.findings.begin(), looked.findings.end(), [&](const Told& other) {
            return other.code == told.code && other.subject == told.subject &&
                   (other.bundle == told.bundle || other.bundle == movedPath(tree, told.bundle)) &&
                   (!isAtLine || other.line == told.line);
        }));
}

void expectMended(const Mend& mend, const Told& told, const Looked& before, const Looked& after, const MendTree& tree)
{
    const bool isAtLine = !mend.hasLinesMoved;
    const std::size_t left = countOf(after, told, tree, isAtLine);
    EXPECT_LT(left, countOf(before, told, tree, isAtLine)) << "it is said as before";
    for (const auto& [folder, state] : before.states) {
        const std::string& now = movedPath(tree, folder);
        EXPECT_TRUE(mend.mayUnload || !before.isLoaded(folder) || tree.removed.contains(folder) || after.isLoaded(now))
            << folder << " was " << state << ", and is "
            << (after.states.contains(now) ? after.states.at(now) : "gone");
    }
}

} // namespace

void expectMends(const std::string& name, const std::function<void()>& make, const MendTree& tree, MendCounts& counts)
{
    make();
    const Looked before = tree.look();
    for (const Told& told : before.findings) {
        bool isOffered = rulesWithoutMend().contains(told.code);
        for (std::size_t position = 0; position < allMends().size(); ++position) {
            const Mend& mend = allMends()[position];
            if (mend.rule->code != told.code || told.mend.find(mend.text) == std::string::npos) {
                continue;
            }
            const testing::ScopedTrace trace(__FILE__, __LINE__,
                                             name + ": " + told.code + " of " + told.bundle + ", line " +
                                                 std::to_string(told.line) + ", \"" + told.subject +
                                                 "\": " + told.mend + " [" + std::string(mend.text) + "]");
            isOffered = true;
            make();
            tree.moved.clear();
            tree.removed.clear();
            if (mend.apply(told, tree)) {
                ++counts[position];
                expectMended(mend, told, before, tree.look(), tree);
            }
        }
        EXPECT_TRUE(isOffered) << name << ": nobody knows how to do what " << told.code << " tells: " << told.mend;
    }
}

} // namespace rehearsal
