#include "app/options.h"

#include "i18n/language.h"
#include "theme/theme.h"

namespace corvina {
namespace {

// The two languages that stand in each other's place in the list.
constexpr int Slovenian = 9;
constexpr int Slovak = 19;

}  // namespace

int LanguageOfEntry(std::size_t entry) {
    if (entry >= static_cast<std::size_t>(i18n::LanguageCount)) {
        return i18n::English;
    }
    const int language = static_cast<int>(entry);
    return language == Slovenian ? Slovak : language == Slovak ? Slovenian : language;
}

std::size_t EntryOfLanguage(int language) {
    if (language < 0 || language >= i18n::LanguageCount) {
        return i18n::English;
    }
    // The exchange of two is its own reverse.
    return static_cast<std::size_t>(LanguageOfEntry(static_cast<std::size_t>(language)));
}

bool OffersThemeInListView(int displayMode) {
    return displayMode == static_cast<int>(DisplayMode::Black);
}

}  // namespace corvina
