#include "eventlog/system_error_report.h"

#include <optional>
#include <string>

#include "base/format_text.h"

namespace corvina {

void SystemErrorReport::ShowSystemError(std::uint32_t code, std::wstring_view leadText, std::wstring_view title) const {
    const std::optional<std::wstring> systemText = errors_.MessageText(code);
    if (!systemText) {
        prompts_.ShowError(FormatText(L"Error: 0x%x", {code}), title);
        return;
    }
    std::wstring text(leadText);
    text += L"\r\n";
    text += *systemText;
    prompts_.ShowError(text, title);
}

}  // namespace corvina
