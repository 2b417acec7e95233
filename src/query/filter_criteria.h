// What a filter or custom view asks for: the values that its dialog shows, that its file keeps, and from which its
// query is built. Texts are kept as they were typed; nothing in here has been checked.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvina {

// A moment on the user's clock, as the date and time controls of a dialog hold it.
struct LocalMoment {
    std::uint16_t Year = 1601;
    std::uint16_t Month = 1;
    std::uint16_t Day = 1;
    std::uint16_t Hour = 0;
    std::uint16_t Minute = 0;
    std::uint16_t Second = 0;
    std::uint16_t Milliseconds = 0;

    friend bool operator==(const LocalMoment&, const LocalMoment&) = default;
};

struct TimeCriterion {
    bool IsCustom = false;
    // Counts only when not custom: 0 is any time, 1 to 5 reach back further and further. These are the positions in the
    // list of a dialog, which does not promise what its entries say (see TimeFragment).
    std::uint32_t Choice = 0;
    // Count only when custom; both ends are included.
    LocalMoment From = {};
    LocalMoment To = {};

    friend bool operator==(const TimeCriterion&, const TimeCriterion&) = default;
};

// The check marks of the levels; without any, levels do not matter.
struct LevelMarks {
    bool Critical = false;
    bool Error = false;
    bool Warning = false;
    bool Information = false;
    bool Verbose = false;

    friend bool operator==(const LevelMarks&, const LevelMarks&) = default;
};

// An empty text or list means that the criterion is not set. Lists are separated by commas. Every field has an
// initializer, so that a filter can be written as the few fields that it sets.
struct FilterCriteria {
    TimeCriterion Time = {};
    LevelMarks Levels = {};
    std::wstring EventIds = {};   // "1, 3, 5-99, -76, -5-37"
    std::wstring Keywords = {};   // names, or parts of names
    std::wstring Providers = {};  // names
    std::wstring User = {};       // one account name
    std::wstring Computer = {};   // one computer name
    std::wstring Channels = {};   // channel paths
    std::vector<std::uint32_t> Tasks = {};

    friend bool operator==(const FilterCriteria&, const FilterCriteria&) = default;
};

}  // namespace corvina
