// Operations of the embedded event log on channels and on logs as wholes.
#include <span>

#include "base/path_text.h"
#include "embedded/channel_properties.h"
#include "embedded/embedded_state.h"
#include "embedded/variant_row.h"

namespace corvina::embedded {
namespace {

constexpr std::uint32_t LogFullFlag = 2;  // of a log file's header

// A log that keeps its events until it is cleared is full when its file has reached its size.
bool IsFull(const LogObject& object) {
    if (object.Log == nullptr) {
        return false;
    }
    const bool reachedSize = object.Subject != nullptr && object.Subject->Retention &&
                             object.Log->Facts().Size >= object.Subject->MaximumSize;
    return reachedSize || (object.Log->File().Header().Flags & LogFullFlag) != 0;
}

// The channel as it is configured now; as it was when the handle was opened in case it is gone.
std::shared_ptr<const Channel> CurrentChannel(const ChannelConfigurationObject& configuration) {
    std::shared_ptr<const Channel> current = configuration.Computer->FindChannel(configuration.Subject->Path);
    return current != nullptr ? current : configuration.Subject;
}

// Without a file there are no times and no attributes, and the log is empty.
std::uint32_t WriteLogProperty(const LogObject& object, EVT_LOG_PROPERTY_ID property, DWORD bufferSize,
                               EVT_VARIANT* buffer, DWORD* used) {
    const OpenLogFile* const log = object.Log.get();
    const FileFacts facts = log == nullptr ? FileFacts() : log->Facts();
    VariantRow<1> row;
    const auto setTime = [&](std::uint64_t time) {
        if (log != nullptr) {
            row.SetFileTime(0, time);
        }
    };
    switch (static_cast<int>(property)) {
        case EvtLogCreationTime:
            setTime(facts.CreationTime);
            break;
        case EvtLogLastAccessTime:
            setTime(facts.LastAccessTime);
            break;
        case EvtLogLastWriteTime:
            setTime(facts.LastWriteTime);
            break;
        case EvtLogFileSize:
            row.SetUInt64(0, facts.Size);
            break;
        case EvtLogAttributes:
            row.SetUInt32(0, facts.Attributes);
            break;
        case EvtLogNumberOfLogRecords:
            row.SetUInt64(0, log == nullptr ? 0 : log->File().RecordCount());
            break;
        case EvtLogOldestRecordNumber:
            row.SetUInt64(0, log == nullptr ? 0 : log->File().OldestRecordId());
            break;
        case EvtLogFull:
            row.SetBoolean(0, IsFull(object));
            break;
        default:
            return error::InvalidParameter;
    }
    return row.Write(bufferSize, buffer, used);
}

}  // namespace

std::uint32_t EmbeddedEventLog::State::OpenChannelLog(const Channel& channel, std::shared_ptr<const OpenLogFile>& log) {
    if (!channel.HasFile) {
        return error::Success;
    }
    std::uint32_t error = error::Success;
    log = Logs.Open(channel.File, error);
    return error;
}

EVT_HANDLE EmbeddedEventLog::EvtOpenChannelEnum(EVT_HANDLE session, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        std::shared_ptr<ComputerFolder> computer;
        if (const std::uint32_t error = state_->FindComputer(session, computer)) {
            return error;
        }
        if (flags != 0) {
            return error::InvalidParameter;
        }
        if (const std::uint32_t error = computer->Refresh()) {
            return error;
        }
        object = std::make_unique<ChannelEnumerationObject>(computer->Channels());
        return error::Success;
    });
}

BOOL EmbeddedEventLog::EvtNextChannelPath(EVT_HANDLE channelEnum, DWORD bufferSize, LPWSTR buffer, DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        auto* const enumeration = state_->Handles.Find<ChannelEnumerationObject>(channelEnum);
        if (enumeration == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr) {
            return error::InvalidParameter;
        }
        if (enumeration->Next >= enumeration->Channels.size()) {
            return error::NoMoreItems;
        }
        const std::uint32_t error =
            WriteText(enumeration->Channels[enumeration->Next]->Path, bufferSize, buffer, bufferUsed);
        if (error == error::Success) {
            ++enumeration->Next;
        }
        return error;
    });
}

