// The host's registry of services and the dynamic linker for native plug-in modules (".krx") found in it.
#pragma once

/// A run-time class of the host.
class KsRxClass
{
public:
    /// Whether this class is `other` or derives from it.
    bool isDerivedFrom(const KsRxClass* other) const noexcept;

    /// `parent` is null for a root class; both pointers must outlive the class.
    KsRxClass(const wchar_t* name, const KsRxClass* parent) noexcept;

private:
    [[maybe_unused]] const wchar_t* className; ///< for people who look at it in a debugger
    const KsRxClass* parentClass;
};

/// An object that knows its run-time class.
class KsRxObject
{
public:
    virtual ~KsRxObject() = default;
    /// Never null.
    virtual KsRxClass* isA() const = 0;
};

/// The registry: objects by name.
class KsRxDictionary
{
public:
    /// The object under `key`, owned by the host, or null.
    KsRxObject* at(const wchar_t* key) const;
};

/// The dynamic linker; the registry holds it under "DynamicLinker".
class KsRxDynamicLinker : public KsRxObject
{
public:
    /// The run-time class of every dynamic linker. Never null.
    static KsRxClass* desc();

    /// Loads the native module at `path` and runs its entry, which may register commands; it must not call the
    /// autoloader's entry points. Both flags are false in every call. Returns whether the module was loaded.
    virtual bool loadModule(const wchar_t* path, bool printit, bool asCommand) = 0;
};

/// How a native module came to be loaded; the values are the host's.
enum eRxKrxLoadType : int
{
    kRxLoadedAtStartup = 2,
};

class KsRxDynamicLinkerImp
{
public:
    /// Notes that the module at `path`, just loaded, was loaded in the way of `type`.
    static void setKrxLoadType(const wchar_t* path, eRxKrxLoadType type);
};

/// The host's registry. Never null; a host without a dynamic linker cannot load ".krx" modules and is stopped by the
/// first one.
KsRxDictionary* ksrxSysRegistry();
