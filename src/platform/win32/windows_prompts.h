// Message boxes and the file chooser of the system.
#pragma once

#include <windows.h>

#include "platform/prompts.h"

namespace corvina {

// "description|pattern|...||" as the system's file chooser takes it: every bar a zero, ended by two zeros.
std::wstring ChooserFilter(std::wstring_view filter);

class WindowsPrompts : public Prompts {
  public:
    // The window that owns what is shown; none until the main window exists.
    void SetOwner(HWND owner) { owner_ = owner; }

    void ShowError(std::wstring_view text, std::wstring_view title) override;
    void ShowInformation(std::wstring_view text, std::wstring_view title) override;
    bool AskYesNo(std::wstring_view text, std::wstring_view title) override;

    // The chosen path has at most 259 characters.
    std::optional<std::wstring> ChooseFileToOpen(std::wstring_view filter) override;

  private:
    int ShowBox(std::wstring_view text, std::wstring_view title, UINT style) const;

    HWND owner_ = nullptr;
};

}  // namespace corvina
