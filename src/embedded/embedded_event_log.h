// The embedded event log: the operations of the event log over a folder of .evtx files, for machines without the
// system's service and for the logs of a computer that no longer starts.
//
// A store is a folder. Each subfolder is a computer, "localhost" being this one; a folder that holds .evtx files itself
// is this computer alone. In a computer's folder: the channels' files, "channels.ini" (what differs from a channel's
// defaults), "publishers" (the providers' manifests or program files, their language files in folders like "en-US", and
// "publishers.ini", which says what the computer's registry knew of them), and "account.ini" when a user name and a
// password are needed to open it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/event_log_api.h"

namespace corvina::embedded {

// The operations of the event log over one store. Arguments, results and error codes are the platform's; what an
// operation adds to that is said where it is defined. Handles are checked: one that is closed, of another kind or not
// from this object gives error::InvalidHandle. Not thread-safe, like the program that uses it. Objects that are still
// open when the event log is destroyed are released with it.
class EmbeddedEventLog final : public EventLogApi {
  public:
    // `localComputerName` is the name under which this computer is asked for.
    // The folder need not exist: sessions then fail, while files anywhere can still be queried.
    EmbeddedEventLog(const std::filesystem::path& folder, std::wstring localComputerName);
    ~EmbeddedEventLog() override;
    EmbeddedEventLog(const EmbeddedEventLog&) = delete;
    EmbeddedEventLog& operator=(const EmbeddedEventLog&) = delete;

    // Handles that were given out and not closed.
    std::size_t OpenHandleCount() const;

    std::uint32_t GetLastError() const override;
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
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace corvina::embedded
