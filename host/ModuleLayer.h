// Libraries through the host's Win32-style layer.
#pragma once

/// A loaded library.
using ModuleHandle = void*;
/// An exported function; cast to its true type before the call.
using ProcAddress = void (*)();

extern "C" {

/// The library with the file name `name`, when it is loaded already; else null. Takes no reference.
ModuleHandle GetModuleHandleW(const wchar_t* name);

/// Loads the library with the file name `name`, found by the host's own search rule. Null on failure. The autoloader
/// never unloads what it loaded this way. Runs the library's initialisers.
ModuleHandle LoadLibraryW(const wchar_t* name);

/// The export `name` of `module`, or null. `module` comes from one of the two functions above and is not null.
ProcAddress GetProcAddress(ModuleHandle module, const char* name);

} // extern "C"
