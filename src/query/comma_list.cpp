#include "query/comma_list.h"

#include <algorithm>
#include <cstddef>

namespace corvina {

std::vector<std::wstring_view> CommaListItems(std::wstring_view list) {
    std::vector<std::wstring_view> items;
    while (!list.empty() && list.front() != L',') {
        const std::size_t end = std::min(list.find(L','), list.size());
        items.push_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return items;
}

}  // namespace corvina
