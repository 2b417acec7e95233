// Operations of the embedded event log on publishers and messages.
#include "base/path_text.h"
#include "embedded/embedded_state.h"
#include "embedded/event_messages.h"
#include "embedded/variant_row.h"

namespace corvina::embedded {
namespace {

bool IsMessageKind(DWORD flags) {
    return flags >= EvtFormatMessageEvent && flags <= EvtFormatMessageXml;
}

}  // namespace

// With the path of a log file what lies beside that file comes first: whoever saved the log may have saved its
// providers' manifests or program files with it. The language is that of these files, whatever is asked for. The GUID
// that the provider had in the events that were rendered so far helps to find its program files.
EVT_HANDLE EmbeddedEventLog::EvtOpenPublisherMetadata(EVT_HANDLE session, LPCWSTR publisherId, LPCWSTR logFilePath,
                                                      DWORD /*locale*/, DWORD flags) {
    return state_->Open([&](std::unique_ptr<HandleObject>& object) -> std::uint32_t {
        if (session != nullptr && state_->Handles.Find<SessionObject>(session) == nullptr) {
            return error::InvalidHandle;
        }
        if (publisherId == nullptr || flags != 0) {
            return error::InvalidParameter;
        }
        const std::optional<GuidBytes> guid = state_->Guids.Find(publisherId);
        std::shared_ptr<const publisher::Publisher> publisher;
        if (logFilePath != nullptr) {
            publisher =
                state_->Publishers.Find(PathFromText(logFilePath).parent_path() / "publishers", publisherId, guid);
        }
        if (publisher == nullptr) {
            std::shared_ptr<ComputerFolder> computer;
            const std::uint32_t error = state_->FindComputer(session, computer);
            if (error == error::Success) {
                publisher = state_->Publishers.Find(computer->PublishersFolder(), publisherId, guid);
            } else if (logFilePath == nullptr) {
                return error;
            }
        }
        if (publisher == nullptr) {
            return error::PublisherMetadataNotFound;
        }
        object = std::make_unique<PublisherMetadataObject>(std::move(publisher));
        return error::Success;
    });
}

// Several keywords (kind EvtFormatMessageKeyword) stand one after the other, each closed by a zero, and another zero
// ends the list. With error::UnresolvedValueInsert the text is in the buffer; places without a value stay as they are
// ("%3").
BOOL EmbeddedEventLog::EvtFormatMessage(EVT_HANDLE publisherMetadata, EVT_HANDLE event, DWORD messageId,
                                        DWORD valueCount, EVT_VARIANT* values, DWORD flags, DWORD bufferSize,
                                        LPWSTR buffer, DWORD* bufferUsed) {
    return state_->Do([&]() -> std::uint32_t {
        const auto* const metadata = state_->Handles.Find<PublisherMetadataObject>(publisherMetadata);
        const auto* const object = state_->Handles.Find<EventObject>(event);
        if ((publisherMetadata != nullptr && metadata == nullptr) || (event != nullptr && object == nullptr)) {
            return error::InvalidHandle;
        }
        const bool byId = flags == EvtFormatMessageId;
        if (bufferUsed == nullptr || !IsMessageKind(flags) || (byId && metadata == nullptr) ||
            (valueCount != 0 && values == nullptr)) {
            return error::InvalidParameter;
        }
        const publisher::Publisher* const publisher = metadata == nullptr ? nullptr : metadata->Subject.get();
        if (object != nullptr) {
            state_->Event.Select(event, object->Place);
        }
        const std::uint32_t error = byId ? FormatMessageById(*publisher, messageId, {values, valueCount}, state_->Text)
                                         : FormatEventText(static_cast<EVT_FORMAT_MESSAGE_FLAGS>(flags), publisher,
                                                           object == nullptr ? nullptr : &state_->Event, state_->Text);
        if (error != error::Success && error != error::UnresolvedValueInsert) {
            return error;
        }
        const std::uint32_t writeError = WriteText(state_->Text, bufferSize, buffer, bufferUsed);
        return writeError != error::Success ? writeError : error;
    });
}

}  // namespace corvina::embedded
