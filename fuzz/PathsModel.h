// What the host is asked for one component, by the extension of its module.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

class PathsModel
{
public:
    using Calls = std::vector<std::string>;

    bool isOnCommand = false; ///< the component loads on a command, not at the start
    bool hasModule = false;   ///< the manifest names one; without, the component's other attributes are not looked at
    std::wstring pythonVersion;
    std::wstring command;
    std::wstring module; ///< the full path, or empty

    /// The full path of the module that the manifest in `folder` names `name`.
    void setModule(const std::wstring& folder, const std::wstring& name);

    /// The list of menus that the host then has.
    std::wstring storedMenus() const;

    Calls callsAtStart() const;
    std::string logAtStart() const;
    Calls callsOnCommand() const;

    /// Whether `text` ends in `suffix`, which is lower case, in any case of the letters A to Z.
    static bool endsIn(const std::wstring& text, const std::wstring& suffix);

private:
    bool isAny(const std::vector<std::wstring>& extensions) const;
    bool isMenu() const;
    bool isCountedBefore() const;
    bool fails() const;
    Calls callsOfLoading(bool isAtStart) const;
    Calls callsOfPython() const;
    std::wstring upperCommand() const;
};

} // namespace fuzz
