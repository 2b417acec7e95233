// The window of one event on the screen.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "details/details_window_view.h"
#include "platform/win32/system_library.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/dialog.h"
#include "ui/win32/gdi_objects.h"

namespace corvina {

// What the window takes from the main window each time it opens.
struct DetailsWindowSurroundings {
    HWND Owner = nullptr;
    HINSTANCE Instance = nullptr;
    Theme* Scheme = nullptr;
    std::function<ui::UniqueMenu()> MakeMenu;  // the window's context menu in the current language
    int CopyCommand = 0;                       // the menu's command that copies
};

class DetailsWindowControl : public DetailsWindowView, private ui::Dialog {
  public:
    using SurroundingsSource = std::function<DetailsWindowSurroundings()>;

    explicit DetailsWindowControl(SurroundingsSource surroundings) : source_(std::move(surroundings)) {}

    void Run(DetailsWindowEvents& events, SettingsStore& settings) override;
    void SetTexts(const DetailsWindowTexts& texts) override;
    void SetTitle(std::wstring_view title) override;
    void ShowProperties(std::wstring_view left, std::wstring_view right) override;
    void ShowDescription(std::wstring_view description) override;
    void ShowXml(std::wstring_view xml) override;
    void ShowTab(DetailsTab tab) override;
    void ShowArrows(bool previous, bool next) override;
    void FocusDescription() override;

  private:
    void CreateControls() override;
    void Layout(int width, int height) override;
    void Opened() override { events_->Opened(); }
    void CommandReceived(int identifier, UINT code) override;
    void ContextMenuRequested(HWND control, POINT place) override;
    void ColorsChanged() override;
    void ScaleChanged() override;
    void DrawGround(HDC device) const override;

    void ShowArrow(int identifier, bool leadsOn);
    // The tip of an arrow, and that of its place in the window, which the mouse is in while the arrow is disabled.
    TTTOOLINFOW TipOf(int arrow) const;
    TTTOOLINFOW TipBehind(int arrow) const;

    SurroundingsSource source_;
    DetailsWindowSurroundings around_;
    std::unique_ptr<SystemLibrary> richEdit_;
    DetailsWindowEvents* events_ = nullptr;
    HWND tips_ = nullptr;
    ui::UniqueFont boxFont_;
    ui::UniqueFont buttonFont_;
};

}  // namespace corvina
