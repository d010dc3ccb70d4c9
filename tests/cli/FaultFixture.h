// The tree of one fault: bundles of tests/fixtures, and what files in a checkout cannot hold.
#pragma once

#include "tests/cli/ToolTest.h"

#include <string>
#include <vector>

/// The folders of tests/fixtures that "explain" has something to say about, sorted.
std::vector<std::string> explainedFaults();

class FaultFixture : public ToolTest
{
protected:
    FaultFixture();

    /// Installs the bundles of tests/fixtures/`fault` for the user, and makes what that fault needs beside them.
    void installFault(const std::string& fault);

    /// Stores `text` as the configuration value `key`, as the host does.
    void store(const std::string& key, const std::string& text) const;

    /// `kestbundle SUBCOMMAND` with a fixed host and `arguments`; its output is normalised.
    ToolRun tell(std::vector<std::string> arguments);

    std::vector<std::string> installed; ///< names in the user's folder of bundles, sorted

    std::string vernum = "26.0_1_Linux_test";

private:
    void makeExtras(const std::string& fault);
    void noteInstalled();
    void takePermissions(const std::string& fault);
};
