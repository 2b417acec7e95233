#include "ui/win32/dialog.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/window_place.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/control_colors.h"
#include "ui/win32/layout_direction.h"
#include "ui/win32/popup_menu.h"

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

// Sizes at 96 dots per inch.
constexpr int Margin = 12;
constexpr int Gap = 8;
constexpr int ButtonHeight = 28;

bool IsEdit(HWND control) {
    wchar_t name[16] = {};
    GetClassNameW(control, name, 16);
    return lstrcmpiW(name, L"Edit") == 0;
}

RECT WorkAreaOf(HWND window) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

}  // namespace

bool Dialog::RunModal(const DialogArguments& arguments) {
    arguments_ = arguments;
    headers_.clear();
    look_.Brushes = std::make_unique<PaletteBrushes>(arguments.Scheme->Colors());
    alignas(DWORD) EmptyTemplate description;
    description.Header.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN | DS_MODALFRAME;
    if (IsResizable()) {
        description.Header.style =
            (description.Header.style & ~static_cast<DWORD>(DS_MODALFRAME)) | WS_THICKFRAME | WS_MAXIMIZEBOX;
    }
    description.Header.dwExtendedStyle = LayoutLike(arguments.Owner);
    const INT_PTR result = DialogBoxIndirectParamW(arguments.Instance, &description.Header, arguments.Owner,
                                                   &Dialog::Procedure, reinterpret_cast<LPARAM>(this));
    handle_ = nullptr;
    font_.reset();
    return result == 1;
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
    if ((extendedStyle & WS_EX_CLIENTEDGE) != 0) {
        PaintEdge(control, look_);
    }
    return control;
}

HWND Dialog::AddLabel(std::wstring_view text) {
    constexpr int NoIdentifier = -1;
    return AddControl(L"STATIC", text, SS_LEFT | SS_CENTERIMAGE | SS_ENDELLIPSIS | SS_NOPREFIX, NoIdentifier);
}

HWND Dialog::AddButton(ButtonKind kind, std::wstring_view text, int identifier, bool startsGroup) {
    const HWND button = CreateButton({.Parent = handle_,
                                      .Instance = Instance(),
                                      .Kind = kind,
                                      .Text = std::wstring(text),
                                      .Identifier = identifier,
                                      .StartsGroup = startsGroup,
                                      .Look = &look_});
    SendMessageW(button, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
    if (kind == ButtonKind::DefaultPush) {
        SendMessageW(handle_, DM_SETDEFID, static_cast<WPARAM>(identifier), 0);
    }
    return button;
}

HWND Dialog::AddCheckBox(std::wstring_view text, int identifier, CheckState state) {
    const HWND box = AddButton(ButtonKind::CheckBox, text, identifier);
    SetCheckState(box, state);
    return box;
}

HWND Dialog::AddRadioButton(std::wstring_view text, int identifier, CheckState state, bool startsGroup) {
    const HWND button = AddButton(ButtonKind::RadioButton, text, identifier, startsGroup);
    SetCheckState(button, state);
    return button;
}

HWND Dialog::AddList(DWORD style, int identifier) {
    const HWND list =
        AddControl(WC_LISTVIEWW, L"", WS_TABSTOP | WS_GROUP | LVS_REPORT | style, identifier, WS_EX_CLIENTEDGE);
    headers_.push_back(std::make_unique<HeaderPainter>());
    headers_.back()->Install(list);
    return list;
}

HWND Dialog::AddDropDown(int identifier, std::span<const std::wstring> entries, std::size_t selected) {
    return CreateDropDown({.Parent = handle_,
                           .Instance = Instance(),
                           .Identifier = identifier,
                           .Entries = entries,
                           .Selected = selected,
                           .Font = font_.get(),
                           .Look = &look_});
}

void Dialog::ShowMenu(HMENU menu, POINT place) {
    menus_.Prepare(menu, false);
    TrackPopup(menu, handle_, place);
}

int Dialog::PlaceEndButtons(int width, int height, std::initializer_list<int> identifiers) {
    const int top = height - Pixels(Margin) - Pixels(ButtonHeight);
    int right = width - Pixels(Margin);
    for (auto identifier = std::rbegin(identifiers); identifier != std::rend(identifiers); ++identifier) {
        const HWND button = Control(*identifier);
        const int buttonWidth = ButtonWidthOf(button);
        MoveWindow(button, right - buttonWidth, top, buttonWidth, Pixels(ButtonHeight), TRUE);
        right -= buttonWidth + Pixels(Gap);
    }
    return top - Pixels(Margin);
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
        case WM_GETFONT:
            SetWindowLongPtrW(handle_, DWLP_MSGRESULT, reinterpret_cast<LONG_PTR>(font_.get()));
            return TRUE;
        case WM_DPICHANGED:
            ChangeScale(Scale(LOWORD(wParam)), *reinterpret_cast<const RECT*>(lParam));
            return TRUE;
        case WM_COMMAND:
            if (wParam == MAKEWPARAM(IDCANCEL, BN_CLICKED)) {
                End(false);
            } else {
                CommandReceived(LOWORD(wParam), HIWORD(wParam));
            }
            return TRUE;
        case WM_CLOSE:
            SavePlace();
            End(false);
            return TRUE;
        case WM_NOTIFY:
            return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), lParam);
        case WM_CONTEXTMENU:
            ContextMenuRequested(reinterpret_cast<HWND>(wParam),
                                 {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
            return TRUE;
        case WM_SETTINGCHANGE:
            if (lParam != 0 && arguments_.Scheme->SettingChanged(reinterpret_cast<const wchar_t*>(lParam))) {
                UseColors();
            }
            return TRUE;
        case WM_DRAWITEM:
            return menus_.Draw(handle_, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)) ||
                           DrawDropDownItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), look_)
                       ? TRUE
                       : FALSE;
        case WM_MEASUREITEM:
            return menus_.Measure(handle_, *reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)) ? TRUE : FALSE;
        case WM_MENUCHAR:
            SetWindowLongPtrW(
                handle_, DWLP_MSGRESULT,
                menus_.CharacterTyped(reinterpret_cast<HMENU>(lParam), static_cast<wchar_t>(LOWORD(wParam))));
            return TRUE;
        case WM_ERASEBKGND:
            OnErase(reinterpret_cast<HDC>(wParam));
            return TRUE;
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORLISTBOX:
            return OnTextColors(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam),
                                message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX);
        default:
            return FALSE;
    }
}

