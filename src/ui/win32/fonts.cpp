#include "ui/win32/fonts.h"

namespace corvina::ui {

UniqueFont CreateInterfaceFont(Scale scale) {
    constexpr int LineHeight = 16;
    return UniqueFont(CreateFontW(scale.Pixels(LineHeight), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                  OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS,
                                  L"Tahoma"));
}

SIZE TextExtent(HWND window, HFONT font, std::wstring_view text) {
    SIZE size{};
    const HDC device = GetDC(window);
    const HGDIOBJ previous = SelectObject(device, font);
    GetTextExtentPoint32W(device, text.data(), static_cast<int>(text.size()), &size);
    SelectObject(device, previous);
    ReleaseDC(window, device);
    return size;
}

}  // namespace corvina::ui
