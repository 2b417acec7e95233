#include "store_commands.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "base/utf.h"
#include "commands.h"
#include "console.h"
#include "embedded/xpath/query_document.h"
#include "output.h"
#include "platform/error_codes.h"
#include "store.h"

namespace corvina::tools {
namespace {

// Each event keeps its chunk in memory.
constexpr std::size_t BatchSize = 64;

// UTF-16 with its mark, otherwise UTF-8.
std::wstring DecodeText(const std::string& bytes) {
    std::wstring text;
    if (bytes.starts_with("\xFF\xFE")) {
        AppendUtf16(std::as_bytes(std::span(bytes)).subspan(2), text);
    } else {
        text = WideFromUtf8(bytes);
    }
    return text;
}

// All that `read` puts into the pieces that it is given, up to the piece that it cannot fill. What comes after so many
// bytes is left: more is no valid document in any encoding.
template <typename Read>
std::string ReadDocumentBytes(Read read) {
    constexpr std::size_t MostBytes = std::size_t{80} << 20;
    std::string bytes;
    std::array<char, 65536> piece;
    std::size_t size = piece.size();
    while (bytes.size() < MostBytes && size == piece.size()) {
        size = read(std::span<char>(piece));
        bytes.append(piece.data(), size);
    }
    return bytes;
}

// The query document that an argument is, or that the file or the standard input that it names holds. None when it
// cannot be read or is none, which is told of.
std::optional<std::wstring> ReadDocument(const std::string& argument) {
    std::wstring text = WideFromUtf8(argument);
    std::string name = "the query";
    if (argument == "-") {
        // Not std::cin: the tables of its locale would be made at the start of every run.
        text = DecodeText(
            ReadDocumentBytes([](std::span<char> piece) { return std::fread(piece.data(), 1, piece.size(), stdin); }));
    } else if (!xpath::IsQueryDocument(text)) {
        name = argument;
        std::ifstream file(PathFromArgument(argument), std::ios::binary);
        std::error_code error;
        if (!file || std::filesystem::is_directory(PathFromArgument(argument), error)) {
            Complain(name + ": the query document cannot be read");
            return std::nullopt;
        }
        text = DecodeText(ReadDocumentBytes([&file](std::span<char> piece) {
            file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
            return static_cast<std::size_t>(file.gcount());
        }));
    }
    if (!xpath::IsQueryDocument(text)) {
        Complain(name + ": this is not a query document");
        return std::nullopt;
    }
    return text;
}

// Writes events as lines into the output.
class EventWriter {
  public:
    EventWriter(Store& store, bool asXml, Output& output)
        : store_(store),
          output_(output),
          asXml_(asXml),
          context_(store.Held(store.Log.EvtCreateRenderContext(0, nullptr, EvtRenderContextSystem))) {}

    // Returns an error code.
    std::uint32_t Write(EVT_HANDLE event) {
        const DWORD flags = asXml_ ? EvtRenderEventXml : EvtRenderEventValues;
        DWORD size = 0;
        const std::uint32_t error = FillBuffer(store_.Log, buffer_, size, [&](DWORD room, BYTE* place, DWORD* used) {
            DWORD count = 0;
            const EVT_HANDLE context = asXml_ ? nullptr : context_.Get();
            return store_.Log.EvtRender(context, event, flags, room, place, used, &count);
        });
        if (error == error::Success) {
            asXml_ ? AppendXml(size) : AppendIdentity();
        }
        return error;
    }

  private:
    void AppendXml(DWORD size) {
        xml_.resize(size / sizeof(wchar_t));
        std::memcpy(xml_.data(), buffer_.data(), xml_.size() * sizeof(wchar_t));
        xml_.pop_back();  // the closing zero
        AppendEscaped(xml_);
        output_.Buffer().Append('\n');
    }

    void AppendIdentity() {
        const EVT_VARIANT channel = ValueAt(buffer_, EvtSystemChannel);
        const EVT_VARIANT recordId = ValueAt(buffer_, EvtSystemEventRecordId);
        if (channel.Type == EvtVarTypeString) {
            AppendEscaped(channel.StringVal);
        }
        evtx::TextBuffer<char>& text = output_.Buffer();
        text.Append('\t');
        if (recordId.Type == EvtVarTypeUInt64) {
            text.Append(std::to_string(recordId.UInt64Val));
        }
        text.Append('\n');
    }

    void AppendEscaped(std::wstring_view part) {
        utf8_.clear();
        AppendUtf8(part, utf8_);
        const std::size_t begin = output_.Buffer().Size();
        output_.Buffer().Append(utf8_);
        EscapeLineBreaks(output_.Buffer(), begin);
    }

