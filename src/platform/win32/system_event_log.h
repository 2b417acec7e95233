// The event log of the system itself: every operation goes to the system folder's wevtapi.dll, which is loaded at run
// time so that the program also starts where there is no such service.
#pragma once

#include <windows.h>
#include <winevt.h>

#include "platform/event_log_api.h"
#include "platform/win32/system_library.h"

namespace corvina {

class SystemEventLog : public EventLogApi {
  public:
    SystemEventLog();

    // Whether the system has an event log service at all. A service that is only stopped or refuses access counts as
    // there. Without it every operation fails with error::CallNotImplemented and nothing is called.
    bool IsImplemented() const { return implemented_; }

    std::uint32_t GetLastError() const override { return lastError_; }

    EVT_HANDLE EvtOpenSession(EVT_LOGIN_CLASS loginClass, PVOID login, DWORD timeout, DWORD flags) override;
    BOOL EvtClose(EVT_HANDLE object) override;

    EVT_HANDLE EvtOpenChannelEnum(EVT_HANDLE session, DWORD flags) override;
    BOOL EvtNextChannelPath(EVT_HANDLE channelEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) override;
    EVT_HANDLE EvtOpenChannelConfig(EVT_HANDLE session, LPCWSTR channelPath, DWORD flags) override;
    BOOL EvtGetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property, DWORD flags,
                                     DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) override;
    BOOL EvtSetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property, DWORD flags,
                                     EVT_VARIANT* value) override;
    BOOL EvtSaveChannelConfig(EVT_HANDLE channelConfig, DWORD flags) override;

    EVT_HANDLE EvtQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags) override;
    BOOL EvtGetQueryInfo(EVT_HANDLE queryOrSubscription, EVT_QUERY_PROPERTY_ID property, DWORD bufferSize,
                         EVT_VARIANT* buffer, DWORD* bufferUsed) override;
    BOOL EvtNext(EVT_HANDLE resultSet, DWORD eventsSize, EVT_HANDLE* events, DWORD timeout, DWORD flags,
                 DWORD* returned) override;
    EVT_HANDLE EvtCreateRenderContext(DWORD valuePathsCount, LPCWSTR* valuePaths, DWORD flags) override;
    BOOL EvtRender(EVT_HANDLE context, EVT_HANDLE fragment, DWORD flags, DWORD bufferSize, PVOID buffer,
                   DWORD* bufferUsed, DWORD* propertyCount) override;

    EVT_HANDLE EvtOpenPublisherMetadata(EVT_HANDLE session, LPCWSTR publisherId, LPCWSTR logFilePath, DWORD locale,
                                        DWORD flags) override;
    BOOL EvtFormatMessage(EVT_HANDLE publisherMetadata, EVT_HANDLE event, DWORD messageId, DWORD valueCount,
                          EVT_VARIANT* values, DWORD flags, DWORD bufferSize, LPWSTR buffer,
                          DWORD* bufferUsed) override;
    EVT_HANDLE EvtOpenPublisherEnum(EVT_HANDLE session, DWORD flags) override;
    BOOL EvtNextPublisherId(EVT_HANDLE publisherEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) override;
    BOOL EvtGetPublisherMetadataProperty(EVT_HANDLE publisherMetadata, EVT_PUBLISHER_METADATA_PROPERTY_ID property,
                                         DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer,
                                         DWORD* bufferUsed) override;
    BOOL EvtGetObjectArraySize(EVT_HANDLE objectArray, DWORD* arraySize) override;
    BOOL EvtGetObjectArrayProperty(EVT_HANDLE objectArray, DWORD property, DWORD arrayIndex, DWORD flags,
                                   DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) override;
    EVT_HANDLE EvtOpenEventMetadataEnum(EVT_HANDLE publisherMetadata, DWORD flags) override;
    EVT_HANDLE EvtNextEventMetadata(EVT_HANDLE eventMetadataEnum, DWORD flags) override;
    BOOL EvtGetEventMetadataProperty(EVT_HANDLE eventMetadata, EVT_EVENT_METADATA_PROPERTY_ID property, DWORD flags,
                                     DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) override;

    EVT_HANDLE EvtOpenLog(EVT_HANDLE session, LPCWSTR path, DWORD flags) override;
    BOOL EvtGetLogInfo(EVT_HANDLE log, EVT_LOG_PROPERTY_ID property, DWORD bufferSize, EVT_VARIANT* buffer,
                       DWORD* bufferUsed) override;
    BOOL EvtExportLog(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, LPCWSTR targetFilePath, DWORD flags) override;
    BOOL EvtClearLog(EVT_HANDLE session, LPCWSTR channelPath, LPCWSTR targetFilePath, DWORD flags) override;

  private:
    // The system's functions; null where the library lacks one.
    struct Functions {
        decltype(&::EvtOpenSession) OpenSession = nullptr;
        decltype(&::EvtClose) Close = nullptr;
        decltype(&::EvtOpenChannelEnum) OpenChannelEnum = nullptr;
        decltype(&::EvtNextChannelPath) NextChannelPath = nullptr;
        decltype(&::EvtOpenChannelConfig) OpenChannelConfig = nullptr;
        decltype(&::EvtGetChannelConfigProperty) GetChannelConfigProperty = nullptr;
        decltype(&::EvtSetChannelConfigProperty) SetChannelConfigProperty = nullptr;
        decltype(&::EvtSaveChannelConfig) SaveChannelConfig = nullptr;
        decltype(&::EvtQuery) Query = nullptr;
        decltype(&::EvtGetQueryInfo) GetQueryInfo = nullptr;
        decltype(&::EvtNext) Next = nullptr;
        decltype(&::EvtCreateRenderContext) CreateRenderContext = nullptr;
        decltype(&::EvtRender) Render = nullptr;
        decltype(&::EvtOpenPublisherMetadata) OpenPublisherMetadata = nullptr;
        decltype(&::EvtFormatMessage) FormatMessage = nullptr;
        decltype(&::EvtOpenPublisherEnum) OpenPublisherEnum = nullptr;
        decltype(&::EvtNextPublisherId) NextPublisherId = nullptr;
        decltype(&::EvtGetPublisherMetadataProperty) GetPublisherMetadataProperty = nullptr;
        decltype(&::EvtGetObjectArraySize) GetObjectArraySize = nullptr;
        decltype(&::EvtGetObjectArrayProperty) GetObjectArrayProperty = nullptr;
        decltype(&::EvtOpenEventMetadataEnum) OpenEventMetadataEnum = nullptr;
        decltype(&::EvtNextEventMetadata) NextEventMetadata = nullptr;
        decltype(&::EvtGetEventMetadataProperty) GetEventMetadataProperty = nullptr;
        decltype(&::EvtOpenLog) OpenLog = nullptr;
        decltype(&::EvtGetLogInfo) GetLogInfo = nullptr;
        decltype(&::EvtExportLog) ExportLog = nullptr;
        decltype(&::EvtClearLog) ClearLog = nullptr;
    };

    Functions ResolveFunctions() const;
    bool ProbeService() const;

    template <typename Function, typename... Arguments>
    auto Call(Function function, Arguments... arguments);

    SystemLibrary library_;
    Functions functions_;
    bool implemented_;
    // Of the last operation that failed; kept here because other calls overwrite the thread's own.
    DWORD lastError_ = 0;
};

}  // namespace corvina
