#include "cli/Examination.h"

namespace cli {

const char* nameOf(BundleState state)
{
    switch (state) {
    case BundleState::kNotABundle:
        return "not a bundle";
    case BundleState::kUnreadable:
        return "unreadable";
    case BundleState::kMalformed:
        return "malformed";
    case BundleState::kRequirementNotMet:
        return "requirement not met";
    case BundleState::kWaiting:
        return "waiting for a dependency";
    case BundleState::kKept:
        return "kept";
    case BundleState::kLoadedWithFailures:
        return "loaded with failures";
    case BundleState::kLoaded:
        return "loaded";
    case BundleState::kMenusOnly:
        return "menus only";
    }
    return "";
}

} // namespace cli
