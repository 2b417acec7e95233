// The parts of one record that a filter asks for, decoded when they are first asked for.
#pragma once

#include "embedded/evtx/event_tree.h"
#include "embedded/evtx/log_file.h"
#include "embedded/xpath/event_values.h"

namespace corvina::embedded {

// Memory that is reused from record to record.
struct RecordMemory {
    evtx::SystemValues System;
    evtx::EventTree Tree;
};

class RecordValues : public xpath::EventValues {
  public:
    // Everything must outlive the values.
    RecordValues(const evtx::Chunk& chunk, const evtx::RecordPlace& record, RecordMemory& memory)
        : chunk_(chunk), record_(record), memory_(memory) {}

    xpath::SystemPart System(evtx::SystemFieldSet wanted) override;
    const evtx::EventTree* Tree() override;

  private:
    enum class TreeState { Unknown, Present, Absent };

    const evtx::Chunk& chunk_;
    const evtx::RecordPlace& record_;
    RecordMemory& memory_;
    bool systemSound_ = true;
    evtx::SystemFieldSet systemRead_;
    evtx::SystemFieldSet systemCertain_;
    TreeState treeState_ = TreeState::Unknown;
};

}  // namespace corvina::embedded
