// The options: what their dialog offers, and what its answers do.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace corvina {

// What the user sees and sets.
struct OptionValues {
    std::size_t LanguageEntry = 0;  // among OptionOffer::Languages
    int DisplayMode = 0;            // among OptionOffer::DisplayModes; the index is the mode's number
    bool ThemeInListView = false;   // offered only with the mode of OffersThemeInListView
    bool GridLines = false;
    bool AutomaticUpdates = false;

    bool operator==(const OptionValues&) const = default;
};

struct OptionOffer {
    std::vector<std::wstring> Languages;
    std::vector<std::wstring> DisplayModes;
    OptionValues Now;
};

// The list of languages has its own order. The language table of an entry, and the entry of a language; an index
// without a language has the entry of English, whose texts it shows.
int LanguageOfEntry(std::size_t entry);
std::size_t EntryOfLanguage(int language);

// Whether a display mode leaves it to the user that the list has the scheme's colours.
bool OffersThemeInListView(int displayMode);

}  // namespace corvina
