#include "embedded/xpath/event_values.h"

namespace corvina::xpath {

std::optional<std::uint64_t> RecordIdOf(EventValues& event) {
    constexpr evtx::SystemField Field = evtx::SystemField::EventRecordId;
    const SystemPart system = event.System(evtx::SystemFieldSet::Of(Field));
    if (system.Values == nullptr) {
        return std::nullopt;
    }
    if (system.Certain.Has(Field)) {
        return system.Values->EventRecordId;
    }
    if (const evtx::EventTree* const tree = event.Tree(); tree != nullptr) {
        for (const evtx::EventTree::Node& node : tree->Nodes()) {
            if (node.Field == Field) {
                return tree->System().EventRecordId;
            }
        }
    }
    return std::nullopt;
}

}  // namespace corvina::xpath
