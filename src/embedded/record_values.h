// The parts of one record that a filter asks for, decoded when they are first asked for.
#pragma once

#include <vector>

#include "embedded/evtx/log_file.h"
#include "embedded/xpath/filter.h"

namespace corvina::embedded {

class RecordValues : public xpath::EventValues {
  public:
    // `system` and `data` are memory that the caller reuses from record to record. Everything must outlive the values.
    RecordValues(const evtx::Chunk& chunk, const evtx::RecordPlace& record, evtx::SystemValues& system,
                 std::vector<evtx::DataValue>& data)
        : chunk_(chunk), record_(record), system_(system), data_(data) {}

    const evtx::SystemValues* System() override;
    const std::vector<evtx::DataValue>* Data() override;

  private:
    const evtx::Chunk& chunk_;
    const evtx::RecordPlace& record_;
    evtx::SystemValues& system_;
    std::vector<evtx::DataValue>& data_;
    bool systemRead_ = false;
    bool systemSound_ = false;
    bool dataRead_ = false;
    bool dataSound_ = false;
};

}  // namespace corvina::embedded
