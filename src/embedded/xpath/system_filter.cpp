#include "embedded/xpath/system_filter.h"

#include <algorithm>

#include "embedded/xpath/system_test_maker.h"

namespace corvina::xpath {
namespace {

using evtx::SystemField;
using evtx::SystemFieldSet;

void CollectFields(const SystemTest& test, SystemFieldSet& numbers, SystemFieldSet& all) {
    for (const SystemTest& part : test.Parts) {
        CollectFields(part, numbers, all);
    }
    if (test.Is == SystemTest::Kind::Open || !test.Parts.empty()) {
        return;
    }
    const SystemFieldSet field = SystemFieldSet::Of(test.Field);
    all = all.With(field);
    if (test.Is != SystemTest::Kind::Value) {
        numbers = numbers.With(field);
    }
}

// The number of a field that is one, or its time.
std::optional<std::uint64_t> NumberOf(const Scalar& value) {
    const auto* const integer = std::get_if<Integer>(&value);
    return integer == nullptr ? TimeOf(value) : std::optional(integer->Low);
}

bool Passes(const SystemTest& test, const Scalar& value) {
    const std::optional<std::uint64_t> number = NumberOf(value);
    switch (test.Is) {
        case SystemTest::Kind::Numbers:
            return number && test.Set.Has(*number);
        case SystemTest::Kind::Mask:
            return number && Compare(Integer::Of(*number & test.Bits), test.How, test.Constant);
        case SystemTest::Kind::Age:
            return number && Compare(MillisecondsBetween(*number, test.Bits), test.How, test.Constant);
        default:
            return Compare(value, test.How, test.Constant);
    }
}

}  // namespace

SystemFilter::SystemFilter(const Expression& expression) : test_(MakeSystemTest(expression)) {
    CollectFields(test_, numbers_, all_);
}

std::optional<std::uint64_t> SystemFilter::RecordId() const {
    const auto idOf = [](const SystemTest& test) {
        const bool isId = test.Is == SystemTest::Kind::Numbers && test.Field == SystemField::EventRecordId;
        return isId ? test.Set.OnlyNumber() : std::nullopt;
    };
    if (test_.Is == SystemTest::Kind::All) {
        for (const SystemTest& part : test_.Parts) {
            if (const auto id = idOf(part)) {
                return id;
            }
        }
    }
    return idOf(test_);
}

Answer SystemFilter::Ask(EventValues& event) const {
    return Ask(test_, event);
}

Answer SystemFilter::Ask(const SystemTest& test, EventValues& event) const {
    if (test.Is == SystemTest::Kind::Open) {
        return Answer::Open;
    }
    if (test.Is == SystemTest::Kind::All || test.Is == SystemTest::Kind::Any) {
        // The one answer that decides for all; otherwise open when one part is.
        const Answer deciding = test.Is == SystemTest::Kind::All ? Answer::No : Answer::Yes;
        Answer answer = deciding == Answer::No ? Answer::Yes : Answer::No;
        for (const SystemTest& part : test.Parts) {
            const Answer one = Ask(part, event);
            if (one == deciding) {
                return one;
            }
            answer = one == Answer::Open ? one : answer;
        }
        return answer;
    }
    const SystemPart part = event.System(test.Is == SystemTest::Kind::Value ? all_ : numbers_);
    if (part.Values == nullptr) {
        return Answer::No;
    }
    if (!part.Certain.Has(test.Field)) {
        return Answer::Open;
    }
    const Scalar value = ScalarOf(test.Field, *part.Values);
    if (!Passes(test, value)) {
        return Answer::No;
    }
    // An empty text may as well be no text at all.
    const auto* const text = std::get_if<std::wstring_view>(&value);
    return text != nullptr && text->empty() ? Answer::Open : Answer::Yes;
}

}  // namespace corvina::xpath
