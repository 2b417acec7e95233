#include "ui/win32/visual_style.h"

namespace corvina::ui {

VisualStyles::VisualStyles()
    : library_(L"uxtheme.dll"), setWindowTheme_(library_.Find<SetWindowThemeFunction>("SetWindowTheme")) {}

void VisualStyles::Set(HWND control, const wchar_t* style) const {
    if (setWindowTheme_ != nullptr) {
        setWindowTheme_(control, style, nullptr);
    }
}

void VisualStyles::Remove(HWND control) const {
    if (setWindowTheme_ != nullptr) {
        setWindowTheme_(control, L"", L"");
    }
}

}  // namespace corvina::ui
