// Writes a tree of bundles for measurements.
#include "bench/BundleTree.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <map>
#include <string>

int main(int argumentCount, char** arguments)
{
    const std::map<std::string, bench::Dependencies> kinds = {{"none", bench::Dependencies::kNone},
                                                              {"mixed", bench::Dependencies::kMixed},
                                                              {"chain", bench::Dependencies::kChain}};
    bench::TreeDescription tree;
    std::string folder;
    bool forOthers = false;
    CLI::App app("Writes a tree of bundles for measurements");
    app.add_option("folder", folder, "where")->required();
    app.add_option("--bundles", tree.bundles)->required();
    app.add_option("--dependencies", tree.dependencies)->transform(CLI::CheckedTransformer(kinds));
    app.add_option("--manifest-bytes", tree.manifestBytes);
    app.add_option("--commands", tree.commandsPerBundle, "of each bundle");
    app.add_flag("--menus", tree.hasMenus, "a menu in each bundle");
    app.add_flag("--broken", tree.hasBroken, "every tenth manifest is cut off");
    app.add_option("--seed", tree.seed);
    app.add_flag("--for-others", forOthers, "also as other systems describe plug-ins");
    CLI11_PARSE(app, argumentCount, arguments);
    try {
        bench::writeTree(tree, folder, forOthers);
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
    return 0;
}
