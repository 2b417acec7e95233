// A double of the system's wevtapi.dll for tests: the platform's exported functions over the embedded event log. With
// it in the place of the system's own library, the code that talks to the system can be tried where there is no
// service.
#include <windows.h>
//
#include <winevt.h>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "embedded/embedded_event_log.h"
#include "platform/error_codes.h"
#include "wevtapi_double/double_control.h"

namespace corvina::test {
namespace {

struct PlannedAnswer {
    std::uint64_t Result = 0;
    DWORD LastError = 0;
};

struct DoubleState {
    std::unique_ptr<embedded::EmbeddedEventLog> Log;
    std::wstring Store;
    std::optional<PlannedAnswer> Planned;
    RecordedCall LastCall{};
};

// Exported functions have no other place for what they share. It ends when the library is unloaded.
DoubleState& State() {
    static DoubleState state;
    return state;
}

std::wstring EnvironmentText(const wchar_t* name) {
    wchar_t text[1024];
    const DWORD length = GetEnvironmentVariableW(name, text, 1024);
    return length < 1024 ? std::wstring(text, length) : std::wstring();
}

std::wstring LocalComputerName() {
    std::wstring name = EnvironmentText(ComputerVariable);
    if (name.empty()) {
        wchar_t text[MAX_COMPUTERNAME_LENGTH + 1];
        DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
        name.assign(text, GetComputerNameW(text, &size) != FALSE ? size : 0);
    }
    return name;
}

// The event log over the present store; none when no store is named.
EventLogApi* CurrentLog() {
    DoubleState& state = State();
    std::wstring store = EnvironmentText(StoreVariable);
    if (store != state.Store) {
        state.Log.reset();
        state.Store = std::move(store);
    }
    if (state.Log == nullptr && !state.Store.empty()) {
        state.Log = std::make_unique<embedded::EmbeddedEventLog>(state.Store, LocalComputerName());
    }
    return state.Log.get();
}

template <typename Argument>
std::uint64_t Plain(Argument argument) {
    if constexpr (std::is_pointer_v<Argument>) {
        return reinterpret_cast<std::uintptr_t>(argument);
    } else {
        return static_cast<std::uint32_t>(argument);
    }
}

template <typename Result>
Result ResultOf(std::uint64_t plain) {
    if constexpr (std::is_pointer_v<Result>) {
        return reinterpret_cast<Result>(static_cast<std::uintptr_t>(plain));  // NOLINT(performance-no-int-to-ptr)
    } else {
        return static_cast<Result>(static_cast<std::uint32_t>(plain));
    }
}

// Carries out one operation, unless another answer was planned for it. Errors go to the thread's last error, which a
// success leaves as it was.
template <typename Result, typename... Parameters>
Result Answer(const char* name, Result (EventLogApi::*operation)(Parameters...),
              std::type_identity_t<Parameters>... arguments) {
    DoubleState& state = State();
    state.LastCall = {{}, sizeof...(arguments), {Plain(arguments)...}};
    lstrcpynA(state.LastCall.Operation, name, sizeof state.LastCall.Operation);
    if (const std::optional<PlannedAnswer> planned = std::exchange(state.Planned, std::nullopt)) {
        SetLastError(planned->LastError);
        return ResultOf<Result>(planned->Result);
    }
    EventLogApi* const log = CurrentLog();
    if (log == nullptr) {
        SetLastError(error::CallNotImplemented);
        return Result{};
    }
    const DWORD errorBefore = GetLastError();
    const Result result = (log->*operation)(arguments...);
    SetLastError(result ? errorBefore : log->GetLastError());
    return result;
}

}  // namespace
}  // namespace corvina::test

using corvina::EventLogApi;
using corvina::test::Answer;

