#include "base/xml_escape.h"

#include <gtest/gtest.h>

namespace corvina {
namespace {

std::wstring Escaped(std::wstring_view text, wchar_t quotationMark) {
    std::wstring xml = L"x";
    AppendXmlEscaped(text, quotationMark, xml);
    return xml;
}

TEST(XmlEscape, TextsStandForThemselves) {
    EXPECT_EQ(Escaped(L"a<b & \"c\" > 'd'", L'"'), L"xa&lt;b &amp; &quot;c&quot; &gt; 'd'");
    EXPECT_EQ(Escaped(L"\"c\" 'd'", L'\''), L"x\"c\" &apos;d&apos;");
    EXPECT_EQ(Escaped(L"tab\t line\r\n bell\a", L'"'), L"xtab\t line\r\n bell\xFFFD");
    const std::wstring halves = {0xD83D, L'-', 0xDE00};
    EXPECT_EQ(Escaped(halves, L'"'), L"x\xFFFD-\xFFFD");
    EXPECT_EQ(Escaped(L"\U0001F600", L'"'), L"x\U0001F600");
}

}  // namespace
}  // namespace corvina
