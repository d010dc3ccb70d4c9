// What the library exports under plain names; the host looks the three up when it has loaded the library. Called on
// one thread, one at a time. An error of the host, and std::logic_error when HOME is not set, leave through them.
#pragma once

extern "C" {

/// Finds the installed bundles and brings the host's menu list in step with them. Called once, before excute().
[[gnu::visibility("default")]] void excuteCuix();

/// Loads the start-up components of the bundles found and registers the commands of the others.
[[gnu::visibility("default")]] void excute();

/// Loads the component that declares the command `name`, which the host does not know. Null and empty are ignored.
[[gnu::visibility("default")]] void loadIfCmdNeeded(const wchar_t* name);

} // extern "C"
