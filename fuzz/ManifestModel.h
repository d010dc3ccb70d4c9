// The rules by which a manifest is read, as one loop over its tokens with a state.
#pragma once

#include "manifest/Bundle.h"
#include "tests/HostDouble.h"

namespace fuzz {

class ManifestModel
{
public:
    ManifestModel(const std::wstring& folder, const hostdouble::Document& read, const hostdouble::State& answers)
        : document(read), host(answers)
    {
        expected.bundlePath = folder;
        expected.isRuntime = true;
    }

    void read();

    KestBundle expected; ///< what the records must be

private:
    /// Where the tokens that come are.
    enum class Place
    {
        kOutside,
        kDependencies,
        kComponents,
        kEntry,
        kCommands,
    };
    using Token = hostdouble::Token;

    void start(const Token& token);
    void startOutside(const Token& token);
    void end(const Token& token);
    void leaveCommands();
    void leaveEntry();

    void readPackage(const Token& token);
    void readCompany(const Token& token);
    void readRuntime(const Token& token);
    void readDependency(const Token& token);
    void readEntry(const Token& token);

    /// What the one buffer holds for all attributes of an element, `name` having been asked for last.
    const std::wstring& asked(const Token& token, const wchar_t* name);

    const hostdouble::Document& document;
    const hostdouble::State& host;
    Place place = Place::kOutside;
    std::wstring buffer;
    KestComponentEntry entry;
    KestCommands group;
};

} // namespace fuzz
