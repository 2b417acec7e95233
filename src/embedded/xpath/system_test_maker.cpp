#include "embedded/xpath/system_test_maker.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/system_fields.h"

namespace corvina::xpath {
namespace {

using evtx::SystemField;
using Kind = SystemTest::Kind;

std::span<const std::byte> NameOf(const Step& step) {
    return std::as_bytes(std::span(step.Name));
}

enum class Where : std::uint8_t { AroundRoot, Event, System, InSystem, Elsewhere };

// Where in an event a path has come to.
struct Context {
    Where Is = Where::AroundRoot;
    const Step* Element = nullptr;     // in System: the step to the element
    std::optional<SystemField> Field;  // whose value this is

    Context After(const Step& step) const {
        const bool isElement = step.Test == NodeTest::Element;
        if (Is == Where::AroundRoot &&
            (step.Test == NodeTest::AnyElement || (isElement && evtx::EqualsAscii(NameOf(step), "Event")))) {
            return {Where::Event, nullptr, std::nullopt};
        }
        if (Is == Where::Event && isElement && evtx::EqualsAscii(NameOf(step), "System")) {
            return {Where::System, nullptr, std::nullopt};
        }
        if (Is == Where::System && isElement) {
            return {Where::InSystem, &step, evtx::SystemFieldOf(NameOf(step))};
        }
        if (Is == Where::InSystem && step.Test == NodeTest::Attribute) {
            return {Where::Elsewhere, nullptr, evtx::SystemFieldOf(NameOf(*Element), NameOf(step))};
        }
        return {Where::Elsewhere, nullptr, std::nullopt};
    }
};

SystemTest NumbersTest(SystemField field, IntegerSet set) {
    SystemTest test;
    test.Is = Kind::Numbers;
    test.Field = field;
    test.Set = std::move(set);
    return test;
}

SystemTest NeverTest() {
    return NumbersTest(SystemField::EventId, {});
}

bool IsNever(const SystemTest& test) {
    return test.Is == Kind::Numbers && test.Set.IsEmpty();
}

bool IsText(SystemField field) {
    return field == SystemField::ProviderName || field == SystemField::EventSourceName ||
           field == SystemField::Channel || field == SystemField::Computer;
}

bool IsIdentifier(SystemField field) {
    return field == SystemField::ProviderGuid || field == SystemField::ActivityId ||
           field == SystemField::RelatedActivityId || field == SystemField::UserSid;
}

bool IsNumber(SystemField field) {
    return !IsText(field) && !IsIdentifier(field) && field != SystemField::TimeCreated;
}

SystemTest ConstantTest(Kind kind, SystemField field, Comparison how, const Literal& constant) {
    SystemTest test;
    test.Is = kind;
    test.Field = field;
    test.How = how;
    test.Constant = constant;
    return test;
}

SystemTest ComparisonTest(SystemField field, Comparison how, const Literal& constant) {
    if (IsText(field) || IsIdentifier(field)) {
        return ConstantTest(Kind::Value, field, how, constant);
    }
    std::optional<Integer> number = constant.Number;
    if (field == SystemField::TimeCreated) {
        number = constant.Time ? std::optional(Integer::Of(*constant.Time)) : std::nullopt;
    }
    return number ? NumbersTest(field, IntegerSet::Of(how, *number)) : NeverTest();
}

// What comes first decides soonest: numbers before texts, and last what is not answered here.
int CostOf(const SystemTest& test) {
    switch (test.Is) {
        case Kind::Numbers:
            return 0;
        case Kind::Mask:
        case Kind::Age:
            return 1;
        case Kind::Value:
            return 2;
        case Kind::Open:
            return 4;
        default:
            return 3;
    }
}

// The tests, with the parts of those that are joined the same way in their place.
std::vector<SystemTest> Flattened(Kind kind, std::vector<SystemTest> tests) {
    std::vector<SystemTest> flat;
    for (SystemTest& test : tests) {
        if (test.Is == kind) {
            flat.insert(flat.end(), std::make_move_iterator(test.Parts.begin()),
                        std::make_move_iterator(test.Parts.end()));
        } else {
            flat.push_back(std::move(test));
        }
    }
    return flat;
}

// One test for each field that has numbers.
std::vector<SystemTest> JoinNumbers(Kind kind, std::span<SystemTest> tests) {
    std::array<std::vector<IntegerSet>, evtx::SystemFieldCount> sets;
    for (SystemTest& test : tests) {
        if (test.Is == Kind::Numbers) {
            sets[static_cast<std::size_t>(test.Field)].push_back(std::move(test.Set));
        }
    }
    std::vector<SystemTest> joined;
    for (std::size_t field = 0; field < sets.size(); ++field) {
        if (!sets[field].empty()) {
            joined.push_back(NumbersTest(static_cast<SystemField>(field), kind == Kind::All
                                                                              ? IntegerSet::IntersectionOf(sets[field])
                                                                              : IntegerSet::UnionOf(sets[field])));
        }
    }
    return joined;
}

// Joins tests by "and" (All) or "or" (Any), in one pass over them. There must be at least one.
SystemTest Join(Kind kind, std::vector<SystemTest> tests) {
    tests = Flattened(kind, std::move(tests));
    std::vector<SystemTest> parts = JoinNumbers(kind, tests);
    if (kind == Kind::All && std::any_of(parts.begin(), parts.end(), IsNever)) {
        return NeverTest();
    }
    std::erase_if(parts, IsNever);
    bool isOpen = false;
    for (SystemTest& test : tests) {
        if (test.Is == Kind::Open) {
            isOpen = true;
        } else if (test.Is != Kind::Numbers) {
            parts.push_back(std::move(test));
        }
    }
    if (isOpen) {
        parts.emplace_back();
    }
    if (parts.size() <= 1) {
        return parts.empty() ? NeverTest() : std::move(parts.front());
    }
    std::stable_sort(parts.begin(), parts.end(),
                     [](const SystemTest& left, const SystemTest& right) { return CostOf(left) < CostOf(right); });
    SystemTest joined;
    joined.Is = kind;
    joined.Parts = std::move(parts);
    return joined;
}

SystemTest Make(const Expression& expression, const Context& context);

// The predicates along a path, and what `testField` makes of the place at its end.
template <typename TestField>
SystemTest MakePathTest(const Path& path, Context context, TestField testField) {
    std::vector<SystemTest> tests;
    for (const Step& step : path.Steps) {
        context = context.After(step);
        for (const Expression& predicate : step.Predicates) {
            tests.push_back(Make(predicate, context));
        }
    }
    testField(context, tests);
    return Join(Kind::All, std::move(tests));
}

// A path whose last step has predicates selects something when they are true. Without any it stays open, since values
// that are absent do not tell whether their elements are.
SystemTest MakeExistsTest(const Path& path, const Context& context) {
    return MakePathTest(path, context, [&path](const Context&, std::vector<SystemTest>& tests) {
        if (path.Steps.back().Predicates.empty()) {
            tests.emplace_back();
        }
    });
}

// What `make` makes of the field at the end of a path; open when there is none, or not one of those.
template <typename MakeTest>
SystemTest MakeFieldTest(const Argument& argument, const Context& context, MakeTest make) {
    const auto* const path = std::get_if<Path>(&argument);
    if (path == nullptr) {
        return {};
    }
    return MakePathTest(*path, context, [&make](const Context& end, std::vector<SystemTest>& tests) {
        tests.push_back(end.Field ? make(*end.Field) : SystemTest());
    });
}

SystemTest MakeMask(const BandCall& call, const Context& context, Comparison how, const Literal& constant) {
    const bool constantFirst = std::holds_alternative<Literal>(call.Left);
    const auto* const mask = std::get_if<Literal>(constantFirst ? &call.Left : &call.Right);
    return MakeFieldTest(constantFirst ? call.Right : call.Left, context, [&](SystemField field) -> SystemTest {
        if (mask == nullptr || !IsNumber(field)) {
            return {};
        }
        SystemTest test = ConstantTest(Kind::Mask, field, how, constant);
        test.Bits = mask->Number->Low;
        return test;
    });
}

SystemTest MakeAge(const TimeDiffCall& call, const Context& context, Comparison how, const Literal& constant) {
    return MakeFieldTest(call.From, context, [&](SystemField field) -> SystemTest {
        const auto* const to = std::get_if<Literal>(&call.To);
        if (to == nullptr || field != SystemField::TimeCreated) {
            return {};
        }
        SystemTest test = ConstantTest(Kind::Age, field, how, constant);
        test.Bits = to->Time ? *to->Time : to->Number->Low;
        return test;
    });
}

SystemTest MakeComparison(const Expression& expression, const Context& context) {
    if (const auto* const path = std::get_if<Path>(&expression.What)) {
        return MakePathTest(*path, context, [&](const Context& end, std::vector<SystemTest>& tests) {
            tests.push_back(end.Field ? ComparisonTest(*end.Field, expression.How, expression.With) : SystemTest());
        });
    }
    if (const auto* const band = std::get_if<BandCall>(&expression.What)) {
        return MakeMask(*band, context, expression.How, expression.With);
    }
    if (const auto* const timeDiff = std::get_if<TimeDiffCall>(&expression.What)) {
        return MakeAge(*timeDiff, context, expression.How, expression.With);
    }
    return {};
}

std::vector<SystemTest> MakeParts(const Expression& expression, const Context& context) {
    std::vector<SystemTest> tests;
    for (const Expression& part : expression.Parts) {
        tests.push_back(Make(part, context));
    }
    return tests;
}

SystemTest Make(const Expression& expression, const Context& context) {
    switch (expression.Is) {
        case Expression::Kind::Or:
            return Join(Kind::Any, MakeParts(expression, context));
        case Expression::Kind::And:
            return Join(Kind::All, MakeParts(expression, context));
        case Expression::Kind::Exists:
            return MakeExistsTest(std::get<Path>(expression.What), context);
        case Expression::Kind::NonZero:
            return MakeMask(std::get<BandCall>(expression.What), context, Comparison::NotEqual,
                            Literal::OfNumber(Integer::Of(0)));
        default:
            return MakeComparison(expression, context);
    }
}

}  // namespace

SystemTest MakeSystemTest(const Expression& expression) {
    return Make(expression, Context());
}

}  // namespace corvina::xpath