INT_PTR Dialog::OnNotify(const NMHDR& notification, LPARAM lParam) {
    std::optional<LRESULT> answer = NotificationReceived(notification, lParam);
    if (!answer && notification.code == static_cast<UINT>(NM_CUSTOMDRAW) && IsList(notification.hwndFrom)) {
        answer = PaintListRow(*reinterpret_cast<NMLVCUSTOMDRAW*>(lParam), look_);
    }
    SetWindowLongPtrW(handle_, DWLP_MSGRESULT, answer.value_or(0));
    return answer.has_value() ? TRUE : FALSE;
}

INT_PTR Dialog::OnTextColors(HDC device, HWND control, bool isField) const {
    const PaletteBrushes& brushes = Brushes();
    if (isField || IsEdit(control)) {  // one that cannot be written to asks as a label does
        return brushes.PaintText(device, brushes.Colors().ControlBack, brushes.ControlBack());
    }
    return brushes.PaintText(device, brushes.Colors().WindowFill, brushes.WindowFill());
}

void Dialog::OnErase(HDC device) const {
    RECT area{};
    GetClientRect(handle_, &area);
    FillRect(device, &area, Brushes().WindowFill());
    DrawGround(device);
    SetWindowLongPtrW(handle_, DWLP_MSGRESULT, TRUE);
}

void Dialog::Initialize() {
    SetWindowTextW(handle_, arguments_.Title.c_str());
    const ULONG_PTR icon = GetClassLongPtrW(arguments_.Owner, GCLP_HICONSM);
    SendMessageW(handle_, WM_SETICON, ICON_SMALL, static_cast<LPARAM>(icon));
    look_.Resolution = Scale::Of(handle_);
    look_.Face = FaceOf(arguments_.Owner);
    font_ = CreateInterfaceFont(look_.Resolution, look_.Face);
    ColorFrame(handle_, *arguments_.Scheme);
    CreateControls();
    ColorControls();
    if (arguments_.PlaceSection.empty()) {
        PlaceOverOwner();
    } else {
        PlaceWhereClosed();
    }
    LayoutNow();
    Opened();
}

