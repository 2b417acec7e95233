#include "query/query_list.h"

#include <cstddef>

#include "query/comma_list.h"

namespace corvina {
namespace {

constexpr std::wstring_view ListOpen = LR"(<QueryList>  <Query Id="0" Path=")";
constexpr std::wstring_view AttributeClose = LR"(">)";
constexpr std::wstring_view SelectOpen = LR"(  <Select Path=")";
constexpr std::wstring_view SystemOpen = LR"(">*[System[)";
constexpr std::wstring_view SelectClose = L"]]</Select>";
constexpr std::wstring_view SelectAllClose = LR"(">*</Select>)";
constexpr std::wstring_view SuppressOpen = LR"(  <Suppress Path=")";
constexpr std::wstring_view SuppressClose = L"]]</Suppress>";
constexpr std::wstring_view QueryClose = L"  </Query>";
constexpr std::wstring_view ListClose = L"</QueryList>";

// Every channel repeats the conditions, so that a document can become far longer than what was typed. No event log
// reads documents as long as this one.
constexpr std::size_t LongestDocument = std::size_t{16} << 20;

void Write(std::initializer_list<std::wstring_view> pieces, std::wstring& document) {
    for (const std::wstring_view piece : pieces) {
        document += piece;
    }
}

}  // namespace

std::wstring JoinFragments(std::initializer_list<std::wstring_view> fragments) {
    std::wstring condition;
    for (const std::wstring_view fragment : fragments) {
        if (!fragment.empty()) {
            Write({condition.empty() ? L"(" : L" and (", fragment, L")"}, condition);
        }
    }
    return condition;
}

std::wstring QueryListText(std::wstring_view channels, std::wstring_view condition, std::wstring_view exclusion) {
    std::wstring document;
    Write({ListOpen, channels.substr(0, channels.find(L',')), AttributeClose}, document);
    for (const std::wstring_view channel : CommaListItems(channels)) {
        if (document.size() > LongestDocument) {
            return document;
        }
        if (condition.empty()) {
            Write({SelectOpen, channel, SelectAllClose}, document);
        } else {
            Write({SelectOpen, channel, SystemOpen, condition, SelectClose}, document);
        }
        if (!exclusion.empty()) {
            Write({SuppressOpen, channel, SystemOpen, exclusion, SuppressClose}, document);
        }
    }
    Write({QueryClose, ListClose}, document);
    return document;
}

}  // namespace corvina
