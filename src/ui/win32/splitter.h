// A bar between two parts of a window that the user drags with the mouse.
#pragma once

#include <windows.h>

#include <functional>

#include "ui/win32/window.h"

namespace corvina::ui {

enum class SplitterDirection {
    Vertical,   // the bar stands upright and moves left and right
    Horizontal  // the bar lies and moves up and down
};

class Splitter : public Window {
  public:
    // Called while the user drags, with the place of the bar's left or top edge in the parent's client area. The bar
    // does not move by itself: the owner places it where it allows it.
    using DragHandler = std::function<void(int)>;

    Splitter(SplitterDirection direction, DragHandler dragged);

    bool Create(HWND parent, HINSTANCE instance);
    void SetBackground(HBRUSH brush);  // owned by the caller

  protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    // A mouse message's place along the bar's way, in the parent's client area.
    int InParent(LPARAM place) const;
    int EdgeInParent() const;
    void Drag(LPARAM place);

    SplitterDirection direction_;
    DragHandler dragged_;
    HBRUSH background_ = nullptr;
    bool dragging_ = false;
    int grip_ = 0;  // pixels between the bar's edge and the pointer when the drag began
};

}  // namespace corvina::ui
