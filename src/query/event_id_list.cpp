#include "query/event_id_list.h"

#include <cstddef>

#include "query/comma_list.h"

namespace corvina {
namespace {

void AppendId(std::wstring_view id, std::wstring& fragment) {
    fragment += fragment.empty() ? L"EventID=" : L" or EventID=";
    fragment += id;
}

void AppendRange(std::wstring_view lower, std::wstring_view upper, std::wstring& fragment) {
    fragment += fragment.empty() ? L"(EventID&gt;=" : L" or (EventID&gt;=";
    fragment += lower;
    fragment += L" and EventID&lt;=";
    fragment += upper;
    fragment += L")";
}

// An item without the minus sign that excludes it. Only the first minus sign parts a range: what is wrong with an upper
// bound such as "10-20" shows when the query is refused.
void AppendItem(std::wstring_view item, std::wstring& fragment) {
    const std::size_t sign = item.find(L'-');
    if (sign == std::wstring_view::npos) {
        AppendId(item, fragment);
    } else {
        AppendRange(item.substr(0, sign), item.substr(sign + 1), fragment);
    }
}

}  // namespace

EventIdFragments ParseEventIdList(std::wstring_view list) {
    std::wstring text(list);
    std::erase(text, L' ');
    EventIdFragments fragments;
    for (const std::wstring_view item : CommaListItems(text)) {
        if (item.front() == L'-') {
            AppendItem(item.substr(1), fragments.ExcludedEventIds);
        } else {
            AppendItem(item, fragments.IncludedEventIds);
        }
    }
    return fragments;
}

}  // namespace corvina
