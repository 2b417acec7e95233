#include "base/letter_case.h"

#include <gtest/gtest.h>

namespace corvina {
namespace {

TEST(LetterCase, LettersOfManyAlphabetsAreEqualInBothCases) {
    const std::wstring_view pairs[][2] = {
        {L"Microsoft", L"mICROSOFT"},
        {L"\u00dcBERWACHUNG \u0160koda \u0178", L"\u00fcberwachung \u0161KODA \u00ff"},
        {L"\u0416\u0443\u0440\u043d\u0430\u043b \u0450", L"\u0436\u0423\u0420\u041d\u0410\u041b \u0400"},
        {L"\u039f\u0394\u038c\u03a3", L"\u03bf\u03b4\u03cc\u03c2"},
        {L"\u0540\u0561\u0575", L"\u0570\u0531\u0545"},
    };
    for (const auto& [one, other] : pairs) {
        EXPECT_TRUE(EqualIgnoringCase(one, other)) << testing::PrintToString(std::wstring(one));
        EXPECT_EQ(UpperCase(one), UpperCase(other));
        EXPECT_TRUE(ContainsIgnoringCase(L"before " + std::wstring(one) + L" after", other));
        EXPECT_FALSE(EqualIgnoringCase(one, one.substr(1)));
    }
    EXPECT_FALSE(EqualIgnoringCase(L"\u00d7", L"\u00f7")) << "signs, not letters";
    EXPECT_FALSE(EqualIgnoringCase(L"@[`{", L"`{@["));
}

TEST(LetterCase, PartsAreFoundAnywhere) {
    EXPECT_TRUE(ContainsIgnoringCase(L"Security", L"sec"));
    EXPECT_TRUE(ContainsIgnoringCase(L"Security", L"RITY"));
    EXPECT_TRUE(ContainsIgnoringCase(L"aab", L"AB"));
    EXPECT_TRUE(ContainsIgnoringCase(L"", L""));
    EXPECT_TRUE(ContainsIgnoringCase(L"x", L""));
    EXPECT_FALSE(ContainsIgnoringCase(L"secure", L"security"));
    EXPECT_FALSE(ContainsIgnoringCase(L"", L"x"));
}

}  // namespace
}  // namespace corvina
