// The fixture of the tests that kill the tool, or start it many times at once: a home whose bundles come and go, whose
// configuration holds menus of the host's own, and a look at what a process left there.
#pragma once

#include "tests/cli/ToolTest.h"
#include "tests/kills/Processes.h"

#include <filesystem>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

/// What counts in the home after a run.
struct HomeState
{
    std::wstring bundleMenus;  ///< the menus of the bundles as the configuration has them; "(none)" without any
    std::wstring hostMenus;    ///< the host's list of menus; "(none)" without any
    std::string convertedMenu; ///< the content of the menu that was converted; empty while there is none

    bool operator==(const HomeState&) const = default;
    bool operator<(const HomeState& other) const
    {
        return std::tie(bundleMenus, hostMenus, convertedMenu) <
               std::tie(other.bundleMenus, other.hostMenus, other.convertedMenu);
    }
};

std::ostream& operator<<(std::ostream& stream, const HomeState& state);

class KillTest : public ToolTest
{
protected:
    /// How many sets of bundles there are. Each brings another list of menus, and another content of a menu that the
    /// host converts.
    static constexpr std::size_t kSets = 3;

    /// The host's own entries in its list of menus.
    static const std::wstring kOwnMenus;

    /// Makes the user's bundles those of the set `number`.
    void installSet(std::size_t number) const;

    /// Takes the configuration and the converted menus away; with `hasOwnMenus` the host's own menus are put back.
    void beginAfresh(bool hasOwnMenus = true) const;

    /// What an undisturbed run with the set `number` leaves in a home that has the host's own menus only.
    HomeState undisturbed(std::size_t number, bool hasOwnMenus = true);

    /// What the home holds, read from a copy: a configuration that a dead process left in need of repair stays as it
    /// is for the next one. Fails the test when the configuration is not readable and sound.
    HomeState left() const;

    /// `kestbundle run` on the home.
    ProcessCommand command() const;

    /// Lets a run go on to its end, which must be a good one, and leave nothing unfinished beside the converted menus.
    void runToTheEnd();

private:
    /// All files in the folder of converted menus.
    std::vector<std::filesystem::path> convertedMenus() const;
};
