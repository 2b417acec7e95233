#include "embedded/record_values.h"

namespace corvina::embedded {

xpath::SystemPart RecordValues::System(evtx::SystemFieldSet wanted) {
    const evtx::SystemFieldSet missing = wanted.Without(systemRead_);
    if (!missing.IsEmpty() && systemSound_) {
        evtx::SystemFieldSet certain;
        systemSound_ = chunk_.ReadSystem(record_, missing, memory_.System, certain);
        systemRead_ = systemRead_.With(missing);
        systemCertain_ = systemCertain_.With(certain);
    }
    return {systemSound_ ? &memory_.System : nullptr, systemCertain_};
}

const evtx::EventTree* RecordValues::Tree() {
    if (treeState_ == TreeState::Unknown) {
        treeState_ = chunk_.ReadTree(record_, memory_.Tree) ? TreeState::Present : TreeState::Absent;
    }
    return treeState_ == TreeState::Present ? &memory_.Tree : nullptr;
}

}  // namespace corvina::embedded
