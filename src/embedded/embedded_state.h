// What the embedded event log keeps: its store, its open files, and the objects behind its handles.
#pragma once

#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "embedded/channel_changes.h"
#include "embedded/decoded_event.h"
#include "embedded/embedded_event_log.h"
#include "embedded/event_query.h"
#include "embedded/event_store.h"
#include "embedded/handle_table.h"
#include "embedded/log_cache.h"
#include "embedded/log_cursor.h"
#include "embedded/provider_guids.h"
#include "embedded/publisher_folders.h"
#include "embedded/publisher_properties.h"
#include "platform/error_codes.h"

namespace corvina::embedded {

struct SessionObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::Session;
    explicit SessionObject(std::shared_ptr<ComputerFolder> computer)
        : HandleObject(Kind), Computer(std::move(computer)) {}
    std::shared_ptr<ComputerFolder> Computer;
};

struct ChannelEnumerationObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::ChannelEnumeration;
    explicit ChannelEnumerationObject(std::vector<std::shared_ptr<const Channel>> channels)
        : HandleObject(Kind), Channels(std::move(channels)) {}
    std::vector<std::shared_ptr<const Channel>> Channels;
    std::size_t Next = 0;
};

struct ChannelConfigurationObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::ChannelConfiguration;
    ChannelConfigurationObject(std::shared_ptr<ComputerFolder> computer, std::shared_ptr<const Channel> subject)
        : HandleObject(Kind), Computer(std::move(computer)), Subject(std::move(subject)) {}
    std::shared_ptr<ComputerFolder> Computer;
    std::shared_ptr<const Channel> Subject;  // as it was when the handle was opened
    ChannelChanges Changes;                  // dropped with the handle when they are not saved
};

struct QueryObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::Query;
    explicit QueryObject(std::unique_ptr<EventQuery> events) : HandleObject(Kind), Events(std::move(events)) {}
    std::unique_ptr<EventQuery> Events;
};

struct EventObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::Event;
    EventObject() : HandleObject(Kind) {}
    EventPlace Place;
};

struct RenderContextObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::RenderContext;
    RenderContextObject() : HandleObject(Kind) {}
};

struct LogObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::Log;
    LogObject(std::shared_ptr<const OpenLogFile> log, std::shared_ptr<const Channel> subject)
        : HandleObject(Kind), Log(std::move(log)), Subject(std::move(subject)) {}
    std::shared_ptr<const OpenLogFile> Log;  // none for a channel that has no file yet
    std::shared_ptr<const Channel> Subject;  // none for a file that was opened by its path
};

struct PublisherMetadataObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::PublisherMetadata;
    explicit PublisherMetadataObject(std::shared_ptr<const publisher::Publisher> subject)
        : HandleObject(Kind), Subject(std::move(subject)) {}
    std::shared_ptr<const publisher::Publisher> Subject;
};

struct PublisherEnumerationObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::PublisherEnumeration;
    explicit PublisherEnumerationObject(std::vector<std::wstring> names)
        : HandleObject(Kind), Names(std::move(names)) {}
    std::vector<std::wstring> Names;
    std::size_t Next = 0;
};

// An object array: one of the lists of a publisher.
struct PublisherListObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::PublisherList;
    PublisherListObject(std::shared_ptr<const publisher::Publisher> subject, PublisherList list)
        : HandleObject(Kind), Subject(std::move(subject)), List(list) {}
    std::shared_ptr<const publisher::Publisher> Subject;
    PublisherList List;
};

struct EventMetadataEnumerationObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::EventMetadataEnumeration;
    explicit EventMetadataEnumerationObject(std::shared_ptr<const publisher::Publisher> subject)
        : HandleObject(Kind), Subject(std::move(subject)) {}
    std::shared_ptr<const publisher::Publisher> Subject;
    std::size_t Next = 0;
};

struct EventMetadataObject : HandleObject {
    static constexpr ObjectKind Kind = ObjectKind::EventMetadata;
    EventMetadataObject(std::shared_ptr<const publisher::Publisher> subject, std::size_t index)
        : HandleObject(Kind), Subject(std::move(subject)), Index(index) {}
    std::shared_ptr<const publisher::Publisher> Subject;
    std::size_t Index;  // among the publisher's events
};

struct EmbeddedEventLog::State {
    State(const std::filesystem::path& folder, std::wstring localComputerName)
        : Store(folder, std::move(localComputerName)) {}

    EventStore Store;
    LogCache Logs;
    PublisherFolders Publishers;
    ProviderGuids Guids;
    HandleTable Handles;
    DecodedEvent Event;                                     // the event that was asked about last
    std::wstring Text;                                      // the message that was formed last
    std::vector<std::unique_ptr<EventObject>> SpareEvents;  // closed ones, to be used again
    std::uint32_t LastError = error::Success;

    // Runs one operation: its error becomes the last error, and nothing is thrown out of the event log. The result is
    // whether there was no error.
    template <typename Operation>
    BOOL Do(Operation operation) noexcept {
        try {
            LastError = operation();
        } catch (const std::bad_alloc&) {
            LastError = error::OutOfMemory;
        } catch (const std::exception&) {
            LastError = error::AccessDenied;  // the file system's functions are the only others that throw
        }
        return LastError == error::Success ? TRUE : FALSE;
    }

    // The same for an operation that opens something: it gets a place for the object and fills it on success.
    template <typename Operation>
    EVT_HANDLE Open(Operation operation) noexcept {
        EVT_HANDLE handle = nullptr;
        Do([&]() -> std::uint32_t {
            std::unique_ptr<HandleObject> object;
            const std::uint32_t error = operation(object);
            if (error != error::Success) {
                return error;
            }
            handle = Handles.Add(std::move(object));
            return handle != nullptr ? error::Success : error::OutOfMemory;
        });
        return handle;
    }

    // The computer of a session; this computer for the null session. Returns an error code.
    std::uint32_t FindComputer(EVT_HANDLE session, std::shared_ptr<ComputerFolder>& computer);

    // A channel of the session's computer. Returns an error code.
    std::uint32_t FindChannel(EVT_HANDLE session, LPCWSTR path, std::shared_ptr<ComputerFolder>& computer,
                              std::shared_ptr<const Channel>& channel);

    // Opens the events that a path and a query text name, either of which may be null; arguments and `flags` are those
    // of EvtQuery. Returns an error code.
    std::uint32_t OpenQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags,
                            std::unique_ptr<EventQuery>& events);
    std::uint32_t OpenPath(EVT_HANDLE session, LPCWSTR path, std::wstring_view text, DWORD flags,
                           std::unique_ptr<EventQuery>& events);
    std::uint32_t OpenDocument(EVT_HANDLE session, std::wstring_view text, DWORD flags,
                               std::unique_ptr<EventQuery>& events);

    // The log of a channel; none, without an error, for a channel that has no file yet. Returns an error code.
    std::uint32_t OpenChannelLog(const Channel& channel, std::shared_ptr<const OpenLogFile>& log);
};

}  // namespace corvina::embedded
