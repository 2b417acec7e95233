#include "platform/win32/system_event_log.h"

#include "platform/error_codes.h"

namespace corvina {

SystemEventLog::SystemEventLog()
    : library_(L"wevtapi.dll"), functions_(ResolveFunctions()), implemented_(ProbeService()) {
    if (!implemented_) {
        // Another system's stand-in library may end the program when one of its empty functions is called.
        functions_ = {};
    }
}

SystemEventLog::Functions SystemEventLog::ResolveFunctions() const {
    Functions functions;
    const auto resolve = [this]<typename Function>(Function& function, const char* name) {
        function = library_.Find<Function>(name);
    };
    resolve(functions.OpenSession, "EvtOpenSession");
    resolve(functions.Close, "EvtClose");
    resolve(functions.OpenChannelEnum, "EvtOpenChannelEnum");
    resolve(functions.NextChannelPath, "EvtNextChannelPath");
    resolve(functions.OpenChannelConfig, "EvtOpenChannelConfig");
    resolve(functions.GetChannelConfigProperty, "EvtGetChannelConfigProperty");
    resolve(functions.SetChannelConfigProperty, "EvtSetChannelConfigProperty");
    resolve(functions.SaveChannelConfig, "EvtSaveChannelConfig");
    resolve(functions.Query, "EvtQuery");
    resolve(functions.GetQueryInfo, "EvtGetQueryInfo");
    resolve(functions.Next, "EvtNext");
    resolve(functions.CreateRenderContext, "EvtCreateRenderContext");
    resolve(functions.Render, "EvtRender");
    resolve(functions.OpenPublisherMetadata, "EvtOpenPublisherMetadata");
    resolve(functions.FormatMessage, "EvtFormatMessage");
    resolve(functions.OpenPublisherEnum, "EvtOpenPublisherEnum");
    resolve(functions.NextPublisherId, "EvtNextPublisherId");
    resolve(functions.GetPublisherMetadataProperty, "EvtGetPublisherMetadataProperty");
    resolve(functions.GetObjectArraySize, "EvtGetObjectArraySize");
    resolve(functions.GetObjectArrayProperty, "EvtGetObjectArrayProperty");
    resolve(functions.OpenEventMetadataEnum, "EvtOpenEventMetadataEnum");
    resolve(functions.NextEventMetadata, "EvtNextEventMetadata");
    resolve(functions.GetEventMetadataProperty, "EvtGetEventMetadataProperty");
    resolve(functions.OpenLog, "EvtOpenLog");
    resolve(functions.GetLogInfo, "EvtGetLogInfo");
    resolve(functions.ExportLog, "EvtExportLog");
    resolve(functions.ClearLog, "EvtClearLog");
    return functions;
}

// Asks for this computer's channels. A function without a body leaves the last error as it was or says that it is not
// implemented; a real service that is stopped or refuses always gives a reason of its own.
bool SystemEventLog::ProbeService() const {
    if (functions_.OpenChannelEnum == nullptr || functions_.Close == nullptr) {
        return false;
    }
    constexpr DWORD Untouched = 0x2FFFFFFF;
    ::SetLastError(Untouched);
    const EVT_HANDLE channels = functions_.OpenChannelEnum(nullptr, 0);
    if (channels != nullptr) {
        functions_.Close(channels);
        return true;
    }
    const DWORD reason = ::GetLastError();
    return reason != Untouched && reason != error::CallNotImplemented;
}

template <typename Function, typename... Arguments>
auto SystemEventLog::Call(Function function, Arguments... arguments) {
    using Result = decltype(function(arguments...));
    if (function == nullptr) {
        lastError_ = error::CallNotImplemented;
        return Result{};
    }
    const Result result = function(arguments...);
    if (!result) {
        lastError_ = ::GetLastError();
    }
    return result;
}

EVT_HANDLE SystemEventLog::EvtOpenSession(EVT_LOGIN_CLASS loginClass, PVOID login, DWORD timeout, DWORD flags) {
    return Call(functions_.OpenSession, loginClass, login, timeout, flags);
}

BOOL SystemEventLog::EvtClose(EVT_HANDLE object) {
    return Call(functions_.Close, object);
}

EVT_HANDLE SystemEventLog::EvtOpenChannelEnum(EVT_HANDLE session, DWORD flags) {
    return Call(functions_.OpenChannelEnum, session, flags);
}

BOOL SystemEventLog::EvtNextChannelPath(EVT_HANDLE channelEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) {
    return Call(functions_.NextChannelPath, channelEnum, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE SystemEventLog::EvtOpenChannelConfig(EVT_HANDLE session, LPCWSTR channelPath, DWORD flags) {
    return Call(functions_.OpenChannelConfig, session, channelPath, flags);
}

BOOL SystemEventLog::EvtGetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                                 DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer,
                                                 DWORD* bufferUsed) {
    return Call(functions_.GetChannelConfigProperty, channelConfig, property, flags, bufferSize, buffer, bufferUsed);
}

BOOL SystemEventLog::EvtSetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                                 DWORD flags, EVT_VARIANT* value) {
    return Call(functions_.SetChannelConfigProperty, channelConfig, property, flags, value);
}

BOOL SystemEventLog::EvtSaveChannelConfig(EVT_HANDLE channelConfig, DWORD flags) {
    return Call(functions_.SaveChannelConfig, channelConfig, flags);
}

EVT_HANDLE SystemEventLog::EvtQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags) {
    return Call(functions_.Query, session, path, query, flags);
}

