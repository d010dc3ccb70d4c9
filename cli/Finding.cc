#include "cli/Finding.h"

namespace cli {

const char* nameOf(Severity severity)
{
    switch (severity) {
    case Severity::kError:
        return "error";
    case Severity::kWarning:
        return "warning";
    case Severity::kNote:
        break;
    }
    return "note";
}

} // namespace cli
