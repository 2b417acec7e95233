// The dialog of the program's options.
#pragma once

#include <optional>

#include "app/options.h"
#include "i18n/language.h"
#include "ui/win32/dialog.h"

namespace corvina {

class OptionsDialog : private ui::Dialog {
  public:
    OptionsDialog(const i18n::Language& language, const OptionOffer& offer) : language_(language), offer_(offer) {}

    // Shows the dialog over `owner`; none when cancelled.
    std::optional<OptionValues> Edit(HWND owner, HINSTANCE instance, Theme& scheme);

  private:
    void CreateControls() override;
    void Layout(int width, int height) override;
    void CommandReceived(int identifier, UINT code) override;

    void CreateGeneralPage();
    void CreateViewPage();
    void ShowPage(int tab);
    void ShowThemeInListView();
    OptionValues Values() const;

    const i18n::Language& language_;
    const OptionOffer& offer_;
    OptionValues chosen_;
    HWND languageLabel_ = nullptr;
    HWND displayModeLabel_ = nullptr;
};

}  // namespace corvina
