// The port to the keywords that the publishers behind some channels define.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvina {

struct KeywordRecord {
    std::wstring Name;
    std::uint64_t Mask = 0;
};

class KeywordTable {
  public:
    virtual ~KeywordTable() = default;

    // The keywords of the publishers of a comma-separated list of channels, in the order in which the publishers list
    // them. The order counts: of several keywords that a typed name may mean, the first is taken.
    virtual std::vector<KeywordRecord> KeywordsOfChannels(std::wstring_view channels) = 0;
};

}  // namespace corvina
