#include "query/query_builder.h"

#include <optional>

#include "query/criterion_fragments.h"
#include "query/event_id_list.h"
#include "query/query_list.h"

namespace corvina {
namespace {

constexpr int InformationTitle = 13;
constexpr std::wstring_view NotConnected = L"Computer not connected!";

}  // namespace

// The order of the criteria differs between dialogs and stored filters. It shows in the text of the query, which users
// see, keep and go on editing.

std::wstring QueryBuilder::BuildQueryForChannels(const FilterDialogValues& dialog, const CurrentFilter& current) {
    const EventIdFragments ids = ParseEventIdListFromDialog(dialog);
    const std::wstring condition = JoinFragments({
        TimeFragment(dialog.Time(), parts_.Locale),
        LevelFragment(dialog.Levels()),
        ids.IncludedEventIds,
        Keywords(ReadBox(dialog, FilterBox::Keywords), current.Channels),
        ProviderFragment(ReadBox(dialog, FilterBox::Providers)),
        User(ReadBox(dialog, FilterBox::User)),
        Computer(ReadBox(dialog, FilterBox::Computer), NotConnected),
    });
    return QueryListText(current.Channels, condition, ids.ExcludedEventIds);
}

std::wstring QueryBuilder::BuildQueryFromDialog(const FilterDialogValues& dialog, CurrentFilter& current,
                                                EmptyChannels emptyChannels) {
    current.Channels = ReadBox(dialog, FilterBox::Channels);
    if (emptyChannels == EmptyChannels::Refused && !HasChannels(current.Channels)) {
        return {};
    }
    return BuildQueryForChannels(dialog, current);
}

std::wstring QueryBuilder::BuildQueryFromCriteria(const FilterCriteria& criteria) {
    if (!HasChannels(criteria.Channels)) {
        return {};
    }
    const EventIdFragments ids = ParseEventIdList(criteria.EventIds);
    const std::wstring condition = JoinFragments({
        TimeFragment(criteria.Time, parts_.Locale),
        LevelFragment(criteria.Levels),
        ids.IncludedEventIds,
        ProviderFragment(criteria.Providers),
        Keywords(criteria.Keywords, criteria.Channels),
        User(criteria.User),
        // A stored filter runs without its dialog, so the box has to say which computer it means.
        Computer(criteria.Computer, criteria.Computer + L"- " + std::wstring(NotConnected)),
    });
    return QueryListText(criteria.Channels, condition, ids.ExcludedEventIds);
}

std::wstring QueryBuilder::BuildQueryFromCriteriaWithTasks(const FilterCriteria& criteria) {
    if (!HasChannels(criteria.Channels)) {
        return {};
    }
    const EventIdFragments ids = ParseEventIdList(criteria.EventIds);
    const std::wstring condition = JoinFragments({
        TimeFragment(criteria.Time, parts_.Locale),
        LevelFragment(criteria.Levels),
        ids.IncludedEventIds,
        ProviderFragment(criteria.Providers),
        TaskFragment(criteria.Tasks),
    });
    return QueryListText(criteria.Channels, condition, ids.ExcludedEventIds);
}

bool QueryBuilder::HasChannels(std::wstring_view channels) {
    if (channels.empty()) {
        Inform(L"No Channel selected");
    }
    return !channels.empty();
}

std::wstring QueryBuilder::Keywords(std::wstring_view names, std::wstring_view channels) {
    if (names.empty()) {
        return {};
    }
    return KeywordFragment(names, parts_.Keywords.KeywordsOfChannels(channels));
}

std::wstring QueryBuilder::User(const std::wstring& name) {
    if (name.empty()) {
        return {};
    }
    const std::optional<std::wstring> sid = parts_.AccountNames.AccountSid(name);
    if (!sid) {
        Inform(name + L" - Unknown User!");
        return {};
    }
    return UserFragment(*sid);
}

std::wstring QueryBuilder::Computer(const std::wstring& name, std::wstring_view unreachableText) {
    if (name.empty()) {
        return {};
    }
    if (!parts_.Reachability.IsReachable(name)) {
        Inform(unreachableText);
        return {};
    }
    return ComputerFragment(name);
}

void QueryBuilder::Inform(std::wstring_view text) {
    parts_.Boxes.ShowInformation(text, parts_.Language.Text(InformationTitle));
}

}  // namespace corvina
