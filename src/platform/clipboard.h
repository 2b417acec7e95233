// The port for the clipboard that all programs share.
#pragma once

#include <string_view>

namespace corvina {

class Clipboard {
  public:
    virtual ~Clipboard() = default;

    // Replaces what the clipboard holds with a text. Failures are silent: another program may hold the clipboard, and
    // the text may be too large for the memory that is left. The clipboard then keeps what it held.
    virtual void PutText(std::wstring_view text) = 0;
};

}  // namespace corvina
