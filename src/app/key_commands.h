// What the keys of the main window do. Keys are taken when they are released, before any control sees them.
#pragma once

#include <cstdint>
#include <optional>

#include "app/main_window_view.h"
#include "eventlog/log_tree.h"

namespace corvina {

// A key that was released, with the state of the keys held with it.
struct KeyRelease {
    std::uint32_t VirtualKey = 0;  // the platform's virtual-key code
    bool Control = false;
    bool Shift = false;
};

struct KeySituation {
    std::optional<NodeKind> SelectedNode;
    std::optional<FocusStation> Focused;
};

enum class KeyAction { None, FocusNext, FocusPrevious, ReloadChannel, MenuCommand };

struct KeyMeaning {
    KeyAction Action = KeyAction::None;
    std::uint32_t Command = 0;  // for MenuCommand
};

KeyMeaning MeaningOfKey(const KeyRelease& key, const KeySituation& situation);

}  // namespace corvina
