#include "ui/win32/dialog.h"

#include <algorithm>
#include <exception>

namespace corvina::ui {
namespace {

// A dialog template with a title and nothing else: everything is created by the dialog's own code, which knows the
// resolution and the lengths of the texts.
struct EmptyTemplate {
    DLGTEMPLATE Header{};
    WORD Menu = 0;
    WORD ClassName = 0;
    WORD Title = 0;
};

}  // namespace

bool Dialog::RunModal(const DialogArguments& arguments) {
    arguments_ = arguments;
    brushes_ = std::make_unique<PaletteBrushes>(*arguments.Colors);
    alignas(DWORD) EmptyTemplate description;
    description.Header.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | DS_MODALFRAME;
    if (arguments.SmallestClient.cx > 0) {
        description.Header.style =
            (description.Header.style & ~static_cast<DWORD>(DS_MODALFRAME)) | WS_THICKFRAME | WS_MAXIMIZEBOX;
    }
    return DialogBoxIndirectParamW(arguments.Instance, &description.Header, arguments.Owner, &Dialog::Procedure,
                                   reinterpret_cast<LPARAM>(this)) == 1;
}

void Dialog::End(bool accepted) {
    EndDialog(handle_, accepted ? 1 : 0);
}

HWND Dialog::AddControl(const wchar_t* className, std::wstring_view text, DWORD style, int identifier,
                        DWORD extendedStyle) {
    const HWND control =
        CreateWindowExW(extendedStyle, className, std::wstring(text).c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                        handle_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(identifier)), Instance(), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    return control;
}

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
        reinterpret_cast<Dialog*>(lParam)->handle_ = window;
    }
    auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
        return FALSE;
    }
    try {
        return self->HandleMessage(message, wParam, lParam);
    } catch (const std::exception&) {
        // Exceptions must not pass through the system's code that called us.
        EndDialog(window, 0);
        return TRUE;
    }
}

INT_PTR Dialog::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            Initialize();
            return FALSE;  // the focus is set already
        case WM_SIZE:
            LayoutNow();
            return TRUE;
        case WM_GETMINMAXINFO:
            if (arguments_.SmallestClient.cx > 0) {
                const SIZE smallest = OuterSize(arguments_.SmallestClient);
                reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {smallest.cx, smallest.cy};
            }
            return TRUE;
        case WM_DPICHANGED:
            ChangeScale(Scale(LOWORD(wParam)), *reinterpret_cast<const RECT*>(lParam));
            return TRUE;
        case WM_COMMAND:
            CommandReceived(LOWORD(wParam), HIWORD(wParam));
            return TRUE;
        case WM_NOTIFY: {
            const auto answer = NotificationReceived(*reinterpret_cast<const NMHDR*>(lParam), lParam);
            SetWindowLongPtrW(handle_, DWLP_MSGRESULT, answer.value_or(0));
            return answer.has_value() ? TRUE : FALSE;
        }
        case WM_CONTEXTMENU:
            ContextMenuRequested(reinterpret_cast<HWND>(wParam),
                                 {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
            return TRUE;
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
            return brushes_->PaintText(reinterpret_cast<HDC>(wParam), brushes_->Colors().WindowFill,
                                       brushes_->WindowFill());
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
            return brushes_->PaintText(reinterpret_cast<HDC>(wParam), brushes_->Colors().ControlBack,
                                       brushes_->ControlBack());
        default:
            return FALSE;
    }
}

void Dialog::Initialize() {
    SetWindowTextW(handle_, arguments_.Title.c_str());
    const ULONG_PTR icon = GetClassLongPtrW(arguments_.Owner, GCLP_HICONSM);
    SendMessageW(handle_, WM_SETICON, ICON_SMALL, static_cast<LPARAM>(icon));
    scale_ = Scale::Of(handle_);
    font_ = CreateInterfaceFont(scale_);
    CreateControls();
    PlaceOverOwner();
    LayoutNow();
}

SIZE Dialog::OuterSize(SIZE client) const {
    RECT outer{};
    RECT inner{};
    GetWindowRect(handle_, &outer);
    GetClientRect(handle_, &inner);
    return {scale_.Pixels(static_cast<int>(client.cx)) + (outer.right - outer.left) - inner.right,
            scale_.Pixels(static_cast<int>(client.cy)) + (outer.bottom - outer.top) - inner.bottom};
}

void Dialog::PlaceOverOwner() {
    const SIZE size = OuterSize(arguments_.ClientSize);
    RECT owner{};
    GetWindowRect(arguments_.Owner, &owner);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(arguments_.Owner, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& work = monitor.rcWork;
    const LONG left = std::max(work.left, std::min((owner.left + owner.right - size.cx) / 2, work.right - size.cx));
    const LONG top = std::max(work.top, std::min((owner.top + owner.bottom - size.cy) / 2, work.bottom - size.cy));
    SetWindowPos(handle_, nullptr, left, top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void Dialog::ChangeScale(Scale scale, const RECT& place) {
    scale_ = scale;
    UniqueFont font = CreateInterfaceFont(scale_);
    for (HWND child = GetWindow(handle_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    }
    font_ = std::move(font);
    SetWindowPos(handle_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    LayoutNow();
}

void Dialog::LayoutNow() {
    if (font_ != nullptr) {
        RECT area{};
        GetClientRect(handle_, &area);
        Layout(area.right, area.bottom);
    }
}

}  // namespace corvina::ui
