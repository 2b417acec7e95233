// What the main window does at the request of the program's logic, apart from loading, tree and details.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/options.h"
#include "platform/window_place.h"

namespace corvina {

enum class WindowState { Normal, Minimized, Maximized };

struct WindowPlacement {
    WindowState State = WindowState::Normal;
    WindowPlace Rectangle;  // meaningful in the normal state
};

struct ListColumn {
    std::wstring Header;
    int Width = 0;  // pixels
};

struct AboutTexts {
    std::wstring Title;
    std::wstring Name;
    std::wstring Version;
    std::wstring License;  // several lines
    std::wstring Close;
};

// The stations of the Tab key, in their order.
enum class FocusStation { Tree, List, LeftProperties, RightProperties, Description, Xml };

class MainWindowView {
  public:
    virtual ~MainWindowView() = default;

    // Initialises the component object model for the window's thread (apartment threaded).
    virtual void InitializeCom() = 0;
    // Creates the topmost tooltip window with one tooltip over the client area.
    virtual void CreateToolTip() = 0;
    // The child controls exist after this; texts come with SetTexts. SetSplitters and SetTitle may come before it.
    virtual void CreateControls() = 0;
    // Puts the texts of the current language into menus and labels.
    virtual void SetTexts() = 0;
    virtual void SetTitle(std::wstring_view text) = 0;
    // The status field for the program's version.
    virtual void SetVersionText(std::wstring_view text) = 0;

    // The event list: replaces all columns; reads a shown column's width (none beyond the last); switches the
    // grid-lines style without touching others.
    virtual void SetListColumns(std::span<const ListColumn> columns) = 0;
    virtual std::optional<int> ListColumnWidth(std::size_t position) const = 0;
    virtual void SetGridLines(bool on) = 0;
    virtual bool IsRowSelected(std::size_t row) const = 0;
    virtual std::vector<std::size_t> SelectedRows() const = 0;  // ascending

    virtual WindowPlacement Placement() const = 0;
    virtual void MoveTo(const WindowPlace& rectangle) = 0;  // and shows the window
    virtual void Maximize() = 0;
    virtual int VerticalSplitter() const = 0;    // pixels between the left edge and the list
    virtual int HorizontalSplitter() const = 0;  // pixels between the top edge and the details pane
    virtual void SetSplitters(int vertical, int horizontal) = 0;

    virtual void Focus(FocusStation station) = 0;
    virtual std::optional<FocusStation> FocusedStation() const = 0;

    virtual void ApplyTheme() = 0;
    virtual void Repaint() = 0;
    // The first selected row, none without a selection.
    virtual std::optional<std::size_t> SelectedRow() const = 0;

    // Asks which columns to show; the flags in column order, none when cancelled.
    virtual std::optional<std::vector<bool>> ChooseColumns(std::span<const ListColumn> columns,
                                                           const std::vector<bool>& visible) = 0;

    // Shows the options; none when cancelled.
    virtual std::optional<OptionValues> EditOptions(const OptionOffer& offer) = 0;

    // Shows the program's name, version and licence.
    virtual void ShowAbout(const AboutTexts& texts) = 0;

    // Asks the window to close, as the user would.
    virtual void RequestClose() = 0;
};

}  // namespace corvina
