// What a filter says about System values alone, in a form that is asked without the tree of an event. Nearly all
// filters are about them, and most events are refused by them.
//
// The language has no "not": where a part is true, everything around it that needs no other part is true as well, so
// the brackets of a filter are the same as "and", and what these values cannot answer stays open without harm.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "embedded/evtx/system_field.h"
#include "embedded/xpath/event_values.h"
#include "embedded/xpath/expression.h"
#include "embedded/xpath/integer_set.h"

namespace corvina::xpath {

enum class Answer : std::uint8_t { No, Yes, Open };

// One condition, or several together.
struct SystemTest {
    enum class Kind : std::uint8_t {
        Open,     // cannot be answered here
        Numbers,  // the field's number, or time, is in Set
        Mask,     // the bits that the field's number and Bits have in common compare so with Constant
        Age,      // the milliseconds from the field's time to the time Bits compare so with Constant
        Value,    // the field compares so with Constant
        All,      // all Parts
        Any,      // one of the Parts
    };

    Kind Is = Kind::Open;
    evtx::SystemField Field = evtx::SystemField::EventId;
    Comparison How = Comparison::Equal;
    std::uint64_t Bits = 0;
    IntegerSet Set;
    Literal Constant;
    std::vector<SystemTest> Parts;
};

class SystemFilter {
  public:
    explicit SystemFilter(const Expression& expression);

    // The answer is Open for every event.
    bool IsOpen() const { return test_.Is == SystemTest::Kind::Open; }

    // The answer is No for every event.
    bool IsNever() const { return test_.Is == SystemTest::Kind::Numbers && test_.Set.IsEmpty(); }

    // The only record id that an event can have for which the answer is not No.
    std::optional<std::uint64_t> RecordId() const;

    Answer Ask(EventValues& event) const;

  private:
    Answer Ask(const SystemTest& test, EventValues& event) const;

    SystemTest test_;
    // Texts are read when the numbers have not decided.
    evtx::SystemFieldSet numbers_;
    evtx::SystemFieldSet all_;
};

}  // namespace corvina::xpath
