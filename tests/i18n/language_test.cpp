#include "i18n/language.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "i18n/language_tables.h"

namespace corvina::i18n {
namespace {

// Every conversion of a format with its flags, in order: "%s", "%I64u", "%%".
std::vector<std::wstring> Conversions(std::wstring_view text) {
    std::vector<std::wstring> conversions;
    for (std::size_t start = text.find(L'%'); start != std::wstring_view::npos; start = text.find(L'%', start)) {
        const std::size_t end = std::min(text.find_first_of(L"%sdiuxX", start + 1), text.size() - 1);
        conversions.emplace_back(text.substr(start, end + 1 - start));
        start = end + 1;
    }
    return conversions;
}

std::vector<std::wstring> Parts(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring> parts(1);
    for (const wchar_t character : text) {
        if (character == separator) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

bool HasStrayBlanks(std::wstring_view text) {
    return !text.empty() && (text.front() == L' ' || text.back() == L' ' || text.find(L"  ") != text.npos);
}

bool EndsLike(std::wstring_view text, std::wstring_view english, std::wstring_view end) {
    return text.ends_with(end) == english.ends_with(end);
}

TEST(LanguageTables, EnglishStandsAsItsUsersKnowIt) {
    const Language english;
    EXPECT_EQ(english.Index(), English);
    EXPECT_EQ(english.Text(0), L"Event Viewer");
    EXPECT_EQ(english.Text(1), L"%s - %s logged in \\\\");
    EXPECT_EQ(english.Text(2), L"%s has %I64u events");
    EXPECT_EQ(english.Text(10), L"Event Log (*.evtx)|*.evtx|All Files(*.*)|* .*||");
    EXPECT_EQ(english.Text(32), L"Rename\tF2");
    EXPECT_EQ(english.Text(144), L"User ID ");
    EXPECT_EQ(english.Text(182), L"\u7b80\u4f53\u4e2d\u6587 (Chinese simplified)");
    EXPECT_EQ(english.Text(187), L"Bulgarian \t(Bulgaria)");
    EXPECT_EQ(english.Text(252), L"Use theme in list view");
    EXPECT_EQ(english.Text(253), L"");
    const std::wstring_view noDescription = english.Text(8);
    EXPECT_TRUE(noDescription.starts_with(L"The label for the event ID ( %lu ) in the source ( %s ) cannot be found."));
    EXPECT_TRUE(noDescription.ends_with(L"does not own.\n\nThe following information is part of the event:\n\n"));
}

TEST(LanguageTables, GermanHasEverySlotOfItsOwn) {
    const Language german(German);
    EXPECT_EQ(LanguageTable(German).size(), static_cast<std::size_t>(SlotCount));
    EXPECT_EQ(german.Text(6), L"Anwendungs- und Dienstprotokolle");
    EXPECT_EQ(german.Text(56), L"Schlie\u00dfen");
    EXPECT_EQ(german.Text(253), L"REGEX verwenden");
}

// Words that are the same in a language and in English; what a table has not got around to is not among them.
constexpr std::wstring_view Everywhere[] = {L"SQM"};
const std::vector<std::wstring_view> SameAsEnglish[LanguageCount] = {
    /* German */ {L"Argument", L"Computer", L"Computer:", L"Details", L"Details...\tEnter", L"Extras", L"Name",
                  L"Name:", L"Version"},
    /* English */ {},
    /* French */
    {L"Action", L"Argument", L"Date", L"Extras", L"Information", L"Message", L"Options", L"Source", L"Type",
     L"Version"},
    /* Hungarian */ {},
    /* Spanish */ {L"Error", L"Extras", L"General"},
    /* Portuguese */ {L"Extras"},
    /* Arabic */ {},
    /* Russian */ {},
    /* Korean */ {L"Opcode"},
    /* Slovenian */ {},
    /* Dutch */
    {L"Argument", L"Computer", L"Computer:", L"Details", L"Details...\tEnter", L"Help", L"Opcode", L"Type", L"Type:"},
    /* Chinese */ {},
    /* Chinese (Traditional) */ {},
    /* Italian */ {L"Computer", L"Computer:", L"Password"},
    /* Hindi */ {},
    /* Japanese */ {},
    /* Bulgarian */ {},
    /* Polish */ {},
    /* Turkish */ {},
    /* Slovak */ {L"Event Viewer"},
    /* Indonesian */ {L"Data:", L"Filter log"},
    /* Czech */ {L"Data:"},
    /* Greek */ {L"Event Viewer", L"General"},
    /* Romanian */ {L"Argument", L"Computer", L"Computer:", L"Event Viewer", L"General", L"Program/script"}};

bool MayBeEnglish(int index, std::wstring_view text) {
    const auto& allowed = SameAsEnglish[index];
    return std::ranges::find(allowed, text) != allowed.end() ||
           std::ranges::find(Everywhere, text) != std::end(Everywhere);
}

TEST(LanguageTables, NothingIsLeftInEnglish) {
    const Language english(English);
    for (int index = 0; index < LanguageCount; ++index) {
        ASSERT_FALSE(LanguageTable(index).empty()) << index;
        for (int slot = 0; slot < 253; ++slot) {
            const std::wstring_view text = Language(index).Text(slot);
            const bool isOwnName = slot >= 171 && slot <= 194;
            if (index != English && !isOwnName && text == english.Text(slot)) {
                EXPECT_TRUE(MayBeEnglish(index, text)) << "language " << index << ", slot " << slot;
            }
        }
    }
}

// Columns of the width of small letters that a text takes: letters of East Asia take two, signs above others none.
std::size_t WidthOf(std::wstring_view text) {
    std::size_t width = 0;
    for (const wchar_t character : text) {
        const bool isWide =
            character >= 0x1100 && (character <= 0x115F || (character >= 0x2E80 && character <= 0xFFE6));
        const bool isSignOfHindi = (character >= 0x0900 && character <= 0x0902) || character == 0x093C ||
                                   (character >= 0x0941 && character <= 0x0948) || character == 0x094D;
        width += isSignOfHindi ? 0 : isWide ? 2 : 1;
    }
    return width;
}

// A column is 200 pixels wide at first, and the menus of the window may not cover all of it.
TEST(LanguageTables, TextsOfColumnsAndMenusHaveRoom) {
    constexpr int MenuEntries[] = {28,  29,  30,  31,  32,  33,  34,  36,  37,  38,  39,  40,  41,  42,  44,
                                   69,  70,  71,  72,  73,  74,  75,  76,  77,  78,  79,  80,  100, 111, 152,
                                   153, 161, 162, 167, 197, 198, 213, 214, 215, 217, 218, 221, 230, 240, 247};
    constexpr int MenuTitles[] = {22, 27, 212};
    for (int index = 0; index < LanguageCount; ++index) {
        const Language language(index);
        for (int slot = 127; slot <= 144; ++slot) {
            EXPECT_LE(WidthOf(language.Text(slot)), 30U) << "language " << index << ", column title in slot " << slot;
        }
        for (const int slot : MenuEntries) {
            EXPECT_LE(WidthOf(language.Text(slot)), 48U) << "language " << index << ", menu entry in slot " << slot;
        }
        for (const int slot : MenuTitles) {
            EXPECT_LE(WidthOf(language.Text(slot)), 18U) << "language " << index << ", menu in slot " << slot;
        }
    }
}

// Where the English table names one thing in several places, a language has one name for it, too.
TEST(LanguageTables, OneThingHasOneName) {
    constexpr std::pair<int, int> Same[] = {{11, 115}, {11, 222}, {12, 113}, {13, 116}, {18, 127}, {19, 128},
                                            {20, 129}, {23, 132}, {24, 133}, {24, 96},  {27, 136}, {42, 43},
                                            {42, 55},  {73, 106}, {83, 131}, {88, 134}, {163, 168}};
    for (int index = 0; index < LanguageCount; ++index) {
        for (const auto& [one, other] : Same) {
            EXPECT_EQ(Language(index).Text(one), Language(index).Text(other))
                << "language " << index << ", slots " << one << " and " << other;
        }
    }
}

// Only German names the option of slot 253. All other languages show it without a caption, as English does, whether
// their tables have the slot or not.
TEST(LanguageTables, TheLastSlotIsGermansAlone) {
    for (int index = 0; index < LanguageCount; ++index) {
        const bool isListed = index == German || index == English || index == 22;
        EXPECT_EQ(LanguageTable(index).size(), isListed ? 254U : 253U) << index;
        EXPECT_EQ(Language(index).Text(253), index == German ? L"REGEX verwenden" : L"") << index;
    }
}

TEST(LanguageScripts, ArabicAloneIsReadFromTheRightAndFivePreferFacesOfTheirOwn) {
    for (int index = -1; index <= LanguageCount; ++index) {
        const bool hasFaces = index == 8 || index == 11 || index == 12 || index == 14 || index == 15;
        EXPECT_EQ(Language(index).ReadsRightToLeft(), index == 6) << index;
        EXPECT_EQ(!Language(index).FontFaces().empty(), hasFaces) << index;
        for (const std::wstring_view face : Language(index).FontFaces()) {
            EXPECT_LT(face.size(), 32U) << "longer than the system's names of faces";
        }
    }
}

// Whatever a translator writes, a text has to keep what the program relies on.
TEST(LanguageTables, TranslationsKeepTheShapeOfTheEnglishTexts) {
    const Language english(English);
    for (int index = 0; index < LanguageCount; ++index) {
        const std::size_t slots = LanguageTable(index).size();
        for (int slot = 0; slot < static_cast<int>(slots) && slot < 253; ++slot) {
            SCOPED_TRACE("language " + std::to_string(index) + ", slot " + std::to_string(slot));
            const std::wstring_view text = Language(index).Text(slot);
            const std::wstring_view original = english.Text(slot);
            EXPECT_FALSE(text.empty());
            EXPECT_EQ(text.data()[text.size()], L'\0');
            EXPECT_EQ(Conversions(text), Conversions(original));
            EXPECT_EQ(std::count(text.begin(), text.end(), L'\n'), std::count(original.begin(), original.end(), L'\n'));
            EXPECT_EQ(HasStrayBlanks(text), HasStrayBlanks(original));
            EXPECT_TRUE(EndsLike(text, original, L"\n\n"));
            EXPECT_EQ(Parts(text, L'\t').size(), Parts(original, L'\t').size());
            if (slot != 187) {
                EXPECT_EQ(text.substr(std::min(text.find(L'\t'), text.size())),
                          original.substr(std::min(original.find(L'\t'), original.size())));
            }
            EXPECT_EQ(text.find(L'\uFFFD'), text.npos);
            if (slot >= 171 && slot <= 194) {
                EXPECT_EQ(text, original) << "a language's name for itself is the same in every table";
            }
        }
    }
}

TEST(LanguageTables, TheFileChoosersFilterHasTwoPairsOfNameAndPattern) {
    for (int index = 0; index < LanguageCount; ++index) {
        const std::vector<std::wstring> parts = Parts(Language(index).Text(10), L'|');
        ASSERT_EQ(parts.size(), 6U) << "language " << index;
        EXPECT_NE(parts[0], L"");
        EXPECT_EQ(parts[1], L"*.evtx");
        EXPECT_NE(parts[2], L"");
        EXPECT_EQ(parts[3], L"* .*");
        EXPECT_EQ(parts[4] + parts[5], L"");
    }
}

TEST(LanguageTables, MissingTextsFallBackToEnglish) {
    const Language english(English);
    for (const int index : {-1, LanguageCount, 1'000'000}) {
        EXPECT_EQ(Language(index).Text(5), L"Windows Logs") << index;
    }
    for (int index = 0; index < LanguageCount; ++index) {
        // The program's name stays English in the tables of Slovak, Greek and Romanian; "Windows Logs" in none.
        EXPECT_EQ(Language(index).Text(5) == english.Text(5), LanguageTable(index).empty() || index == English)
            << index;
        for (const int slot : {-1, SlotCount, 1'000'000}) {
            EXPECT_EQ(Language(index).Text(slot), L"") << index;
            EXPECT_EQ(*Language(index).Text(slot).data(), L'\0');
        }
    }
    Language language(German);
    language.SetIndex(LanguageCount);
    EXPECT_EQ(language.Index(), LanguageCount) << "a number without a table is kept";
}

}  // namespace
}  // namespace corvina::i18n
