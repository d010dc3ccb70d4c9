#include "menus/VariantText.h"

#include <cstring>
#include <limits>

namespace {

/// Throws the way the host does: recorded first, then as a pointer.
[[noreturn]] void throwHostError(Kest::ErrorStatus status)
{
    auto* error = new VxErrorStatus(status, L"\"\"", 0);
    if (KestCrashRecorder* recorder = kestGetCrashRecorder()) {
        recorder->record(error);
    }
    throw error; // NOLINT(misc-throw-by-value-catch-by-reference): the host catches pointers
}

} // namespace

std::int32_t variantBlockSize(std::size_t length)
{
    constexpr std::size_t kLongest = (std::numeric_limits<std::int32_t>::max() - sizeof(std::int32_t)) / 4 - 1;
    return length > kLongest ? 0 : static_cast<std::int32_t>((length + 1) * 4 + sizeof(std::int32_t));
}

CStdStr<wchar_t> variantText(const KestVariant& value)
{
    if (value.type != KestVariant::kText || value.block == nullptr) {
        return {};
    }
    // The text stands 4 bytes into a block of malloc(): aligned for its code units.
    return reinterpret_cast<const wchar_t*>(static_cast<const char*>(value.block) + sizeof(std::int32_t));
}

void setVariantText(KestVariant& value, const CStdStr<wchar_t>& text)
{
    static_assert(sizeof(wchar_t) == 4, "texts are stored in 32-bit code units");
    std::free(value.block);
    value.block = nullptr;
    value.type = KestVariant::kText;
    const std::int32_t size = variantBlockSize(text.size());
    if (size <= 0) {
        throwHostError(Kest::eInvalidInput);
    }
    char* block = static_cast<char*>(std::malloc(static_cast<std::size_t>(size)));
    if (block == nullptr) {
        throwHostError(Kest::eOutOfMemory);
    }
    std::memcpy(block, &size, sizeof(size));
    std::memcpy(block + sizeof(size), text.c_str(), static_cast<std::size_t>(size) - sizeof(size));
    value.block = block;
}
