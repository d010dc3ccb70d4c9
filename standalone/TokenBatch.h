// Tokens of an XML document that were parsed and not asked for yet, packed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

/// Start and end tags in document order. Everything is UTF-8 and becomes wide when asked for only: of most manifests
/// most is never looked at. Names are the parser's own, kept by it as long as it lives; values are copied into one
/// block for the whole batch, so that a token costs no allocation.
class TokenBatch
{
public:
    /// Adds a start tag. `name` is prefix included and outlives the batch. Its attributes follow by addAttribute().
    void addStart(const char* name);
    void addEnd(const char* name);

    /// Adds an attribute to the newest start tag. Its value is what is appended to the text by then.
    void addAttribute(std::string_view name);
    void appendText(std::string_view utf8) { text += utf8; }

    /// Takes the newest start tag back, with what was added to it.
    void dropNewest();

    std::size_t size() const noexcept { return tokens.size(); }
    bool isStart(std::size_t token) const { return tokens[token].isStart; }

    /// Writes the element name of `token` into `wide`.
    void name(std::size_t token, std::wstring& wide) const;

    /// Writes the value of the attribute `attribute` of `token` into `wide`, empty when there is none.
    void value(std::size_t token, std::wstring_view attribute, std::wstring& wide) const;

    /// Calls `each(name, wideName, value)` for each attribute of `token`; `name` is UTF-8 and the parser's own.
    template <typename Each>
    void forEachAttribute(std::size_t token, const Each& each) const
    {
        for (std::size_t at = tokens[token].attributesBegin; at < attributesEnd(token); ++at) {
            each(attributes[at].name, widened(attributes[at].name), widened(valueOf(attributes[at])));
        }
    }

    /// Forgets all tokens; keeps the memory for the next ones unless it is much.
    void clear();

private:
    struct Token
    {
        const char* name;
        std::uint32_t attributesBegin;
        bool isStart;
    };
    struct Attribute
    {
        std::string_view name;
        std::uint32_t valueBegin = 0;
        std::uint32_t valueEnd = 0;
        bool isAsciiName = false;
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

    std::vector<Token> tokens;
    std::vector<Attribute> attributes; ///< of all tokens, those of one side by side
    std::string text;                  ///< the values, one behind the other
};

} // namespace standalone
