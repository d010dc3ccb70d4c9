// The graph of examinations that no folder has to be made for: namesakes, and thousands of bundles.
#include "cli/graph/Pictures.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

using namespace cli;

ExaminedBundle bundle(const std::wstring& name, const std::wstring& code, const std::vector<std::wstring>& needs,
                      BundleState state)
{
    ExaminedBundle made;
    made.folder = L"/b/" + name + L".bundle";
    made.state = state;
    made.records.package.name = name.c_str();
    made.records.package.upgradeCode = code.c_str();
    for (const std::wstring& need : needs) {
        KestDependentBundle dependency;
        dependency.upgradeCode = need.c_str();
        made.records.dependencies.push_back(dependency);
    }
    return made;
}

Examination examinationOf(std::vector<ExaminedBundle> bundles)
{
    Examination examination;
    examination.bundles = std::move(bundles);
    return examination;
}

/// `count` bundles, each of which needs the next one; the last one needs `last`.
Examination chainOf(int count, const std::wstring& last)
{
    Examination examination;
    for (int at = 0; at < count; ++at) {
        const std::wstring next = at + 1 < count ? L"c" + std::to_wstring(at + 1) : last;
        examination.bundles.push_back(
            bundle(L"b" + std::to_wstring(at), L"c" + std::to_wstring(at), {next}, BundleState::kWaiting));
    }
    return examination;
}

std::string treeOf(const BundleGraph& graph)
{
    return treeText(graph, {}, {});
}

TEST(BundleGraphTest, TheNamesakeThatWasLoadedFirstStandsForAnUpgradeCode)
{
    // A needs B, and B needs the other bundle with the code of A: no cycle, since that one was loaded first.
    const Examination examination = examinationOf({bundle(L"A", L"1", {L"2"}, BundleState::kLoaded),
                                                   bundle(L"B", L"2", {L"1"}, BundleState::kLoaded),
                                                   bundle(L"Other", L"1", {}, BundleState::kLoaded)});
    EXPECT_EQ(treeOf(bundleGraph(examination)), "A (A.bundle): loaded\n"
                                                "│  · has the UpgradeCode of Other\n"
                                                "└─ B (B.bundle): loaded\n"
                                                "   └─ Other (Other.bundle): loaded\n"
                                                "\n3 bundles, 2 dependencies\n");
}

TEST(BundleGraphTest, ABundleThatIsKeptStandsForACodeRatherThanADroppedOne)
{
    const Examination examination = examinationOf({bundle(L"Dropped", L"1", {}, BundleState::kMalformed),
                                                   bundle(L"Kept", L"1", {}, BundleState::kKept),
                                                   bundle(L"A", L"2", {L"1"}, BundleState::kWaiting)});
    const BundleGraph graph = bundleGraph(examination);
    ASSERT_EQ(graph.edges.size(), 1U);
    EXPECT_EQ(graph.edges[0].to, 1U);
    EXPECT_FALSE(graph.edges[0].isSatisfied);
}

TEST(BundleGraphTest, WhatADroppedBundleDependsOnMakesNoCycle)
{
    const Examination examination = examinationOf(
        {bundle(L"A", L"1", {L"2"}, BundleState::kWaiting), bundle(L"B", L"2", {L"1"}, BundleState::kMalformed)});
    EXPECT_EQ(bundleGraph(examination).cycles, std::vector<std::vector<std::size_t>>());
    EXPECT_NE(svgText(bundleGraph(examination), {}), "");
}

TEST(BundleGraphTest, ADeepTreeGoesOnAtTheMargin)
{
    const Examination examination = chainOf(10000, L"nowhere");
    const std::string tree = treeOf(bundleGraph(examination));
    EXPECT_EQ(std::count(tree.begin(), tree.end(), '\n'), 10000 + (10000 / 16 - 1) + 1 + 3);
    EXPECT_LT(tree.size(), 2000000U);
    EXPECT_NE(tree.find("b16 (b16.bundle): waiting for a dependency (continued below)\n(continued) b16 "),
              std::string::npos);
}

TEST(BundleGraphTest, ACycleOfTenThousandIsToldInShort)
{
    const Examination examination = chainOf(10000, L"c0");
    const BundleGraph graph = bundleGraph(examination);
    ASSERT_EQ(graph.cycles.size(), 1U);
    EXPECT_EQ(cycleText(graph, graph.cycles[0], " > "),
              "b0 > b1 > b2 > b3 > b4 > b5 > b6 > b7 > (9984 more) > b9992 > b9993 > b9994 > b9995 > b9996 > b9997 > "
              "b9998 > b9999 > b0");
    EXPECT_NE(svgText(graph, {}), "");
}

TEST(BundleGraphTest, EveryFormTakesTenThousandBundles)
{
    const Examination chain = chainOf(10000, L"nowhere");
    Examination fan;
    for (int at = 0; at < 10000; ++at) {
        fan.bundles.push_back(bundle(L"b" + std::to_wstring(at), L"c" + std::to_wstring(at),
                                     at % 3 == 0 ? std::vector<std::wstring>()
                                                 : std::vector<std::wstring>{L"c" + std::to_wstring(at / 2), L"c0"},
                                     BundleState::kLoaded));
    }
    for (const Examination* const examination : {&chain, static_cast<const Examination*>(&fan)}) {
        const BundleGraph graph = bundleGraph(*examination);
        for (const std::string& text :
             {treeOf(graph), dotText(graph, {}), mermaidText(graph, {}), svgText(graph, {}), graphJson(graph, "", 0)}) {
            EXPECT_NE(text.find("b9999"), std::string::npos);
            EXPECT_LT(text.size(), 16U << 20);
        }
    }
}

} // namespace
