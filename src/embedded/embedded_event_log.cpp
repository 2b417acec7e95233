#include "embedded/embedded_event_log.h"

#include <system_error>

#include "embedded/embedded_state.h"

namespace corvina::embedded {
namespace {

// Closed event objects that are kept for the next events: a program holds few at a time.
constexpr std::size_t MaximumSpareEvents = 1024;

std::optional<std::wstring> CopyOf(LPCWSTR text) {
    return text == nullptr ? std::nullopt : std::optional<std::wstring>(text);
}

}  // namespace

EmbeddedEventLog::EmbeddedEventLog(const std::filesystem::path& folder, std::wstring localComputerName)
    : state_(std::make_unique<State>(folder, std::move(localComputerName))) {}

EmbeddedEventLog::~EmbeddedEventLog() = default;

std::size_t EmbeddedEventLog::OpenHandleCount() const {
    return state_->Handles.OpenCount();
}

std::uint32_t EmbeddedEventLog::GetLastError() const {
    return state_->LastError;
}

std::uint32_t EmbeddedEventLog::State::FindComputer(EVT_HANDLE session, std::shared_ptr<ComputerFolder>& computer) {
    if (session == nullptr) {
        std::uint32_t error = error::Success;
        computer = Store.OpenComputer({}, {}, error);
        return error;
    }
    const auto* const object = Handles.Find<SessionObject>(session);
    if (object == nullptr) {
        return error::InvalidHandle;
    }
    computer = object->Computer;
    return error::Success;
}

std::uint32_t EmbeddedEventLog::State::FindChannel(EVT_HANDLE session, LPCWSTR path,
                                                   std::shared_ptr<ComputerFolder>& computer,
                                                   std::shared_ptr<const Channel>& channel) {
    if (const std::uint32_t error = FindComputer(session, computer)) {
        return error;
    }
    if (path == nullptr) {
        return error::InvalidParameter;
    }
    const std::wstring_view name(path);
    if (name.size() > MaximumChannelPathLength) {
        return error::InvalidChannelPath;
    }
    channel = computer->FindChannel(name);
    return channel == nullptr ? error::ChannelNotFound : error::Success;
}

// Passwords stay with the caller: only the copy that is compared is made here, and it is not kept.
EVT_HANDLE EmbeddedEventLog::EvtOpenSession(EVT_LOGIN_CLASS loginClass, PVOID login, DWORD timeout, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        if (loginClass != EvtRpcLogin || login == nullptr || timeout != 0 || flags != 0) {
            return error::InvalidParameter;
        }
        const auto& record = *static_cast<const EVT_RPC_LOGIN*>(login);
        const std::wstring server = CopyOf(record.Server).value_or(std::wstring());
        std::uint32_t error = error::Success;
        auto computer = state_->Store.OpenComputer(server, {CopyOf(record.User), CopyOf(record.Password)}, error);
        if (computer != nullptr) {
            object = std::make_unique<SessionObject>(std::move(computer));
        }
        return error;
    });
}

BOOL EmbeddedEventLog::EvtClose(EVT_HANDLE object) {
    return state_->Do([&]() -> std::uint32_t {
        std::unique_ptr<HandleObject> closed = state_->Handles.Remove(object);
        if (closed == nullptr) {
            return error::InvalidHandle;
        }
        if (closed->KindOfObject() != ObjectKind::Event) {
            return error::Success;
        }
        state_->Event.Forget(object);
        std::unique_ptr<EventObject> event(static_cast<EventObject*>(closed.release()));
        event->Place.Chunk = nullptr;
        if (state_->SpareEvents.size() < MaximumSpareEvents) {
            state_->SpareEvents.push_back(std::move(event));
        }
        return error::Success;
    });
}

}  // namespace corvina::embedded
