#include "embedded/evtx/system_values.h"

namespace corvina::evtx {

void SystemValues::Clear() {
    for (std::wstring* text : {&ProviderName, &EventSourceName, &Channel, &Computer}) {
        text->clear();
    }
    ProviderGuid.reset();
    EventId.reset();
    Qualifiers.reset();
    Version.reset();
    Level.reset();
    Task.reset();
    Opcode.reset();
    Keywords.reset();
    TimeCreated.reset();
    EventRecordId.reset();
    ActivityId.reset();
    RelatedActivityId.reset();
    ProcessId.reset();
    ThreadId.reset();
    UserSid.clear();
}

}  // namespace corvina::evtx
