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
        if (capacity_ - size_ < count) {
            Grow(count);
        }
        return text_.get() + size_;
    }

    void SetEnd(const Char* end) { size_ = static_cast<std::size_t>(end - text_.get()); }

    void Append(Char character) {
        *Room(1) = character;
        ++size_;
    }

    void Clear() { size_ = 0; }
    std::size_t Size() const { return size_; }
    std::basic_string_view<Char> View() const { return {text_.get(), size_}; }

  private:
    void Grow(std::size_t count) {
        const std::size_t capacity = std::max(capacity_ * 2, size_ + count + 4096);
        std::unique_ptr<Char[]> grown(new Char[capacity]);
        std::copy_n(text_.get(), size_, grown.get());
        text_ = std::move(grown);
        capacity_ = capacity;
    }

    std::unique_ptr<Char[]> text_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace corvina::evtx
