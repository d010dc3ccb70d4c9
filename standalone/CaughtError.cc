#include "standalone/CaughtError.h"

#include "standalone/Utf8.h"

#include "host/ErrorStatus.h"

#include <exception>
#include <memory>

namespace standalone {

std::string describeCaughtError()
{
    try {
        throw;
    } catch (const std::exception& error) {
        return "an exception: " + displayable(std::string_view(error.what()));
    } catch (const VxErrorStatus* caught) { // NOLINT(misc-throw-by-value-catch-by-reference): hosts throw pointers
        if (caught == nullptr) {
            return "an error of the host without an object";
        }
        const std::unique_ptr<const VxErrorStatus> error(caught);
        return "error " + std::to_string(static_cast<int>(error->status())) + " of the host, number " +
               std::to_string(error->number()) + ": " + displayable(std::wstring_view(error->text()));
    } catch (...) {
        return "an exception of unknown type";
    }
}

} // namespace standalone
