// The port for message boxes and file choosers, owned by the main window.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvina {

class Prompts {
  public:
    virtual ~Prompts() = default;

    // A box with an error icon and an OK button, modal to the main window.
    virtual void ShowError(std::wstring_view text, std::wstring_view title) = 0;

    // A system-modal box with an information icon and an OK button.
    virtual void ShowInformation(std::wstring_view text, std::wstring_view title) = 0;

    // A Yes/No question; true for Yes.
    virtual bool AskYesNo(std::wstring_view text, std::wstring_view title) = 0;

    // Lets the user choose an existing file. `filter` holds "description|pattern|...||". Empty when cancelled.
    virtual std::optional<std::wstring> ChooseFileToOpen(std::wstring_view filter) = 0;
};

}  // namespace corvina
