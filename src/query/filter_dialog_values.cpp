#include "query/filter_dialog_values.h"

#include <algorithm>
#include <cstddef>

namespace corvina {

std::wstring ReadBox(const FilterDialogValues& dialog, FilterBox box) {
    constexpr std::size_t Longest = 2599;
    std::wstring text = dialog.BoxText(box);
    text.resize(std::min(text.size(), Longest));
    return text;
}

EventIdFragments ParseEventIdListFromDialog(const FilterDialogValues& dialog) {
    return ParseEventIdList(ReadBox(dialog, FilterBox::EventIds));
}

}  // namespace corvina
