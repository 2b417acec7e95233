// Where results go: the standard output, in large pieces.
#pragma once

#include <cstddef>
#include <cstdio>

#include "embedded/evtx/text_buffer.h"

namespace corvina::tools {

class Output {
  public:
    explicit Output(std::FILE* file) : file_(file) {
        std::setvbuf(file, nullptr, _IONBF, 0);  // pieces are large enough to be written as they are
        buffer_.Room(2 * PieceSize);
    }
    ~Output() { Flush(); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // To be appended to; Continue writes it when it has become large.
    evtx::TextBuffer<char>& Buffer() { return buffer_; }

    // False when nothing more can be written.
    bool Continue() { return buffer_.Size() < PieceSize ? state_ == State::Open : Flush(); }
    bool Flush();

    // Whether it was not the reader who went away, but writing that failed.
    bool HasFailed() const { return state_ == State::Failed; }

  private:
    enum class State { Open, Closed, Failed };
    // Small enough to stay in fast memory between being written and being passed on.
    static constexpr std::size_t PieceSize = 1 << 15;

    std::FILE* file_;
    evtx::TextBuffer<char> buffer_;
    State state_ = State::Open;
};

// Texts of events may hold line breaks. As references they have the same meaning and keep the event on its line.
// Changes what `text` holds from `begin` on.
void EscapeLineBreaks(evtx::TextBuffer<char>& text, std::size_t begin);

}  // namespace corvina::tools
