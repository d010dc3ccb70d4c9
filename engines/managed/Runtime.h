// The managed runtime: one for the process, started when it is first needed, never stopped.
#pragma once

#include <mono/metadata/object.h>

#include <optional>
#include <string>

namespace engines {

/// Starts the runtime, if it has not started, and tells the host. Returns why that cannot be, in one line, or empty
/// text. The next call tries again.
std::string startRuntime();

/// The folder of the framework's assemblies.
std::string frameworkFolder();

/// How foreign code ended: nothing when it returned; else why not, in one line, and below it the details.
using ManagedProblem = std::optional<std::string>;

/// Loads the assembly at `path`, bytes, and runs its entry. `opened` is another path of the same file, plain ASCII, for
/// use where managed code cannot be told the first one. The runtime has started; the caller is on a ManagedVisit.
ManagedProblem loadAssembly(const std::string& path, const std::string& opened);

/// Runs command `number` (a KestEngineCommand).
std::string runManagedCommand(int number);

/// The exceptions that managed code gets that tries to end the process.
MonoException* endingOfProcess(std::int32_t status);
MonoException* failureOfProcess(MonoString* message);

} // namespace engines
