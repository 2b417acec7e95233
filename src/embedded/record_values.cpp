#include "embedded/record_values.h"

namespace corvina::embedded {

const evtx::SystemValues* RecordValues::System() {
    if (!systemRead_) {
        systemRead_ = true;
        systemSound_ = chunk_.ReadSystem(record_, system_);
    }
    return systemSound_ ? &system_ : nullptr;
}

const std::vector<evtx::DataValue>* RecordValues::Data() {
    if (!dataRead_) {
        dataRead_ = true;
        dataSound_ = chunk_.ReadData(record_, data_);
    }
    return dataSound_ ? &data_ : nullptr;
}

}  // namespace corvina::embedded
