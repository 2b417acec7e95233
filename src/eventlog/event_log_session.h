// The one current session with a computer's event log. Every computer, this one included, is reached through a session
// opened by its name.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "eventlog/channel_list.h"
#include "eventlog/remote_session.h"
#include "eventlog/system_error_report.h"
#include "i18n/language.h"
#include "platform/debug_log.h"
#include "platform/event_log_api.h"
#include "platform/evt_handle.h"

namespace corvina {

class EventLogSession {
  public:
    EventLogSession(EventLogApi& api, const SystemErrorReport& report, DebugLog& debug, const i18n::Language& language,
                    ChannelLists& channels);

    EventLogApi& Api() const { return api_; }

    // Null when there is no session, which is never to be used as "this computer".
    EVT_HANDLE CurrentSession() const { return current_ ? current_->Get() : nullptr; }
    EVT_HANDLE LocalSession() const { return local_ ? local_->Get() : nullptr; }

    // Shares the current session, so that it stays open while the caller works with it, whatever happens meanwhile.
    std::shared_ptr<const EvtHandle> HoldCurrentSession() const { return current_; }
    std::shared_ptr<const EvtHandle> HoldLocalSession() const { return local_; }

    const std::wstring& CurrentComputer() const { return currentComputer_; }
    // The name for which the current session was last opened.
    const std::wstring& SessionComputer() const { return sessionComputer_; }
    std::uint32_t CurrentComputerIndex() const { return currentComputerIndex_; }

    // Why there is no current session; 0 while there is one.
    std::uint32_t OpenError() const { return openError_; }

    // The settings section with the filters of the current computer's channels.
    std::wstring FilterSection() const { return L"Filter" + currentComputer_; }

    // Only at start: the name of this computer.
    void SetCurrentComputer(std::wstring_view name);

    // Keeps the current session for reading saved log files. It is shared, not lent: leaving this computer for another
    // one closes the current session, and saved logs must stay readable then.
    void RememberLocalSession() { local_ = current_; }

    // Opens a session without making it current; null after an error box. Copies of the password are wiped.
    std::shared_ptr<EvtHandle> OpenComputerSession(std::wstring_view computer,
                                                   const std::optional<Credentials>& credentials);

    // Makes a computer current and hands each of its channel paths to `registerChannel`; the channel list of
    // `computerIndex` is emptied first. Returns whether there was at least one path. After a failure, which is shown,
    // the previous computer is current again, with a fresh session where possible.
    bool ConnectToComputer(std::wstring_view computer, std::uint32_t computerIndex,
                           const std::optional<Credentials>& credentials,
                           const std::function<void(const std::wstring&)>& registerChannel);

    // Makes the computer of a selected tree node current. The session is opened anew only when it belongs to another
    // computer, and then with the caller's own logon.
    void SwitchToComputer(std::wstring_view computer, std::uint32_t computerIndex);

    // Whether the events of a query may be fetched: 0, or the error that reading the query's names and statuses gave.
    std::uint32_t CheckQueryStatus(EVT_HANDLE query) const;

    // Ends all sessions, before the program ends.
    void Close();

  private:
    std::shared_ptr<EvtHandle> OpenSession(std::wstring_view computer, const std::optional<Credentials>& credentials);
    void ReturnToComputer(const std::wstring& computer);
    bool ListChannels(EVT_HANDLE enumeration, const std::function<void(const std::wstring&)>& registerChannel) const;

    EventLogApi& api_;
    const SystemErrorReport& report_;
    DebugLog& debug_;
    const i18n::Language& language_;
    ChannelLists& channels_;
    std::shared_ptr<EvtHandle> current_;
    std::shared_ptr<EvtHandle> local_;
    std::wstring currentComputer_;
    std::wstring sessionComputer_;
    std::uint32_t currentComputerIndex_ = 0;
    std::uint32_t openError_ = 0;
};

}  // namespace corvina
