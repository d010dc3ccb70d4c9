// Tokens of an XML document that were parsed and not asked for yet, packed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

/// Start and end tags in document order. Names are wide and somebody else's. Values are UTF-8, which becomes wide when
/// asked for only, and are copied into one block for the whole batch, so that a token costs no allocation.
class TokenBatch
{
public:
    /// Adds a start tag. `name`, prefix included, must live until the batch is cleared. Its attributes follow by
    /// addAttribute().
    void addStart(const std::wstring& name) { addToken(name, true); }
    void addEnd(const std::wstring& name) { addToken(name, false); }

    /// Adds an attribute to the newest start tag. Its value is what is appended to the text by then.
    void addAttribute(const std::wstring& name)
    {
        const std::uint32_t valueBegin = attributes.empty() ? 0 : attributes.back().valueEnd;
        attributes.push_back({&name, valueBegin, static_cast<std::uint32_t>(text.size())});
    }
    void appendText(std::string_view utf8) { text += utf8; }

    /// Takes the newest start tag back, with what was added to it.
    void dropNewest();

    std::size_t size() const noexcept { return tokens.size(); }
    bool isStart(std::size_t token) const { return tokens[token].isStart; }

    /// The element name of `token`.
    const std::wstring& name(std::size_t token) const { return *tokens[token].name; }

    /// Writes the value of the attribute `attribute` of `token` into `wide`, empty when there is none.
    void value(std::size_t token, std::wstring_view attribute, std::wstring& wide) const;

    /// Calls `each(name, value)` for each attribute of `token`; both are wide, the value is the caller's.
    template <typename Each>
    void forEachAttribute(std::size_t token, const Each& each) const
    {
        for (std::size_t at = tokens[token].attributesBegin; at < attributesEnd(token); ++at) {
            each(*attributes[at].name, widened(valueOf(attributes[at])));
        }
    }

    /// Forgets all tokens; keeps the memory for the next ones unless it is much.
    void clear();

private:
    struct Token
    {
        const std::wstring* name;
        std::uint32_t attributesBegin;
        bool isStart;
    };
    struct Attribute
    {
        const std::wstring* name = nullptr;
        std::uint32_t valueBegin = 0;
        std::uint32_t valueEnd = 0;
    };

    std::size_t attributesEnd(std::size_t token) const
    {
        return token + 1 < tokens.size() ? tokens[token + 1].attributesBegin : attributes.size();
    }
    std::string_view valueOf(const Attribute& attribute) const
    {
        return std::string_view(text).substr(attribute.valueBegin, attribute.valueEnd - attribute.valueBegin);
    }
    static std::wstring widened(std::string_view utf8);

    void addToken(const std::wstring& name, bool isStart)
    {
        tokens.push_back({&name, static_cast<std::uint32_t>(attributes.size()), isStart});
    }

    std::vector<Token> tokens;
    std::vector<Attribute> attributes; ///< of all tokens, those of one side by side
    std::string text;                  ///< the values, one behind the other
};

} // namespace standalone
