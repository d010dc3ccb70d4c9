// Where faults strike: each interposed call asks here whether it is the one that is to fail.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace faults {

/// Calls that are counted together.
enum class Kind
{
    kNew,    ///< operator new, in every form
    kMalloc, ///< malloc, calloc and realloc, of the libraries beneath as well
    kOpen,
    kRead,
    kWrite,
    kStream, ///< what writes through stdio
    kMakeFolder,
    kClose,
    kSync,
    kList,
    kRename, ///< what changes names and lengths
    kStat,
    kLock,
    kPlace,  ///< the working folder, access rights, links
    kLinker, ///< dlopen
    kHost,   ///< operations that the host supplies to the autoloader
    kThrow,  ///< those of them that may throw
};

/// What a run must make of a fault, beside doing no harm.
enum class Effect
{
    kTold, ///< it may go wrong, but then it must not say that all went well
    kNone, ///< nothing is lost, so that it comes to the same end as without the fault
    kOpen, ///< the autoloader passes over the fault as it should; a host that fails tells it itself, and this one did
           ///< not
};

/// How a call fails.
struct Way
{
    Kind kind;
    const char* kindName;
    const char* name;       ///< of the way, unique within its kind
    int error;              ///< errno; 0 where there is none, or the call only does less than was asked for
    bool isLasting = false; ///< every later call of the kind fails as well
    Effect effect = Effect::kTold;
};

/// Every way that this program knows.
const std::vector<Way>& allWays();

/// What is known of a run, in memory that a process shares with those that it forks.
struct Progress
{
    long calls = 0;   ///< of the kind, up to now
    long strikes = 0; ///< how many of them failed
    char call[64]{};  ///< name of the first that failed
};

/// From now on calls of the kind of `way` on this thread are counted in `progress`, and number `which` fails; none
/// when it is 0. With `isShown` the stack is written to standard error when the first one fails.
void arm(const Way& way, long which, Progress& progress, bool isShown);
void disarm() noexcept;

/// While it lives, operator new neither fails nor is counted. What a library does when it is opened cannot be told of a
/// failure: an exception there ends the process, whoever opens it.
class MemoryAtHand
{
public:
    MemoryAtHand() noexcept;
    ~MemoryAtHand();
    MemoryAtHand(const MemoryAtHand&) = delete;
    MemoryAtHand& operator=(const MemoryAtHand&) = delete;
};

/// Counts this call, of the kind `kind`. Returns how it is to fail, or null when it is not; sets errno then.
const Way* strike(Kind kind, const char* call) noexcept;

} // namespace faults
