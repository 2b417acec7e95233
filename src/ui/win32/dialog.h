// The base of the program's modal dialogs: creation without a template resource, scaling, font, colours and keys.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ui/win32/fonts.h"
#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"

namespace corvina::ui {

struct DialogArguments {
    HWND Owner = nullptr;
    HINSTANCE Instance = nullptr;
    std::wstring Title;
    SIZE ClientSize = {};      // for 96 dots per inch
    SIZE SmallestClient = {};  // likewise; the user may change the size when this is set
    const Palette* Colors = nullptr;
};

class Dialog {
  public:
    Dialog() = default;
    virtual ~Dialog() = default;
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    // Shows the dialog over the middle of its owner and returns when it has ended: true when it ended with End(true).
    bool RunModal(const DialogArguments& arguments);

    HWND Handle() const { return handle_; }

  protected:
    // Creates the controls; the scale and the font are known.
    virtual void CreateControls() = 0;
    // Places them in a client area of that size, in pixels.
    virtual void Layout(int width, int height) = 0;
    // A control's command (its identifier, its notification code). IDCANCEL also comes from Escape and the close box.
    virtual void CommandReceived(int identifier, UINT code) = 0;
    // A notification of a control; none lets the default handling answer.
    virtual std::optional<LRESULT> NotificationReceived(const NMHDR&, LPARAM) { return std::nullopt; }
    // A request for a context menu (window, screen coordinates; both -1 from the keyboard).
    virtual void ContextMenuRequested(HWND, POINT) {}

    void End(bool accepted);

    // Creates a child control with the dialog's font.
    HWND AddControl(const wchar_t* className, std::wstring_view text, DWORD style, int identifier,
                    DWORD extendedStyle = 0);

    Scale CurrentScale() const { return scale_; }
    HFONT Font() const { return font_.get(); }
    HINSTANCE Instance() const { return arguments_.Instance; }
    const PaletteBrushes& Brushes() const { return *brushes_; }

  private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    INT_PTR HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void Initialize();
    void PlaceOverOwner();
    SIZE OuterSize(SIZE client) const;
    void ChangeScale(Scale scale, const RECT& place);
    void LayoutNow();

    HWND handle_ = nullptr;
    DialogArguments arguments_;
    Scale scale_;
    UniqueFont font_;
    std::unique_ptr<PaletteBrushes> brushes_;
};

}  // namespace corvina::ui
