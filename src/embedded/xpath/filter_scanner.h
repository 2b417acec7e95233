// Reads the text of a filter piece by piece; blanks between the pieces do not count.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "embedded/xpath/integer.h"

namespace corvina::xpath {

// A copy stays where it is, for looking ahead.
class FilterScanner {
  public:
    explicit FilterScanner(std::wstring_view text) : rest_(text) { SkipBlanks(); }

    bool AtEnd() const { return rest_.empty(); }

    // The next character; zero at the end.
    wchar_t Next() const { return rest_.empty() ? L'\0' : rest_.front(); }

    // Passes a sign such as "<=" when it comes next.
    bool Take(std::wstring_view sign);

    // Passes a word such as "or" when it comes next and is not the beginning of a longer name.
    bool TakeWord(std::wstring_view word);

    // Passes a name: letters, digits, "_", "-" and ".", not beginning with one of the last two or a digit. Empty when
    // none comes next.
    std::wstring_view TakeName();

    // Passes a number: decimal, or hexadecimal after "0x", with a minus sign or without. None when what comes next is
    // none.
    std::optional<Integer> TakeNumber();

    // Passes a text in single or double quotes. None when none comes next or its end is missing.
    std::optional<std::wstring> TakeText();

  private:
    void Pass(std::size_t count);
    void SkipBlanks();

    std::wstring_view rest_;
};

}  // namespace corvina::xpath