EVT_HANDLE EmbeddedEventLog::EvtOpenChannelConfig(EVT_HANDLE session, LPCWSTR channelPath, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        std::shared_ptr<ComputerFolder> computer;
        std::shared_ptr<const Channel> channel;
        if (const std::uint32_t error = state_->FindChannel(session, channelPath, computer, channel)) {
            return error;
        }
        if (flags != 0) {
            return error::InvalidParameter;
        }
        object = std::make_unique<ChannelConfigurationObject>(std::move(computer), std::move(channel));
        return error::Success;
    });
}

BOOL EmbeddedEventLog::EvtGetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                                   DWORD flags, DWORD bufferSize, EVT_VARIANT* buffer,
                                                   DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const configuration = state_->Handles.Find<ChannelConfigurationObject>(channelConfig);
        if (configuration == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr || flags != 0) {
            return error::InvalidParameter;
        }
        const Channel channel = configuration->Changes.AppliedTo(*CurrentChannel(*configuration));
        std::vector<std::wstring> publishers;
        if (property == EvtChannelPublisherList) {
            publishers =
                state_->Publishers.PublishersOfChannel(configuration->Computer->PublishersFolder(), channel.Path);
        }
        return WriteChannelProperty(channel, property, publishers, bufferSize, buffer, bufferUsed);
    });
}

BOOL EmbeddedEventLog::EvtSetChannelConfigProperty(EVT_HANDLE channelConfig, EVT_CHANNEL_CONFIG_PROPERTY_ID property,
                                                   DWORD flags, EVT_VARIANT* value) {
    return state_->Do([&]() -> std::uint32_t {
        auto* const configuration = state_->Handles.Find<ChannelConfigurationObject>(channelConfig);
        if (configuration == nullptr) {
            return error::InvalidHandle;
        }
        if (value == nullptr || flags != 0) {
            return error::InvalidParameter;
        }
        return configuration->Changes.Set(*CurrentChannel(*configuration), property, *value);
    });
}

// Only what was set is written, so that other changes to the channel, made elsewhere meanwhile, stay.
BOOL EmbeddedEventLog::EvtSaveChannelConfig(EVT_HANDLE channelConfig, DWORD flags) {
    return state_->Do([&]() -> std::uint32_t {
        auto* const configuration = state_->Handles.Find<ChannelConfigurationObject>(channelConfig);
        if (configuration == nullptr) {
            return error::InvalidHandle;
        }
        const std::shared_ptr<const Channel> channel = CurrentChannel(*configuration);
        if (flags != 0 || !configuration->Changes.AreConsistentFor(*channel)) {
            return error::InvalidParameter;
        }
        const std::vector<IniEntry> entries = configuration->Changes.Entries();
        if (entries.empty()) {
            return error::Success;
        }
        const std::uint32_t error = configuration->Computer->SaveSettings(*channel, entries);
        if (error == error::Success) {
            configuration->Changes.Clear();
        }
        return error;
    });
}

EVT_HANDLE EmbeddedEventLog::EvtOpenLog(EVT_HANDLE session, LPCWSTR path, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        if (path == nullptr || (flags != EvtOpenChannelPath && flags != EvtOpenFilePath)) {
            return error::InvalidParameter;
        }
        std::shared_ptr<const OpenLogFile> log;
        std::shared_ptr<const Channel> channel;
        std::uint32_t error = error::Success;
        if (flags == EvtOpenFilePath) {
            log = state_->Logs.Open(PathFromText(path), error);
        } else {
            std::shared_ptr<ComputerFolder> computer;
            error = state_->FindChannel(session, path, computer, channel);
            if (error == error::Success) {
                error = state_->OpenChannelLog(*channel, log);
            }
        }
        if (error == error::Success) {
            object = std::make_unique<LogObject>(std::move(log), std::move(channel));
        }
        return error;
    });
}

BOOL EmbeddedEventLog::EvtGetLogInfo(EVT_HANDLE log, EVT_LOG_PROPERTY_ID property, DWORD bufferSize,
                                     EVT_VARIANT* buffer, DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const object = state_->Handles.Find<LogObject>(log);
        if (object == nullptr) {
            return error::InvalidHandle;
        }
        if (bufferUsed == nullptr) {
            return error::InvalidParameter;
        }
        return WriteLogProperty(*object, property, bufferSize, buffer, bufferUsed);
    });
}

}  // namespace corvina::embedded
