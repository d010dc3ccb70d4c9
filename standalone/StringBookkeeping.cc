#include "host/StdString.h"

void updateCStringManagerData(const void* /*string*/) noexcept
{
    // This host keeps no account of its strings.
}
