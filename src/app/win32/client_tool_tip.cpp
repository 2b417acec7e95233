#include "app/win32/client_tool_tip.h"

#include "ui/win32/layout_direction.h"

namespace corvina {

ClientToolTip::~ClientToolTip() {
    if (handle_ != nullptr && IsWindow(handle_)) {
        DestroyWindow(handle_);
    }
}

TTTOOLINFOW ClientToolTip::Tool() const {
    TTTOOLINFOW tool{};
    // The size without the last member, which only newer controls know.
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_SUBCLASS;
    tool.hwnd = parent_;
    tool.uId = 1;
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    GetClientRect(parent_, &tool.rect);
    return tool;
}

void ClientToolTip::Create(HWND parent, HINSTANCE instance) {
    parent_ = parent;
    handle_ = CreateWindowExW(WS_EX_TOPMOST | ui::LayoutLike(parent), TOOLTIPS_CLASSW, nullptr,
                              WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, parent, nullptr, instance, nullptr);
    TTTOOLINFOW tool = Tool();
    SendMessageW(handle_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ClientToolTip::FitToParent() {
    if (handle_ != nullptr) {
        TTTOOLINFOW tool = Tool();
        SendMessageW(handle_, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
    }
}

void ClientToolTip::FillText(NMTTDISPINFOW& request) {
    POINT place{};
    GetCursorPos(&place);
    ScreenToClient(parent_, &place);
    text_ = source_(place);
    request.lpszText = text_.data();
}

}  // namespace corvina
