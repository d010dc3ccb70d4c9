// What a host that only rehearses does in place of loading: it looks at what would be loaded, and says what it sees.
#pragma once

#include <cstdio>
#include <map>
#include <string>

namespace standalone {

class Host;

/// The autoloader runs in a rehearsing host as in any other, and the journal tells what it asked for. But nothing of a
/// bundle is executed, and nothing on disk is changed: modules, scripts and assemblies are examined from outside, an
/// expression is queued and never evaluated, a menu is converted into nothing, configuration values and what is written
/// to files are kept in memory. What can be seen only by running something, a script's own error for example, a
/// rehearsal does not foretell.
class Rehearsal
{
public:
    explicit Rehearsal(Host& owner);
    ~Rehearsal();
    Rehearsal(const Rehearsal&) = delete;
    Rehearsal& operator=(const Rehearsal&) = delete;

    /// A stream that takes what is written to the file at the narrow `path`, without touching that; null and errno set
    /// when there is none to be had. The caller closes it, before or after the rehearsal ends.
    std::FILE* openForWriting(const std::string& path);

    /// What was written to `path` since it was opened last, as far as it was flushed.
    std::string written(const std::string& path) const;

    /// Stand in for the engines: note the script or assembly at `path` in the journal, and return whether an engine
    /// could read it.
    bool meetScript(const std::wstring& path);
    bool meetAssembly(const std::wstring& path);

private:
    bool meet(const std::wstring& path, const std::string& problem);

    Host& host;
    std::map<std::string, int> files; ///< by path, the descriptor of its stand-in in memory
};

} // namespace standalone
