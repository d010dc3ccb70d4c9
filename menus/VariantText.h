// Texts in the values of the host's configuration store.
#pragma once

#include "host/Configuration.h"
#include "host/StdString.h"

#include <cstddef>
#include <cstdint>

/// The text in `value`; empty when it holds another kind, or nothing.
CStdStr<wchar_t> variantText(const KestVariant& value);

/// Gives `value` the text `text`, in place of what it held. Throws a VxErrorStatus by pointer, recorded first: status
/// eInvalidInput when the block would be longer than its count can say, eOutOfMemory when there is no memory for it.
void setVariantText(KestVariant& value, const CStdStr<wchar_t>& text);

/// The bytes of the block for a text of `length` code units; 0 or less when a signed 32-bit count cannot say it.
std::int32_t variantBlockSize(std::size_t length);
