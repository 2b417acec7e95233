// The clipboard of the user's session.
#pragma once

#include "platform/clipboard.h"

namespace corvina {

class WindowsClipboard : public Clipboard {
  public:
    // Zero characters become blanks, since they would end the text for every program that takes it.
    void PutText(std::wstring_view text) override;
};

}  // namespace corvina
