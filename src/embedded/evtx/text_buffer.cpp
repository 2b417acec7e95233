#include "embedded/evtx/text_buffer.h"

namespace corvina::evtx {

template <typename Char>
void TextBuffer<Char>::Grow(std::size_t count) {
    const std::size_t size = Size();
    const std::size_t capacity = std::max(static_cast<std::size_t>(limit_ - text_.get()) * 2, size + count + 4096);
    std::unique_ptr<Char[]> grown(new Char[capacity]);
    std::copy_n(text_.get(), size, grown.get());
    text_ = std::move(grown);
    end_ = text_.get() + size;
    limit_ = text_.get() + capacity;
}

template class TextBuffer<char>;
template class TextBuffer<wchar_t>;

}  // namespace corvina::evtx
