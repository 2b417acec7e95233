// The one error box of everything that talks to the event log.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/prompts.h"
#include "platform/system_errors.h"

namespace corvina {

class SystemErrorReport {
  public:
    SystemErrorReport(const SystemErrors& errors, Prompts& prompts) : errors_(errors), prompts_(prompts) {}

    // Shows the lead text, a line break and the system's text for `code`. When the system has no text for it the box
    // says "Error: 0x" and the code in hexadecimal only. The caller keeps the code: the box never changes it.
    void ShowSystemError(std::uint32_t code, std::wstring_view leadText, std::wstring_view title) const;

  private:
    const SystemErrors& errors_;
    Prompts& prompts_;
};

}  // namespace corvina
