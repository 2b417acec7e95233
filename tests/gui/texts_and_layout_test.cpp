#include <gtest/gtest.h>
#include <string>

#include "app/win32/cell_text.h"
#include "app/win32/main_layout.h"

namespace corvina {
namespace {

std::wstring Copied(std::wstring_view text, std::size_t size) {
    std::wstring buffer(size + 1, L'#');
    CopyCellText(text, buffer.data(), size);
    EXPECT_EQ(buffer[size], L'#') << "written behind the buffer";
    return buffer.c_str();
}

TEST(CellText, TextsOfSeveralLinesBecomeOneLine) {
    EXPECT_FALSE(FitsCell(L"one\r\ntwo"));
    EXPECT_TRUE(FitsCell(L"one two"));
    EXPECT_FALSE(FitsCell(std::wstring(260, L'x')));
    EXPECT_EQ(Copied(L"\r\none\r\n\ttwo  three\n", 100), L"one two three");
    EXPECT_EQ(Copied(std::wstring(5000, L'x'), 1000).size(), 259u);
}

TEST(CellText, SmallBuffersAreFilledAndNotOverrun) {
    EXPECT_EQ(Copied(L"abcdef", 4), L"abc");
    EXPECT_EQ(Copied(L"ab cd", 4), L"ab");
    EXPECT_EQ(Copied(L"abc", 1), L"");
    // A character of two halves is shown whole or not at all.
    EXPECT_EQ(Copied(L"ab\xD83D\xDE00", 4), L"ab");
    wchar_t beginning[3] = {};
    CopyBeginning(L"a\xD83D\xDE00", beginning, 3);
    EXPECT_STREQ(beginning, L"a");
}

TEST(MainLayout, PartsMeetAndKeepRoomForThemselves) {
    const ui::Scale scale(96);
    for (const SIZE client : {SIZE{784, 541}, SIZE{300, 180}, SIZE{0, 0}, SIZE{4000, 3000}}) {
        for (const int wanted : {-2'000'000'000, 0, 250, 2'000'000'000}) {
            const MainLayout layout = ComputeMainLayout(client, {wanted, wanted}, 120, scale);
            EXPECT_EQ(layout.Tree.right, layout.VerticalBar.left);
            EXPECT_EQ(layout.VerticalBar.right, layout.List.left);
            EXPECT_EQ(layout.List.bottom, layout.HorizontalBar.top);
            EXPECT_EQ(layout.HorizontalBar.bottom, layout.Details.top);
            EXPECT_GE(layout.Tree.right, 40);
            EXPECT_GE(layout.List.bottom - layout.List.top, 40);
            EXPECT_LE(layout.StatusText.right, layout.VersionText.left);
            if (client.cx >= 784) {
                EXPECT_GE(client.cx - layout.List.left, 40);
                EXPECT_GE(layout.Details.bottom - layout.Details.top, 40);
            }
        }
    }
}

}  // namespace
}  // namespace corvina
