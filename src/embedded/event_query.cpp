#include "embedded/event_query.h"

#include "platform/error_codes.h"

namespace corvina::embedded {

EventQuery::EventQuery(LogCursor log, std::wstring name) : log_(std::move(log)) {
    names_.push_back(std::move(name));
    statuses_.push_back(error::Success);
}

}  // namespace corvina::embedded
