#include "app/event_list_columns.h"

#include <algorithm>

#include "base/format_text.h"
#include "base/number_text.h"
#include "platform/setting_text.h"

namespace corvina {
namespace {

constexpr std::wstring_view Section = L"Corvina";
constexpr std::wstring_view DefaultVisibility = L"111111000000000000";
constexpr std::wstring_view DefaultWidths = L"200,200,200,200,200,200,200,200,200,200,200,200,200,200,200,200,200,200,";

constexpr int FirstHeaderSlot = 127;
constexpr int WidestControlColumn = 10'000;

int HeaderSlot(Column column) {
    switch (column) {
        case Column::VendorGuid:
            return 82;
        case Column::SecurityUserId:
            return 97;
        default:
            return FirstHeaderSlot + static_cast<int>(column);
    }
}

std::uint32_t KindOf(Column column) {
    switch (column) {
        case Column::Type:
        case Column::Source:
        case Column::User:
        case Column::Computer:
        case Column::VendorGuid:
        case Column::SecurityUserId:
            return 0;
        case Column::Date:
            return 2;
        case Column::Keywords:
            return 3;
        default:
            return 1;
    }
}

bool TakeVisibility(std::wstring_view& visibility) {
    if (visibility.empty()) {
        return false;
    }
    const bool isVisible = visibility.front() == L'1';
    visibility.remove_prefix(1);
    return isVisible;
}

int TakeWidth(std::wstring_view& widths) {
    const std::size_t comma = widths.find(L',');
    const std::wstring_view width = widths.substr(0, comma);
    widths.remove_prefix(comma == std::wstring_view::npos ? widths.size() : comma + 1);
    return IntegerFromText(width);
}

ListColumn ControlColumn(const ColumnInfo& info) {
    return {info.HeaderText, std::clamp(info.Width, 0, WidestControlColumn)};
}

}  // namespace

void EventListColumns::LoadColumnSettings(const SettingsStore& settings, const i18n::Language& language) {
    const std::wstring visibilityText = ReadSettingOrDefault(settings, Section, L"Columns", DefaultVisibility);
    const std::wstring widthsText = ReadSettingOrDefault(settings, Section, L"ColumnsWidth", DefaultWidths);
    SetHeaders(language);
    std::wstring_view visibility = visibilityText;
    std::wstring_view widths = widthsText;
    for (std::size_t index = 0; index < ColumnCount; ++index) {
        const Column column = static_cast<Column>(index);
        ColumnInfo& info = columns_[index];
        info.Visible = TakeVisibility(visibility);
        info.Width = TakeWidth(widths);
        info.Kind = KindOf(column);
    }
    Renumber();
}

void EventListColumns::SetHeaders(const i18n::Language& language) {
    for (std::size_t index = 0; index < ColumnCount; ++index) {
        columns_[index].HeaderText = language.Text(HeaderSlot(static_cast<Column>(index)));
    }
}

void EventListColumns::TakeWidths(const MainWindowView& window) {
    for (ColumnInfo& info : columns_) {
        if (!info.Position) {
            continue;
        }
        const std::optional<int> width = window.ListColumnWidth(*info.Position);
        if (!width) {
            return;
        }
        info.Width = *width;
    }
}

void EventListColumns::SaveColumnWidths(SettingsStore& settings, const MainWindowView& window) {
    TakeWidths(window);
    std::wstring widths;
    for (const ColumnInfo& info : columns_) {
        widths += FormatText(L"%i,", {info.Width});
    }
    settings.WriteSetting(Section, L"ColumnsWidth", widths);
}

void EventListColumns::SaveVisibility(SettingsStore& settings) const {
    std::wstring visibility;
    for (const ColumnInfo& info : columns_) {
        visibility += info.Visible ? L'1' : L'0';
    }
    settings.WriteSetting(Section, L"Columns", visibility);
}

void EventListColumns::SetVisible(const std::vector<bool>& visible) {
    for (std::size_t index = 0; index < ColumnCount; ++index) {
        columns_[index].Visible = index < visible.size() && visible[index];
    }
    Renumber();
}

VisibleColumns EventListColumns::Visible() const {
    VisibleColumns visible;
    for (std::size_t index = 0; index < ColumnCount; ++index) {
        visible[index] = columns_[index].Visible;
    }
    return visible;
}

std::vector<ListColumn> EventListColumns::Shown() const {
    std::vector<ListColumn> shown;
    for (const ColumnInfo& info : columns_) {
        if (info.Visible) {
            shown.push_back(ControlColumn(info));
        }
    }
    return shown;
}

std::vector<ListColumn> EventListColumns::Choices() const {
    std::vector<ListColumn> choices;
    for (const ColumnInfo& info : columns_) {
        choices.push_back(ControlColumn(info));
    }
    return choices;
}

std::optional<Column> EventListColumns::ColumnAt(std::size_t position) const {
    for (std::size_t index = 0; index < ColumnCount; ++index) {
        if (columns_[index].Position == position) {
            return static_cast<Column>(index);
        }
    }
    return std::nullopt;
}

void EventListColumns::Renumber() {
    std::size_t position = 0;
    for (ColumnInfo& info : columns_) {
        info.Position.reset();
        if (info.Visible) {
            info.Position = position++;
        }
    }
}

}  // namespace corvina
