#include "details/win32/details_window_control.h"

#include <algorithm>
#include <exception>
#include <string>
#include <utility>

#include "details/win32/details_box.h"
#include "details/win32/field_text.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/control_colors.h"
#include "ui/win32/layout_direction.h"
#include "ui/win32/popup_menu.h"

namespace corvina {
namespace {

constexpr int FirstButtonIdentifier = 200;
constexpr int FirstBoxIdentifier = 210;

constexpr RECT At(LONG left, LONG top, LONG width, LONG height) {
    return {left, top, left + std::max<LONG>(width, 0), top + std::max<LONG>(height, 0)};
}

// The places of the boxes in a client area of that size, in pixels.
std::array<RECT, 4> BoxPlaces(LONG width, LONG height, ui::Scale scale) {
    const auto pixels = [scale](int size) { return static_cast<LONG>(scale.Pixels(size)); };
    return {At(pixels(4), pixels(70), pixels(440), pixels(160)),
            At(pixels(446), pixels(70), width - pixels(448), pixels(160)),
            At(pixels(4), pixels(240), width - pixels(8), height - pixels(250)),
            At(pixels(4), pixels(50), width - pixels(8), height - pixels(60))};
}

std::array<RECT, 4> ButtonPlaces(LONG width, ui::Scale scale) {
    const auto pixels = [scale](int size) { return static_cast<LONG>(scale.Pixels(size)); };
    return {At(pixels(10), pixels(16), pixels(200), pixels(24)), At(pixels(220), pixels(16), pixels(200), pixels(24)),
            At(width - pixels(64), pixels(15), pixels(24), pixels(24)),
            At(width - pixels(34), pixels(14), pixels(24), pixels(24))};
}

// Settings may hold any number, and the system's own arithmetic with places overflows.
int PlaceOnDesktop(int value) {
    return std::clamp(value, -32'768, 32'767);
}

ui::UniqueFont CreateTahoma(int height) {
    return ui::UniqueFont(CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                      OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                      DEFAULT_PITCH | FF_SWISS, L"Tahoma"));
}

}  // namespace

void DetailsWindowControl::Run(DetailsWindowEvents& events) {
    if (richEdit_ == nullptr) {
        richEdit_ = std::make_unique<SystemLibrary>(L"Msftedit.dll");
    }
    around_ = source_();
    events_ = &events;
    brushes_ = std::make_unique<ui::PaletteBrushes>(around_.Scheme->Colors());
    // A template without controls, menu, class and title, which are three zeros behind it.
    struct {
        DLGTEMPLATE Header{};
        std::array<WORD, 3> Nothing{};
    } description;
    description.Header.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_CLIPCHILDREN;
    description.Header.dwExtendedStyle = ui::LayoutLike(around_.Owner);
    DialogBoxIndirectParamW(around_.Instance, &description.Header, around_.Owner, &DetailsWindowControl::Procedure,
                            reinterpret_cast<LPARAM>(this));
    handle_ = nullptr;
    events_ = nullptr;
}

void DetailsWindowControl::End() {
    EndDialog(handle_, 0);
}

INT_PTR CALLBACK DetailsWindowControl::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
        reinterpret_cast<DetailsWindowControl*>(lParam)->handle_ = window;
    }
    auto* self = reinterpret_cast<DetailsWindowControl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
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

INT_PTR DetailsWindowControl::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            OnInitialize();
            return FALSE;  // the focus is set already
        case WM_SIZE:
            Layout();
            return TRUE;
        case WM_DPICHANGED: {
            const RECT& place = *reinterpret_cast<const RECT*>(lParam);
            UseScale(ui::Scale(LOWORD(wParam)));
            SetWindowPos(handle_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                         SWP_NOZORDER | SWP_NOACTIVATE);
            Layout();
            return TRUE;
        }
        case WM_COMMAND:
            OnCommand(LOWORD(wParam));
            return TRUE;
        case WM_CLOSE:
            events_->CloseRequested();
            return TRUE;
        case WM_CONTEXTMENU:
            OnContextMenu({static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
            return TRUE;
        case WM_SETTINGCHANGE:
            if (lParam != 0 && around_.Scheme->SettingChanged(reinterpret_cast<const wchar_t*>(lParam))) {
                UseColors();
            }
            return TRUE;
        case WM_MEASUREITEM:
            return around_.Menus->Measure(handle_, *reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)) ? TRUE : FALSE;
        case WM_MENUCHAR:
            SetWindowLongPtrW(
                handle_, DWLP_MSGRESULT,
                around_.Menus->CharacterTyped(reinterpret_cast<HMENU>(lParam), static_cast<wchar_t>(LOWORD(wParam))));
            return TRUE;
        case WM_DRAWITEM: {
            const auto& drawing = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
            const auto found = std::ranges::find(buttons_, drawing.hwndItem);
            if (drawing.CtlType != ODT_BUTTON || found == buttons_.end()) {
                return around_.Menus->Draw(handle_, drawing) ? TRUE : FALSE;
            }
            const auto button = static_cast<DetailsButton>(found - buttons_.begin());
            DrawDetailsButton(drawing, button, IsOn(button), *brushes_, scale_);
            return TRUE;
        }
        case WM_ERASEBKGND:
            OnErase(reinterpret_cast<HDC>(wParam));
            SetWindowLongPtrW(handle_, DWLP_MSGRESULT, TRUE);
            return TRUE;
        case WM_CTLCOLORDLG:
            return brushes_->PaintText(reinterpret_cast<HDC>(wParam), brushes_->Colors().WindowFill,
                                       brushes_->WindowFill());
        case WM_CTLCOLORSTATIC:  // from read-only fields where there are no rich ones
        case WM_CTLCOLOREDIT:
            return brushes_->PaintText(reinterpret_cast<HDC>(wParam), brushes_->Colors().ControlBack,
                                       brushes_->ControlBack());
        default:
            return FALSE;
    }
}

