// An event log that forwards every operation to another one, counts the calls and the handles, and makes chosen calls
// fail before they are forwarded: what a test needs to see how the program behaves when the platform refuses.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/event_log_api.h"

namespace corvina::test {

enum class Operation : std::size_t {
    OpenSession,
    Close,
    OpenChannelEnum,
    NextChannelPath,
    OpenChannelConfig,
    GetChannelConfigProperty,
    SetChannelConfigProperty,
    SaveChannelConfig,
    Query,
    GetQueryInfo,
    Next,
    CreateRenderContext,
    Render,
    OpenPublisherMetadata,
    FormatMessage,
    OpenPublisherEnum,
    NextPublisherId,
    GetPublisherMetadataProperty,
    GetObjectArraySize,
    GetObjectArrayProperty,
    OpenEventMetadataEnum,
    NextEventMetadata,
    GetEventMetadataProperty,
    OpenLog,
    GetLogInfo,
    ExportLog,
    ClearLog,
    OperationCount
};

// What was passed to a call of EvtOpenSession. Absent texts are none.
struct SessionCall {
    std::wstring Server;
    std::optional<std::wstring> User;
    std::optional<std::wstring> Domain;
    std::optional<std::wstring> Password;
    DWORD LoginFlags = 0;
    DWORD Timeout = 0;
    DWORD Flags = 0;
};

// What was passed to a call of EvtQuery.
struct QueryCall {
    EVT_HANDLE Session = nullptr;
    std::optional<std::wstring> Path;
    std::optional<std::wstring> Query;
    DWORD Flags = 0;
};

class FailingEventLog : public EventLogApi {
  public:
    explicit FailingEventLog(EventLogApi& inner) : inner_(inner) {}

    // Makes the `call`-th call of an operation (1 is the first since construction) fail with `error`, once.
    void FailCall(Operation operation, std::size_t call, std::uint32_t error);

    // Makes the next call of an operation fail with `error`, once.
    void FailNextCall(Operation operation, std::uint32_t error);

    // Makes every call of an operation fail from now on, until StopFailing.
    void FailAlways(Operation operation, std::uint32_t error);

    void StopFailing();

    std::size_t Calls(Operation operation) const { return plans_[static_cast<std::size_t>(operation)].Calls; }

    // Handles that this object handed out and that came back through EvtClose. Handles inside values are not counted.
    std::size_t OpenedHandles() const { return opened_; }
    std::size_t ClosedHandles() const { return closed_; }
    std::size_t OpenHandles() const { return open_.size(); }

    // Called before each operation, also before one that is going to fail. May be empty.
    std::function<void(Operation)> OnCall;

    // The arguments of all calls so far.
    std::vector<SessionCall> Sessions;
    std::vector<QueryCall> Queries;
    DWORD LastBatchSize = 0;  // of EvtNext
    DWORD LastTimeout = 0;    // of EvtNext

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
    BOOL EvtGetQueryInfo(EVT_HANDLE query, EVT_QUERY_PROPERTY_ID property, DWORD bufferSize, EVT_VARIANT* buffer,
                         DWORD* bufferUsed) override;
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
    struct Plan {
        std::size_t Calls = 0;
        std::size_t FailingCall = 0;  // 0 for none
        bool FailAlways = false;
        std::uint32_t Error = 0;
    };

    // Counts the call; true when it is to fail, with the error set.
    bool Fails(Operation operation);
    EVT_HANDLE Opened(EVT_HANDLE handle);

    EventLogApi& inner_;
    std::array<Plan, static_cast<std::size_t>(Operation::OperationCount)> plans_;
    std::optional<std::uint32_t> ownError_;  // set while the last call failed here
    std::size_t opened_ = 0;
    std::size_t closed_ = 0;
    std::unordered_set<EVT_HANDLE> open_;
};

}  // namespace corvina::test
