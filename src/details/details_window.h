// The window of one event: its properties and description on one tab, its XML on the other, and steps to the events
// beside it in the list.
#pragma once

#include <string>

#include "details/details_pane.h"
#include "details/details_window_view.h"
#include "details/event_selection.h"
#include "eventlog/row_store.h"
#include "i18n/language.h"
#include "platform/clipboard.h"
#include "platform/settings_store.h"

namespace corvina {

class DetailsWindow : private DetailsWindowEvents {
  public:
    struct Parts {
        DetailsPane& Pane;
        const RowStore& Rows;
        EventSelection& Selection;
        DetailsWindowView& View;
        SettingsStore& Settings;  // keep the window's place
        const i18n::Language& Language;
        Clipboard& Copies;
    };

    explicit DetailsWindow(const Parts& parts) : parts_(parts) {}

    // Shows the selected event and returns when the window has been closed; nothing happens while it is open. The pane
    // follows: each event is fetched once for both.
    void Open();

    // While it is open it fills the pane itself, so nobody else has to when the selection changes.
    bool IsOpen() const { return isOpen_; }

    // What "Copy" takes, with the line breaks that the clipboard's readers expect: the XML on either tab, and all of
    // the first tab only while no tab is selected.
    std::wstring CopiedText() const;

  private:
    void Opened() override;
    void TabChosen(DetailsTab tab) override;
    void PreviousRequested() override;
    void NextRequested() override;
    void CopyRequested() override;

    void Fill();
    std::wstring Title(const EventRow& row) const;
    void ShowArrows();

    Parts parts_;
    bool isOpen_ = false;
    DetailsTab tab_ = DetailsTab::None;
};

}  // namespace corvina
