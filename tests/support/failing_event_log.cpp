#include "support/failing_event_log.h"

namespace corvina::test {
namespace {

std::optional<std::wstring> CopyOf(LPCWSTR text) {
    return text == nullptr ? std::nullopt : std::optional<std::wstring>(text);
}

}  // namespace

void FailingEventLog::FailCall(Operation operation, std::size_t call, std::uint32_t error) {
    Plan& plan = plans_[static_cast<std::size_t>(operation)];
    plan.FailingCall = call;
    plan.Error = error;
}

void FailingEventLog::FailNextCall(Operation operation, std::uint32_t error) {
    FailCall(operation, Calls(operation) + 1, error);
}

void FailingEventLog::FailAlways(Operation operation, std::uint32_t error) {
    Plan& plan = plans_[static_cast<std::size_t>(operation)];
    plan.FailAlways = true;
    plan.Error = error;
}

void FailingEventLog::StopFailing() {
    for (Plan& plan : plans_) {
        plan.FailingCall = 0;
        plan.FailAlways = false;
    }
}

bool FailingEventLog::Fails(Operation operation) {
    if (OnCall) {
        OnCall(operation);
    }
    Plan& plan = plans_[static_cast<std::size_t>(operation)];
    ++plan.Calls;
    ownError_.reset();
    if (!plan.FailAlways && plan.Calls != plan.FailingCall) {
        return false;
    }
    ownError_ = plan.Error;
    return true;
}

EVT_HANDLE FailingEventLog::Opened(EVT_HANDLE handle) {
    if (handle != nullptr) {
        ++opened_;
        open_.insert(handle);
    }
    return handle;
}

std::uint32_t FailingEventLog::GetLastError() const {
    return ownError_ ? *ownError_ : inner_.GetLastError();
}

EVT_HANDLE FailingEventLog::EvtOpenSession(EVT_LOGIN_CLASS loginClass, PVOID login, DWORD timeout, DWORD flags) {
    if (login != nullptr) {
        const EVT_RPC_LOGIN& record = *static_cast<const EVT_RPC_LOGIN*>(login);
        Sessions.push_back({CopyOf(record.Server).value_or(std::wstring()), CopyOf(record.User), CopyOf(record.Domain),
                            CopyOf(record.Password), record.Flags, timeout, flags});
    }
    return Fails(Operation::OpenSession) ? nullptr : Opened(inner_.EvtOpenSession(loginClass, login, timeout, flags));
}

BOOL FailingEventLog::EvtClose(EVT_HANDLE object) {
    if (Fails(Operation::Close)) {
        return FALSE;
    }
    if (open_.erase(object) != 0) {
        ++closed_;
    }
    return inner_.EvtClose(object);
}

EVT_HANDLE FailingEventLog::EvtOpenChannelEnum(EVT_HANDLE session, DWORD flags) {
    return Fails(Operation::OpenChannelEnum) ? nullptr : Opened(inner_.EvtOpenChannelEnum(session, flags));
}

BOOL FailingEventLog::EvtNextChannelPath(EVT_HANDLE channelEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) {
    return Fails(Operation::NextChannelPath) ? FALSE
                                             : inner_.EvtNextChannelPath(channelEnum, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE FailingEventLog::EvtOpenChannelConfig(EVT_HANDLE session, LPCWSTR channelPath, DWORD flags) {
    return Fails(Operation::OpenChannelConfig) ? nullptr
                                               : Opened(inner_.EvtOpenChannelConfig(session, channelPath, flags));
}

BOOL FailingEventLog::EvtGetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                                  DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer,
                                                  DWORD* bufferUsed) {
    return Fails(Operation::GetChannelConfigProperty)
               ? FALSE
               : inner_.EvtGetChannelConfigProperty(channelConfig, property, flags, bufferSize, buffer, bufferUsed);
}

BOOL FailingEventLog::EvtSetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                                  DWORD flags, EVT_VARIANT* value) {
    return Fails(Operation::SetChannelConfigProperty)
               ? FALSE
               : inner_.EvtSetChannelConfigProperty(channelConfig, property, flags, value);
}

BOOL FailingEventLog::EvtSaveChannelConfig(EVT_HANDLE channelConfig, DWORD flags) {
    return Fails(Operation::SaveChannelConfig) ? FALSE : inner_.EvtSaveChannelConfig(channelConfig, flags);
}

EVT_HANDLE FailingEventLog::EvtQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags) {
    Queries.push_back({session, CopyOf(path), CopyOf(query), flags});
    return Fails(Operation::Query) ? nullptr : Opened(inner_.EvtQuery(session, path, query, flags));
}

BOOL FailingEventLog::EvtGetQueryInfo(EVT_HANDLE query, EVT_QUERY_PROPERTY_ID property, DWORD bufferSize,
                                      EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return Fails(Operation::GetQueryInfo) ? FALSE
                                          : inner_.EvtGetQueryInfo(query, property, bufferSize, buffer, bufferUsed);
}

BOOL FailingEventLog::EvtNext(EVT_HANDLE resultSet, DWORD eventsSize, EVT_HANDLE* events, DWORD timeout, DWORD flags,
                              DWORD* returned) {
    LastBatchSize = eventsSize;
    LastTimeout = timeout;
    if (Fails(Operation::Next)) {
        return FALSE;
    }
    if (inner_.EvtNext(resultSet, eventsSize, events, timeout, flags, returned) == FALSE) {
        return FALSE;
    }
    for (DWORD index = 0; index < *returned; ++index) {
        Opened(events[index]);
    }
    return TRUE;
}