BOOL SystemEventLog::EvtGetQueryInfo(EVT_HANDLE queryOrSubscription, EVT_QUERY_PROPERTY_ID property, DWORD bufferSize,
                                     EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return Call(functions_.GetQueryInfo, queryOrSubscription, property, bufferSize, buffer, bufferUsed);
}

BOOL SystemEventLog::EvtNext(EVT_HANDLE resultSet, DWORD eventsSize, EVT_HANDLE* events, DWORD timeout, DWORD flags,
                             DWORD* returned) {
    return Call(functions_.Next, resultSet, eventsSize, events, timeout, flags, returned);
}

EVT_HANDLE SystemEventLog::EvtCreateRenderContext(DWORD valuePathsCount, LPCWSTR* valuePaths, DWORD flags) {
    return Call(functions_.CreateRenderContext, valuePathsCount, valuePaths, flags);
}

BOOL SystemEventLog::EvtRender(EVT_HANDLE context, EVT_HANDLE fragment, DWORD flags, DWORD bufferSize, PVOID buffer,
                               DWORD* bufferUsed, DWORD* propertyCount) {
    return Call(functions_.Render, context, fragment, flags, bufferSize, buffer, bufferUsed, propertyCount);
}

EVT_HANDLE SystemEventLog::EvtOpenPublisherMetadata(EVT_HANDLE session, LPCWSTR publisherId, LPCWSTR logFilePath,
                                                    DWORD locale, DWORD flags) {
    return Call(functions_.OpenPublisherMetadata, session, publisherId, logFilePath, locale, flags);
}

BOOL SystemEventLog::EvtFormatMessage(EVT_HANDLE publisherMetadata, EVT_HANDLE event, DWORD messageId, DWORD valueCount,
                                      EVT_VARIANT* values, DWORD flags, DWORD bufferSize, LPWSTR buffer,
                                      DWORD* bufferUsed) {
    return Call(functions_.FormatMessage, publisherMetadata, event, messageId, valueCount, values, flags, bufferSize,
                buffer, bufferUsed);
}

EVT_HANDLE SystemEventLog::EvtOpenPublisherEnum(EVT_HANDLE session, DWORD flags) {
    return Call(functions_.OpenPublisherEnum, session, flags);
}

BOOL SystemEventLog::EvtNextPublisherId(EVT_HANDLE publisherEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) {
    return Call(functions_.NextPublisherId, publisherEnum, bufferSize, buffer, bufferUsed);
}

BOOL SystemEventLog::EvtGetPublisherMetadataProperty(EVT_HANDLE publisherMetadata,
                                                     EVT_PUBLISHER_METADATA_PROPERTY_ID property, DWORD flags,
                                                     DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return Call(functions_.GetPublisherMetadataProperty, publisherMetadata, property, flags, bufferSize, buffer,
                bufferUsed);
}

BOOL SystemEventLog::EvtGetObjectArraySize(EVT_HANDLE objectArray, DWORD* arraySize) {
    return Call(functions_.GetObjectArraySize, objectArray, arraySize);
}

BOOL SystemEventLog::EvtGetObjectArrayProperty(EVT_HANDLE objectArray, DWORD property, DWORD arrayIndex, DWORD flags,
                                               DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return Call(functions_.GetObjectArrayProperty, objectArray, property, arrayIndex, flags, bufferSize, buffer,
                bufferUsed);
}

EVT_HANDLE SystemEventLog::EvtOpenEventMetadataEnum(EVT_HANDLE publisherMetadata, DWORD flags) {
    return Call(functions_.OpenEventMetadataEnum, publisherMetadata, flags);
}

EVT_HANDLE SystemEventLog::EvtNextEventMetadata(EVT_HANDLE eventMetadataEnum, DWORD flags) {
    return Call(functions_.NextEventMetadata, eventMetadataEnum, flags);
}

BOOL SystemEventLog::EvtGetEventMetadataProperty(EVT_HANDLE eventMetadata, EVT_EVENT_METADATA_PROPERTY_ID property,
                                                 DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer,
                                                 DWORD* bufferUsed) {
    return Call(functions_.GetEventMetadataProperty, eventMetadata, property, flags, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE SystemEventLog::EvtOpenLog(EVT_HANDLE session, LPCWSTR path, DWORD flags) {
    return Call(functions_.OpenLog, session, path, flags);
}

BOOL SystemEventLog::EvtGetLogInfo(EVT_HANDLE log, EVT_LOG_PROPERTY_ID property, DWORD bufferSize, EVT_VARIANT* buffer,
                                   DWORD* bufferUsed) {
    return Call(functions_.GetLogInfo, log, property, bufferSize, buffer, bufferUsed);
}

BOOL SystemEventLog::EvtExportLog(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, LPCWSTR targetFilePath,
                                  DWORD flags) {
    return Call(functions_.ExportLog, session, path, query, targetFilePath, flags);
}

BOOL SystemEventLog::EvtClearLog(EVT_HANDLE session, LPCWSTR channelPath, LPCWSTR targetFilePath, DWORD flags) {
    return Call(functions_.ClearLog, session, channelPath, targetFilePath, flags);
}

}  // namespace corvina
