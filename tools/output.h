// Where results go: the standard output, in large pieces.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace corvina::tools {

class Output {
  public:
    explicit Output(std::FILE* file) : file_(file) { buffer_.reserve(2 * PieceSize); }
    ~Output() { Flush(); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // To be appended to; Continue writes it when it has become large.
    std::string& Buffer() { return buffer_; }

    // False when nothing more can be written.
    bool Continue() { return buffer_.size() < PieceSize ? state_ == State::Open : Flush(); }
    bool Flush();

    // Whether it was not the reader who went away, but writing that failed.
    bool HasFailed() const { return state_ == State::Failed; }

  private:
    enum class State { Open, Closed, Failed };
    static constexpr std::size_t PieceSize = 1 << 16;

    std::FILE* file_;
    std::string buffer_;
    State state_ = State::Open;
};

// Texts of events may hold line breaks. As references they have the same meaning and keep the event on its line.
// Changes what `text` holds from `begin` on.
void EscapeLineBreaks(std::string& text, std::size_t begin);

}  // namespace corvina::tools
