#include "details/copied_details.h"

#include <set>
#include <utility>
#include <vector>

namespace corvina {
namespace {

// In German in every language: programs that take such texts apart look for these lines.
constexpr std::wstring_view DescriptionHeading = L"Beschreibung:\n";
constexpr std::wstring_view XmlHeading = L"Ereignis-XML:\n";

constexpr std::size_t SeparatorLength = 60;

void AppendBlock(const EventTexts& texts, std::wstring& text) {
    text += texts.LeftProperties;
    text += texts.RightProperties;
    text += L'\n';
    text += DescriptionHeading;
    text += texts.Description;
    text += L'\n';
    text += XmlHeading;
    text += texts.Xml;
    text += L'\n';
}

}  // namespace

std::wstring DetailsAsText(RowDetails& details, std::span<const std::size_t> rows) {
    // All names first: an error box during a fetch lets a load begin, which replaces the rows.
    std::vector<EventName> events;
    events.reserve(rows.size());
    for (const std::size_t row : rows) {
        if (auto name = details.NameOf(row)) {
            events.push_back(std::move(*name));
        }
    }
    std::wstring text;
    std::set<std::pair<EventSource, std::wstring>> lostLogs;
    for (const EventName& event : events) {
        const std::pair<EventSource, std::wstring> log(event.Source, event.Log);
        if (!lostLogs.contains(log)) {
            EventTexts texts;
            const FetchResult result = details.Fetch(event, texts);
            if (result == FetchResult::Found) {
                AppendBlock(texts, text);
            } else if (result == FetchResult::LogNotRead) {
                lostLogs.insert(log);
            }
        }
        text.append(SeparatorLength, L'/');
        text += L"\n\n";
    }
    return text;
}

}  // namespace corvina
