#include "app/win32/about_box.h"

#include "resource_ids.h"
#include "ui/win32/layout_direction.h"

namespace corvina {
namespace {

constexpr int NoIdentifier = -1;

// Sizes at 96 dots per inch.
constexpr SIZE BoxSize = {420, 230};
constexpr int Margin = 16;
constexpr int IconSize = 48;
constexpr int LineHeight = 22;

}  // namespace

void AboutBox::Show(HWND owner, HINSTANCE instance, Theme& scheme) {
    ui::DialogArguments arguments;
    arguments.Owner = owner;
    arguments.Instance = instance;
    arguments.Title = texts_.Title;
    arguments.ClientSize = BoxSize;
    arguments.Scheme = &scheme;
    RunModal(arguments);
}

void AboutBox::CreateControls() {
    icon_ = AddControl(L"STATIC", L"", SS_ICON | SS_REALSIZECONTROL, NoIdentifier);
    ui::SetMirrored(icon_, false);  // pictures are not turned over
    const int size = Pixels(IconSize);
    const auto icon = reinterpret_cast<LPARAM>(
        LoadImageW(Instance(), MAKEINTRESOURCEW(CORVINA_ICON_PROGRAM), IMAGE_ICON, size, size, LR_SHARED));
    SendMessageW(icon_, STM_SETIMAGE, IMAGE_ICON, icon);
    name_ = AddLabel(texts_.Name);
    version_ = AddLabel(texts_.Version);
    license_ = AddControl(L"STATIC", texts_.License, SS_LEFT | SS_NOPREFIX, NoIdentifier);
    AddButton(ButtonKind::DefaultPush, texts_.Close, IDCANCEL);
    SetFocus(Control(IDCANCEL));
}

void AboutBox::Layout(int width, int height) {
    const int margin = Pixels(Margin);
    const int icon = Pixels(IconSize);
    const int line = Pixels(LineHeight);
    const int left = 2 * margin + icon;
    MoveWindow(icon_, margin, margin, icon, icon, TRUE);
    MoveWindow(name_, left, margin, width - left - margin, line, TRUE);
    MoveWindow(version_, left, margin + line, width - left - margin, line, TRUE);
    const int top = margin + icon + margin;
    const int bottom = PlaceEndButtons(width, height, {IDCANCEL});
    MoveWindow(license_, margin, top, width - 2 * margin, bottom - top, TRUE);
}

}  // namespace corvina
