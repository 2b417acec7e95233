#include "query/criterion_fragments.h"

#include <array>
#include <cstddef>
#include <limits>
#include <vector>

#include "base/calendar.h"
#include "base/format_text.h"
#include "base/letter_case.h"
#include "query/comma_list.h"

namespace corvina {
namespace {

constexpr std::uint64_t MillisecondsPerHour = 3'600'000;
constexpr std::array<std::uint64_t, 6> MillisecondsOfChoice = {
    0,  // any time
    MillisecondsPerHour,
    12 * MillisecondsPerHour,
    24 * MillisecondsPerHour,
    7 * 24 * MillisecondsPerHour,
    30 * 24 * MillisecondsPerHour,
};

constexpr std::uint32_t TicksPerMillisecond = 10'000;

CalendarTime FieldsOf(const LocalMoment& moment) {
    return {moment.Year,
            moment.Month,
            moment.Day,
            moment.Hour,
            moment.Minute,
            moment.Second,
            moment.Milliseconds * TicksPerMillisecond};
}

// The time in UTC, or unchanged when it is no moment of the calendar.
CalendarTime InUniversalTime(const CalendarTime& time, const LocaleServices& locale) {
    const auto local = FileTimeFromCalendar(time);
    if (!local) {
        return time;
    }
    const std::uint64_t utc = locale.ToUniversalTime(*local);
    // The first hours of 1601 can lie before it in UTC, where times wrap around.
    constexpr auto Latest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return utc > Latest ? time : CalendarFromFileTime(utc);
}

std::wstring MomentText(const LocalMoment& moment, const LocaleServices& locale) {
    const CalendarTime utc = InUniversalTime(FieldsOf(moment), locale);
    return FormatText(L"'%04d-%02d-%02dT%02d:%02d:%02d.%03dZ'", {utc.Year, utc.Month, utc.Day, utc.Hour, utc.Minute,
                                                                 utc.Second, utc.Ticks / TicksPerMillisecond});
}

void AppendAlternative(std::wstring_view text, std::wstring& fragment) {
    if (!fragment.empty()) {
        fragment += L" or ";
    }
    fragment += text;
}

// `table` holds names in upper case.
std::uint64_t MaskOfKeyword(std::wstring_view name, std::span<const KeywordRecord> table) {
    const std::wstring sought = UpperCase(name);
    for (const KeywordRecord& record : table) {
        if (record.Name.find(sought) != std::wstring::npos) {
            return record.Mask;
        }
    }
    return 0;
}

}  // namespace

std::wstring TimeFragment(const TimeCriterion& time, const LocaleServices& locale) {
    if (time.IsCustom) {
        return FormatText(L"TimeCreated[@SystemTime&gt;=%s and @SystemTime&lt;=%s]",
                          {MomentText(time.From, locale), MomentText(time.To, locale)});
    }
    if (time.Choice == 0 || time.Choice >= MillisecondsOfChoice.size()) {
        return {};
    }
    return FormatText(L"TimeCreated[timediff(@SystemTime)&lt;=%I64u]", {MillisecondsOfChoice[time.Choice]});
}

std::wstring LevelFragment(const LevelMarks& levels) {
    std::wstring fragment;
    const auto append = [&fragment](bool isMarked, std::wstring_view text) {
        if (isMarked) {
            AppendAlternative(text, fragment);
        }
    };
    append(levels.Critical, L"Level=1");
    append(levels.Error, L"Level=2");
    append(levels.Warning, L"Level=3");
    append(levels.Information, L"Level=4 or Level=0");
    append(levels.Verbose, L"Level=5");
    return fragment;
}

std::wstring KeywordFragment(std::wstring_view names, std::span<const KeywordRecord> table) {
    std::vector<KeywordRecord> upper(table.begin(), table.end());
    for (KeywordRecord& record : upper) {
        record.Name = UpperCase(record.Name);
    }
    std::uint64_t sum = 0;
    for (const std::wstring_view name : CommaListItems(names)) {
        sum += MaskOfKeyword(name, upper);
    }
    return sum == 0 ? std::wstring() : FormatText(L"band(Keywords,%I64u)", {sum});
}

std::wstring ProviderFragment(std::wstring_view names) {
    std::wstring alternatives;
    for (const std::wstring_view name : CommaListItems(names)) {
        AppendAlternative(FormatText(L"@Name='%s'", {name}), alternatives);
    }
    return alternatives.empty() ? std::wstring() : L"Provider[" + alternatives + L"]";
}

std::wstring UserFragment(std::wstring_view sid) {
    return sid.empty() ? std::wstring() : FormatText(L"Security[@UserID='%s']", {sid});
}

std::wstring ComputerFragment(std::wstring_view name) {
    return name.empty() ? std::wstring() : FormatText(L"Computer='%s'", {name});
}

std::wstring TaskFragment(std::span<const std::uint32_t> tasks) {
    std::wstring fragment;
    for (const std::uint32_t task : tasks) {
        AppendAlternative(FormatText(L"Task=%u", {task}), fragment);
    }
    return fragment;
}

}  // namespace corvina
