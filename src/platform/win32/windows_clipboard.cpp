#include "platform/win32/windows_clipboard.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>

namespace corvina {
namespace {

struct FreeGlobal {
    void operator()(void* block) const { GlobalFree(block); }
};
using UniqueGlobal = std::unique_ptr<void, FreeGlobal>;

class OpenedClipboard {
  public:
    OpenedClipboard() {
        // Programs that watch the clipboard hold it for an instant after every copy, and a second copy soon after the
        // first would be lost.
        constexpr int Tries = 5;
        constexpr DWORD Pause = 10;  // milliseconds
        for (int tried = 0; tried < Tries && !isOpen_; ++tried) {
            if (tried > 0) {
                Sleep(Pause);
            }
            isOpen_ = OpenClipboard(nullptr) != FALSE;
        }
    }
    ~OpenedClipboard() {
        if (isOpen_) {
            CloseClipboard();
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    explicit operator bool() const { return isOpen_; }

  private:
    bool isOpen_ = false;
};

// The text with a zero behind it in a block as the clipboard takes it; null when there is no memory for it.
UniqueGlobal GlobalText(std::wstring_view text) {
    if (text.size() >= std::numeric_limits<std::size_t>::max() / sizeof(wchar_t)) {
        return nullptr;
    }
    UniqueGlobal block(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t)));
    auto* characters = block == nullptr ? nullptr : static_cast<wchar_t*>(GlobalLock(block.get()));
    if (characters == nullptr) {
        return nullptr;
    }
    std::replace_copy(text.begin(), text.end(), characters, L'\0', L' ');
    characters[text.size()] = L'\0';
    GlobalUnlock(block.get());
    return block;
}

}  // namespace

void WindowsClipboard::PutText(std::wstring_view text) {
    // Made before the clipboard is emptied: a text that is too large must not cost the user what is there.
    UniqueGlobal block = GlobalText(text);
    if (block == nullptr) {
        return;
    }
    const OpenedClipboard clipboard;
    if (clipboard && EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, block.get()) != nullptr) {
        static_cast<void>(block.release());  // the clipboard's from now on
    }
}

}  // namespace corvina
