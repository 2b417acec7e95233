// The tooltip over the main window's client area: it shows labels in full that have no room for their text.
#pragma once

#include <functional>
#include <string>

#include "ui/win32/common_controls.h"

namespace corvina {

class ClientToolTip {
  public:
    // The text for a place in the client area; empty for none.
    using TextSource = std::function<std::wstring(POINT)>;

    explicit ClientToolTip(TextSource source) : source_(std::move(source)) {}
    ~ClientToolTip();
    ClientToolTip(const ClientToolTip&) = delete;
    ClientToolTip& operator=(const ClientToolTip&) = delete;

    void Create(HWND parent, HINSTANCE instance);
    HWND Handle() const { return handle_; }

    // The client area has another size.
    void FitToParent();

    // Answers the tooltip's request for its text.
    void FillText(NMTTDISPINFOW& request);

  private:
    TTTOOLINFOW Tool() const;

    TextSource source_;
    HWND parent_ = nullptr;
    HWND handle_ = nullptr;
    std::wstring text_;
};

}  // namespace corvina
