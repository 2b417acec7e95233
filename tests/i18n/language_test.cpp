#include "i18n/language.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
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
    // Words that are the same in both languages, and the languages' names for themselves.
    int sameAsEnglish = 0;
    for (int slot = 0; slot < 253; ++slot) {
        sameAsEnglish += (slot < 171 || slot > 194) && german.Text(slot) == Language(English).Text(slot) ? 1 : 0;
    }
    EXPECT_LT(sameAsEnglish, 25);
}

// Words can be the same in two languages, but not many; what a table has not got around to shows here.
TEST(LanguageTables, EveryLanguageHasTextsOfItsOwn) {
    const Language english(English);
    for (int index = 0; index < LanguageCount; ++index) {
        if (index == English) {
            continue;
        }
        ASSERT_FALSE(LanguageTable(index).empty()) << index;
        int sameAsEnglish = 0;
        for (int slot = 0; slot < 253; ++slot) {
            const std::wstring_view text = Language(index).Text(slot);
            sameAsEnglish += (slot < 171 || slot > 194) && text == english.Text(slot) ? 1 : 0;
            if (slot >= 127 && slot <= 144) {
                EXPECT_LE(text.size(), 28U) << "language " << index << ", column title in slot " << slot;
            }
        }
        EXPECT_LE(sameAsEnglish, 17) << "language " << index;
    }
}

// Whatever a translator writes, a text has to keep what the program relies on.
TEST(LanguageTables, TranslationsKeepTheShapeOfTheEnglishTexts) {
    const Language english(English);
    for (int index = 0; index < LanguageCount; ++index) {
        const std::size_t slots = LanguageTable(index).size();
        EXPECT_TRUE(slots == 0 || slots == 253 || slots == 254) << "language " << index;
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
