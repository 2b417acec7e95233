#include "output.h"

#include <cerrno>
#include <string>
#include <string_view>

namespace corvina::tools {

bool Output::Flush() {
    if (state_ == State::Open) {
        errno = 0;
        const bool written =
            std::fwrite(buffer_.View().data(), 1, buffer_.Size(), file_) == buffer_.Size() && std::fflush(file_) == 0;
        if (!written) {
            // A program that has read enough closes its end; Windows reports that as an invalid argument.
            state_ = errno == EPIPE || errno == EINVAL ? State::Closed : State::Failed;
        }
    }
    buffer_.Clear();
    return state_ == State::Open;
}

void EscapeLineBreaks(evtx::TextBuffer<char>& text, std::size_t begin) {
    const std::string_view added = text.View().substr(begin);
    if (added.find('\n') == std::string_view::npos && added.find('\r') == std::string_view::npos) {
        return;
    }
    std::string escaped;
    for (const char character : added) {
        switch (character) {
            case '\n':
                escaped += "&#10;";
                break;
            case '\r':
                escaped += "&#13;";
                break;
            default:
                escaped += character;
        }
    }
    text.CutTo(begin);
    text.Append(escaped);
}

}  // namespace corvina::tools
