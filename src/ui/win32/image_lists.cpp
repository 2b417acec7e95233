#include "ui/win32/image_lists.h"

namespace corvina::ui {

UniqueImageList LoadSmallIcons(HINSTANCE instance, std::span<const int> identifiers, Scale scale) {
    const int size = scale.Pixels(16);
    UniqueImageList list(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, static_cast<int>(identifiers.size()), 0));
    if (list == nullptr) {
        return list;
    }
    ImageList_SetImageCount(list.get(), static_cast<UINT>(identifiers.size()));
    int index = 0;
    for (const int identifier : identifiers) {
        const auto icon = static_cast<HICON>(
            LoadImageW(instance, MAKEINTRESOURCEW(identifier), IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
        if (icon != nullptr) {
            ImageList_ReplaceIcon(list.get(), index, icon);
            DestroyIcon(icon);
        }
        ++index;
    }
    return list;
}

}  // namespace corvina::ui
