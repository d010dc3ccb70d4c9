// The account of the menus, for people and for scripts.
#pragma once

#include "cli/MenuAccount.h"

#include <string>

namespace cli {

/// Whether nothing is damaged, no menu is left out, and neither an error nor the host's own troubles stand behind it.
bool isAllWell(const Examination& examination, const MenuAccount& account);

/// A report in UTF-8.
std::string menusText(const Examination& examination, const MenuAccount& account, bool hasColours);

/// One JSON document, as docs/menus-json.md describes it. `exitStatus` is what the tool returns.
std::string menusJson(const Examination& examination, const MenuAccount& account, int exitStatus);

} // namespace cli