    Store& store_;
    Output& output_;
    bool asXml_;
    EvtHandle context_;
    std::vector<BYTE> buffer_ = std::vector<BYTE>(4096);
    std::wstring xml_;
    std::string utf8_;
};

// Writes all events of a query. Returns an error code.
std::uint32_t WriteEvents(Store& store, const EvtHandle& query, EventWriter& writer, Output& output) {
    std::array<EVT_HANDLE, BatchSize> handles;
    DWORD count = 0;
    while (store.Log.EvtNext(query.Get(), BatchSize, handles.data(), INFINITE, 0, &count)) {
        std::uint32_t error = error::Success;
        for (DWORD index = 0; index < count; ++index) {
            const EvtHandle event = store.Held(handles[index]);
            error = error == error::Success && output.Continue() ? writer.Write(event.Get()) : error;
        }
        if (error != error::Success || !output.Continue()) {
            return error;
        }
    }
    const std::uint32_t error = store.Log.GetLastError();
    return error == error::NoMoreItems ? error::Success : error;
}

// Whether an export's source is a channel of the store; otherwise it is a document.
bool IsChannel(Store& store, const std::wstring& source) {
    const EvtHandle channel = store.Held(store.Log.EvtOpenChannelConfig(store.Session.Get(), source.c_str(), 0));
    return static_cast<bool>(channel);
}

// Reads the document that an export names and sees that each of its logs can be read.
bool OpenExportedDocument(Store& store, const std::string& source, std::wstring& document, EvtHandle& query) {
    std::error_code error;
    if (source != "-" && !xpath::IsQueryDocument(WideFromUtf8(source)) &&
        !std::filesystem::exists(PathFromArgument(source), error)) {
        Complain(source + ": " + ReasonOf(error::ChannelNotFound));
        return false;
    }
    std::optional<std::wstring> text = ReadDocument(source);
    if (!text) {
        return false;
    }
    document = std::move(*text);
    bool allReadable = false;
    query = OpenDocument(store, document, EvtQueryForwardDirection, allReadable);
    return query && allReadable;
}

}  // namespace

int QueryStore(const CommandLine& line) {
    const std::unique_ptr<Store> store = OpenStore(line);
    const std::optional<std::wstring> document = store ? ReadDocument(line.Files[1]) : std::nullopt;
    if (!document) {
        return SomeFailed;
    }
    bool allReadable = false;
    const EvtHandle query = OpenDocument(*store, *document, EvtQueryReverseDirection, allReadable);
    if (!query) {
        return SomeFailed;
    }
    Output output(stdout);
    EventWriter writer(*store, line.AsXml, output);
    const std::uint32_t error = WriteEvents(*store, query, writer, output);
    const int written = Finish(output);
    if (error != error::Success) {
        Complain("the events could not be read: " + ReasonOf(error));
    }
    return error == error::Success && allReadable ? written : SomeFailed;
}

int ExportFromStore(const CommandLine& line) {
    const std::unique_ptr<Store> store = OpenStore(line);
    if (!store) {
        return SomeFailed;
    }
    const std::string& target = line.Files[2];
    const std::wstring channel = WideFromUtf8(line.Files[1]);
    const bool isChannel = IsChannel(*store, channel);
    std::wstring document;
    EvtHandle query;  // keeps the document's logs open until they are exported
    if (!isChannel && !OpenExportedDocument(*store, line.Files[1], document, query)) {
        return SomeFailed;
    }
    const DWORD flags = EvtExportLogChannelPath | (line.Overwrite ? static_cast<DWORD>(EvtExportLogOverwrite) : 0);
    if (!store->Log.EvtExportLog(store->Session.Get(), isChannel ? channel.c_str() : nullptr,
                                 isChannel ? nullptr : document.c_str(), WideFromUtf8(target).c_str(), flags)) {
        Complain(target + ": " + ReasonOf(store->Log.GetLastError()));
        return SomeFailed;
    }
    return AllWell;
}

int ListPublishers(const CommandLine& line) {
    const std::unique_ptr<Store> store = OpenStore(line);
    if (!store) {
        return SomeFailed;
    }
    const EvtHandle publishers = store->Held(store->Log.EvtOpenPublisherEnum(store->Session.Get(), 0));
    if (!publishers) {
        Complain(line.Files.front() + ": " + ReasonOf(store->Log.GetLastError()));
        return SomeFailed;
    }
    std::vector<std::string> names;
    std::wstring name(256, L'\0');
    for (;;) {
        DWORD used = 0;
        if (store->Log.EvtNextPublisherId(publishers.Get(), static_cast<DWORD>(name.size()), name.data(), &used)) {
            names.push_back(Utf8FromWide(name.c_str()));
        } else if (store->Log.GetLastError() == error::InsufficientBuffer && used > name.size()) {
            name.resize(used);
        } else {
            break;
        }
    }
    std::sort(names.begin(), names.end());
    Output output(stdout);
    for (const std::string& publisher : names) {
        output.Buffer().Append(publisher + "\n");
    }
    return Finish(output);
}

}  // namespace corvina::tools