SIZE Dialog::OuterSize(SIZE client) const {
    RECT outer{};
    RECT inner{};
    GetWindowRect(handle_, &outer);
    GetClientRect(handle_, &inner);
    return {Pixels(static_cast<int>(client.cx)) + (outer.right - outer.left) - inner.right,
            Pixels(static_cast<int>(client.cy)) + (outer.bottom - outer.top) - inner.bottom};
}

void Dialog::PlaceOverOwner() {
    SIZE size = OuterSize(arguments_.ClientSize);
    RECT owner{};
    GetWindowRect(arguments_.Owner, &owner);
    const RECT work = WorkAreaOf(arguments_.Owner);
    if (IsResizable()) {
        // At a high resolution the screen may be smaller; one that cannot be resized has no layout for less.
        size = {std::min(size.cx, work.right - work.left), std::min(size.cy, work.bottom - work.top)};
    }
    const LONG left = std::max(work.left, std::min((owner.left + owner.right - size.cx) / 2, work.right - size.cx));
    const LONG top = std::max(work.top, std::min((owner.top + owner.bottom - size.cy) / 2, work.bottom - size.cy));
    SetWindowPos(handle_, nullptr, left, top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
}

void Dialog::PlaceWhereClosed() {
    // Settings may hold any number, and the system's own arithmetic with places overflows.
    const auto onDesktop = [](int value) { return std::clamp(value, -32'768, 32'767); };
    // Saved sizes are pixels; the first one has to hold controls that grow with the resolution, as far as there is
    // room.
    const RECT work = WorkAreaOf(arguments_.Owner);
    WindowPlace first;
    first.Width = std::clamp(static_cast<int>(work.right - work.left) - 2 * first.Left, first.Width,
                             std::max(first.Width, Pixels(first.Width)));
    first.Height = std::clamp(static_cast<int>(work.bottom - work.top) - 2 * first.Top, first.Height,
                              std::max(first.Height, Pixels(first.Height)));
    const WindowPlace place = ReadWindowPlace(*arguments_.Settings, arguments_.PlaceSection, first);
    SetWindowPos(handle_, nullptr, onDesktop(place.Left), onDesktop(place.Top), onDesktop(place.Width),
                 onDesktop(place.Height), SWP_NOZORDER | SWP_NOACTIVATE);
}

void Dialog::SavePlace() const {
    if (arguments_.PlaceSection.empty()) {
        return;
    }
    RECT place{};
    GetWindowRect(handle_, &place);
    if (IsZoomed(handle_)) {
        // The size to which the window would return.
        WINDOWPLACEMENT placement{};
        placement.length = sizeof(placement);
        GetWindowPlacement(handle_, &placement);
        place = placement.rcNormalPosition;
    }
    WriteWindowPlace(*arguments_.Settings, arguments_.PlaceSection,
                     {.Left = static_cast<int>(place.left),
                      .Top = static_cast<int>(place.top),
                      .Width = static_cast<int>(place.right - place.left),
                      .Height = static_cast<int>(place.bottom - place.top)});
}

void Dialog::ChangeScale(Scale scale, const RECT& place) {
    look_.Resolution = scale;
    UniqueFont font = CreateInterfaceFont(scale, look_.Face);
    for (HWND child = GetWindow(handle_, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    }
    font_ = std::move(font);
    ScaleChanged();
    ColorControls();  // pictures in lists have a size, too
    SetWindowPos(handle_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    LayoutNow();
}

void Dialog::ColorControls() {
    ColorChildren(handle_, look_, *arguments_.Scheme, styles_);
    for (const auto& header : headers_) {
        header->SetColors(*look_.Brushes);
    }
}

void Dialog::UseColors() {
    // Controls draw with the old brushes until they are asked to draw anew.
    const auto previous = std::exchange(look_.Brushes, std::make_unique<PaletteBrushes>(arguments_.Scheme->Colors()));
    ColorFrame(handle_, *arguments_.Scheme);
    ColorControls();
    ColorsChanged();
    RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void Dialog::LayoutNow() {
    if (font_ != nullptr) {
        RECT area{};
        GetClientRect(handle_, &area);
        Layout(area.right, area.bottom);
    }
}

}  // namespace corvina::ui