void DetailsWindowControl::OnInitialize() {
    const ULONG_PTR icon = GetClassLongPtrW(around_.Owner, GCLP_HICONSM);
    SendMessageW(handle_, WM_SETICON, ICON_SMALL, static_cast<LPARAM>(icon));
    CreateButtons();
    CreateBoxes();
    UseScale(ui::Scale::Of(handle_));
    UseColors();
    events_->Opened();
}

void DetailsWindowControl::CreateButtons() {
    for (std::size_t i = 0; i < ButtonCount; ++i) {
        const auto identifier = static_cast<INT_PTR>(FirstButtonIdentifier + static_cast<int>(i));
        buttons_[i] = CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW, 0, 0, 0, 0,
                                      handle_, reinterpret_cast<HMENU>(identifier), around_.Instance, nullptr);
    }
}

void DetailsWindowControl::CreateBoxes() {
    for (std::size_t i = 0; i < BoxCount; ++i) {
        boxes_[i] = CreateDetailsBox(handle_, around_.Instance, FirstBoxIdentifier + static_cast<int>(i),
                                     static_cast<bool>(*richEdit_));
    }
}

void DetailsWindowControl::CreateTips(const DetailsWindowTexts& texts) {
    tips_ = CreateWindowExW(WS_EX_TOPMOST | ui::LayoutLike(handle_), TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0, 0, handle_, nullptr, around_.Instance,
                            nullptr);
    for (const auto& [button, text] :
         {std::pair(DetailsButton::Previous, texts.Previous), std::pair(DetailsButton::Next, texts.Next)}) {
        std::wstring tip(text);
        TTTOOLINFOW tool{};
        tool.cbSize = sizeof(tool);
        tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        tool.hwnd = handle_;
        tool.uId = reinterpret_cast<UINT_PTR>(ButtonWindow(button));
        tool.lpszText = tip.data();
        SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    }
}

void DetailsWindowControl::SetTexts(const DetailsWindowTexts& texts) {
    // The arrows show no text; it is what a screen reader calls them.
    const std::array<std::wstring_view, ButtonCount> captions = {texts.General, texts.Details, texts.Previous,
                                                                 texts.Next};
    for (std::size_t i = 0; i < ButtonCount; ++i) {
        SetWindowTextW(buttons_[i], std::wstring(captions[i]).c_str());
    }
    CreateTips(texts);
}

