// What the findings of every fault in tests/fixtures tell to change, changed: it helps.
#include "tests/cli/FaultFixture.h"
#include "tests/rehearsal/MendCheck.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using rehearsal::Looked;

std::string textOf(const json& object, const char* member)
{
    return object[member].is_string() ? object[member].get<std::string>() : "";
}

int numberOf(const json& object, const char* member)
{
    return object[member].is_number() ? object[member].get<int>() : 0;
}

void addFindings(const json& findings, Looked& looked)
{
    for (const json& one : findings) {
        looked.findings.push_back({textOf(one, "code"), textOf(one, "bundle"), textOf(one, "subject"),
                                   textOf(one, "file"), numberOf(one, "line"), numberOf(one, "column"),
                                   textOf(one, "expected"), textOf(one, "found"), textOf(one, "change")});
    }
}

class FaultMendTest : public FaultFixture
{
protected:
    FaultMendTest()
    {
        tree.top = root;
        tree.plugins = plugins();
        tree.configuration = configurationFile();
        tree.soundModule = KEST_MODULE_FOLDER "/greeter.krx";
        tree.installEngines = [this] {
            if (!fs::exists(evaluator)) {
                installEvaluator();
            }
            if (!fs::exists(managed)) {
                fs::create_symlink(KEST_RECORDING_ENGINES "/VxManagedCommand.dll", managed);
            }
        };
        tree.look = [this] { return looked(); };
    }

    Looked looked()
    {
        const ToolRun done = runTool({"explain", "--json", "--program-dir", path("program"), "--vernum", vernum});
        const json document = json::parse(done.output, nullptr, false);
        EXPECT_FALSE(document.is_discarded()) << done;
        Looked seen;
        addFindings(document["findings"], seen);
        for (const json& bundle : document["bundles"]) {
            seen.states[bundle["folder"]] = bundle["state"];
            addFindings(bundle["findings"], seen);
        }
        return seen;
    }

    void makeAnew(const std::string& fault)
    {
        isUnprivileged = false;
        installed.clear();
        fs::remove_all(home());
        fs::remove_all(path("program"));
        fs::create_directories(plugins());
        fs::create_directories(path("program"));
        tree.installEngines();
        fs::remove(managed);
        installFault(fault);
    }

    const fs::path evaluator = path("tool/lib/libKestLispEvaluator.so");
    const fs::path managed = path("tool/lib/VxManagedCommand.dll");
    rehearsal::MendTree tree;
    rehearsal::MendCounts counts;
};

TEST_F(FaultMendTest, EachMendOfEveryFaultTakesItsFindingAwayAndNothingThatLoaded)
{
    for (const std::string& fault : explainedFaults()) {
        rehearsal::expectMends(
            fault, [&] { makeAnew(fault); }, tree, counts);
    }
    for (std::size_t position = 0; position < rehearsal::allMends().size(); ++position) {
        const rehearsal::Mend& mend = rehearsal::allMends()[position];
        const bool isElsewhere = mend.rule->code == "KB515" || mend.rule->code == "KB901"; // see the next two
        EXPECT_TRUE(isElsewhere || counts.contains(position)) << mend.rule->code << ": " << mend.text;
    }
}

TEST_F(FaultMendTest, AFileUnderAShorterPathIsNoLongerTooLongForAnExpression)
{
    const auto make = [&] {
        fs::remove_all(plugins());
        std::string module = ".";
        for (int count = 0; count < 11; ++count) {
            module += "/" + std::string(200, 'd');
        }
        install("Long.bundle", manifestOf(startupEntry(module + "/a.lsp"), "long"));
    };
    rehearsal::expectMends("a long path", make, tree, counts);
    EXPECT_EQ(tree.look().findings.size(), 2U) << "only the two missing roots";
}

TEST_F(FaultMendTest, AnErrorLogThatCannotBeWrittenCanBeAfterItsMends)
{
    const std::string folder = home() + "/.config/ORRELIN";
    const auto make = [&](const std::function<void()>& spoil) {
        return [this, spoil, folder] {
            isUnprivileged = false;
            fs::remove_all(home());
            fs::create_directories(folder);
            spoil();
        };
    };
    rehearsal::expectMends("no folder", make([&] { fs::remove(folder); }), tree, counts);
    const auto spoilFolder = [&] {
        fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
        runUnprivileged();
    };
    rehearsal::expectMends("a folder for reading only", make(spoilFolder), tree, counts);
    const auto spoilFile = [&] {
        write(logFile(), "");
        fs::permissions(logFile(), fs::perms::owner_read);
        runUnprivileged();
    };
    rehearsal::expectMends("a file for reading only", make(spoilFile), tree, counts);
    for (std::size_t position = 0; position < rehearsal::allMends().size(); ++position) {
        const rehearsal::Mend& mend = rehearsal::allMends()[position];
        const bool isTried = mend.rule->code == "KB901" && !mend.text.starts_with("Remove");
        EXPECT_EQ(counts.contains(position) && mend.rule->code == "KB901", isTried) << mend.text;
    }
}

} // namespace
