// The values of the template instances that are being read, those of nested ones behind those around them. Its memory
// is kept from one record to the next.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "embedded/evtx/value.h"

namespace corvina::evtx {

class ValueList {
  public:
    std::size_t Size() const { return size_; }
    const Value& operator[](std::size_t index) const { return values_[index]; }

    // So many more values, to be set by the caller: they are whatever was there before. The others may move.
    std::span<Value> Add(std::size_t count) {
        if (values_.size() - size_ < count) {
            values_.resize(std::max(2 * values_.size(), size_ + count));
        }
        const std::span<Value> added(values_.data() + size_, count);
        size_ += count;
        return added;
    }

    void CutTo(std::size_t size) { size_ = size; }

  private:
    std::vector<Value> values_;
    std::size_t size_ = 0;
};

}  // namespace corvina::evtx
