// The port to the event log: one function per operation of the Windows Event Log API, with the platform's name,
// arguments, buffers and error reporting. There are two implementations: the system's own service (platform/win32) and
// the embedded event log over folders of .evtx files. Logic knows only this interface.
//
// A function that fails returns FALSE or a null handle and leaves the reason in GetLastError(); a function that
// succeeds leaves the last error unspecified. Functions that fill a buffer fail with error::InsufficientBuffer (122)
// when it is too small and report the size needed: in characters with the closing zero for texts, in bytes for
// EvtRender and all property functions.
#pragma once

#include <cstdint>

#include "platform/event_log_types.h"

namespace corvina {

class EventLogApi {
  public:
    virtual ~EventLogApi() = default;

    virtual std::uint32_t GetLastError() const = 0;

    // Sessions. `login` points to an EVT_RPC_LOGIN for login class EvtRpcLogin. A null session stands for this
    // computer.
    virtual EVT_HANDLE EvtOpenSession(EVT_LOGIN_CLASS loginClass, PVOID login, DWORD timeout, DWORD flags) = 0;
    virtual BOOL EvtClose(EVT_HANDLE object) = 0;

    // Channels and their configuration.
    virtual EVT_HANDLE EvtOpenChannelEnum(EVT_HANDLE session, DWORD flags) = 0;
    virtual BOOL EvtNextChannelPath(EVT_HANDLE channelEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) = 0;
    virtual EVT_HANDLE EvtOpenChannelConfig(EVT_HANDLE session, LPCWSTR channelPath, DWORD flags) = 0;
    virtual BOOL EvtGetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                             DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) = 0;
    virtual BOOL EvtSetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                             DWORD flags, EVT_VARIANT* value) = 0;
    virtual BOOL EvtSaveChannelConfig(EVT_HANDLE channelConfig, DWORD flags) = 0;

    // Queries and events.
    virtual EVT_HANDLE EvtQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags) = 0;
    virtual BOOL EvtGetQueryInfo(EVT_HANDLE queryOrSubscription, EVT_QUERY_PROPERTY_ID property, DWORD bufferSize,
                                 EVT_VARIANT* buffer, DWORD* bufferUsed) = 0;
    virtual BOOL EvtNext(EVT_HANDLE resultSet, DWORD eventsSize, EVT_HANDLE* events, DWORD timeout, DWORD flags,
                         DWORD* returned) = 0;
    virtual EVT_HANDLE EvtCreateRenderContext(DWORD valuePathsCount, LPCWSTR* valuePaths, DWORD flags) = 0;
    virtual BOOL EvtRender(EVT_HANDLE context, EVT_HANDLE fragment, DWORD flags, DWORD bufferSize, PVOID buffer,
                           DWORD* bufferUsed, DWORD* propertyCount) = 0;

    // Publisher metadata and messages. `locale` is a language identifier, 0 for the user's own.
    virtual EVT_HANDLE EvtOpenPublisherMetadata(EVT_HANDLE session, LPCWSTR publisherId, LPCWSTR logFilePath,
                                                DWORD locale, DWORD flags) = 0;
    virtual BOOL EvtFormatMessage(EVT_HANDLE publisherMetadata, EVT_HANDLE event, DWORD messageId, DWORD valueCount,
                                  EVT_VARIANT* values, DWORD flags, DWORD bufferSize, LPWSTR buffer,
                                  DWORD* bufferUsed) = 0;
    virtual EVT_HANDLE EvtOpenPublisherEnum(EVT_HANDLE session, DWORD flags) = 0;
    virtual BOOL EvtNextPublisherId(EVT_HANDLE publisherEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) = 0;
    virtual BOOL EvtGetPublisherMetadataProperty(EVT_HANDLE publisherMetadata,
                                                 EVT_PUBLISHER_METADATA_PROPERTY_ID property, DWORD flags,
                                                 DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) = 0;
    virtual BOOL EvtGetObjectArraySize(EVT_HANDLE objectArray, DWORD* arraySize) = 0;
    virtual BOOL EvtGetObjectArrayProperty(EVT_HANDLE objectArray, DWORD property, DWORD arrayIndex, DWORD flags,
                                           DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) = 0;
    virtual EVT_HANDLE EvtOpenEventMetadataEnum(EVT_HANDLE publisherMetadata, DWORD flags) = 0;
    virtual EVT_HANDLE EvtNextEventMetadata(EVT_HANDLE eventMetadataEnum, DWORD flags) = 0;
    virtual BOOL EvtGetEventMetadataProperty(EVT_HANDLE eventMetadata, EVT_EVENT_METADATA_PROPERTY_ID property,
                                             DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer, DWORD* bufferUsed) = 0;

    // Log files: information, export and clearing.
    virtual EVT_HANDLE EvtOpenLog(EVT_HANDLE session, LPCWSTR path, DWORD flags) = 0;
    virtual BOOL EvtGetLogInfo(EVT_HANDLE log, EVT_LOG_PROPERTY_ID property, DWORD bufferSize, EVT_VARIANT* buffer,
                               DWORD* bufferUsed) = 0;
    virtual BOOL EvtExportLog(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, LPCWSTR targetFilePath, DWORD flags) = 0;
    virtual BOOL EvtClearLog(EVT_HANDLE session, LPCWSTR channelPath, LPCWSTR targetFilePath, DWORD flags) = 0;
};

}  // namespace corvina
