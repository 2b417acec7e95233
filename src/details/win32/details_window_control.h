// The window of one event on the screen.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "details/details_window_view.h"
#include "details/win32/details_buttons.h"
#include "platform/win32/system_library.h"
#include "theme/theme.h"
#include "ui/win32/fonts.h"
#include "ui/win32/menu_painter.h"
#include "ui/win32/palette_brushes.h"
#include "ui/win32/scaling.h"
#include "ui/win32/visual_style.h"

namespace corvina {

// What the window takes from the main window each time it opens.
struct DetailsWindowSurroundings {
    HWND Owner = nullptr;
    HINSTANCE Instance = nullptr;
    Theme* Scheme = nullptr;
    // Shows the window's menu at a place of the screen; the choice comes to the given window as a command.
    std::function<void(HWND, POINT)> ShowMenu;
    int CopyCommand = 0;               // the menu's command that copies
    ui::MenuPainter* Menus = nullptr;  // draws that menu
};

class DetailsWindowControl : public DetailsWindowView {
  public:
    using SurroundingsSource = std::function<DetailsWindowSurroundings()>;

    explicit DetailsWindowControl(SurroundingsSource surroundings) : source_(std::move(surroundings)) {}

    void Run(DetailsWindowEvents& events) override;
    void End() override;
    void SetTexts(const DetailsWindowTexts& texts) override;
    void SetTitle(std::wstring_view title) override;
    void ShowProperties(std::wstring_view left, std::wstring_view right) override;
    void ShowDescription(std::wstring_view description) override;
    void ShowXml(std::wstring_view xml) override;
    void ShowTab(DetailsTab tab) override;
    void ShowArrows(bool previous, bool next) override;
    void FocusDescription() override;
    void MoveTo(const DetailsWindowPlace& place) override;
    DetailsWindowPlace Place() const override;

  private:
    enum class Box { Left, Right, Description, Xml };
    static constexpr std::size_t BoxCount = 4;
    static constexpr std::size_t ButtonCount = 4;

    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void OnInitialize();
    void OnCommand(int command);
    void OnContextMenu(POINT place);
    void OnErase(HDC device) const;
    void CreateBoxes();
    void CreateButtons();
    void CreateTips(const DetailsWindowTexts& texts);
    void UseColors();
    void UseScale(ui::Scale scale);
    void Layout();
    bool IsOn(DetailsButton button) const;
    void PressButton(DetailsButton button);

    HWND BoxWindow(Box box) const { return boxes_[static_cast<std::size_t>(box)]; }
    HWND ButtonWindow(DetailsButton button) const { return buttons_[static_cast<std::size_t>(button)]; }

    SurroundingsSource source_;
    DetailsWindowSurroundings around_;
    std::unique_ptr<SystemLibrary> richEdit_;
    DetailsWindowEvents* events_ = nullptr;
    HWND handle_ = nullptr;
    std::array<HWND, BoxCount> boxes_{};
    std::array<HWND, ButtonCount> buttons_{};
    HWND tips_ = nullptr;
    ui::VisualStyles styles_;
    ui::Scale scale_;
    ui::UniqueFont boxFont_;
    ui::UniqueFont buttonFont_;
    std::unique_ptr<ui::PaletteBrushes> brushes_;
    DetailsTab tab_ = DetailsTab::None;
    bool hasPrevious_ = false;
    bool hasNext_ = false;
};

}  // namespace corvina
