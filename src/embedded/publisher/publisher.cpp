#include <algorithm>
#include <iterator>
#include <utility>

#include "embedded/publisher/message_table.h"
#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

namespace {

// The text of a value in a list that is sorted by values; none when it has no text.
std::optional<std::wstring> TextOf(const std::vector<NamedValue>& values, std::uint64_t value) {
    const auto first =
        std::lower_bound(values.begin(), values.end(), value,
                         [](const NamedValue& candidate, std::uint64_t wanted) { return candidate.Value < wanted; });
    if (first == values.end() || first->Value != value || first->Message.empty()) {
        return std::nullopt;
    }
    return first->Message;
}

using EventKey = std::pair<std::uint32_t, std::uint8_t>;

EventKey KeyOf(const EventDefinition& event) {
    return {event.Id, event.Version};
}

void SortByValue(std::vector<NamedValue>& values) {
    std::stable_sort(values.begin(), values.end(),
                     [](const NamedValue& left, const NamedValue& right) { return left.Value < right.Value; });
}

}  // namespace

void Publisher::SortDefinitions() {
    SortByValue(Levels);
    SortByValue(Tasks);
    SortByValue(Opcodes);
    SortByValue(Keywords);
    std::stable_sort(Events.begin(), Events.end(), [](const EventDefinition& left, const EventDefinition& right) {
        return KeyOf(left) < KeyOf(right);
    });
}

const EventDefinition* Publisher::FindEvent(std::uint32_t id, std::uint8_t version) const {
    const auto firstNotBelow = [this](const EventKey& key) {
        return std::lower_bound(
            Events.begin(), Events.end(), key,
            [](const EventDefinition& candidate, const EventKey& wanted) { return KeyOf(candidate) < wanted; });
    };
    const auto found = firstNotBelow({id, version});
    const bool hasSameOrNewer = found != Events.end() && found->Id == id;
    if (hasSameOrNewer && found->Version == version) {
        return &*found;
    }
    // Newer versions add values, so the nearest older definition names only values that the event has.
    if (found != Events.begin() && std::prev(found)->Id == id) {
        return &*firstNotBelow(KeyOf(*std::prev(found)));
    }
    return hasSameOrNewer ? &*found : nullptr;
}

std::optional<std::wstring> Publisher::LevelText(std::uint8_t level) const {
    std::optional<std::wstring> text = TextOf(Levels, level);
    return text ? text : StandardLevelText(level);
}

std::optional<std::wstring> Publisher::TaskText(std::uint16_t task) const {
    std::optional<std::wstring> text = TextOf(Tasks, task);
    // Classic providers number the texts of their categories from 1 on.
    if (!text && task != 0 && Tasks.empty() && Messages != nullptr) {
        text = Messages->Find(task);
    }
    return text;
}

std::optional<std::wstring> Publisher::OpcodeText(std::uint8_t opcode, std::uint16_t task) const {
    std::optional<std::wstring> text = TextOf(Opcodes, static_cast<std::uint64_t>(task) << 16 | opcode);
    if (!text) {
        text = TextOf(Opcodes, opcode);
    }
    return text ? text : StandardOpcodeText(opcode);
}

std::vector<std::wstring> Publisher::KeywordTexts(std::uint64_t mask) const {
    std::vector<std::wstring> texts;
    std::uint64_t withText = 0;
    for (const NamedValue& keyword : Keywords) {
        const bool isSet = keyword.Value != 0 && (mask & keyword.Value) == keyword.Value;
        if (isSet && !keyword.Message.empty() && (withText & keyword.Value) != keyword.Value) {
            texts.push_back(keyword.Message);
            withText |= keyword.Value;
        }
    }
    for (std::wstring& text : StandardKeywordTexts(mask & ~withText)) {
        texts.push_back(std::move(text));
    }
    return texts;
}

}  // namespace corvina::publisher
