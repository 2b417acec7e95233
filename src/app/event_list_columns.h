// The column model of the event list: which columns there are, their headers, widths and visibility, and how they are
// kept in the settings.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/main_window_view.h"
#include "eventlog/event_columns.h"
#include "i18n/language.h"
#include "platform/settings_store.h"

namespace corvina {

struct ColumnInfo {
    std::wstring HeaderText;
    std::uint32_t Kind = 1;
    bool Visible = false;
    int Width = 0;                        // pixels, as the settings say
    std::optional<std::size_t> Position;  // among the shown columns, from left to right
};

class EventListColumns {
  public:
    // Builds all columns from section "Corvina": "Columns" has one character a column, "1" for a visible one, and
    // "ColumnsWidth" one number a column, each followed by a comma. Any text is taken: what is missing is hidden, or 0
    // wide.
    void LoadColumnSettings(const SettingsStore& settings, const i18n::Language& language);

    // Takes the widths of the shown columns over from the list control; hidden columns keep theirs.
    void TakeWidths(const MainWindowView& window);

    // Takes the widths over and writes "ColumnsWidth".
    void SaveColumnWidths(SettingsStore& settings, const MainWindowView& window);

    // Writes "Columns".
    void SaveVisibility(SettingsStore& settings) const;

    // Takes the headers' texts from another language.
    void SetHeaders(const i18n::Language& language);

    void SetVisible(const std::vector<bool>& visible);

    const std::array<ColumnInfo, ColumnCount>& All() const { return columns_; }
    VisibleColumns Visible() const;

    // The shown columns as the list control gets them. A width in the settings may be any number, while a control takes
    // negative ones as commands and nobody can reach the end of a huge one: so only the control's widths are bounded.
    std::vector<ListColumn> Shown() const;

    // All columns, for a choice among them.
    std::vector<ListColumn> Choices() const;

    // The column shown at a position, none beyond the last.
    std::optional<Column> ColumnAt(std::size_t position) const;

  private:
    void Renumber();

    std::array<ColumnInfo, ColumnCount> columns_;
};

}  // namespace corvina
