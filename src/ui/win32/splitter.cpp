#include "ui/win32/splitter.h"

#include <utility>

namespace corvina::ui {
namespace {

constexpr wchar_t SplitterClass[] = L"CorvinaSplitter";

}  // namespace

Splitter::Splitter(SplitterDirection direction, DragHandler dragged)
    : direction_(direction), dragged_(std::move(dragged)) {}

bool Splitter::Create(HWND parent, HINSTANCE instance) {
    WNDCLASSEXW description{};
    description.lpszClassName = SplitterClass;
    description.hInstance = instance;
    return RegisterWindowClass(description) && CreateHandle({.ClassName = SplitterClass,
                                                             .Title = {},
                                                             .Style = WS_CHILD | WS_VISIBLE,
                                                             .Parent = parent,
                                                             .Instance = instance});
}

void Splitter::SetBackground(HBRUSH brush) {
    background_ = brush;
    InvalidateRect(Handle(), nullptr, TRUE);
}

int Splitter::InParent(LPARAM place) const {
    POINT pointer{static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
    MapWindowPoints(Handle(), GetParent(Handle()), &pointer, 1);
    return direction_ == SplitterDirection::Vertical ? pointer.x : pointer.y;
}

int Splitter::EdgeInParent() const {
    RECT place{};
    GetWindowRect(Handle(), &place);
    MapWindowPoints(nullptr, GetParent(Handle()), reinterpret_cast<POINT*>(&place), 2);
    return direction_ == SplitterDirection::Vertical ? place.left : place.top;
}

void Splitter::Drag(LPARAM place) {
    const int edge = InParent(place) - grip_;
    if (edge != EdgeInParent()) {
        dragged_(edge);
    }
}

LRESULT Splitter::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SETCURSOR:
            SetCursor(LoadCursorW(nullptr, direction_ == SplitterDirection::Vertical ? IDC_SIZEWE : IDC_SIZENS));
            return TRUE;
        case WM_LBUTTONDOWN:
            grip_ = InParent(lParam) - EdgeInParent();
            dragging_ = true;
            SetCapture(Handle());
            return 0;
        case WM_MOUSEMOVE:
            if (dragging_) {
                Drag(lParam);
            }
            return 0;
        case WM_LBUTTONUP:
            if (dragging_) {
                ReleaseCapture();
            }
            return 0;
        case WM_CAPTURECHANGED:
            // Also when another window takes the mouse away in the middle of a drag; the bar stays where it is.
            dragging_ = false;
            return 0;
        case WM_ERASEBKGND: {
            RECT area{};
            GetClientRect(Handle(), &area);
            FillRect(reinterpret_cast<HDC>(wParam), &area,
                     background_ != nullptr ? background_ : GetSysColorBrush(COLOR_BTNFACE));
            return TRUE;
        }
        default:
            return Window::HandleMessage(message, wParam, lParam);
    }
}

}  // namespace corvina::ui
