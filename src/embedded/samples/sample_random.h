// Numbers that look random and are the same everywhere: the standard library's distributions differ between its
// implementations, and a sample store must have the same bytes wherever it is made.
#pragma once

#include <cstdint>
#include <string_view>

namespace corvina::samples {

// A counter whose every value is mixed well ("splitmix").
class SampleRandom {
  public:
    explicit SampleRandom(std::uint64_t seed) : state_(seed) {}

    std::uint64_t Next() {
        state_ += 0x9E3779B97F4A7C15;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
        return mixed ^ mixed >> 31;
    }

    // 0 to limit - 1; `limit` must not be 0. Only nearly even, which is even enough here.
    std::uint64_t Below(std::uint64_t limit) { return Next() % limit; }

    bool OneIn(std::uint64_t chances) { return Below(chances) == 0; }

  private:
    std::uint64_t state_;
};

// A seed of its own for each name, so that the logs of a store do not depend on one another.
inline std::uint64_t SeedFor(std::uint64_t seed, std::wstring_view name) {
    SampleRandom random(seed);
    std::uint64_t result = random.Next();
    for (const wchar_t character : name) {
        result = SampleRandom(result ^ static_cast<std::uint64_t>(character)).Next();
    }
    return result;
}

}  // namespace corvina::samples
