// Wide forms of the names that a parser keeps.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_map>

namespace standalone {

/// The parser keeps each name once, so that its address stands for it. Manifests share a few dozen names: widened once
/// for the life of the parser, a name costs a look at the place where it was found last.
class WideNames
{
public:
    /// The wide form of `name`, which is UTF-8 and stays where it is. Stays where it is too, until clear().
    const std::wstring& of(const char* name)
    {
        Found& last = found[reinterpret_cast<std::uintptr_t>(name) % found.size()];
        if (last.name != name) {
            last = {name, &widened(name)};
        }
        return *last.wide;
    }

    /// Forgets all names; to be called when the parser goes.
    void clear();

private:
    struct Found
    {
        const char* name = nullptr;
        const std::wstring* wide = nullptr;
    };

    const std::wstring& widened(const char* name);

    /// What was found last, by a part of the address: the parser packs names, those of a manifest into less than this.
    std::array<Found, 512> found;
    std::unordered_map<const char*, std::wstring> wideForms;
};

} // namespace standalone
