// A growing text that is written through a pointer: no check per character on the hot path of rendering. Its memory is
// kept from one event to the next.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace corvina::evtx {

template <typename Char>
class TextBuffer {
  public:
    // Where at least `count` more characters can be written. What was written becomes part of the text with SetEnd.
    Char* Room(std::size_t count) {
        if (static_cast<std::size_t>(limit_ - end_) < count) {
            Grow(count);
        }
        return end_;
    }

    void SetEnd(Char* end) { end_ = end; }

    void Append(Char character) {
        *Room(1) = character;
        ++end_;
    }

    void Append(std::basic_string_view<Char> text) { end_ = std::copy(text.begin(), text.end(), Room(text.size())); }

    void Clear() { end_ = text_.get(); }
    void CutTo(std::size_t size) { end_ = text_.get() + size; }
    std::size_t Size() const { return static_cast<std::size_t>(end_ - text_.get()); }
    std::basic_string_view<Char> View() const { return {text_.get(), Size()}; }

  private:
    void Grow(std::size_t count);  // apart, since it is rare: what appends stays small

    std::unique_ptr<Char[]> text_;
    Char* end_ = nullptr;  // of what was written
    Char* limit_ = nullptr;
};

extern template class TextBuffer<char>;
extern template class TextBuffer<wchar_t>;

}  // namespace corvina::evtx
