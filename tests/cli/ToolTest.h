// The fixture of the tool's tests: a tree of its own under a temporary folder, and the tool run in it as a process.
#pragma once

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/resource.h>
#include <utility>
#include <vector>

/// What a run of the tool left behind.
struct ToolRun
{
    int status = 0;     ///< the exit status; 128 and the signal when one ended it
    std::string output; ///< standard output
    std::string errors; ///< standard error

    bool operator==(const ToolRun&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const ToolRun& run);

class ToolTest : public ::testing::Test
{
protected:
    /// Makes the tree: "tool/bin" with the tool, "tool/lib" with the autoloader library, "home", "program".
    ToolTest();
    ~ToolTest() override;

    /// A path in the tree.
    std::string path(const std::string& inTree) const { return root + "/" + inTree; }
    std::string home() const { return path("home"); }
    /// The folder of the user's own bundles, ended by "/".
    std::string plugins() const { return home() + "/.config/ORRELIN/ApplicationPlugins/"; }
    std::string logFile() const { return home() + "/.config/ORRELIN/BundleErrorLog.txt"; }
    std::string configurationFile() const { return home() + "/.config/ORRELIN/standalone.sqlite"; }

    /// Writes `content` to the file at `file` and makes the folders above it.
    static void write(const std::string& file, const std::string& content);

    /// The bytes of the file at `file`; empty when it cannot be read.
    static std::string contentOf(const std::string& file);

    /// Puts a bundle folder `name` with the manifest `manifest` among the user's bundles; returns its path.
    std::string install(const std::string& name, const std::string& manifest) const;

    /// Puts the built test module `module` into `folder` as `name`.
    static void installModule(const std::string& module, const std::string& folder, const std::string& name);

    /// Puts an evaluator for LISP beside the tool.
    void installEvaluator() const;

    /// Puts an engine for Python scripts beside the tool that only pretends to run them, and a Python library of its
    /// own; scripts ask for it with the PythonVersion "standin". See modules/pythonengine.cc.
    void installPythonStandIn() const;

    /// Puts every engine that was built beside the tool.
    void installEngines() const;

    /// The words that start the tool at `tool`: itself, or an emulator of the machine that it is built for.
    static std::vector<std::string> commandThatStarts(const std::string& tool);

    /// Runs the tool with `arguments`; `input` is its standard input. A run that takes far too long is ended.
    ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input = "");

    /// From now on the tool runs as a user who is refused what permissions refuse; gives the whole tree to that user
    /// when this process is root's.
    void runUnprivileged();

    /// `kestbundle run` with a fixed host and `arguments`; its output is normalised.
    ToolRun run(std::vector<std::string> arguments = {}, const std::string& input = "");

    /// The same with "--json", parsed; checks the exit status against the one in the document and that standard error
    /// is empty. Times are 0, after a look that they can be times.
    nlohmann::json runJson(std::vector<std::string> arguments = {}, const std::string& input = "");

    /// What the last runJson() returned, times included.
    nlohmann::json unmasked;

    /// The next runs have a locale with the encoding ISO-8859-1.
    void useLatin1();

    /// `text` with the tree's root as "/T", each time of day as "TIME" and each "3.2 ms" as "N ms".
    std::string normalised(std::string text) const;

    /// Environment of the next runs: "NAME=VALUE". HOME and LC_ALL=C.UTF-8 to begin with.
    std::vector<std::string> environment;

    /// What is written to `standardOutput` instead of being kept; empty: kept.
    std::string standardOutput;

    bool isUnprivileged = false; ///< see runUnprivileged()

    /// No file that the next runs write can grow beyond this many bytes, as if the disk were full.
    rlim_t largestFile = RLIM_INFINITY;

    std::string root;
};

/// How every report for people begins that ToolTest::run() brings about.
inline const std::string kHead = "Host: TARVIX, version 26.0_1_Linux_test\n"
                                 "  program    /T/program\n"
                                 "  home       /T/home\n"
                                 "  settings   /T/home/.config/ORRELIN/standalone.sqlite\n";

/// A manifest with the given content of "ApplicationPackage".
std::string manifestOf(const std::string& content, const std::string& upgradeCode = "");

/// A component that is loaded at start-up.
std::string startupEntry(const std::string& module);

/// A script that is loaded at start-up.
std::string scriptEntry(const std::string& script, const std::string& pythonVersion);

/// A component that is loaded when one of `commands` is used.
std::string onDemandEntry(const std::string& module, const std::vector<std::string>& commands,
                          const std::string& pythonVersion = "");
