// The event list's columns and its sorting.
#include <algorithm>
#include <array>
#include <cstddef>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "app/event_list_columns.h"
#include "app/event_list_sort.h"
#include "support/doubles_locale.h"
#include "support/doubles_settings.h"
#include "support/recording_main_window.h"

namespace corvina {
namespace {

using test::MemorySettings;
using test::RecordingMainWindow;

class ColumnsTest : public testing::Test {
  protected:
    void Load(const std::wstring& columns, const std::wstring& widths) {
        settings_.Set(L"Corvina", L"Columns", columns);
        settings_.Set(L"Corvina", L"ColumnsWidth", widths);
        columns_.LoadColumnSettings(settings_, i18n::Language());
    }
    std::string Visible() const {
        std::string text = columns_.Visible().to_string();
        return {text.rbegin(), text.rend()};
    }
    int Width(std::size_t column) const { return columns_.All()[column].Width; }

    MemorySettings settings_;
    EventListColumns columns_;
    test::Journal journal_;
    RecordingMainWindow window_{journal_};
};

TEST_F(ColumnsTest, StartWithSixColumns) {
    columns_.LoadColumnSettings(settings_, i18n::Language());
    EXPECT_EQ(Visible(), "111111000000000000");
    std::vector<std::wstring> headers;
    for (const ColumnInfo& column : columns_.All()) {
        headers.push_back(column.HeaderText);
        EXPECT_EQ(column.Width, 200);
    }
    const std::vector<std::wstring> expected = {L"Type",           L"Date",
                                                L"Source",         L"Task Category",
                                                L"Event ID",       L"User",
                                                L"Computer",       L"Keywords",
                                                L"Process code",   L"Protocol",
                                                L"Process ID",     L"Thread ID",
                                                L"Correlation ID", L"Relative Correlation ID",
                                                L"EventRecordID",  L"Message",
                                                L"Vendor GUID",    L"Security User Id"};
    EXPECT_EQ(headers, expected);
    const std::array<std::uint32_t, ColumnCount> kinds = {0, 2, 0, 1, 1, 0, 0, 3, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0};
    for (std::size_t column = 0; column < ColumnCount; ++column) {
        EXPECT_EQ(columns_.All()[column].Kind, kinds[column]) << column;
    }
}

TEST_F(ColumnsTest, TolerateAnySettings) {
    Load(L"101", L"150,,300,");
    EXPECT_EQ(Visible(), "101000000000000000");
    EXPECT_EQ(Width(0), 150);
    EXPECT_EQ(Width(1), 0);
    EXPECT_EQ(Width(2), 300);
    EXPECT_EQ(Width(3), 0);

    Load(L"1 1x" + std::wstring(300, L'1'), L"12px,abc,-5,99999999999,7");
    EXPECT_EQ(Visible(), "101011111111111111");
    EXPECT_EQ(Width(0), 12);
    EXPECT_EQ(Width(1), 0);
    EXPECT_EQ(Width(2), -5);
    EXPECT_EQ(Width(4), 7);
    EXPECT_EQ(columns_.Shown()[1].Width, 0);
    EXPECT_LE(columns_.Choices()[3].Width, 10'000);

    Load(L"", L"");  // without a value: the defaults
    EXPECT_EQ(Visible(), "111111000000000000");
    EXPECT_EQ(Width(17), 200);
}

TEST_F(ColumnsTest, SaveTheWidthsOfTheControlAndKeepThoseOfHiddenColumns) {
    Load(L"011", L"1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18");
    window_.SetListColumns(columns_.Shown());
    window_.Columns[0].Width = 222;
    columns_.SaveColumnWidths(settings_, window_);
    columns_.SaveVisibility(settings_);
    EXPECT_EQ(settings_.Value(L"Corvina", L"ColumnsWidth"), L"1,222,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,");
    EXPECT_EQ(settings_.Value(L"Corvina", L"Columns"), L"011000000000000000");
}

TEST_F(ColumnsTest, PositionsFollowTheChoice) {
    Load(L"", L"");
    std::vector<bool> choice(ColumnCount, false);
    choice[14] = choice[2] = true;
    columns_.SetVisible(choice);
    EXPECT_EQ(columns_.ColumnAt(0), Column::Source);
    EXPECT_EQ(columns_.ColumnAt(1), Column::EventRecordId);
    EXPECT_FALSE(columns_.ColumnAt(2));
    columns_.SetVisible({});  // a short choice hides the rest
    EXPECT_TRUE(columns_.Shown().empty());
    EXPECT_FALSE(columns_.ColumnAt(0));
}

class SortTest : public testing::Test {
  protected:
    void SetUp() override { rows_.Reset(VisibleColumns().set()); }

    // Rows whose texts, numbers and order have nothing to do with one another, with many equal keys among them.
    void AddRandomRows(std::size_t count) {
        std::mt19937 random(7);
        const auto text = [&] {
            static const std::array<const wchar_t*, 7> Texts = {L"",        L"alpha", L"Beta", L"ALPHA",
                                                                L"beta 10", L"Zeta",  L"a"};
            return rows_.AddText(Texts[random() % Texts.size()]);
        };
        for (std::size_t index = 0; index < count; ++index) {
            EventRow row;
            for (TextReference EventRow::*field :
                 {&EventRow::DateText, &EventRow::TaskText, &EventRow::EventIdText, &EventRow::UserText,
                  &EventRow::ComputerText, &EventRow::ProviderName, &EventRow::ChannelName, &EventRow::ProviderGuidText,
                  &EventRow::ActivityIdText, &EventRow::RelatedActivityIdText, &EventRow::UserSidText,
                  &EventRow::LevelText, &EventRow::TaskColumnText, &EventRow::OpcodeText, &EventRow::ProcessIdText,
                  &EventRow::ThreadIdText, &EventRow::KeywordsText, &EventRow::RecordIdText, &EventRow::MessageText}) {
                row.*field = text();
            }
            row.LocalTime = random() % 50;
            row.Keywords = (std::uint64_t{random() % 3} << 62) + random() % 3;
            row.RecordId = (std::uint64_t{random() % 9} << 40) + random() % 9;
            row.EventId = static_cast<std::uint32_t>(random() % 40) * 100'000'000;
            row.ProcessId = static_cast<std::uint32_t>(random() % 30);
            row.ThreadId = static_cast<std::uint32_t>(random() % 30);
            row.Opcode = static_cast<std::uint8_t>(random() % 250);
            rows_.Append(row);
        }
    }

    // -1, 0 or 1 by the rule for the column, told a second time in the plainest way.
    int Compare(const EventRow& left, const EventRow& right, Column column) const {
        const auto numbers = [](auto first, auto second) { return first < second ? -1 : (first > second ? 1 : 0); };
        switch (column) {
            case Column::Date:
                return numbers(left.LocalTime, right.LocalTime);
            case Column::EventId:
                return numbers(left.EventId, right.EventId);
            case Column::Keywords:
                return numbers(left.Keywords, right.Keywords);
            case Column::ProcessCode:
                return numbers(left.Opcode, right.Opcode);
            case Column::ProcessId:
                return numbers(left.ProcessId, right.ProcessId);
            case Column::ThreadId:
                return numbers(left.ThreadId, right.ThreadId);
            case Column::EventRecordId:
                return numbers(left.RecordId, right.RecordId);
            default:
                return locale_.CompareIgnoringCase(rows_.Text(rows_.ColumnText(left, column)),
                                                   rows_.Text(rows_.ColumnText(right, column)));
        }
    }

    RowStore rows_;
    test::PlainLocale locale_;
};

TEST_F(SortTest, EveryColumnBothWaysIsAPermutationInOrder) {
    AddRandomRows(400);
    for (std::size_t index = 0; index < ColumnCount; ++index) {
        const Column column = static_cast<Column>(index);
        for (const SortDirection direction : {SortDirection::Ascending, SortDirection::Descending}) {
            const std::vector<std::uint32_t> order = SortedOrder(rows_, column, direction, locale_);
            ASSERT_EQ(order.size(), rows_.Size());
            std::vector<std::uint32_t> sorted = order;
            std::sort(sorted.begin(), sorted.end());
            int steps = 0;
            for (std::uint32_t place = 0; place < order.size(); ++place) {
                ASSERT_EQ(sorted[place], place);
                if (place > 0) {
                    const int comparison = Compare(rows_.Row(order[place - 1]), rows_.Row(order[place]), column);
                    ASSERT_TRUE(direction == SortDirection::Ascending ? comparison <= 0 : comparison >= 0)
                        << "column " << index << ", place " << place;
                    steps += comparison != 0 ? 1 : 0;
                }
            }
            EXPECT_GT(steps, 3) << "column " << index;
        }
    }
}

TEST_F(SortTest, OneDirectionIsSharedByAllColumns) {
    AddRandomRows(50);
    EventListSort sort;
    sort.HeaderClicked(1, Column::Date, rows_, locale_);
    EXPECT_EQ(sort.Direction(), SortDirection::Descending);
    EXPECT_GE(rows_.Row(0).LocalTime, rows_.Row(49).LocalTime);
    sort.HeaderClicked(4, Column::EventId, rows_, locale_);
    EXPECT_EQ(sort.Direction(), SortDirection::Ascending);
    EXPECT_LE(rows_.Row(0).EventId, rows_.Row(49).EventId);
    EXPECT_EQ(sort.Position(), 4U);
    EXPECT_EQ(sort.SortedColumn(), Column::EventId);
}

TEST_F(SortTest, EachTextIsRankedOnceHoweverManyRowsHaveIt) {
    AddRandomRows(20'000);
    locale_.Comparisons = 0;
    SortedOrder(rows_, Column::Source, SortDirection::Ascending, locale_);
    EXPECT_LT(locale_.Comparisons, 100U);
}

TEST_F(SortTest, AComparisonWithoutAnyOrderStillGivesAPermutation) {
    class DisorderedLocale final : public LocaleServices {
      public:
        std::uint64_t ToLocalTime(std::uint64_t utc) const override { return utc; }
        std::uint64_t ToUniversalTime(std::uint64_t local) const override { return local; }
        int CompareIgnoringCase(std::wstring_view, std::wstring_view) const override {
            return -1;  // every text stands before every other one
        }
    };
    for (int index = 0; index < 500; ++index) {
        EventRow row;
        row.ProviderName = rows_.AddText(std::to_wstring(index));
        rows_.Append(row);
    }
    std::vector<std::uint32_t> order = SortedOrder(rows_, Column::Source, SortDirection::Ascending, DisorderedLocale());
    std::sort(order.begin(), order.end());
    for (std::uint32_t place = 0; place < order.size(); ++place) {
        ASSERT_EQ(order[place], place);
    }
    EXPECT_EQ(order.size(), 500U);
}

}  // namespace
}  // namespace corvina
