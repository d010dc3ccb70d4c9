// The bundle folders that "kestbundle check" is given, and what their files are called in its reports.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace cli {

class CheckTargets
{
public:
    /// `paths` are narrow, as given on the command line: bundle folders, and folders of them. Throws WrongUse when one
    /// is neither.
    explicit CheckTargets(const std::vector<std::string>& paths);

    /// Absolute paths, each once, in the order given and sorted within a folder of bundles.
    const std::vector<std::wstring>& folders() const noexcept { return bundleFolders; }

    /// `path`, absolute, as the user would write it: with the path given in place of the whole one.
    std::wstring asGiven(const std::wstring& path) const;

private:
    void add(const std::wstring& folder);

    std::vector<std::wstring> bundleFolders;
    std::vector<std::pair<std::wstring, std::wstring>> given; ///< absolute path and path as given, no "/" at the ends
};

} // namespace cli
