// Opening a query: its text, the channels and files that it names, and a cursor over each of their logs.
#include <deque>
#include <map>
#include <optional>
#include <utility>

#include "base/letter_case.h"
#include "base/path_text.h"
#include "embedded/clock.h"
#include "embedded/embedded_state.h"
#include "embedded/xpath/filter.h"
#include "embedded/xpath/query_document.h"
#include "embedded/xpath/selection.h"

namespace corvina::embedded {
namespace {

constexpr DWORD PathFlags = EvtQueryChannelPath | EvtQueryFilePath;
constexpr DWORD DirectionFlags = EvtQueryForwardDirection | EvtQueryReverseDirection;
constexpr DWORD AllQueryFlags = PathFlags | DirectionFlags | EvtQueryTolerateQueryErrors;

// One kind of path and at most one direction; forward when none is given.
bool AreQueryFlagsValid(DWORD flags) {
    const DWORD path = flags & PathFlags;
    return (flags & ~AllQueryFlags) == 0 && path != 0 && path != PathFlags &&
           (flags & DirectionFlags) != DirectionFlags;
}

bool IsSeparator(wchar_t character) {
    return character == L'/' || character == L'\\';
}

bool IsDriveLetter(wchar_t character) {
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

// The file behind "file://C:/folder/name.evtx", or none when the path is a channel's. Either separator may be used.
// Three slashes lead to a drive as well, elsewhere to the root. Percent signs stand for themselves: they belong to the
// names of most log files.
std::optional<std::filesystem::path> FileOfDocumentPath(std::wstring_view path) {
    constexpr std::wstring_view Scheme = L"file:";
    if (!EqualIgnoringCase(path.substr(0, Scheme.size()), Scheme)) {
        return std::nullopt;
    }
    std::wstring_view file = path.substr(Scheme.size());
    if (file.size() < 2 || !IsSeparator(file[0]) || !IsSeparator(file[1])) {
        return std::nullopt;
    }
    file.remove_prefix(2);
    if (file.size() >= 3 && IsSeparator(file[0]) && IsDriveLetter(file[1]) && file[2] == L':') {
        file.remove_prefix(1);
    }
    return PathFromText(file);
}

// The logs that the paths of a document lead to. A log that several paths name is opened and read once.
class DocumentLogs {
  public:
    // `computer` may be none; its channels then have `computerError`.
    DocumentLogs(LogCache& cache, const ComputerFolder* computer, std::uint32_t computerError)
        : cache_(cache), computer_(computer), computerError_(computerError) {}

    // Returns an error code. When errors are tolerated, there is one only if not a single path can be read: what the
    // query gave then would look like logs without such events.
    std::uint32_t Open(const xpath::QueryDocument& document, bool tolerant) {
        bool anyRead = document.Paths().empty();
        for (const std::wstring& path : document.Paths()) {
            std::shared_ptr<const OpenLogFile> file;
            const std::uint32_t error = OpenPath(path, file);
            if (error != error::Success && !tolerant) {
                return error;
            }
            anyRead = anyRead || error == error::Success;
            sources_.push_back({path, error});
            logOfPath_.push_back(error == error::Success ? &LogOf(std::move(file)) : nullptr);
        }
        if (!anyRead) {
            return sources_.front().Status;
        }
        Distribute(document);
        return error::Success;
    }

    // A query over each log that can give events.
    std::unique_ptr<EventQuery> MakeQuery(bool newestFirst) {
        std::vector<LogCursor> cursors;
        for (const Log& log : logs_) {
            if (log.File != nullptr && !log.File->File().Chunks().empty() && !log.Selection->MatchesNothing()) {
                cursors.emplace_back(log.File, log.Selection, newestFirst);
            }
        }
        return std::make_unique<EventQuery>(std::move(sources_), std::move(cursors), newestFirst);
    }

  private:
    struct Log {
        std::shared_ptr<const OpenLogFile> File;  // none for channels that have no file yet
        std::shared_ptr<xpath::Selection> Selection;
    };

    std::uint32_t OpenPath(const std::wstring& path, std::shared_ptr<const OpenLogFile>& file) {
        std::uint32_t error = error::Success;
        if (const std::optional<std::filesystem::path> place = FileOfDocumentPath(path)) {
            file = cache_.Open(*place, error);
            return error;
        }
        if (computer_ == nullptr) {
            return computerError_;
        }
        if (path.size() > MaximumChannelPathLength) {
            return error::InvalidChannelPath;
        }
        const std::shared_ptr<const Channel> channel = computer_->KnownChannel(path);
        if (channel == nullptr) {
            return error::ChannelNotFound;
        }
        if (channel->HasFile) {
            file = cache_.Open(channel->File, error);
        }
        return error;
    }

    Log& LogOf(std::shared_ptr<const OpenLogFile> file) {
        const auto [place, isNew] = logOfFile_.try_emplace(file.get(), nullptr);
        if (isNew) {
            logs_.push_back({std::move(file), std::make_shared<xpath::Selection>()});
            place->second = &logs_.back();
        }
        return *place->second;
    }

    void Distribute(const xpath::QueryDocument& document) {
        for (const xpath::QueryDocument::Term& term : document.Terms()) {
            Log* const log = logOfPath_[term.Path];
            if (log == nullptr) {
                continue;
            }
            if (term.Suppresses) {
                log->Selection->Suppress(term.Query, term.Condition);
            } else {
                log->Selection->Select(term.Query, term.Condition);
            }
        }
    }

    LogCache& cache_;
    const ComputerFolder* computer_;
    std::uint32_t computerError_;
    std::deque<Log> logs_;  // in the order of the document
    std::map<const OpenLogFile*, Log*> logOfFile_;
    std::vector<EventQuery::Source> sources_;  // one a path
    std::vector<Log*> logOfPath_;              // one a path, none when it cannot be read
};

}  // namespace

// A document brings its own paths, so that `path` says nothing then.
std::uint32_t EmbeddedEventLog::State::OpenQuery(EVT_HANDLE session, LPCWSTR path, LPCWSTR query, DWORD flags,
                                                 std::unique_ptr<EventQuery>& events) {
    if (!AreQueryFlagsValid(flags)) {
        return error::InvalidParameter;
    }
    if (session != nullptr && Handles.Find<SessionObject>(session) == nullptr) {
        return error::InvalidHandle;
    }
    const std::wstring_view text(query == nullptr ? L"" : query);
    if (xpath::IsQueryDocument(text)) {
        return OpenDocument(session, text, flags, events);
    }
    return path == nullptr ? error::InvalidParameter : OpenPath(session, path, text, flags, events);
}

// A file path may be relative and may use either separator. Errors are never tolerated here: that is about the other
// logs of a query, and there are none.
std::uint32_t EmbeddedEventLog::State::OpenPath(EVT_HANDLE session, LPCWSTR path, std::wstring_view text, DWORD flags,
                                                std::unique_ptr<EventQuery>& events) {
    std::shared_ptr<const OpenLogFile> log;
    std::uint32_t error = error::Success;
    if ((flags & EvtQueryFilePath) != 0) {
        log = Logs.Open(PathFromText(path), error);
    } else {
        std::shared_ptr<ComputerFolder> computer;
        std::shared_ptr<const Channel> channel;
        error = FindChannel(session, path, computer, channel);
        if (error == error::Success) {
            error = OpenChannelLog(*channel, log);
        }
    }
    if (error != error::Success) {
        return error;
    }
    std::shared_ptr<const xpath::Filter> filter = xpath::Filter::Parse(text, CurrentFileTime());
    if (filter == nullptr) {
        return error::InvalidQuery;
    }
    auto selection = std::make_shared<xpath::Selection>();
    selection->Select(0, std::move(filter));
    const bool newestFirst = (flags & EvtQueryReverseDirection) != 0;
    std::vector<LogCursor> logs;
    logs.emplace_back(std::move(log), std::move(selection), newestFirst);
    events = std::make_unique<EventQuery>(std::vector<EventQuery::Source>{{path, error::Success}}, std::move(logs),
                                          newestFirst);
    return error::Success;
}

std::uint32_t EmbeddedEventLog::State::OpenDocument(EVT_HANDLE session, std::wstring_view text, DWORD flags,
                                                    std::unique_ptr<EventQuery>& events) {
    const std::optional<xpath::QueryDocument> document = xpath::QueryDocument::Parse(text, CurrentFileTime());
    if (!document) {
        return error::InvalidQuery;
    }
    // A document of files needs no computer.
    std::shared_ptr<ComputerFolder> computer;
    std::uint32_t computerError = FindComputer(session, computer);
    if (computerError == error::Success) {
        computerError = computer->Refresh();
    }
    DocumentLogs logs(Logs, computerError == error::Success ? computer.get() : nullptr, computerError);
    const std::uint32_t error = logs.Open(*document, (flags & EvtQueryTolerateQueryErrors) != 0);
    if (error == error::Success) {
        events = logs.MakeQuery((flags & EvtQueryReverseDirection) != 0);
    }
    return error;
}

}  // namespace corvina::embedded
