// The autoloader, opened at run time as a host opens it.
#pragma once

#include "bundle/EntryPoints.h"

#include <string>

namespace cli {

/// The autoloader library while it is open.
class Library
{
public:
    Library() noexcept = default;
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { close(); }

    /// Opens libkestbundle.so: the one in the folder "lib" beside the tool's own folder, else the one that the system
    /// finds by name. Returns why not, in UTF-8 and one line for each place, or empty text.
    std::string open();

    /// Closes the library: it ends its manager and closes the error log.
    void close() noexcept;

    decltype(&::excuteCuix) excuteCuix = nullptr;
    decltype(&::excute) excute = nullptr;
    decltype(&::loadIfCmdNeeded) loadIfCmdNeeded = nullptr;

private:
    std::string bind();

    void* handle = nullptr;
};

/// The folder that the running tool lies in, absolute, without a "/" at its end; empty when the system does not say.
std::string toolFolder();

/// The folder beside it in which libraries are expected, whether it is there or not.
std::string libraryFolder();

} // namespace cli