void DetailsWindowControl::UseColors() {
    brushes_ = std::make_unique<ui::PaletteBrushes>(around_.Scheme->Colors());
    ui::ColorFrame(handle_, *around_.Scheme);
    for (const HWND box : boxes_) {
        ColorDetailsBox(box, *brushes_);
        styles_.Set(box, brushes_->IsDark() ? L"DarkMode_Explorer" : L"Explorer");
    }
    RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void DetailsWindowControl::UseScale(ui::Scale scale) {
    scale_ = scale;
    ui::UniqueFont boxFont = CreateTahoma(scale.Pixels(14));
    ui::UniqueFont buttonFont = CreateTahoma(scale.Pixels(18));
    for (const HWND box : boxes_) {
        SendMessageW(box, WM_SETFONT, reinterpret_cast<WPARAM>(boxFont.get()), TRUE);
    }
    for (const HWND button : buttons_) {
        SendMessageW(button, WM_SETFONT, reinterpret_cast<WPARAM>(buttonFont.get()), TRUE);
    }
    boxFont_ = std::move(boxFont);
    buttonFont_ = std::move(buttonFont);
}

void DetailsWindowControl::Layout() {
    if (boxFont_ == nullptr || IsIconic(handle_)) {
        return;
    }
    RECT area{};
    GetClientRect(handle_, &area);
    const auto boxPlaces = BoxPlaces(area.right, area.bottom, scale_);
    for (std::size_t i = 0; i < BoxCount; ++i) {
        PlaceDetailsBox(boxes_[i], boxPlaces[i], scale_);
    }
    const auto buttonPlaces = ButtonPlaces(area.right, scale_);
    for (std::size_t i = 0; i < ButtonCount; ++i) {
        const RECT& place = buttonPlaces[i];
        SetWindowPos(buttons_[i], nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    InvalidateRect(handle_, nullptr, TRUE);
}

void DetailsWindowControl::OnErase(HDC device) const {
    RECT area{};
    GetClientRect(handle_, &area);
    FillRect(device, &area, brushes_->WindowFill());
    const ui::UniqueBrush edge(CreateSolidBrush(brushes_->Colors().Border));
    const auto places = BoxPlaces(area.right, area.bottom, scale_);
    for (std::size_t i = 0; i < BoxCount; ++i) {
        if (IsWindowVisible(boxes_[i])) {
            RECT frame = places[i];
            InflateRect(&frame, 1, 1);
            FrameRect(device, &frame, edge.get());
        }
    }
}

void DetailsWindowControl::SetTitle(std::wstring_view title) {
    SetWindowTextW(handle_, std::wstring(title).c_str());
}

void DetailsWindowControl::ShowProperties(std::wstring_view left, std::wstring_view right) {
    const bool isMirrored = ui::IsMirrored(handle_);
    for (const auto& [box, properties] : {std::pair(Box::Left, left), std::pair(Box::Right, right)}) {
        SetDetailsBoxText(BoxWindow(box), isMirrored ? WithDirectionMarks(properties) : std::wstring(properties),
                          *brushes_);
    }
}

void DetailsWindowControl::ShowDescription(std::wstring_view description) {
    SetDetailsBoxText(BoxWindow(Box::Description), description, *brushes_);
}

void DetailsWindowControl::ShowXml(std::wstring_view xml) {
    SetDetailsBoxText(BoxWindow(Box::Xml), xml, *brushes_);
}

void DetailsWindowControl::ShowTab(DetailsTab tab) {
    tab_ = tab;
    const int general = tab == DetailsTab::General ? SW_SHOW : SW_HIDE;
    for (const Box box : {Box::Left, Box::Right, Box::Description}) {
        ShowWindow(BoxWindow(box), general);
    }
    ShowWindow(BoxWindow(Box::Xml), tab == DetailsTab::Details ? SW_SHOW : SW_HIDE);
    RedrawWindow(handle_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void DetailsWindowControl::ShowArrows(bool previous, bool next) {
    hasPrevious_ = previous;
    hasNext_ = next;
    InvalidateRect(ButtonWindow(DetailsButton::Previous), nullptr, TRUE);
    InvalidateRect(ButtonWindow(DetailsButton::Next), nullptr, TRUE);
}

void DetailsWindowControl::FocusDescription() {
    SetFocus(BoxWindow(Box::Description));
}

void DetailsWindowControl::MoveTo(const DetailsWindowPlace& place) {
    SetWindowPos(handle_, nullptr, PlaceOnDesktop(place.Left), PlaceOnDesktop(place.Top), PlaceOnDesktop(place.Width),
                 PlaceOnDesktop(place.Height), SWP_NOZORDER | SWP_NOACTIVATE);
    Layout();
}

DetailsWindowPlace DetailsWindowControl::Place() const {
    RECT place{};
    GetWindowRect(handle_, &place);
    if (IsZoomed(handle_)) {
        // The size to which the window would return.
        WINDOWPLACEMENT placement{};
        placement.length = sizeof(placement);
        GetWindowPlacement(handle_, &placement);
        place = placement.rcNormalPosition;
    }
    return {.Left = static_cast<int>(place.left),
            .Top = static_cast<int>(place.top),
            .Width = static_cast<int>(place.right - place.left),
            .Height = static_cast<int>(place.bottom - place.top)};
}

bool DetailsWindowControl::IsOn(DetailsButton button) const {
    switch (button) {
        case DetailsButton::GeneralTab:
            return tab_ == DetailsTab::General;
        case DetailsButton::DetailsTab:
            return tab_ == DetailsTab::Details;
        case DetailsButton::Previous:
            return hasPrevious_;
        case DetailsButton::Next:
            return hasNext_;
    }
    return false;
}

void DetailsWindowControl::OnCommand(int command) {
    const int identifier = command == IDOK ? GetDlgCtrlID(GetFocus()) : command;  // Enter presses the button in focus
    if (identifier == IDCANCEL) {
        events_->CancelRequested();
    } else if (identifier == around_.CopyCommand) {
        events_->CopyRequested();
    } else if (identifier >= FirstButtonIdentifier &&
               identifier < FirstButtonIdentifier + static_cast<int>(ButtonCount)) {
        PressButton(static_cast<DetailsButton>(identifier - FirstButtonIdentifier));
    }
}

void DetailsWindowControl::PressButton(DetailsButton button) {
    switch (button) {
        case DetailsButton::GeneralTab:
            events_->TabChosen(DetailsTab::General);
            break;
        case DetailsButton::DetailsTab:
            events_->TabChosen(DetailsTab::Details);
            break;
        case DetailsButton::Previous:
            events_->PreviousRequested();
            break;
        case DetailsButton::Next:
            events_->NextRequested();
            break;
    }
}

void DetailsWindowControl::OnContextMenu(POINT place) {
    const bool fromKeyboard = place.x == -1 && place.y == -1;
    around_.ShowMenu(handle_, fromKeyboard ? ui::KeyboardMenuPlace(handle_) : place);
}

}  // namespace corvina
