// What a host offers to the engines that run scripts and assemblies in it. The autoloader itself asks for none of this.
//
// All calls come from the host's main thread. Texts are UTF-8 unless said otherwise.
#pragma once

#include <string>

/// Runs an engine's command of this number. Returns why it failed, in one line, or empty text. What the engine has to
/// say at length it has printed by then. Must not throw.
using KestEngineCommand = std::string (*)(int number);

/// The host as its engines see it. No call throws.
class KestEngineHost
{
public:
    /// The value of "VERNUM".
    virtual const std::string& versionText() const noexcept = 0;

    /// Prints to the host's console as it stands; the caller supplies line ends.
    virtual void print(const std::string& text) noexcept = 0;

    /// Registers command `number` of an engine under `name`; letter case does not matter. A component that is loaded
    /// again replaces its own commands. False, and nothing changed, when the name is empty, is not UTF-8, or belongs
    /// to another component.
    virtual bool registerCommand(const std::string& name, KestEngineCommand run, int number) noexcept = 0;

    /// An engine has started, once for its life. `description` names it and its version ("Python 3.11.2");
    /// `milliseconds` is what that took.
    virtual void engineStarted(const std::string& description, double milliseconds) noexcept = 0;

    /// The loading of the script or assembly at `path` begins, and the start of its engine where that is due. Until the
    /// matching endComponent(), commands are registered for it. Components nest when one has another one loaded.
    virtual void beginComponent(const std::wstring& path) noexcept = 0;

    /// The loading that began last has ended: well if `problem` is empty. Otherwise `problem` says why, in one line,
    /// and the commands that it registered are forgotten.
    virtual void endComponent(const std::string& problem) noexcept = 0;

protected:
    ~KestEngineHost() = default;
};

/// The host, owned by itself, or null when there is none, as at the end of the process: ask each time.
extern "C" KestEngineHost* kestEngineHost() noexcept;
