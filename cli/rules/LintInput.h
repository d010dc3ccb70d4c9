// What the rules look at that judge a bundle by itself, whatever becomes of it in a start.
#pragma once

#include "cli/Examination.h"
#include "cli/Finding.h"
#include "cli/ManifestDocument.h"
#include "cli/ManifestReading.h"
#include "standalone/ModuleImage.h"

#include <string>
#include <string_view>

namespace cli {

/// One bundle and its manifest, read again.
struct ManifestInput
{
    const ExaminedBundle& bundle;
    const ManifestDocument& document;
    const ManifestReading& reading;
};

/// The same with what is around it. Used on several threads at once, each with a bundle of its own.
struct LintInput : ManifestInput
{
    LintInput(const ManifestInput& own, const standalone::ModulesInMemory& inMemory, unsigned checkedFor)
        : ManifestInput(own), modules(inMemory), machine(checkedFor)
    {
    }

    const standalone::ModulesInMemory& modules; ///< of all bundles, those that load at start-up
    const unsigned machine;                     ///< that the bundle is checked for, by its number in ELF; 0: this one
};

/// A finding about the manifest's element number `element`, at its attribute `attribute` where it has that.
Finding findingAt(const Rule& rule, const ManifestInput& input, std::size_t element, std::wstring_view attribute,
                  std::string what);

} // namespace cli
