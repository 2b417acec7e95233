// The port to the system's texts for its error codes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace corvina {

class SystemErrors {
  public:
    virtual ~SystemErrors() = default;

    // The system's text for an error code, none when it has no text for it.
    virtual std::optional<std::wstring> MessageText(std::uint32_t code) const = 0;
};

}  // namespace corvina
