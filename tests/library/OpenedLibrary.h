// The shared library, opened in this process as a host opens it.
#pragma once

#include <string>

class OpenedLibrary
{
public:
    /// Opens the library. Fails the test when it cannot be opened.
    OpenedLibrary();
    /// Closes it, unless close() did.
    ~OpenedLibrary();
    OpenedLibrary(const OpenedLibrary&) = delete;
    OpenedLibrary& operator=(const OpenedLibrary&) = delete;

    void close();

    /// The address of the export `name`; null when there is none.
    void* find(const char* name) const;

    void excuteCuix() const;
    void excute() const;
    void loadIfCmdNeeded(const wchar_t* name) const;

    /// Whether the library is mapped into this process.
    static bool isMapped();

private:
    void* handle;
};
