#include <algorithm>
#include <climits>
#include <string>

#include "i18n/language.h"

namespace corvina::i18n {

namespace {

constexpr std::uint16_t UserDefaultIdentifier = 1024;

// A primary language with all its sublanguages up to a last one.
struct PrimaryLanguage {
    int Index;
    unsigned Primary;
    unsigned LastSublanguage;
};

constexpr PrimaryLanguage PrimaryLanguages[] = {
    {4, 10, 20},  // Spanish
    {11, 4, 5},   // Chinese
    {6, 1, 16},   // Arabic
};

// Korean of Korea (1042), some French (7180) and some Portuguese (3094) are left out on purpose: the choice stays as
// users of these systems know it.
int IndexOfListedIdentifier(std::uint16_t identifier) {
    switch (identifier) {
        case 7:
        case 1031:
        case 2055:
        case 3079:
        case 4103:
        case 5127:
            return German;
        case 22:
        case 1046:
        case 2070:
            return 5;  // Portuguese
        case 31748:
            return 12;  // Chinese (Traditional)
        case 18:
            return 8;  // Korean
        case 1045:
            return 17;  // Polish
        case 19:
        case 1043:
        case 2067:
            return 10;  // Dutch
        case 14:
        case 1038:
            return 3;  // Hungarian
        case 1051:
            return 19;  // Slovak
        case 57:
        case 1081:
            return 14;  // Hindi
        case 25:
        case 1049:
            return 7;  // Russian
        case 31:
        case 1055:
            return 18;  // Turkish
        case 16:
        case 1040:
        case 2064:
            return 13;  // Italian
        case 17:
        case 1041:
            return 15;  // Japanese
        case 12:
        case 1036:
        case 2060:
        case 3084:
        case 4108:
        case 5132:
        case 6156:
            return 2;  // French
        case 1029:
            return 21;  // Czech
        case 1032:
            return 22;  // Greek
        case 1048:
            return 23;  // Romanian
        case 1057:
            return 20;  // Indonesian
        case 1060:
            return 9;  // Slovenian
        case 1026:
            return 16;  // Bulgarian
        default:
            return English;
    }
}

// Leading blanks, a sign and digits, as the platform's text-to-integer functions read them; 0 without digits.
int LeadingNumber(std::wstring_view text) {
    const std::size_t start = std::min(text.find_first_not_of(L" \t"), text.size());
    text.remove_prefix(start);
    const bool negative = text.starts_with(L'-');
    if (negative || text.starts_with(L'+')) {
        text.remove_prefix(1);
    }
    long long number = 0;
    for (const wchar_t digit : text) {
        if (digit < L'0' || digit > L'9') {
            break;
        }
        number = std::min<long long>(number * 10 + (digit - L'0'), INT_MAX);
    }
    return static_cast<int>(negative ? -number : number);
}

}  // namespace

int LanguageIndexFromIdentifier(std::uint16_t identifier) {
    // An identifier is the primary language in the low 10 bits and the sublanguage above them.
    const unsigned primary = identifier & 0x3FFU;
    const unsigned sublanguage = identifier >> 10U;
    for (const PrimaryLanguage& language : PrimaryLanguages) {
        if (language.Primary == primary && sublanguage <= language.LastSublanguage) {
            return language.Index;
        }
    }
    return IndexOfListedIdentifier(identifier);
}

int ChooseLanguage(const SettingsStore& settings, std::optional<std::uint16_t> userInterfaceLanguage) {
    if (settings.Exists()) {
        const std::wstring value = settings.ReadSetting(L"Options", L"Language", L"-1");
        if (value != L"-1") {
            return LeadingNumber(value);
        }
    }
    return LanguageIndexFromIdentifier(userInterfaceLanguage.value_or(UserDefaultIdentifier));
}

}  // namespace corvina::i18n
