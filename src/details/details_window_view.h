// The window that shows one event, without what it decides: what it is told to show, and what it tells of its user.
#pragma once

#include <string_view>

#include "platform/settings_store.h"

namespace corvina {

enum class DetailsTab { None, General, Details };

struct DetailsWindowTexts {
    std::wstring_view General;
    std::wstring_view Details;
    std::wstring_view Previous;
    std::wstring_view Next;
};

// What happens in the window.
class DetailsWindowEvents {
  public:
    virtual ~DetailsWindowEvents() = default;

    virtual void Opened() = 0;  // the controls exist, nothing is shown yet
    virtual void TabChosen(DetailsTab tab) = 0;
    virtual void PreviousRequested() = 0;
    virtual void NextRequested() = 0;
    virtual void CopyRequested() = 0;
};

class DetailsWindowView {
  public:
    virtual ~DetailsWindowView() = default;

    // Opens the window where the settings say, keeps the user from the main window, and returns when it has ended. No
    // event is told when it cannot be created. Closing writes the window's place, Escape does not.
    virtual void Run(DetailsWindowEvents& events, SettingsStore& settings) = 0;

    virtual void SetTexts(const DetailsWindowTexts& texts) = 0;
    virtual void SetTitle(std::wstring_view title) = 0;
    virtual void ShowProperties(std::wstring_view left, std::wstring_view right) = 0;
    virtual void ShowDescription(std::wstring_view description) = 0;
    virtual void ShowXml(std::wstring_view xml) = 0;
    virtual void ShowTab(DetailsTab tab) = 0;
    // Which of the two arrows still lead to an event.
    virtual void ShowArrows(bool previous, bool next) = 0;
    virtual void FocusDescription() = 0;
};

}  // namespace corvina
