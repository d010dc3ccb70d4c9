// The ways in which memory, system calls and the host's operations fail.
#include "tests/faults/FaultPoint.h"

#include <cerrno>

namespace faults {

const std::vector<Way>& allWays()
{
    static const std::vector<Way> ways = {
        {Kind::kNew, "new", "once", 0},
        {Kind::kNew, "new", "lasting", 0, true},
        {Kind::kMalloc, "malloc", "once", ENOMEM},
        {Kind::kOpen, "open", "EACCES", EACCES},
        {Kind::kOpen, "open", "EMFILE", EMFILE, true},
        {Kind::kOpen, "open", "EINTR", EINTR},
        {Kind::kRead, "read", "EIO", EIO},
        {Kind::kRead, "read", "EINTR", EINTR, false, Effect::kNone},
        {Kind::kRead, "read", "short", 0, true, Effect::kNone},
        {Kind::kWrite, "write", "EIO", EIO},
        {Kind::kWrite, "write", "ENOSPC", ENOSPC, true},
        {Kind::kWrite, "write", "EINTR", EINTR, false, Effect::kNone},
        {Kind::kWrite, "write", "short", 0, true, Effect::kNone},
        {Kind::kStream, "stream", "ENOSPC", ENOSPC},
        {Kind::kMakeFolder, "mkdir", "EACCES", EACCES},
        {Kind::kClose, "close", "EIO", EIO, false, Effect::kNone},
        {Kind::kSync, "sync", "EIO", EIO},
        {Kind::kList, "list", "EIO", EIO},
        {Kind::kRename, "rename", "EACCES", EACCES},
        {Kind::kStat, "stat", "EACCES", EACCES},
        {Kind::kLock, "lock", "ENOLCK", ENOLCK},
        {Kind::kLock, "lock", "EINTR", EINTR},
        {Kind::kPlace, "place", "EACCES", EACCES},
        {Kind::kLinker, "linker", "fails", 0},
        {Kind::kHost, "host", "fails", 0, false, Effect::kOpen},
        {Kind::kThrow, "host", "throws", 0},
    };
    return ways;
}

} // namespace faults
