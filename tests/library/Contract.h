// What crosses the border between the library, its host and the engines, kept in text files, so that it cannot move
// without a change of a file that somebody looks at.
#pragma once

#include <string>
#include <vector>

/// The lines of `file` in tests/contract, without comments (lines with "#").
std::vector<std::string> contractLines(const std::string& file);

/// Fails the test unless `lines` are those of `file` in tests/contract. With KEST_RENEW_CONTRACT in the environment the
/// file is written anew, and the test fails all the same, so that nobody leaves it set.
void expectContract(const std::string& file, const std::vector<std::string>& lines);

/// The C++ name behind `mangled`, or `mangled` when it is none.
std::string demangled(const char* mangled);
