// The direction in which text fields are read, whatever the layout of their window: an Arabic window shows English
// messages and markup, and an English one Arabic messages.
#pragma once

#include <windows.h>

#include <string_view>

namespace corvina::ui {

// Whether a text is read from right to left; one without letters is read like the window around it.
bool ReadsFromTheRight(HWND window, std::wstring_view text);

// Sets the reading direction of a plain field with the side of its scroll bar.
class ReadingDirection {
  public:
    ReadingDirection() = default;
    // To be made when the field has just been created.
    explicit ReadingDirection(HWND field);

    void Set(bool rightToLeft) const;

  private:
    HWND field_ = nullptr;
    LONG_PTR rightToLeft_ = 0;  // what the extended style needs to have
};

// Keeps the scroll bar of a field that is not mirrored at its right side, also in a mirrored window: some systems
// compute its room there as if the field were mirrored, and draw it elsewhere.
void KeepScrollBarSide(HWND field);

}  // namespace corvina::ui
