// Memory with nothing readable before and behind it: a test that reads outside a text there ends at once, also without
// the sanitizers.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string_view>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace corvina::test {

class FencedBlock {
  public:
    // A multiple of the size of a page on every system, and larger than any text of the tests.
    static constexpr std::size_t Size = std::size_t{64} * 1024;

    FencedBlock() {
#ifdef _WIN32
        whole_ = static_cast<char*>(VirtualAlloc(nullptr, 3 * Size, MEM_RESERVE, PAGE_NOACCESS));
        const bool isOpen =
            whole_ != nullptr && VirtualAlloc(whole_ + Size, Size, MEM_COMMIT, PAGE_READWRITE) != nullptr;
#else
        void* const mapped = mmap(nullptr, 3 * Size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        whole_ = static_cast<char*>(mapped);
        const bool isOpen = mapped != MAP_FAILED && mprotect(whole_ + Size, Size, PROT_READ | PROT_WRITE) == 0;
#endif
        if (!isOpen) {
            std::abort();
        }
    }
    ~FencedBlock() {
#ifdef _WIN32
        VirtualFree(whole_, 0, MEM_RELEASE);
#else
        munmap(whole_, 3 * Size);
#endif
    }
    FencedBlock(const FencedBlock&) = delete;
    FencedBlock& operator=(const FencedBlock&) = delete;

    // Copies of a text, right behind the fence before the block and right before the one behind it. Each is good until
    // the next copy.
    std::string_view AtStart(std::string_view text) {
        return CopyTo(0, text);
    }
    std::string_view AtEnd(std::string_view text) {
        return CopyTo(Size - text.size(), text);
    }

  private:
    std::string_view CopyTo(std::size_t offset, std::string_view text) {
        char* const place = whole_ + Size + offset;
        std::copy(text.begin(), text.end(), place);
        return {place, text.size()};
    }

    char* whole_ = nullptr;
};

}  // namespace corvina::test
