// Which bundle stands for an UpgradeCode, when others depend on that.
#pragma once

#include "cli/graph/BundleGraph.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cli {

/// Several bundles may have the same UpgradeCode. The one that stands for it is the first to be loaded; when none is,
/// the first that is kept; else the first.
class Providers
{
public:
    /// `nodes` are bundles, none of them missing, and must outlive the providers.
    explicit Providers(const std::vector<GraphNode>& nodes);

    /// The position of the bundle that stands for `upgradeCode`, if there is any.
    std::optional<std::size_t> of(const std::wstring& upgradeCode) const;

private:
    void addLoaded(const std::vector<GraphNode>& nodes);

    std::unordered_map<std::wstring_view, std::size_t> providers;
};

} // namespace cli
