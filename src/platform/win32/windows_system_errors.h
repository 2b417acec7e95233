// The system's texts for its error codes, in the user's language.
#pragma once

#include "platform/system_errors.h"

namespace corvina {

class WindowsSystemErrors : public SystemErrors {
  public:
    // The line break that the system puts at the end of its texts is taken off; insertion marks stay as they stand.
    std::optional<std::wstring> MessageText(std::uint32_t code) const override;
};

}  // namespace corvina
