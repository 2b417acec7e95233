#include "app/key_commands.h"

#include "app/command_ids.h"

namespace corvina {
namespace {

// Virtual-key codes of the platform.
constexpr std::uint32_t TabKey = 0x09;
constexpr std::uint32_t DeleteKey = 0x2E;
constexpr std::uint32_t EKey = 0x45;
constexpr std::uint32_t FKey = 0x46;
constexpr std::uint32_t F5Key = 0x74;

bool IsLog(std::optional<NodeKind> kind) {
    return kind == NodeKind::Channel || kind == NodeKind::SavedLog || kind == NodeKind::CustomView ||
           kind == NodeKind::MergedChannels || kind == NodeKind::AdministrativeEvents;
}

KeyMeaning CommandWhen(bool condition, std::uint32_t command) {
    return condition ? KeyMeaning{KeyAction::MenuCommand, command} : KeyMeaning{};
}

KeyMeaning MeaningWithControl(const KeyRelease& key, const KeySituation& situation) {
    if (key.VirtualKey == FKey) {
        return CommandWhen(IsLog(situation.SelectedNode), CORVINA_ID_SEARCH);
    }
    if (key.VirtualKey == EKey && situation.Focused == FocusStation::List) {
        return CommandWhen(true, CORVINA_ID_SAVE_SELECTED_EVENTS);
    }
    return CommandWhen(key.VirtualKey == EKey && situation.Focused == FocusStation::Tree, CORVINA_ID_EXPORT_LOG);
}

}  // namespace

KeyMeaning MeaningOfKey(const KeyRelease& key, const KeySituation& situation) {
    switch (key.VirtualKey) {
        case TabKey:
            return {key.Shift ? KeyAction::FocusPrevious : KeyAction::FocusNext, 0};
        case F5Key:
            return {situation.SelectedNode == NodeKind::Channel ? KeyAction::ReloadChannel : KeyAction::None, 0};
        case DeleteKey:
            // Only a channel can be cleared: the collected views and what the user added are not logs of their own.
            return CommandWhen(situation.SelectedNode == NodeKind::Channel, CORVINA_ID_CLEAR_LOG);
        default:
            return key.Control ? MeaningWithControl(key, situation) : KeyMeaning{};
    }
}

}  // namespace corvina
