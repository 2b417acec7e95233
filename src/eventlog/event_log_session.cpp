#include "eventlog/event_log_session.h"

#include <utility>

#include "base/format_text.h"
#include "eventlog/property_buffer.h"

namespace corvina {

namespace {

constexpr int InformationTitle = 13;

// The enumeration of channels goes on after an error. One that fails for ever would never end, so this many failures in
// a row end it.
constexpr int MaximumFailuresInARow = 100;

constexpr std::wstring_view OpenFailed = L"Error occured. Open Session failed.";

}  // namespace

EventLogSession::EventLogSession(EventLogApi& api, const SystemErrorReport& report, DebugLog& debug,
                                 const i18n::Language& language, ChannelLists& channels)
    : api_(api), report_(report), debug_(debug), language_(language), channels_(channels) {}

void EventLogSession::SetCurrentComputer(std::wstring_view name) {
    currentComputer_ = name;
}

std::shared_ptr<EvtHandle> EventLogSession::OpenSession(std::wstring_view computer,
                                                        const std::optional<Credentials>& credentials) {
    EvtHandle session = OpenRemoteSession(api_, computer, credentials, openError_);
    return session ? std::make_shared<EvtHandle>(std::move(session)) : nullptr;
}

std::shared_ptr<EvtHandle> EventLogSession::OpenComputerSession(std::wstring_view computer,
                                                                const std::optional<Credentials>& credentials) {
    std::shared_ptr<EvtHandle> session = OpenSession(computer, credentials);
    if (session == nullptr) {
        report_.ShowSystemError(openError_, OpenFailed, language_.Text(InformationTitle));
    }
    return session;
}

void EventLogSession::ReturnToComputer(const std::wstring& computer) {
    current_.reset();
    current_ = OpenComputerSession(computer, std::nullopt);
}

bool EventLogSession::ConnectToComputer(std::wstring_view computer, std::uint32_t computerIndex,
                                        const std::optional<Credentials>& credentials,
                                        const std::function<void(const std::wstring&)>& registerChannel) {
    const std::wstring previousComputer = currentComputer_;
    const std::uint32_t previousIndex = currentComputerIndex_;
    currentComputer_ = computer;
    current_.reset();
    current_ = OpenSession(currentComputer_, credentials);
    if (current_ == nullptr) {
        currentComputer_ = previousComputer;
        report_.ShowSystemError(openError_, L"Error occured ConnectToRemote", language_.Text(InformationTitle));
        ReturnToComputer(currentComputer_);
        return false;
    }
    currentComputerIndex_ = computerIndex;
    const EvtHandle enumeration(api_, api_.EvtOpenChannelEnum(current_->Get(), 0));
    if (!enumeration) {
        const std::uint32_t error = api_.GetLastError();
        currentComputer_ = previousComputer;
        report_.ShowSystemError(error, L"Error occured", language_.Text(InformationTitle));
        currentComputerIndex_ = previousIndex;
        ReturnToComputer(currentComputer_);
        debug_.Write(FormatText(L"EvtOpenChannelEnum failed with %lu.\n", {error}));
        return false;
    }
    debug_.Write(L"List of Channels\n\n");
    channels_.Clear(currentComputerIndex_);
    sessionComputer_ = currentComputer_;
    return ListChannels(enumeration.Get(), registerChannel);
}

bool EventLogSession::ListChannels(EVT_HANDLE enumeration,
                                   const std::function<void(const std::wstring&)>& registerChannel) const {
    PropertyBuffer buffer;
    std::wstring path;
    bool any = false;
    for (int failures = 0; failures < MaximumFailuresInARow;) {
        const FillResult result = buffer.FillText(api_, [&](DWORD size, wchar_t* text, DWORD* used) {
            return api_.EvtNextChannelPath(enumeration, size, text, used);
        });
        if (result == FillResult::Filled) {
            path = buffer.Text();
            any = true;
            failures = 0;
        } else if (result == FillResult::OutOfMemory) {
            debug_.Write(L"realloc failed\n");
            break;
        } else if (buffer.Error() == error::NoMoreItems) {
            break;
        } else {
            // The path before the error is handed over once more: a channel list with a gap shows its neighbour twice.
            debug_.Write(FormatText(L"EvtNextChannelPath failed with %lu.\n", {buffer.Error()}));
            ++failures;
        }
        if (any) {
            registerChannel(path);
        }
    }
    return any;
}

void EventLogSession::SwitchToComputer(std::wstring_view computer, std::uint32_t computerIndex) {
    currentComputer_ = computer;
    if (currentComputer_ == sessionComputer_) {
        return;
    }
    currentComputerIndex_ = computerIndex;
    ReturnToComputer(currentComputer_);
    sessionComputer_ = currentComputer_;
}

std::uint32_t EventLogSession::CheckQueryStatus(EVT_HANDLE query) const {
    debug_.Write(L"List of channels/logs that were queried and their status\n\n");
    PropertyBuffer buffer;
    for (const EVT_QUERY_PROPERTY_ID property : {EvtQueryNames, EvtQueryStatuses}) {
        const FillResult result = buffer.FillBytes(api_, [&](DWORD size, void* data, DWORD* used) {
            return api_.EvtGetQueryInfo(query, property, size, static_cast<EVT_VARIANT*>(data), used);
        });
        if (result == FillResult::OutOfMemory) {
            debug_.Write(L"realloc failed\n");
            return error::OutOfMemory;
        }
        if (result == FillResult::Failed) {
            debug_.Write(FormatText(L"EvtGetQueryInfo failed with %d\n", {buffer.Error()}));
            return buffer.Error();
        }
    }
    return error::Success;
}

void EventLogSession::Close() {
    current_.reset();
    local_.reset();
}

}  // namespace corvina
