// Query documents: the XML in which a query names several logs and says what it selects and suppresses in each.
//
//   <QueryList><Query Id="0" Path="System"><Select
//   Path="Application">*</Select><Suppress>...</Suppress></Query></QueryList>
//
// The path of a Select or Suppress is its own, else that of its Query. Its text is a filter; an empty one stands for
// "*". Ids are not looked at: each Query element is a query of its own, whatever others are called.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/xpath/filter.h"

namespace corvina::xpath {

// Whether the text of a query is meant as a document and not as a filter.
bool IsQueryDocument(std::wstring_view text);

class QueryDocument {
  public:
    // A Select or Suppress.
    struct Term {
        std::size_t Query = 0;  // counts the Query elements
        std::size_t Path = 0;   // of Paths()
        bool Suppresses = false;
        std::shared_ptr<const Filter> Condition;
    };

    // None when the text is no such document, is too long, or one of its filters is not valid. `now` is the time of the
    // query for filters that speak of the present, as a file time. Unknown attributes are passed over, unknown elements
    // are not: what they ask for would be missing from the result.
    static std::optional<QueryDocument> Parse(std::wstring_view text, std::uint64_t now);

    // Each different path once, in the order of the document. A document may have none at all.
    const std::vector<std::wstring>& Paths() const { return paths_; }

    // In the order of the document, so that those of one query follow one another.
    const std::vector<Term>& Terms() const { return terms_; }

  private:
    class Reader;

    std::vector<std::wstring> paths_;
    std::vector<Term> terms_;
};

}  // namespace corvina::xpath
