// Drawing objects that give themselves back.
#pragma once

#include <memory>
#include <type_traits>

#include "ui/win32/common_controls.h"

namespace corvina::ui {

struct GdiObjectDeleter {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
struct ImageListDeleter {
    void operator()(HIMAGELIST list) const { ImageList_Destroy(list); }
};
struct MenuDeleter {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
};

using UniqueFont = std::unique_ptr<std::remove_pointer_t<HFONT>, GdiObjectDeleter>;
using UniqueBrush = std::unique_ptr<std::remove_pointer_t<HBRUSH>, GdiObjectDeleter>;
using UniqueImageList = std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, ImageListDeleter>;
using UniqueMenu = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuDeleter>;

}  // namespace corvina::ui
