// The configuration store as the autoloader sees it: variants with text blocks.
#include "standalone/Configuration.h"
#include "standalone/Host.h"

#include "host/Configuration.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <optional>

namespace {

constexpr std::size_t kCountSize = sizeof(std::int32_t);
constexpr std::size_t kUnitSize = sizeof(wchar_t);
static_assert(kUnitSize == 4);

/// A new block that holds `text`; null when it does not fit the count or the memory.
void* newTextBlock(const std::wstring& text)
{
    constexpr auto kLongest = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
    if (text.size() > (kLongest - kCountSize) / kUnitSize - 1) {
        return nullptr;
    }
    const std::size_t size = kCountSize + (text.size() + 1) * kUnitSize;
    void* block = std::malloc(size);
    if (block != nullptr) {
        const auto count = static_cast<std::int32_t>(size);
        std::memcpy(block, &count, kCountSize);
        std::memcpy(static_cast<char*>(block) + kCountSize, text.c_str(), (text.size() + 1) * kUnitSize);
    }
    return block;
}

/// The text in `block`, or nothing when the block contradicts itself.
std::optional<std::wstring> textOfBlock(const void* block)
{
    std::int32_t count = 0;
    std::memcpy(&count, block, kCountSize);
    if (count < static_cast<std::int32_t>(kCountSize + kUnitSize) || static_cast<std::size_t>(count) % kUnitSize != 0) {
        return std::nullopt;
    }
    std::wstring text((static_cast<std::size_t>(count) - kCountSize) / kUnitSize, L'\0');
    std::memcpy(text.data(), static_cast<const char*>(block) + kCountSize, text.size() * kUnitSize);
    if (text.back() != L'\0') {
        return std::nullopt;
    }
    text.pop_back();
    return text;
}

} // namespace

Kest::ErrorStatus TarvixConfig::getValue(Path path, const wchar_t* key, KestVariant& value) const
{
    using Reading = standalone::Configuration::Reading;
    if (key == nullptr) {
        return Kest::eInvalidInput;
    }
    standalone::Configuration& store = standalone::Host::current().configuration();
    // A value that exists and yet is not handed over looks empty to whoever stores it again.
    const auto outOfMemory = [&store] {
        store.loseTurn();
        return Kest::eOutOfMemory;
    };
    try {
        std::wstring text;
        switch (store.read(path, key, text)) {
        case Reading::kMissing:
            return standalone::kKeyNotFound;
        case Reading::kFailed:
            return standalone::kStoreFailed;
        case Reading::kFound:
            break;
        }
        void* block = newTextBlock(text);
        if (block == nullptr) {
            return outOfMemory();
        }
        std::free(value.block);
        value.type = KestVariant::kText;
        value.block = block;
        return Kest::eOk;
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    }
}

Kest::ErrorStatus TarvixConfig::setValue(Path path, const wchar_t* key, const KestVariant& value)
{
    if (key == nullptr) {
        return Kest::eInvalidInput;
    }
    standalone::Configuration& store = standalone::Host::current().configuration();
    if (value.type != KestVariant::kText) {
        store.noteRefusal(key, "only text can be stored, and this is a value of kind " + std::to_string(value.type));
        return Kest::eInvalidInput;
    }
    const void* block = value.block;
    const std::optional<std::wstring> text = block != nullptr ? textOfBlock(block) : std::nullopt;
    if (!text) {
        store.noteRefusal(key, "the block of the text is malformed");
        return Kest::eInvalidInput;
    }
    return store.store(path, key, *text) ? Kest::eOk : standalone::kStoreFailed;
}

const wchar_t* TarvixConfig::productName() const
{
    return standalone::Host::current().settings().productName.c_str();
}

TarvixConfig* kestConfig()
{
    static TarvixConfig theOne;
    return standalone::Host::living() != nullptr ? &theOne : nullptr;
}
