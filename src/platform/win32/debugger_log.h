// Diagnostic lines for an attached debugger.
#pragma once

#include "platform/debug_log.h"

namespace corvina {

class DebuggerLog : public DebugLog {
  public:
    void Write(std::wstring_view text) override;
};

}  // namespace corvina
