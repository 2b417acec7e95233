#include "i18n/language.h"

namespace corvina::i18n {

namespace {

constexpr int Arabic = 6;
constexpr int Korean = 8;
constexpr int Chinese = 11;
constexpr int ChineseTraditional = 12;
constexpr int Hindi = 14;
constexpr int Japanese = 15;

// What Windows has brought along for each of these scripts, the newest first. Without them it takes the letters that a
// face lacks from whichever other face comes first, which for Chinese may be a Japanese one with other strokes.
constexpr std::wstring_view KoreanFaces[] = {L"Malgun Gothic", L"Gulim"};
constexpr std::wstring_view ChineseFaces[] = {L"Microsoft YaHei UI", L"Microsoft YaHei", L"SimSun"};
constexpr std::wstring_view ChineseTraditionalFaces[] = {L"Microsoft JhengHei UI", L"Microsoft JhengHei", L"MingLiU"};
constexpr std::wstring_view HindiFaces[] = {L"Nirmala UI", L"Mangal"};
constexpr std::wstring_view JapaneseFaces[] = {L"Yu Gothic UI", L"Meiryo UI", L"MS UI Gothic"};

}  // namespace

bool Language::ReadsRightToLeft() const {
    return index_ == Arabic;
}

std::span<const std::wstring_view> Language::FontFaces() const {
    switch (index_) {
        case Korean:
            return KoreanFaces;
        case Chinese:
            return ChineseFaces;
        case ChineseTraditional:
            return ChineseTraditionalFaces;
        case Hindi:
            return HindiFaces;
        case Japanese:
            return JapaneseFaces;
        default:
            return {};
    }
}

}  // namespace corvina::i18n
