// A bundle as "kestbundle list" shows it.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"

#include <string>
#include <vector>

namespace cli {

struct ListedBundle
{
    const ExaminedBundle* bundle = nullptr;
    std::vector<std::wstring> commands; ///< that load a component of it, sorted
    std::size_t menus = 0;              ///< that are registered
    const Finding* reason = nullptr;    ///< the first that keeps something of it from loading; null: nothing does
};

/// The bundles of `examination`, with the most severe, else first, of `reasons` about each.
std::vector<ListedBundle> listedBundles(const Examination& examination, const Findings& reasons);

/// Whether all of it loads.
bool isAllLoaded(const ListedBundle& listed);

} // namespace cli
