#include "app/event_list_sort.h"

#include <algorithm>
#include <unordered_map>

namespace corvina {
namespace {

// A row's place in the order of one column, with its index. Rows with equal keys keep their order, whatever the
// direction.
struct SortEntry {
    std::uint64_t Key = 0;
    std::uint32_t Row = 0;
};

// Whether a column sorts by a number of the row; gives the number. Masks and codes sort by value although texts are
// shown.
bool NumberKey(const EventRow& row, Column column, std::uint64_t& key) {
    switch (column) {
        case Column::Date:
            key = row.LocalTime;
            return true;
        case Column::EventId:
            key = row.EventId;
            return true;
        case Column::Keywords:
            key = row.Keywords;
            return true;
        case Column::ProcessCode:
            key = row.Opcode;
            return true;
        case Column::ProcessId:
            key = row.ProcessId;
            return true;
        case Column::ThreadId:
            key = row.ThreadId;
            return true;
        case Column::EventRecordId:
            key = row.RecordId;
            return true;
        default:
            return false;
    }
}

// The rank of every text that occurs in the column. Comparing texts in the user's locale is slow, and most columns hold
// few different texts, so each text is ranked once and the rows are sorted by rank.
std::unordered_map<TextReference, std::uint64_t> RankTexts(const RowStore& rows, Column column,
                                                           const LocaleServices& locale) {
    std::unordered_map<TextReference, std::uint64_t> ranks;
    for (std::size_t index = 0; index < rows.Size(); ++index) {
        ranks.emplace(rows.ColumnText(rows.Row(index), column), 0);
    }
    std::vector<TextReference> texts;
    texts.reserve(ranks.size());
    for (const auto& [text, rank] : ranks) {
        texts.push_back(text);
    }
    // The system's comparison need not be a strict order for every odd text, which a quicksort may answer by leaving
    // its range; a merge sort only gives some order then.
    std::stable_sort(texts.begin(), texts.end(), [&](TextReference left, TextReference right) {
        return locale.CompareIgnoringCase(rows.Text(left), rows.Text(right)) < 0;
    });
    std::uint64_t rank = 0;
    for (std::size_t index = 0; index < texts.size(); ++index) {
        if (index > 0 && locale.CompareIgnoringCase(rows.Text(texts[index - 1]), rows.Text(texts[index])) != 0) {
            ++rank;
        }
        ranks[texts[index]] = rank;
    }
    return ranks;
}

std::vector<SortEntry> SortEntries(const RowStore& rows, Column column, const LocaleServices& locale) {
    std::vector<SortEntry> entries(rows.Size());
    std::uint64_t ignored = 0;
    const bool sortsByNumber = NumberKey(EventRow{}, column, ignored);
    std::unordered_map<TextReference, std::uint64_t> ranks;
    if (!sortsByNumber) {
        ranks = RankTexts(rows, column, locale);
    }
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const EventRow& row = rows.Row(index);
        entries[index].Row = static_cast<std::uint32_t>(index);
        if (sortsByNumber) {
            NumberKey(row, column, entries[index].Key);
        } else {
            entries[index].Key = ranks[rows.ColumnText(row, column)];
        }
    }
    return entries;
}

}  // namespace

std::vector<std::uint32_t> SortedOrder(const RowStore& rows, Column column, SortDirection direction,
                                       const LocaleServices& locale) {
    std::vector<SortEntry> entries = SortEntries(rows, column, locale);
    const bool descending = direction == SortDirection::Descending;
    std::sort(entries.begin(), entries.end(), [descending](const SortEntry& left, const SortEntry& right) {
        if (left.Key != right.Key) {
            return descending ? left.Key > right.Key : left.Key < right.Key;
        }
        return left.Row < right.Row;
    });
    std::vector<std::uint32_t> order(entries.size());
    std::transform(entries.begin(), entries.end(), order.begin(), [](const SortEntry& entry) { return entry.Row; });
    return order;
}

void EventListSort::HeaderClicked(std::size_t position, Column column, RowStore& rows, const LocaleServices& locale) {
    direction_ = direction_ == SortDirection::Ascending ? SortDirection::Descending : SortDirection::Ascending;
    position_ = position;
    column_ = column;
    rows.Reorder(SortedOrder(rows, column, direction_, locale));
}

}  // namespace corvina
