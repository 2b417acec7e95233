// Operations of the embedded event log on queries and their events.
#include "embedded/embedded_state.h"
#include "embedded/system_row.h"
#include "embedded/variant_row.h"

namespace corvina::embedded {
namespace {

// Writes the whole text or nothing; sizes are in bytes here.
std::uint32_t WriteXml(const std::wstring& xml, DWORD bufferSize, PVOID buffer, DWORD* used) {
    const std::size_t size = (xml.size() + 1) * sizeof(wchar_t);
    *used = static_cast<DWORD>(size);
    if (buffer == nullptr || bufferSize < size) {
        return error::InsufficientBuffer;
    }
    std::memcpy(buffer, xml.c_str(), size);
    return error::Success;
}

}  // namespace

EVT_HANDLE EmbeddedEventLog::EvtQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        std::unique_ptr<EventQuery> events;
        const std::uint32_t error = state_->OpenQuery(session, path, query, flags, events);
        if (error == error::Success) {
            object = std::make_unique<QueryObject>(std::move(events));
        }
        return error;
    });
}

BOOL EmbeddedEventLog::EvtGetQueryInfo(EVT_HANDLE queryOrSubscription, EVT_QUERY_PROPERTY_ID property, DWORD bufferSize,
                                       EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const query = state_->Handles.Find<QueryObject>(queryOrSubscription);
        if (query == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr || (property != EvtQueryNames && property != EvtQueryStatuses)) {
            return error::InvalidParameter;
        }
        return property == EvtQueryNames ? WriteTextArray(query->Events->Names(), bufferSize, buffer, bufferUsed)
                                         : WriteUInt32Array(query->Events->Statuses(), bufferSize, buffer, bufferUsed);
    });
}

// Never waits, whatever the time-out: everything there is to read is in a file.
BOOL EmbeddedEventLog::EvtNext(EVT_HANDLE resultSet, DWORD eventsSize, EVT_HANDLE* events, DWORD /*timeout*/,
                               DWORD flags, DWORD* returned) {
    DWORD count = 0;
    const BOOL done = state_->Do([&]() -> std::uint32_t {
        auto* const query = state_->Handles.Find<QueryObject>(resultSet);
        if (query == nullptr) {
            return error::InvalidHandle;
        }
        if (eventsSize == 0 || events == nullptr || returned == nullptr || flags != 0) {
            return error::InvalidParameter;
        }
        while (count < eventsSize) {
            if (state_->SpareEvents.empty()) {
                state_->SpareEvents.push_back(std::make_unique<EventObject>());
            }
            if (!query->Events->Next(state_->SpareEvents.back()->Place)) {
                break;
            }
            std::unique_ptr<EventObject> event = std::move(state_->SpareEvents.back());
            state_->SpareEvents.pop_back();
            events[count] = state_->Handles.Add(std::move(event));
            if (events[count] == nullptr) {
                return error::OutOfMemory;
            }
            ++count;
        }
        return count != 0 ? error::Success : error::NoMoreItems;
    });
    // Events that were found before memory ran out are the caller's.
    if (returned != nullptr) {
        *returned = count;
    }
    return done != FALSE || (state_->LastError == error::OutOfMemory && count != 0) ? TRUE : FALSE;
}

EVT_HANDLE EmbeddedEventLog::EvtCreateRenderContext(DWORD valuePathsCount, LPCWSTR* valuePaths, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        if (flags == EvtRenderContextValues || flags == EvtRenderContextUser) {
            return error::NotSupported;
        }
        if (flags != EvtRenderContextSystem || valuePathsCount != 0 || valuePaths != nullptr) {
            return error::InvalidParameter;
        }
        object = std::make_unique<RenderContextObject>();
        return error::Success;
    });
}

BOOL EmbeddedEventLog::EvtRender(EVT_HANDLE context, EVT_HANDLE fragment, DWORD flags, DWORD bufferSize, PVOID buffer,
                                 DWORD* bufferUsed, DWORD* propertyCount) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const event = state_->Handles.Find<EventObject>(fragment);
        const bool asValues = flags == EvtRenderEventValues;
        if (event == nullptr || (asValues && state_->Handles.Find<RenderContextObject>(context) == nullptr)) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr) {
            return error::InvalidParameter;
        }
        state_->Event.Select(fragment, event->Place);
        if (propertyCount != nullptr) {
            *propertyCount = asValues ? static_cast<DWORD>(EvtSystemPropertyIdEND) : 0;
        }
        if (asValues) {
            const evtx::SystemValues* const system = state_->Event.System();
            if (system == nullptr) {
                return error::EventLogFileCorrupt;
            }
            state_->Guids.Note(*system);
            return WriteSystemRow(*system, bufferSize, buffer, bufferUsed);
        }
        if (flags != EvtRenderEventXml) {
            return flags == EvtRenderBookmark ? error::NotSupported : error::InvalidParameter;
        }
        const std::wstring* const xml = state_->Event.Xml();
        return xml == nullptr ? error::EventLogFileCorrupt : WriteXml(*xml, bufferSize, buffer, bufferUsed);
    });
}

}  // namespace corvina::embedded
