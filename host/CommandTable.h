// The host's table of command names and their kinds.
#pragma once

/// The kind under which the autoloader announces commands: known by name, their module not loaded yet.
inline constexpr int kCommandLoadedOnInvocation = 3;

class KestCommandString2TypeMap
{
public:
    /// Adds `name`, upper case and not empty, with its kind; copies the name. A name may be added again.
    void addEntry(const wchar_t* name, int type);
};

/// The table. Never null; owned by the host.
KestCommandString2TypeMap* KestGetCommandString2TypeMap();
