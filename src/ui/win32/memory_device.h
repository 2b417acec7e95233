// Drawing without flicker: into memory first, then in one step to the window.
#pragma once

#include <windows.h>

namespace corvina::ui {

class MemoryDevice {
  public:
    // Memory for the area from 0, 0 to that size; what is drawn appears on `target` when the object goes away.
    MemoryDevice(HDC target, SIZE size)
        : target_(target),
          size_(size),
          device_(CreateCompatibleDC(target)),
          bitmap_(CreateCompatibleBitmap(target, static_cast<int>(size.cx), static_cast<int>(size.cy))),
          previous_(SelectObject(device_, bitmap_)) {
        // What was drawn from the left would be turned over on its way to a mirrored window.
        SetLayout(device_, GetLayout(target));
    }
    ~MemoryDevice() {
        BitBlt(target_, 0, 0, static_cast<int>(size_.cx), static_cast<int>(size_.cy), device_, 0, 0, SRCCOPY);
        SelectObject(device_, previous_);
        DeleteObject(bitmap_);
        DeleteDC(device_);
    }
    MemoryDevice(const MemoryDevice&) = delete;
    MemoryDevice& operator=(const MemoryDevice&) = delete;

    HDC Get() const { return device_; }

  private:
    HDC target_;
    SIZE size_;
    HDC device_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
};

}  // namespace corvina::ui
