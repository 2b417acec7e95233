// The base of the program's modal dialogs: creation without a template resource, scaling, font, colours of the running
// scheme and their change, and keys. docs/dialogs.md shows how a dialog is written.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/settings_store.h"
#include "theme/theme.h"
#include "ui/win32/button_control.h"
#include "ui/win32/control_look.h"
#include "ui/win32/drop_down.h"
#include "ui/win32/fonts.h"
#include "ui/win32/header_painter.h"
#include "ui/win32/menu_painter.h"
#include "ui/win32/visual_style.h"

namespace corvina::ui {

struct DialogArguments {
    HWND Owner = nullptr;
    HINSTANCE Instance = nullptr;
    std::wstring Title;
    SIZE ClientSize = {};      // for 96 dots per inch
    SIZE SmallestClient = {};  // likewise; the user may change the size when this is set
    Theme* Scheme = nullptr;   // outlives the dialog
    // With a section the dialog opens where the settings say and writes its place there when it is closed, but not when
    // it is cancelled; the user may change its size.
    SettingsStore* Settings = nullptr;
    std::wstring PlaceSection;
};

class Dialog {
  public:
    Dialog() = default;
    virtual ~Dialog() = default;
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    // Shows the dialog, over the middle of its owner or where it was closed last, and returns when it has ended: true
    // when it ended with End(true). May be called again then.
    bool RunModal(const DialogArguments& arguments);

    HWND Handle() const { return handle_; }

  protected:
    // Creates the controls; the scale and the font are known.
    virtual void CreateControls() = 0;
    // Places them in a client area of that size, in pixels.
    virtual void Layout(int width, int height) = 0;
    // Everything has its place; the dialog is about to be seen.
    virtual void Opened() {}
    // A control's command (its identifier, its notification code), but not IDCANCEL: that, Escape and the close box end
    // every dialog.
    virtual void CommandReceived(int, UINT) {}
    // A notification of a control; none lets the default handling answer.
    virtual std::optional<LRESULT> NotificationReceived(const NMHDR&, LPARAM) { return std::nullopt; }
    // A request for a context menu (window, screen coordinates; both -1 from the keyboard).
    virtual void ContextMenuRequested(HWND, POINT) {}
    // The scheme's colours have changed; those of the controls have been set already.
    virtual void ColorsChanged() {}
    // The resolution has changed; the controls have the dialog's font, and are placed after this.
    virtual void ScaleChanged() {}
    // Draws on the ground behind the controls, which has its colour already.
    virtual void DrawGround(HDC) const {}

    void End(bool accepted);

    // Create child controls with the dialog's font and colours. Tab goes through them in the order of their creation; a
    // screen reader calls a control without a text by the label before it.
    HWND AddControl(const wchar_t* className, std::wstring_view text, DWORD style, int identifier,
                    DWORD extendedStyle = 0);
    HWND AddLabel(std::wstring_view text);
    HWND AddButton(ButtonKind kind, std::wstring_view text, int identifier, bool startsGroup = false);
    HWND AddCheckBox(std::wstring_view text, int identifier, CheckState state);
    HWND AddRadioButton(std::wstring_view text, int identifier, CheckState state, bool startsGroup);
    HWND AddList(DWORD style, int identifier);  // a report list; `style` has LVS_ bits
    HWND AddDropDown(int identifier, std::span<const std::wstring> entries, std::size_t selected);

    HWND Control(int identifier) const { return GetDlgItem(handle_, identifier); }

    // Places buttons, the last one outermost, in the lower right corner. The height that is left above them, in pixels.
    int PlaceEndButtons(int width, int height, std::initializer_list<int> identifiers);

    // Shows a menu at a place of the screen; the choice comes as a command.
    void ShowMenu(HMENU menu, POINT place);

    Scale CurrentScale() const { return look_.Resolution; }
    int Pixels(int size) const { return look_.Resolution.Pixels(size); }  // a size at 96 dots per inch
    HFONT Font() const { return font_.get(); }
    // The dialog's font in another size, for controls that are to stand out.
    UniqueFont MakeFont(int lineHeight) const { return CreateInterfaceFont(look_.Resolution, look_.Face, lineHeight); }
    HINSTANCE Instance() const { return arguments_.Instance; }
    const PaletteBrushes& Brushes() const { return *look_.Brushes; }

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    INT_PTR HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR OnNotify(const NMHDR& notification, LPARAM lParam);
    INT_PTR OnTextColors(HDC device, HWND control, bool isField) const;
    void OnErase(HDC device) const;
    void Initialize();
    bool IsResizable() const { return arguments_.SmallestClient.cx > 0 || !arguments_.PlaceSection.empty(); }
    void PlaceOverOwner();
    void PlaceWhereClosed();
    void SavePlace() const;
    SIZE OuterSize(SIZE client) const;
    void ChangeScale(Scale scale, const RECT& place);
    void LayoutNow();
    void UseColors();
    void ColorControls();

    HWND handle_ = nullptr;
    DialogArguments arguments_;
    ControlLook look_;
    MenuPainter menus_{look_};
    UniqueFont font_;
    VisualStyles styles_;
    std::vector<std::unique_ptr<HeaderPainter>> headers_;  // of the lists
};

}  // namespace corvina::ui
