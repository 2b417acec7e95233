#include "platform/win32/windows_prompts.h"

#include <windows.h>
//
#include <algorithm>
#include <commdlg.h>

namespace corvina {

std::wstring ChooserFilter(std::wstring_view filter) {
    std::wstring text(filter);
    std::replace(text.begin(), text.end(), L'|', L'\0');
    // The system reads on until it meets two zeros, so a filter that lacks its closing bars is closed here.
    text.append(2, L'\0');
    return text;
}

void WindowsPrompts::ShowError(std::wstring_view text, std::wstring_view title) {
    ShowBox(text, title, MB_OK | MB_ICONERROR);
}

void WindowsPrompts::ShowInformation(std::wstring_view text, std::wstring_view title) {
    ShowBox(text, title, MB_OK | MB_ICONINFORMATION | MB_SYSTEMMODAL);
}

bool WindowsPrompts::AskYesNo(std::wstring_view text, std::wstring_view title) {
    return ShowBox(text, title, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

std::optional<std::wstring> WindowsPrompts::ChooseFileToOpen(std::wstring_view filter) {
    const std::wstring patterns = ChooserFilter(filter);
    wchar_t path[MAX_PATH] = {};
    OPENFILENAMEW choice{};
    choice.lStructSize = sizeof(choice);
    choice.hwndOwner = owner_;
    choice.lpstrFilter = patterns.c_str();
    choice.lpstrFile = path;
    choice.nMaxFile = MAX_PATH;
    choice.lpstrDefExt = L"evtx";
    choice.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY;
    if (!GetOpenFileNameW(&choice)) {
        return std::nullopt;
    }
    return std::wstring(path);
}

int WindowsPrompts::ShowBox(std::wstring_view text, std::wstring_view title, UINT style) const {
    // The window of one event may be open over the main window: it must not be used while the box is.
    const HWND owner = owner_ == nullptr ? nullptr : GetLastActivePopup(owner_);
    // A box does not take the direction of its owner by itself.
    const bool isMirrored = (GetWindowLongPtrW(owner, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0;
    style |= isMirrored ? MB_RTLREADING | MB_RIGHT : 0U;
    return MessageBoxW(owner, std::wstring(text).c_str(), std::wstring(title).c_str(), style);
}

}  // namespace corvina
