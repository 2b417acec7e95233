#include "details/win32/details_window_control.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>
#include <utility>

#include "details/win32/details_box.h"
#include "details/win32/field_text.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/layout_direction.h"
#include "ui/win32/popup_menu.h"

namespace corvina {
namespace {

enum Identifier : int {
    GeneralTab = 200,
    DetailsTabButton,
    PreviousArrow,
    NextArrow,
    LeftBox = 210,
    RightBox,
    DescriptionBox,
    XmlBox
};

constexpr std::array Buttons = {GeneralTab, DetailsTabButton, PreviousArrow, NextArrow};
constexpr std::array Boxes = {LeftBox, RightBox, DescriptionBox, XmlBox};

constexpr RECT At(LONG left, LONG top, LONG width, LONG height) {
    return {left, top, left + std::max<LONG>(width, 0), top + std::max<LONG>(height, 0)};
}

// The place of a control in a client area of that size, in pixels.
RECT PlaceOf(Identifier control, LONG width, LONG height, ui::Scale scale) {
    const auto pixels = [scale](int size) { return static_cast<LONG>(scale.Pixels(size)); };
    switch (control) {
        case GeneralTab:
            return At(pixels(10), pixels(16), pixels(200), pixels(24));
        case DetailsTabButton:
            return At(pixels(220), pixels(16), pixels(200), pixels(24));
        case PreviousArrow:
            return At(width - pixels(64), pixels(15), pixels(24), pixels(24));
        case NextArrow:
            return At(width - pixels(34), pixels(14), pixels(24), pixels(24));
        case LeftBox:
            return At(pixels(4), pixels(70), pixels(440), pixels(160));
        case RightBox:
            return At(pixels(446), pixels(70), width - pixels(448), pixels(160));
        case DescriptionBox:
            return At(pixels(4), pixels(240), width - pixels(8), height - pixels(250));
        case XmlBox:
            return At(pixels(4), pixels(50), width - pixels(8), height - pixels(60));
    }
    return {};
}

}  // namespace

void DetailsWindowControl::Run(DetailsWindowEvents& events, SettingsStore& settings) {
    if (richEdit_ == nullptr) {
        richEdit_ = std::make_unique<SystemLibrary>(L"Msftedit.dll");
    }
    around_ = source_();
    events_ = &events;
    ui::DialogArguments arguments;
    arguments.Owner = around_.Owner;
    arguments.Instance = around_.Instance;
    arguments.Scheme = around_.Scheme;
    arguments.Settings = &settings;
    arguments.PlaceSection = L"CorvinaDetails";
    RunModal(arguments);
    events_ = nullptr;
}

void DetailsWindowControl::CreateControls() {
    AddButton(ButtonKind::Tab, {}, GeneralTab, true);
    AddButton(ButtonKind::Tab, {}, DetailsTabButton);
    AddButton(ButtonKind::UpArrow, {}, PreviousArrow);
    AddButton(ButtonKind::DownArrow, {}, NextArrow);
    tips_ =
        CreateWindowExW(WS_EX_TOPMOST | ui::LayoutLike(Handle()), TOOLTIPS_CLASSW, nullptr,
                        WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, 0, 0, 0, 0, Handle(), nullptr, Instance(), nullptr);
    for (const int box : Boxes) {
        CreateDetailsBox(Handle(), Instance(), box, static_cast<bool>(*richEdit_));
    }
    ScaleChanged();
    ColorsChanged();
}

void DetailsWindowControl::SetTexts(const DetailsWindowTexts& texts) {
    for (const auto& [button, text] : {std::pair(GeneralTab, texts.General), std::pair(DetailsTabButton, texts.Details),
                                       std::pair(PreviousArrow, texts.Previous), std::pair(NextArrow, texts.Next)}) {
        // The arrows do not show their texts; they are what a screen reader calls them.
        SetWindowTextW(Control(button), std::wstring(text).c_str());
    }
    for (const auto& [button, text] : {std::pair(PreviousArrow, texts.Previous), std::pair(NextArrow, texts.Next)}) {
        std::wstring tip(text);
        for (TTTOOLINFOW tool : {TipOf(button), TipBehind(button)}) {
            tool.lpszText = tip.data();
            SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        }
    }
}

TTTOOLINFOW DetailsWindowControl::TipOf(int arrow) const {
    TTTOOLINFOW tool{};
    // The size without the last member, which only newer controls know.
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = Handle();
    tool.uId = reinterpret_cast<UINT_PTR>(Control(arrow));
    return tool;
}

TTTOOLINFOW DetailsWindowControl::TipBehind(int arrow) const {
    TTTOOLINFOW tool = TipOf(arrow);
    tool.uFlags = TTF_SUBCLASS;
    tool.uId = static_cast<UINT_PTR>(arrow);
    GetWindowRect(Control(arrow), &tool.rect);
    MapWindowPoints(nullptr, Handle(), reinterpret_cast<POINT*>(&tool.rect), 2);
    return tool;
}

void DetailsWindowControl::ColorsChanged() {
    for (const int box : Boxes) {
        ColorDetailsBox(Control(box), Brushes());
    }
}

void DetailsWindowControl::ScaleChanged() {
    ui::UniqueFont boxFont = MakeFont(14);
    ui::UniqueFont buttonFont = MakeFont(18);
    for (const int box : Boxes) {
        SendMessageW(Control(box), WM_SETFONT, reinterpret_cast<WPARAM>(boxFont.get()), TRUE);
    }
    for (const int button : Buttons) {
        SendMessageW(Control(button), WM_SETFONT, reinterpret_cast<WPARAM>(buttonFont.get()), TRUE);
    }
    boxFont_ = std::move(boxFont);
    buttonFont_ = std::move(buttonFont);
}

void DetailsWindowControl::Layout(int width, int height) {
    for (const Identifier box : Boxes) {
        PlaceDetailsBox(Control(box), PlaceOf(box, width, height, CurrentScale()), CurrentScale());
    }
    for (const Identifier button : Buttons) {
        const RECT place = PlaceOf(button, width, height, CurrentScale());
        MoveWindow(Control(button), place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
    }
    for (const int arrow : {PreviousArrow, NextArrow}) {
        TTTOOLINFOW tool = TipBehind(arrow);
        SendMessageW(tips_, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
    }
    InvalidateRect(Handle(), nullptr, TRUE);
}

void DetailsWindowControl::DrawGround(HDC device) const {
    RECT area{};
    GetClientRect(Handle(), &area);
    const ui::UniqueBrush edge(CreateSolidBrush(Brushes().Colors().Border));
    for (const Identifier box : Boxes) {
        if (IsWindowVisible(Control(box))) {
            RECT frame = PlaceOf(box, area.right, area.bottom, CurrentScale());
            InflateRect(&frame, 1, 1);
            FrameRect(device, &frame, edge.get());
        }
    }
}

void DetailsWindowControl::SetTitle(std::wstring_view title) {
    SetWindowTextW(Handle(), std::wstring(title).c_str());
}

void DetailsWindowControl::ShowProperties(std::wstring_view left, std::wstring_view right) {
    const bool isMirrored = ui::IsMirrored(Handle());
    for (const auto& [box, properties] : {std::pair(LeftBox, left), std::pair(RightBox, right)}) {
        SetDetailsBoxText(Control(box), isMirrored ? WithDirectionMarks(properties) : std::wstring(properties),
                          Brushes());
    }
}

void DetailsWindowControl::ShowDescription(std::wstring_view description) {
    SetDetailsBoxText(Control(DescriptionBox), description, Brushes());
}

void DetailsWindowControl::ShowXml(std::wstring_view xml) {
    SetDetailsBoxText(Control(XmlBox), xml, Brushes());
}

void DetailsWindowControl::ShowTab(DetailsTab tab) {
    const bool isGeneral = tab == DetailsTab::General;
    ui::SetCheckState(Control(GeneralTab), isGeneral ? ui::CheckState::Checked : ui::CheckState::Unchecked);
    ui::SetCheckState(Control(DetailsTabButton), isGeneral ? ui::CheckState::Unchecked : ui::CheckState::Checked);
    for (const int box : Boxes) {
        ShowWindow(Control(box), (box != XmlBox) == isGeneral ? SW_SHOW : SW_HIDE);
    }
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void DetailsWindowControl::ShowArrows(bool previous, bool next) {
    ShowArrow(PreviousArrow, previous);
    ShowArrow(NextArrow, next);
}

void DetailsWindowControl::ShowArrow(int identifier, bool leadsOn) {
    const HWND arrow = Control(identifier);
    if (!leadsOn && GetFocus() == arrow) {
        // A disabled control would keep the keys for itself and answer none.
        const HWND text = Control(ui::IsChecked(Control(GeneralTab)) ? DescriptionBox : XmlBox);
        SendMessageW(Handle(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(text), TRUE);
    }
    EnableWindow(arrow, leadsOn ? TRUE : FALSE);
}

void DetailsWindowControl::FocusDescription() {
    SetFocus(Control(DescriptionBox));
}

void DetailsWindowControl::CommandReceived(int identifier, UINT code) {
    if (identifier == around_.CopyCommand) {
        events_->CopyRequested();
        return;
    }
    if (code != BN_CLICKED) {
        return;
    }
    switch (identifier) {
        case GeneralTab:
            events_->TabChosen(DetailsTab::General);
            break;
        case DetailsTabButton:
            events_->TabChosen(DetailsTab::Details);
            break;
        case PreviousArrow:
            events_->PreviousRequested();
            break;
        case NextArrow:
            events_->NextRequested();
            break;
        default:
            break;
    }
}

void DetailsWindowControl::ContextMenuRequested(HWND, POINT place) {
    const ui::UniqueMenu menu = around_.MakeMenu();
    const bool fromKeyboard = place.x == -1 && place.y == -1;
    ShowMenu(menu.get(), fromKeyboard ? ui::KeyboardMenuPlace(Handle()) : place);
}

}  // namespace corvina
