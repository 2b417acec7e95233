// The main window: the tree of logs, the list of events, the details pane, and the messages between them and the
// program behind them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/application.h"
#include "app/main_window_view.h"
#include "app/win32/client_tool_tip.h"
#include "app/win32/event_list_control.h"
#include "app/win32/main_layout.h"
#include "app/win32/menu_bar.h"
#include "details/win32/details_pane_control.h"
#include "details/win32/details_window_control.h"
#include "eventlog/win32/log_tree_control.h"
#include "ui/win32/control_look.h"
#include "ui/win32/fonts.h"
#include "ui/win32/menu_painter.h"
#include "ui/win32/splitter.h"
#include "ui/win32/visual_style.h"
#include "ui/win32/window.h"

namespace corvina {

struct MainWindowArguments {
    HINSTANCE Instance = nullptr;
    Ports& System;
    std::function<void(HWND)> Created;  // called as soon as the window exists, before anything is shown over it
    std::function<void()> EndProcess;   // called when the window has been closed and everything is saved
};

class MainWindow : public ui::Window, public MainWindowView, public LoadView, private EventListOwner {
  public:
    explicit MainWindow(MainWindowArguments arguments);
    ~MainWindow() override;

    // Registers the window's class under a name out of the resources.
    static bool RegisterOwnClass(HINSTANCE instance, const std::wstring& className);

    // Creates the window with everything in it; false when the system refuses.
    bool Create(const std::wstring& className, const std::wstring& title);

    // A key that was released anywhere in the program.
    void KeyReleased(const MSG& message);

    // MainWindowView
    void InitializeCom() override;
    void CreateToolTip() override;
    void CreateControls() override;
    void SetTexts() override;
    void SetTitle(std::wstring_view text) override;
    void SetVersionText(std::wstring_view text) override;
    void SetListColumns(std::span<const ListColumn> columns) override;
    std::optional<int> ListColumnWidth(std::size_t position) const override;
    void SetGridLines(bool on) override;
    bool IsRowSelected(std::size_t row) const override;
    std::vector<std::size_t> SelectedRows() const override;
    WindowPlacement Placement() const override;
    void MoveTo(const WindowPlace& rectangle) override;
    void Maximize() override;
    int VerticalSplitter() const override { return splitters_.Vertical; }
    int HorizontalSplitter() const override { return splitters_.Horizontal; }
    void SetSplitters(int vertical, int horizontal) override;
    void Focus(FocusStation station) override;
    std::optional<FocusStation> FocusedStation() const override;
    void ApplyTheme() override;
    void Repaint() override;
    std::optional<std::size_t> SelectedRow() const override;
    std::optional<std::vector<bool>> ChooseColumns(std::span<const ListColumn> columns,
                                                   const std::vector<bool>& visible) override;
    std::optional<OptionValues> EditOptions(const OptionOffer& offer) override;
    void ShowAbout(const AboutTexts& texts) override;
    void RequestClose() override;

    // LoadView
    void LockUpdates() override;
    void UnlockUpdates() override;
    void SetListCaption(std::wstring_view text) override;
    void SetStatusText(std::wstring_view text) override;
    void ClearList() override;
    void SetRowCount(std::size_t count) override;
    void SelectRow(std::size_t row) override;

  protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    // EventListOwner
    std::wstring_view CellText(std::size_t row, std::size_t position) const override;
    std::uint32_t RowImage(std::size_t row) const override;
    bool ColorsRowsByLevel() const override;
    void SelectionChanged() override;
    void HeaderClicked(std::size_t position) override;
    void RowActivated() override;

    void OnCreate();
    void OnClose();
    void OnSettingChange(const wchar_t* changed);
    LRESULT OnNotify(const NMHDR& notification, LPARAM lParam);
    LRESULT OnTextColors(HDC device, HWND control) const;
    void OnEraseBackground(HDC device) const;
    void OnScaleChanged(ui::Scale scale, const RECT& place);
    void OnContextMenu(HWND control, POINT place);
    void ShowTreeMenu(POINT place, bool fromKeyboard);
    ui::UniqueMenu MakePopup(std::uint32_t menu);
    void ShowPopup(std::uint32_t menu, POINT place);
    DetailsWindowSurroundings SurroundingsOfDetails();

    HWND CreateLabel(DWORD style);
    bool CreateDetails();
    void UseScriptOfLanguage();
    std::array<HWND, 3> Labels() const { return {caption_, status_, version_}; }
    void UseScale(ui::Scale scale);
    void UseColors();
    void ColorMenuBar();
    void Layout();
    SIZE ClientSize() const;
    void DragVertical(int edge);
    void DragHorizontal(int edge);
    HWND StationWindow(FocusStation station) const;
    std::optional<FocusStation> StationOf(HWND window) const;
    std::wstring ToolTipTextAt(POINT clientPlace) const;

    MainWindowArguments arguments_;
    std::unique_ptr<Application> application_;

    LogTreeControl tree_;
    EventListControl list_;
    DetailsPaneControl details_;
    DetailsWindowControl eventWindow_;
    ui::Splitter verticalBar_;
    ui::Splitter horizontalBar_;
    ClientToolTip toolTip_;
    MenuBar menuBar_;
    HWND caption_ = nullptr;
    HWND status_ = nullptr;
    HWND version_ = nullptr;

    ui::VisualStyles styles_;
    ui::Scale scale_;
    ui::UniqueFont font_;
    ui::ControlLook look_;
    ui::MenuPainter menus_{look_};
    SplitterPositions splitters_;
    FocusStation lastStation_ = FocusStation::Tree;
    bool hasControls_ = false;
    bool comIsReady_ = false;
    int locks_ = 0;
};

}  // namespace corvina