EVT_HANDLE FailingEventLog::EvtCreateRenderContext(DWORD valuePathsCount, LPCWSTR* valuePaths, DWORD flags) {
    return Fails(Operation::CreateRenderContext)
               ? nullptr
               : Opened(inner_.EvtCreateRenderContext(valuePathsCount, valuePaths, flags));
}

BOOL FailingEventLog::EvtRender(EVT_HANDLE context, EVT_HANDLE fragment, DWORD flags, DWORD bufferSize, PVOID buffer,
                                DWORD* bufferUsed, DWORD* propertyCount) {
    return Fails(Operation::Render)
               ? FALSE
               : inner_.EvtRender(context, fragment, flags, bufferSize, buffer, bufferUsed, propertyCount);
}

EVT_HANDLE FailingEventLog::EvtOpenPublisherMetadata(EVT_HANDLE session, LPCWSTR publisherId, LPCWSTR logFilePath,
                                                     DWORD locale, DWORD flags) {
    return Fails(Operation::OpenPublisherMetadata)
               ? nullptr
               : Opened(inner_.EvtOpenPublisherMetadata(session, publisherId, logFilePath, locale, flags));
}

BOOL FailingEventLog::EvtFormatMessage(EVT_HANDLE publisherMetadata, EVT_HANDLE event, DWORD messageId,
                                       DWORD valueCount, EVT_VARIANT* values, DWORD flags, DWORD bufferSize,
                                       LPWSTR buffer, DWORD* bufferUsed) {
    return Fails(Operation::FormatMessage) ? FALSE
                                           : inner_.EvtFormatMessage(publisherMetadata, event, messageId, valueCount,
                                                                     values, flags, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE FailingEventLog::EvtOpenPublisherEnum(EVT_HANDLE session, DWORD flags) {
    return Fails(Operation::OpenPublisherEnum) ? nullptr : Opened(inner_.EvtOpenPublisherEnum(session, flags));
}

BOOL FailingEventLog::EvtNextPublisherId(EVT_HANDLE publisherEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) {
    return Fails(Operation::NextPublisherId) ? FALSE
                                             : inner_.EvtNextPublisherId(publisherEnum, bufferSize, buffer, bufferUsed);
}

BOOL FailingEventLog::EvtGetPublisherMetadataProperty(EVT_HANDLE publisherMetadata,
                                                      EVT_PUBLISHER_METADATA_PROPERTY_ID property, DWORD flags,
                                                      DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return Fails(Operation::GetPublisherMetadataProperty)
               ? FALSE
               : inner_.EvtGetPublisherMetadataProperty(publisherMetadata, property, flags, bufferSize, buffer,
                                                        bufferUsed);
}

BOOL FailingEventLog::EvtGetObjectArraySize(EVT_HANDLE objectArray, DWORD* arraySize) {
    return Fails(Operation::GetObjectArraySize) ? FALSE : inner_.EvtGetObjectArraySize(objectArray, arraySize);
}

BOOL FailingEventLog::EvtGetObjectArrayProperty(EVT_HANDLE objectArray, DWORD property, DWORD arrayIndex, DWORD flags,
                                                DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return Fails(Operation::GetObjectArrayProperty)
               ? FALSE
               : inner_.EvtGetObjectArrayProperty(objectArray, property, arrayIndex, flags, bufferSize, buffer,
                                                  bufferUsed);
}

EVT_HANDLE FailingEventLog::EvtOpenEventMetadataEnum(EVT_HANDLE publisherMetadata, DWORD flags) {
    return Fails(Operation::OpenEventMetadataEnum) ? nullptr
                                                   : Opened(inner_.EvtOpenEventMetadataEnum(publisherMetadata, flags));
}

EVT_HANDLE FailingEventLog::EvtNextEventMetadata(EVT_HANDLE eventMetadataEnum, DWORD flags) {
    return Fails(Operation::NextEventMetadata) ? nullptr
                                               : Opened(inner_.EvtNextEventMetadata(eventMetadataEnum, flags));
}

BOOL FailingEventLog::EvtGetEventMetadataProperty(EVT_HANDLE eventMetadata, EVT_EVENT_METADATA_PROPERTY_ID property,
                                                  DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer,
                                                  DWORD* bufferUsed) {
    return Fails(Operation::GetEventMetadataProperty)
               ? FALSE
               : inner_.EvtGetEventMetadataProperty(eventMetadata, property, flags, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE FailingEventLog::EvtOpenLog(EVT_HANDLE session, LPCWSTR path, DWORD flags) {
    return Fails(Operation::OpenLog) ? nullptr : Opened(inner_.EvtOpenLog(session, path, flags));
}

BOOL FailingEventLog::EvtGetLogInfo(EVT_HANDLE log, EVT_LOG_PROPERTY_ID property, DWORD bufferSize, EVT_VARIANT* buffer,
                                    DWORD* bufferUsed) {
    return Fails(Operation::GetLogInfo) ? FALSE : inner_.EvtGetLogInfo(log, property, bufferSize, buffer, bufferUsed);
}

BOOL FailingEventLog::EvtExportLog(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, LPCWSTR targetFilePath,
                                   DWORD flags) {
    return Fails(Operation::ExportLog) ? FALSE : inner_.EvtExportLog(session, path, query, targetFilePath, flags);
}

BOOL FailingEventLog::EvtClearLog(EVT_HANDLE session, LPCWSTR channelPath, LPCWSTR targetFilePath, DWORD flags) {
    return Fails(Operation::ClearLog) ? FALSE : inner_.EvtClearLog(session, channelPath, targetFilePath, flags);
}

}  // namespace corvina::test
