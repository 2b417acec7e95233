#include "output.h"

#include <cerrno>
#include <cstring>

namespace corvina::tools {

bool Output::Flush() {
    if (state_ == State::Open) {
        errno = 0;
        const bool written =
            std::fwrite(buffer_.data(), 1, buffer_.size(), file_) == buffer_.size() && std::fflush(file_) == 0;
        if (!written) {
            // A program that has read enough closes its end; Windows reports that as an invalid argument.
            state_ = errno == EPIPE || errno == EINVAL ? State::Closed : State::Failed;
        }
    }
    buffer_.clear();
    return state_ == State::Open;
}

void EscapeLineBreaks(std::string& text, std::size_t begin) {
    const std::size_t size = text.size() - begin;
    if (std::memchr(text.data() + begin, '\n', size) == nullptr &&
        std::memchr(text.data() + begin, '\r', size) == nullptr) {
        return;
    }
    std::string escaped;
    for (std::size_t index = begin; index < text.size(); ++index) {
        switch (text[index]) {
            case '\n':
                escaped += "&#10;";
                break;
            case '\r':
                escaped += "&#13;";
                break;
            default:
                escaped += text[index];
        }
    }
    text.replace(begin, std::string::npos, escaped);
}

}  // namespace corvina::tools
