#include "output.h"

#include <cerrno>

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

}  // namespace corvina::tools