extern "C" {

EVT_HANDLE WINAPI EvtOpenSession(EVT_LOGIN_CLASS loginClass, PVOID login, DWORD timeout, DWORD flags) {
    return Answer("EvtOpenSession", &EventLogApi::EvtOpenSession, loginClass, login, timeout, flags);
}

BOOL WINAPI EvtClose(EVT_HANDLE object) {
    return Answer("EvtClose", &EventLogApi::EvtClose, object);
}

EVT_HANDLE WINAPI EvtOpenChannelEnum(EVT_HANDLE session, DWORD flags) {
    return Answer("EvtOpenChannelEnum", &EventLogApi::EvtOpenChannelEnum, session, flags);
}

BOOL WINAPI EvtNextChannelPath(EVT_HANDLE channelEnum, DWORD bufferSize, LPWSTR buffer, PDWORD bufferUsed) {
    return Answer("EvtNextChannelPath", &EventLogApi::EvtNextChannelPath, channelEnum, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE WINAPI EvtOpenChannelConfig(EVT_HANDLE session, LPCWSTR channelPath, DWORD flags) {
    return Answer("EvtOpenChannelConfig", &EventLogApi::EvtOpenChannelConfig, session, channelPath, flags);
}

BOOL WINAPI EvtGetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property, DWORD flags,
                                        DWORD bufferSize, PEVT_VARIANT buffer, PDWORD bufferUsed) {
    return Answer("EvtGetChannelConfigProperty", &EventLogApi::EvtGetChannelConfigProperty, channelConfig, property,
                  flags, bufferSize, buffer, bufferUsed);
}

BOOL WINAPI EvtSetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property, DWORD flags,
                                        PEVT_VARIANT value) {
    return Answer("EvtSetChannelConfigProperty", &EventLogApi::EvtSetChannelConfigProperty, channelConfig, property,
                  flags, value);
}

BOOL WINAPI EvtSaveChannelConfig(EVT_HANDLE channelConfig, DWORD flags) {
    return Answer("EvtSaveChannelConfig", &EventLogApi::EvtSaveChannelConfig, channelConfig, flags);
}

EVT_HANDLE WINAPI EvtQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags) {
    return Answer("EvtQuery", &EventLogApi::EvtQuery, session, path, query, flags);
}

BOOL WINAPI EvtGetQueryInfo(EVT_HANDLE queryOrSubscription, EVT_QUERY_PROPERTY_ID property, DWORD bufferSize,
                            PEVT_VARIANT buffer, PDWORD bufferUsed) {
    return Answer("EvtGetQueryInfo", &EventLogApi::EvtGetQueryInfo, queryOrSubscription, property, bufferSize, buffer,
                  bufferUsed);
}

BOOL WINAPI EvtNext(EVT_HANDLE resultSet, DWORD eventsSize, EVT_HANDLE* events, DWORD timeout, DWORD flags,
                    PDWORD returned) {
    return Answer("EvtNext", &EventLogApi::EvtNext, resultSet, eventsSize, events, timeout, flags, returned);
}

EVT_HANDLE WINAPI EvtCreateRenderContext(DWORD valuePathsCount, LPCWSTR* valuePaths, DWORD flags) {
    return Answer("EvtCreateRenderContext", &EventLogApi::EvtCreateRenderContext, valuePathsCount, valuePaths, flags);
}

BOOL WINAPI EvtRender(EVT_HANDLE context, EVT_HANDLE fragment, DWORD flags, DWORD bufferSize, PVOID buffer,
                      PDWORD bufferUsed, PDWORD propertyCount) {
    return Answer("EvtRender", &EventLogApi::EvtRender, context, fragment, flags, bufferSize, buffer, bufferUsed,
                  propertyCount);
}

EVT_HANDLE WINAPI EvtOpenPublisherMetadata(EVT_HANDLE session, LPCWSTR publisherId, LPCWSTR logFilePath, LCID locale,
                                           DWORD flags) {
    return Answer("EvtOpenPublisherMetadata", &EventLogApi::EvtOpenPublisherMetadata, session, publisherId, logFilePath,
                  locale, flags);
}

