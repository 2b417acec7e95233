#include "details/win32/field_text.h"
#include "gui/main_window_fixture.h"
#include "ui/win32/common_controls.h"

namespace corvina::test {
namespace {

using DetailsPane = MainWindowTest;

TEST_F(DetailsPane, AnEmptyLogSaysSoInThreeFieldsAndLeavesTheFourthEmpty) {
    WriteLog(L"Application", 5);
    WriteLog(L"System", 0);
    Start();
    SelectNode({L"Windows Logs", L"Application"});
    EXPECT_NE(TextOf(Field(0)).find(L"Event ID: "), std::wstring::npos);
    EXPECT_FALSE(TextOf(Field(2)).empty());
    EXPECT_EQ(TextOf(Field(3)).substr(0, 6), L"<Event");

    SelectNode({L"Windows Logs", L"System"});
    EXPECT_EQ(RowCount(), 0);
    EXPECT_EQ(Caption(), L"System has 0 events");
    for (int field = 0; field < 3; ++field) {
        EXPECT_EQ(TextOf(Field(field)), L"No events in this view.") << field;
    }
    EXPECT_EQ(TextOf(Field(3)), L"");
}

TEST_F(DetailsPane, FieldsShareThePaneWithoutOverlapAtAnySize) {
    Start();
    for (const SIZE size : {SIZE{800, 600}, SIZE{330, 250}, SIZE{1200, 850}}) {
        SetWindowPos(Main(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOMOVE);
        RECT list = PlaceIn(Main(), ListControl());
        for (int a = 0; a < 4; ++a) {
            const RECT place = PlaceIn(Main(), Field(a));
            RECT common{};
            EXPECT_FALSE(IntersectRect(&common, &place, &list)) << size.cx << " field " << a;
            for (int b = a + 1; b < 4; ++b) {
                const RECT other = PlaceIn(Main(), Field(b));
                EXPECT_FALSE(IntersectRect(&common, &place, &other)) << size.cx << " fields " << a << ", " << b;
            }
        }
    }
}

TEST(FieldText, BreaksLinesAsFieldsDoAndEndsWhatNobodyReads) {
    EXPECT_EQ(FieldText(L"a\nb\r\nc\rd\n"), L"a\r\nb\r\nc\r\nd\r\n");
    EXPECT_EQ(FieldText(L"\r"), L"\r\n");
    EXPECT_EQ(FieldText(std::wstring_view(L"a\0b", 3)), L"a b");
    const std::wstring full = FieldText(std::wstring(LongestFieldText, L'\n'));
    EXPECT_EQ(full.size(), 2 * LongestFieldText);
    const std::wstring cut = FieldText(std::wstring(LongestFieldText + 1, L'\n'));
    EXPECT_EQ(cut, full + L"\r\n...");
}

TEST(FieldText, LinesThatWouldTakeLongToWrapAreBroken) {
    const std::wstring line(LongestFieldLine, L'x');
    EXPECT_EQ(FieldText(line), line);
    EXPECT_EQ(FieldText(line + L"y"), line + L"\r\ny");
    const std::wstring withBlank = std::wstring(LongestFieldLine - 10, L'x') + L" " + std::wstring(20, L'y');
    EXPECT_EQ(FieldText(withBlank).find(L"\r\n"), LongestFieldLine - 9);
    // A character of two halves stays whole.
    const std::wstring pair = std::wstring(LongestFieldLine - 1, L'x') + L"\xD83D\xDE00";
    EXPECT_EQ(FieldText(pair), std::wstring(LongestFieldLine - 1, L'x') + L"\r\n\xD83D\xDE00");
}

}  // namespace
}  // namespace corvina::test
