// The port for diagnostic lines: they go to the debugger's output and are never shown to the user.
#pragma once

#include <string_view>

namespace corvina {

class DebugLog {
  public:
    virtual ~DebugLog() = default;
    virtual void Write(std::wstring_view text) = 0;
};

}  // namespace corvina
