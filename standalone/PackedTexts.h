// Wide texts that are kept in large number.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

/// Texts, one behind the other in a few blocks: a byte for each character of one that is ASCII, as nearly all are, and
/// four for each of any other. Two texts are equal when their packed forms are.
class PackedTexts
{
public:
    PackedTexts() = default;
    PackedTexts(const PackedTexts&) = delete;
    PackedTexts& operator=(const PackedTexts&) = delete;

    /// Keeps `text` and returns its packed form, which stays where it is until clear().
    std::string_view keep(std::wstring_view text);

    /// Forgets `newest`, which keep() returned last.
    void takeBack(std::string_view newest) noexcept { used -= newest.size(); }

    /// Forgets all texts, and gives their memory back.
    void clear() noexcept;

    /// The packed form of `text`, which is the caller's.
    static std::string packed(std::wstring_view text);

    /// The text of a packed form.
    static std::wstring unpacked(std::string_view packed);

private:
    std::vector<std::unique_ptr<char[]>> blocks; ///< the newest one last
    std::size_t used = 0;                        ///< of the newest block
    std::size_t room = 0;                        ///< that the newest block has in all
};

} // namespace standalone
