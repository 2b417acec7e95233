#include "ui/win32/fonts.h"

#include <algorithm>

namespace corvina::ui {
namespace {

constexpr wchar_t UsualFace[] = L"Tahoma";

int CALLBACK StopAtFirst(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM) {
    return 0;
}

bool IsInstalled(HDC device, std::wstring_view face) {
    LOGFONTW font{};
    font.lfCharSet = DEFAULT_CHARSET;
    face.copy(font.lfFaceName, LF_FACESIZE - 1);
    return EnumFontFamiliesExW(device, &font, StopAtFirst, 0, 0) == 0;
}

}  // namespace

std::wstring InterfaceFace(std::span<const std::wstring_view> wanted) {
    const HDC device = GetDC(nullptr);
    const auto found = std::ranges::find_if(wanted, [device](auto face) { return IsInstalled(device, face); });
    ReleaseDC(nullptr, device);
    return found == wanted.end() ? UsualFace : std::wstring(*found);
}

std::wstring FaceOf(HWND window) {
    LOGFONTW font{};
    const auto handle = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    return handle != nullptr && GetObjectW(handle, sizeof(font), &font) != 0 ? font.lfFaceName : UsualFace;
}

UniqueFont CreateInterfaceFont(Scale scale, const std::wstring& face, int lineHeight) {
    return UniqueFont(CreateFontW(scale.Pixels(lineHeight), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                  OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS,
                                  face.c_str()));
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
