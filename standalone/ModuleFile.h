// What can be told of a native module from its file, before any of it is mapped into the process.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace standalone {

/// Why the file at the narrow `path` cannot be loaded as a module: it is made for another kind of machine, or it is cut
/// short, which would end the process when the missing part is touched. Empty when nothing of that is so; whatever else
/// may be wrong with it, the dynamic linker says. In UTF-8. The format is ELF, of the System V ABI.
std::string problemOfModuleFile(const std::string& path);

/// The number that ELF has for a machine which uname() calls `name`, with or without the length of its words; nothing
/// for one that is not known here.
std::optional<unsigned> machineNumber(std::wstring_view name);

/// The number of the machine that the ELF file at the narrow `path` is made for; nothing when it is no such file, or
/// cannot be read.
std::optional<unsigned> machineOfFile(const std::string& path);

/// "64-bit Arm" for the machine `number`.
std::string machineName(unsigned number);

/// Why the file at the narrow `path` is no native module for the machine `number`; empty when it is one. In UTF-8.
std::string problemOnMachine(const std::string& path, unsigned number);

/// The number of the machine that this program is made for.
unsigned ownMachine();

} // namespace standalone
