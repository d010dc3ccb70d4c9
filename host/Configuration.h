// The host's configuration store and product name.
#pragma once

#include "host/ErrorStatus.h"

#include <cstdint>
#include <cstdlib>

#pragma pack(push, 4)
/// A value of the configuration store. Only its text kind is used.
///
/// The block of a text is made with malloc(): a signed 32-bit count of the bytes of the whole block, the count
/// included, then the text in 32-bit code units and its terminating zero. Empty text is a block of 8 bytes. The
/// pointer follows the tag directly, so that it may be unaligned: never take its address.
struct KestVariant
{
    static constexpr std::int32_t kNone = 0;
    static constexpr std::int32_t kText = 5;

    KestVariant() noexcept = default;
    KestVariant(const KestVariant&) = delete;
    KestVariant& operator=(const KestVariant&) = delete;
    ~KestVariant() { std::free(block); }

    std::int32_t type = kNone;
    void* block = nullptr; ///< owned; null when there is none
};
#pragma pack(pop)

/// The host's configuration.
class TarvixConfig
{
public:
    /// Where in the store a key lives; the values are the host's.
    enum Path : int
    {
        kMenus = 4, ///< the menu lists
    };

    /// Reads the value under `key` into `value`, freshly made, which then owns the block. Returns eOk only when the
    /// key exists. Must not throw.
    Kest::ErrorStatus getValue(Path path, const wchar_t* key, KestVariant& value) const;

    /// Stores a copy of `value` under `key`. The status is not looked at: a host that cannot store must say so itself.
    /// A host that failed to read one of the two menu lists should refuse to store them, for the autoloader takes
    /// what could not be read for empty.
    Kest::ErrorStatus setValue(Path path, const wchar_t* key, const KestVariant& value);

    /// The name of the running product, owned by the host; null counts as empty.
    const wchar_t* productName() const;
};

/// The configuration of the running host, or null when there is none. Owned by the host.
TarvixConfig* kestConfig();
