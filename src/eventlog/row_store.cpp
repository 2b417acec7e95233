#include "eventlog/row_store.h"

#include <array>
#include <new>

#include "eventlog/text_pool.h"

namespace corvina {

namespace {

constexpr std::size_t RowsPerBlock = 4096;

using TextMember = TextReference EventRow::*;

constexpr TextMember ColumnTexts[ColumnCount] = {
    &EventRow::LevelText,        &EventRow::DateText,
    &EventRow::ProviderName,     &EventRow::TaskColumnText,
    &EventRow::EventIdText,      &EventRow::UserText,
    &EventRow::ComputerText,     &EventRow::KeywordsText,
    &EventRow::OpcodeText,       &EventRow::ChannelName,
    &EventRow::ProcessIdText,    &EventRow::ThreadIdText,
    &EventRow::ActivityIdText,   &EventRow::RelatedActivityIdText,
    &EventRow::RecordIdText,     &EventRow::MessageText,
    &EventRow::ProviderGuidText, &EventRow::UserSidText,
};

const EventRow NoRow{};

}  // namespace

struct RowStore::State {
    VisibleColumns Columns;
    std::array<Column, ColumnCount> Shown{};  // the visible columns in order
    std::size_t ShownCount = 0;
    TextPool Pool;
    std::vector<std::unique_ptr<EventRow[]>> Blocks;
    std::size_t Stored = 0;            // rows in the blocks, erased ones included
    std::vector<std::uint32_t> Order;  // row numbers in the order of the list

    const EventRow& Stand(std::uint32_t number) const { return Blocks[number / RowsPerBlock][number % RowsPerBlock]; }
};

RowStore::RowStore() : state_(std::make_unique<State>()) {}
RowStore::~RowStore() = default;

void RowStore::Reset(const VisibleColumns& columns) {
    State& state = *state_;
    state.Pool.Clear();
    state.Blocks = std::vector<std::unique_ptr<EventRow[]>>();
    state.Stored = 0;
    state.Order = std::vector<std::uint32_t>();
    state.Columns = columns;
    state.ShownCount = 0;
    for (std::size_t column = 0; column < ColumnCount; ++column) {
        if (columns[column]) {
            state.Shown[state.ShownCount++] = static_cast<Column>(column);
        }
    }
}

const VisibleColumns& RowStore::Columns() const {
    return state_->Columns;
}

TextReference RowStore::AddText(std::wstring_view text) {
    return state_->Pool.Add(text);
}

std::wstring_view RowStore::Text(TextReference reference) const {
    return state_->Pool.Text(reference);
}

void RowStore::Append(const EventRow& row) {
    State& state = *state_;
    if (state.Stored > UINT32_MAX) {
        throw std::bad_alloc();
    }
    if (state.Stored == state.Blocks.size() * RowsPerBlock) {
        state.Blocks.push_back(std::make_unique<EventRow[]>(RowsPerBlock));
    }
    state.Order.push_back(static_cast<std::uint32_t>(state.Stored));
    state.Blocks.back()[state.Stored % RowsPerBlock] = row;
    ++state.Stored;
}

std::size_t RowStore::Size() const {
    return state_->Order.size();
}

const EventRow& RowStore::Row(std::size_t index) const {
    return index < state_->Order.size() ? state_->Stand(state_->Order[index]) : NoRow;
}

TextReference RowStore::ColumnText(const EventRow& row, Column column) const {
    const auto index = static_cast<std::size_t>(column);
    return index < ColumnCount ? row.*ColumnTexts[index] : TextReference::Empty;
}

std::wstring_view RowStore::CellText(std::size_t index, std::size_t position) const {
    if (index >= Size() || position >= state_->ShownCount) {
        return {};
    }
    return Text(ColumnText(Row(index), state_->Shown[position]));
}

void RowStore::EraseIf(const std::function<bool(std::size_t)>& selected) {
    std::vector<std::uint32_t>& order = state_->Order;
    // Rows that stay are gathered at the end, since the question goes from the last row to the first.
    std::size_t kept = order.size();
    for (std::size_t index = order.size(); index-- > 0;) {
        if (!selected(index)) {
            order[--kept] = order[index];
        }
    }
    order.erase(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(kept));
}

void RowStore::Reorder(std::span<const std::uint32_t> order) {
    std::vector<std::uint32_t>& present = state_->Order;
    if (order.size() != present.size()) {
        return;
    }
    std::vector<std::uint32_t> next(order.size());
    for (std::size_t index = 0; index < order.size(); ++index) {
        if (order[index] >= present.size()) {
            return;
        }
        next[index] = present[order[index]];
    }
    present = std::move(next);
}

std::size_t RowStore::MemoryUsed() const {
    return state_->Pool.MemoryUsed() + state_->Blocks.size() * RowsPerBlock * sizeof(EventRow) +
           state_->Order.capacity() * sizeof(std::uint32_t);
}

}  // namespace corvina
