#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "i18n/language.h"

namespace corvina::i18n {
namespace {

// A settings file that holds at most one key.
class OneSetting : public SettingsStore {
  public:
    OneSetting(bool exists, std::optional<std::wstring> language) : exists_(exists), language_(std::move(language)) {}

    std::wstring ReadSetting(std::wstring_view section, std::wstring_view key,
                             std::wstring_view defaultValue) const override {
        const bool asked = section == L"Options" && key == L"Language";
        return asked && language_ ? *language_ : std::wstring(defaultValue);
    }
    void WriteSetting(std::wstring_view, std::wstring_view, std::wstring_view) override { FAIL(); }
    void RemoveSetting(std::wstring_view, std::wstring_view) override { FAIL(); }
    std::vector<std::pair<std::wstring, std::wstring>> ReadSection(std::wstring_view) const override { return {}; }
    bool Exists() const override { return exists_; }

  private:
    bool exists_;
    std::optional<std::wstring> language_;
};

int Choose(std::optional<std::wstring> setting, std::optional<std::uint16_t> system) {
    return ChooseLanguage(OneSetting(true, std::move(setting)), system);
}

TEST(LanguageChoice, TheSettingComesBeforeTheSystem) {
    EXPECT_EQ(Choose(L"1", 1031), English);
    EXPECT_EQ(Choose(L"0", 1033), German);
    EXPECT_EQ(Choose(L"23", 1031), 23);
    EXPECT_EQ(Choose(L"17.9", 1031), 17);
    EXPECT_EQ(Choose(L"", 1033), 0) << "no digits are the number 0";
    EXPECT_EQ(Choose(L"x", 1033), 0);
    EXPECT_EQ(Choose(L"99", 1031), 99) << "the number is not changed; its texts are English";
    EXPECT_EQ(Choose(L"-2", 1031), -2);
    EXPECT_EQ(Choose(L"-1.0", 1033), -1) << "only \"-1\" itself asks for the system's language";
    EXPECT_EQ(Language(Choose(L"99999999999999999999", 1031)).Text(0), L"Event Viewer");
}

TEST(LanguageChoice, WithoutASettingTheSystemDecides) {
    EXPECT_EQ(Choose(L"-1", 1031), German);
    EXPECT_EQ(Choose(std::nullopt, 2055), German);
    EXPECT_EQ(Choose(std::nullopt, std::nullopt), English);
    EXPECT_EQ(ChooseLanguage(OneSetting(false, L"1"), 1031), German) << "a missing file is not asked";
}

TEST(LanguageChoice, IdentifiersWithTheirGaps) {
    const struct {
        int Index;
        std::vector<std::uint16_t> Identifiers;
    } groups[] = {
        {0, {7, 1031, 2055, 3079, 4103, 5127}},
        {English, {0, 9, 1024, 1033, 2057, 6151, 1042, 7180, 3094, 3067, 2051 + 1024 * 5, 65535}},
        {2, {12, 1036, 2060, 3084, 4108, 5132, 6156}},
        {3, {14, 1038}},
        {4, {10, 1034, 2058, 3082, 20490}},
        {English, {21514, 22538}},
        {5, {22, 1046, 2070}},
        {6, {1, 1025, 16385}},
        {English, {17409}},
        {7, {25, 1049}},
        {8, {18}},
        {9, {1060}},
        {English, {36, 2067 + 1024, 1059}},
        {10, {19, 1043, 2067}},
        {11, {4, 1028, 2052, 3076, 4100, 5124}},
        {English, {6148}},
        {12, {31748}},
        {13, {16, 1040, 2064}},
        {14, {57, 1081}},
        {15, {17, 1041}},
        {16, {1026}},
        {English, {2}},
        {17, {1045}},
        {18, {31, 1055}},
        {19, {1051}},
        {20, {1057}},
        {21, {1029}},
        {22, {1032}},
        {23, {1048}},
    };
    for (const auto& group : groups) {
        for (const std::uint16_t identifier : group.Identifiers) {
            EXPECT_EQ(LanguageIndexFromIdentifier(identifier), group.Index) << identifier;
        }
    }
}

}  // namespace
}  // namespace corvina::i18n
