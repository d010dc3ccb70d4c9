// The subcommand "menus": what the next start does to the host's list of menus, without doing it.
#pragma once

#include "cli/HostOptions.h"
#include "cli/Subcommand.h"

namespace cli {

struct MenusOptions
{
    HostOptions host;
    bool json = false;
};

/// Adds the subcommand to `app`; when it is called, `chosen` becomes what it does.
void addMenusCommand(CLI::App& app, Action& chosen);

/// Tells. Returns 0 when all is well, also when the list changes; 1 when a bundle's menu is not registered, or an entry
/// of the host's own is damaged.
int menus(const MenusOptions& options);

} // namespace cli