BOOL WINAPI EvtFormatMessage(EVT_HANDLE publisherMetadata, EVT_HANDLE event, DWORD messageId, DWORD valueCount,
                             PEVT_VARIANT values, DWORD flags, DWORD bufferSize, LPWSTR buffer, PDWORD bufferUsed) {
    return Answer("EvtFormatMessage", &EventLogApi::EvtFormatMessage, publisherMetadata, event, messageId, valueCount,
                  values, flags, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE WINAPI EvtOpenPublisherEnum(EVT_HANDLE session, DWORD flags) {
    return Answer("EvtOpenPublisherEnum", &EventLogApi::EvtOpenPublisherEnum, session, flags);
}

BOOL WINAPI EvtNextPublisherId(EVT_HANDLE publisherEnum, DWORD bufferSize, LPWSTR buffer, PDWORD bufferUsed) {
    return Answer("EvtNextPublisherId", &EventLogApi::EvtNextPublisherId, publisherEnum, bufferSize, buffer,
                  bufferUsed);
}

BOOL WINAPI EvtGetPublisherMetadataProperty(EVT_HANDLE publisherMetadata, EVT_PUBLISHER_METADATA_PROPERTY_ID property,
                                            DWORD flags, DWORD bufferSize, PEVT_VARIANT buffer, PDWORD bufferUsed) {
    return Answer("EvtGetPublisherMetadataProperty", &EventLogApi::EvtGetPublisherMetadataProperty, publisherMetadata,
                  property, flags, bufferSize, buffer, bufferUsed);
}

BOOL WINAPI EvtGetObjectArraySize(EVT_OBJECT_ARRAY_PROPERTY_HANDLE objectArray, PDWORD arraySize) {
    return Answer("EvtGetObjectArraySize", &EventLogApi::EvtGetObjectArraySize, objectArray, arraySize);
}

BOOL WINAPI EvtGetObjectArrayProperty(EVT_OBJECT_ARRAY_PROPERTY_HANDLE objectArray, DWORD property, DWORD arrayIndex,
                                      DWORD flags, DWORD bufferSize, PEVT_VARIANT buffer, PDWORD bufferUsed) {
    return Answer("EvtGetObjectArrayProperty", &EventLogApi::EvtGetObjectArrayProperty, objectArray, property,
                  arrayIndex, flags, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE WINAPI EvtOpenEventMetadataEnum(EVT_HANDLE publisherMetadata, DWORD flags) {
    return Answer("EvtOpenEventMetadataEnum", &EventLogApi::EvtOpenEventMetadataEnum, publisherMetadata, flags);
}

EVT_HANDLE WINAPI EvtNextEventMetadata(EVT_HANDLE eventMetadataEnum, DWORD flags) {
    return Answer("EvtNextEventMetadata", &EventLogApi::EvtNextEventMetadata, eventMetadataEnum, flags);
}

BOOL WINAPI EvtGetEventMetadataProperty(EVT_HANDLE eventMetadata, EVT_EVENT_METADATA_PROPERTY_ID property, DWORD flags,
                                        DWORD bufferSize, PEVT_VARIANT buffer, PDWORD bufferUsed) {
    return Answer("EvtGetEventMetadataProperty", &EventLogApi::EvtGetEventMetadataProperty, eventMetadata, property,
                  flags, bufferSize, buffer, bufferUsed);
}

EVT_HANDLE WINAPI EvtOpenLog(EVT_HANDLE session, LPCWSTR path, DWORD flags) {
    return Answer("EvtOpenLog", &EventLogApi::EvtOpenLog, session, path, flags);
}

BOOL WINAPI EvtGetLogInfo(EVT_HANDLE log, EVT_LOG_PROPERTY_ID property, DWORD bufferSize, PEVT_VARIANT buffer,
                          PDWORD bufferUsed) {
    return Answer("EvtGetLogInfo", &EventLogApi::EvtGetLogInfo, log, property, bufferSize, buffer, bufferUsed);
}

BOOL WINAPI EvtExportLog(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, LPCWSTR targetFilePath, DWORD flags) {
    return Answer("EvtExportLog", &EventLogApi::EvtExportLog, session, path, query, targetFilePath, flags);
}

BOOL WINAPI EvtClearLog(EVT_HANDLE session, LPCWSTR channelPath, LPCWSTR targetFilePath, DWORD flags) {
    return Answer("EvtClearLog", &EventLogApi::EvtClearLog, session, channelPath, targetFilePath, flags);
}

void WINAPI CorvinaAnswerNextCall(std::uint64_t result, DWORD lastError) {
    corvina::test::State().Planned = {result, lastError};
}

void WINAPI CorvinaGetLastCall(corvina::test::RecordedCall* call) {
    *call = corvina::test::State().LastCall;
}

DWORD WINAPI CorvinaOpenHandleCount() {
    const auto& log = corvina::test::State().Log;
    return log == nullptr ? 0 : static_cast<DWORD>(log->OpenHandleCount());
}

}  // extern "C"
