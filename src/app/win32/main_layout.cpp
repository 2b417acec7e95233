#include "app/win32/main_layout.h"

#include <algorithm>

namespace corvina {
namespace {

// Sizes at 96 dots per inch.
constexpr int CaptionHeight = 26;
constexpr int StatusHeight = 24;
constexpr int TextMargin = 6;
constexpr int SmallestTree = 80;
constexpr int SmallestList = 60;  // in both directions
constexpr int SmallestDetails = 60;
// Pixels on either side of a bar's middle at every resolution: the positions in the settings count on it.
constexpr int HalfBar = 2;

int Between(int smallest, int value, int largest) {
    return std::max(smallest, std::min(value, largest));
}

}  // namespace

int ListTop(ui::Scale scale) {
    return scale.Pixels(CaptionHeight);
}

SplitterPositions AllowedSplitters(SIZE client, SplitterPositions wanted, ui::Scale scale) {
    const int width = static_cast<int>(client.cx);
    const int height = static_cast<int>(client.cy) - ListTop(scale) - scale.Pixels(StatusHeight);
    return {Between(scale.Pixels(SmallestTree), wanted.Vertical, width - scale.Pixels(SmallestList)),
            Between(scale.Pixels(SmallestList), wanted.Horizontal, height - scale.Pixels(SmallestDetails))};
}

MainLayout ComputeMainLayout(SIZE client, SplitterPositions splitters, int versionWidth, ui::Scale scale) {
    const SplitterPositions allowed = AllowedSplitters(client, splitters, scale);
    const LONG statusTop = client.cy - scale.Pixels(StatusHeight);
    const LONG right = client.cx;
    const LONG margin = scale.Pixels(TextMargin);
    const LONG listLeft = allowed.Vertical + HalfBar;
    const LONG listTop = ListTop(scale);
    const LONG listBottom = listTop + allowed.Horizontal - HalfBar;
    const LONG versionLeft = std::max<LONG>(right - margin - versionWidth, right / 2);

    MainLayout layout;
    layout.Tree = {0, 0, allowed.Vertical - HalfBar, statusTop};
    layout.VerticalBar = {layout.Tree.right, 0, listLeft, statusTop};
    layout.Caption = {listLeft + margin, 0, right - margin, listTop};
    layout.List = {listLeft, listTop, right, listBottom};
    layout.HorizontalBar = {listLeft, listBottom, right, listBottom + 2 * HalfBar};
    layout.Details = {listLeft, layout.HorizontalBar.bottom, right, statusTop};
    layout.StatusText = {margin, statusTop, versionLeft - margin, client.cy};
    layout.VersionText = {versionLeft, statusTop, right - margin, client.cy};
    return layout;
}

}  // namespace corvina
