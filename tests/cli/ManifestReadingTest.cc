#include "cli/ManifestReading.h"

#include "manifest/BundleStrConst.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace {

using namespace cli;

ManifestDocument documentOf(const std::string& content)
{
    const std::string path =
        std::filesystem::temp_directory_path().string() + "/kest-reading-" + std::to_string(::getpid()) + ".xml";
    std::ofstream(path, std::ios::binary) << content;
    ManifestDocument document = readManifestDocument(path);
    std::filesystem::remove(path);
    return document;
}

/// For each kind of record the lines of the elements that were read for it. Every element has a line of its own.
std::string linesRead(const ManifestDocument& document)
{
    const ManifestReading reading = readingOf(document);
    std::ostringstream text;
    const auto add = [&](const char* kind, const std::vector<std::size_t>& elements) {
        text << kind;
        for (const std::size_t element : elements) {
            text << " " << document.elements[element].position.line;
        }
        text << "\n";
    };
    add("packages", reading.packages);
    add("companies", reading.companies);
    add("requirements", reading.requirements);
    add("dependencies", reading.dependencies);
    for (const ComponentElements& component : reading.components) {
        add("component", {component.entry});
        add(" commands", component.commands);
    }
    return text.str();
}

std::string linesRead(const std::string& content)
{
    return linesRead(documentOf(content));
}

TEST(ManifestReadingTest, EveryRecordHasTheElementThatItWasReadFrom)
{
    EXPECT_EQ(linesRead("<ApplicationPackage>\n"
                        "<CompanyDetails/>\n"
                        "<RuntimeRequirements Architecture='none'/>\n"
                        "<DependentBundles>\n"
                        "<DependentBundle/>\n"
                        "<DependentBundle UpgradeCode='{1}'/>\n"
                        "</DependentBundles>\n"
                        "<Components>\n"
                        "<ComponentEntry/>\n"
                        "<ComponentEntry ModuleName='./a.krx'>\n"
                        "<Commands>\n"
                        "<Command/>\n"
                        "</Commands><Commands>\n"
                        "<Command/>\n"
                        "</Commands></ComponentEntry>\n"
                        "</Components>\n"
                        "<RuntimeRequirements/>\n"
                        "</ApplicationPackage>"),
              "packages 1\ncompanies 2\nrequirements 3 17\ndependencies 6\n"
              "component 9\n commands\ncomponent 10\n commands 12 14\n");
}

TEST(ManifestReadingTest, ElementsWhereNobodyLooksForThemHaveNoRecord)
{
    EXPECT_EQ(linesRead("<A>\n"
                        "<ComponentEntry/>\n"
                        "<Command/>\n"
                        "<DependentBundle UpgradeCode='{1}'/>\n"
                        "<Components>\n"
                        "<RuntimeRequirements/>\n"
                        "<Commands>\n"
                        "<Command/>\n"
                        "</Commands><ComponentEntry>\n"
                        "<Command/>\n"
                        "</ComponentEntry></Components></A>"),
              "packages\ncompanies\nrequirements\ndependencies\ncomponent 9\n commands\n");
}

TEST(ManifestReadingTest, WhatStandsBehindAFaultHasNoRecord)
{
    EXPECT_EQ(linesRead("<A><Components>\n<ComponentEntry ModuleName='./a.krx'>\n<Commands>\n<Command>\n</Bad>"),
              "packages\ncompanies\nrequirements\ndependencies\ncomponent 2\n commands 4\n");
}

TEST(ManifestReadingTest, SeveralThreadsReadAtOnceAndEachItsOwn)
{
    constexpr int kRounds = 5000;
    const std::string named = "<A><Components>\n<ComponentEntry ModuleName='./" + std::string(500, 'a') +
                              "'>\n<Commands>\n<Command/></Commands></ComponentEntry></Components></A>";
    const std::string unnamed = "<A><Components>\n<ComponentEntry>\n</ComponentEntry></Components></A>";
    std::atomic<int> right{0};
    {
        std::vector<std::jthread> threads;
        for (const std::string& content : {named, unnamed, named, unnamed}) {
            threads.emplace_back([&right, document = documentOf(content), expected = linesRead(content)] {
                for (int round = 0; round < kRounds; ++round) {
                    right += linesRead(document) == expected ? 1 : 0;
                }
            });
        }
    }
    EXPECT_EQ(right, 4 * kRounds);
}

} // namespace
