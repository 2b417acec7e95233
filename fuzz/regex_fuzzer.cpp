// Searches with an arbitrary first line in the arbitrary rest, as a regular expression and in every other way. The
// regular expression must be found where trying everything finds it.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "base/utf.h"
#include "search/plain_regex_matcher.h"
#include "search/regex_matcher.h"
#include "search/regex_pattern.h"
#include "search/text_matcher.h"
#include "search/tsm_regex_match.h"

namespace {

using namespace corvina;

constexpr std::size_t StepsOfTrying = 10'000;

// Ends the program, which the fuzzer reports, when a promise does not hold.
void Require(bool promise) {
    if (!promise) {
        std::abort();
    }
}

// A text in a block of exactly its size, so that a character read behind it is noticed.
template <typename Character>
class Block {
  public:
    explicit Block(std::basic_string_view<Character> text) : size_(text.size()), block_(new Character[text.size()]) {
        std::copy(text.begin(), text.end(), block_.get());
    }
    std::basic_string_view<Character> Text() const { return {block_.get(), size_}; }

  private:
    std::size_t size_;
    std::unique_ptr<Character[]> block_;
};

void CheckOccurrence(const RegexPattern& pattern, std::string_view text) {
    const auto occurrence = RegexMatcher(pattern, text).Search();
    test::PlainRegexMatcher plain(pattern, text, StepsOfTrying);
    const auto expected = plain.Search();
    if (!plain.HasGivenUp()) {
        Require(occurrence.has_value() == expected.has_value());
        Require(!occurrence || (occurrence->Start == expected->Start && occurrence->Length == expected->Length));
    }
    Require(!occurrence || (occurrence->Start <= text.size() && occurrence->Length <= text.size() - occurrence->Start));
}

void CheckExpression(std::string_view patternText, std::string_view text) {
    RegexPattern pattern;
    const bool isPattern = pattern.Compile(patternText);
    CheckOccurrence(pattern, text);
    if (patternText.find('\0') == std::string_view::npos && text.find('\0') == std::string_view::npos) {
        const std::uint32_t found = RegexMatcher(pattern, text).Search() ? RegexOccurs : RegexDoesNotOccur;
        const Block<char> endedPattern(std::string(patternText) + '\0');
        const Block<char> endedText(std::string(text) + '\0');
        Require(tsm_regex_match(endedPattern.Text().data(), endedText.Text().data()) ==
                (isPattern ? found : RegexMalformed));
    }
}

void CheckOptions(std::wstring_view search, std::wstring_view candidate) {
    const auto matches = [search, candidate](const TextMatchOptions& options) {
        TextMatcher matcher;
        matcher.SetOptions(options);
        return matcher.Matches(candidate, search);
    };
    matches({.UseRegularExpression = true});
    matches({.MatchCase = true, .UseRegularExpression = true});
    const bool isPart = matches({});
    const bool isWhole = matches({.MatchWholeString = true});
    const bool isDescribed = matches({.UseWildcard = true});
    Require(isPart || !matches({.MatchCase = true}));
    Require(isPart || !isWhole);
    Require(isWhole || !matches({.MatchCase = true, .MatchWholeString = true}));
    Require(isDescribed || !isWhole);
    Require(isDescribed || !matches({.MatchCase = true, .UseWildcard = true}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t lineEnd = std::min(input.find('\n'), size);
    const std::string_view first = input.substr(0, lineEnd);
    const std::string_view rest = input.substr(std::min(lineEnd + 1, size));
    const Block<char> search(first);
    const Block<char> candidate(rest);
    CheckExpression(search.Text(), candidate.Text());
    const Block<wchar_t> wideSearch(WideFromUtf8(first));
    const Block<wchar_t> wideCandidate(WideFromUtf8(rest));
    CheckOptions(wideSearch.Text(), wideCandidate.Text());
    return 0;
}
