#include "embedded/publisher/event_template_resource.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "base/little_endian.h"
#include "embedded/publisher/event_template_text.h"
#include "embedded/publisher/template_bytes.h"

namespace corvina::publisher {

namespace {

constexpr std::size_t HeaderSize = 16;
constexpr std::size_t HeaderEntrySize = 20;  // a GUID and an offset
constexpr std::size_t MostProviders = 1'000;
constexpr std::size_t ProviderHeaderSize = 20;
constexpr std::size_t ListReferenceSize = 8;
constexpr std::size_t MostLists = 64;
constexpr std::size_t ListHeaderSize = 12;
constexpr std::size_t EventListHeaderSize = 16;
constexpr std::size_t ChannelSize = 16;
constexpr std::size_t LevelSize = 12;
constexpr std::size_t OpcodeSize = 12;
constexpr std::size_t TaskSize = 28;
constexpr std::size_t KeywordSize = 16;
constexpr std::size_t EventSize = 48;
constexpr std::size_t MostNamedValues = 10'000;  // of one list
constexpr std::size_t MostChannels = 256;        // events name them by one byte
constexpr std::size_t MostEvents = 65'536;

bool HasSignature(std::span<const std::byte> bytes, std::string_view signature) {
    return bytes.size() >= signature.size() && std::memcmp(bytes.data(), signature.data(), signature.size()) == 0;
}

GuidBytes GuidAt(const std::byte* bytes) {
    GuidBytes guid;
    std::copy_n(bytes, guid.size(), guid.begin());
    return guid;
}

// The entries of the header, HeaderEntrySize bytes each.
std::span<const std::byte> HeaderEntries(const TemplateBytes& resource) {
    const std::span<const std::byte> header = resource.Part(0, HeaderSize);
    if (!HasSignature(header, "CRIM")) {
        return {};
    }
    const std::size_t count = std::min<std::size_t>(LoadUInt32(header.data() + 12), MostProviders);
    return resource.Entries(HeaderSize, count, HeaderEntrySize);
}

// Calls `use` with the bytes of each entry.
template <typename Use>
void ForEachEntry(std::span<const std::byte> entries, std::size_t entrySize, Use use) {
    for (; entries.size() >= entrySize; entries = entries.subspan(entrySize)) {
        use(entries.data());
    }
}

class ProviderTemplateReader {
  public:
    ProviderTemplateReader(TemplateBytes resource, Publisher& publisher) : resource_(resource), publisher_(publisher) {}

    // Reads the provider ("WEVT") at an offset; false when there is none.
    bool Read(std::uint32_t offset) {
        const std::span<const std::byte> header = resource_.Part(offset, ProviderHeaderSize);
        if (!HasSignature(header, "WEVT")) {
            return false;
        }
        publisher_.MessageId = LoadUInt32(header.data() + 8);
        const std::size_t count = std::min<std::size_t>(LoadUInt32(header.data() + 12), MostLists);
        const auto lists = resource_.Entries(std::size_t{offset} + ProviderHeaderSize, count, ListReferenceSize);
        ForEachEntry(lists, ListReferenceSize, [this](const std::byte* list) { NoteChannels(LoadUInt32(list)); });
        ForEachEntry(lists, ListReferenceSize, [this](const std::byte* list) { ReadValues(LoadUInt32(list)); });
        ForEachEntry(lists, ListReferenceSize, [this](const std::byte* list) { ReadEvents(LoadUInt32(list)); });
        publisher_.SortDefinitions();
        return true;
    }

  private:
    // Notes the channels that events name.
    void NoteChannels(std::uint32_t offset) {
        ForEachEntry(EventList(offset), EventSize,
                     [this](const std::byte* entry) { isChannelUsed_[LoadUInt8(entry + 3)] = true; });
        isChannelUsed_[0] = false;  // stands for no channel
    }

    // Of several lists of one kind the first counts.
    void ReadValues(std::uint32_t offset) {
        if (publisher_.Channels.empty()) {
            ForEachEntry(List(offset, "CHAN", ListHeaderSize, ChannelSize, MostChannels), ChannelSize,
                         [this](const std::byte* entry) { ReadChannel(entry); });
        }
        // What stands where: the value, the message identifier and the place of the name.
        ReadNamedValues(offset, "LEVL", LevelSize, publisher_.Levels, [this](const std::byte* entry) {
            return Named(LoadUInt32(entry), LoadUInt32(entry + 4), LoadUInt32(entry + 8));
        });
        ReadNamedValues(offset, "OPCO", OpcodeSize, publisher_.Opcodes, [this](const std::byte* entry) {
            // The upper half is the opcode, the lower one the task that it belongs to.
            const std::uint32_t value = LoadUInt32(entry) << 16 | LoadUInt32(entry) >> 16;
            return Named(value, LoadUInt32(entry + 4), LoadUInt32(entry + 8));
        });
        ReadNamedValues(offset, "TASK", TaskSize, publisher_.Tasks, [this](const std::byte* entry) {
            NamedValue task = Named(LoadUInt32(entry), LoadUInt32(entry + 4), LoadUInt32(entry + 24));
            const GuidBytes guid = GuidAt(entry + 8);
            if (guid != GuidBytes{}) {
                task.Guid = guid;
            }
            return task;
        });
        ReadNamedValues(offset, "KEYW", KeywordSize, publisher_.Keywords, [this](const std::byte* entry) {
            return Named(LoadUInt64(entry), LoadUInt32(entry + 8), LoadUInt32(entry + 12));
        });
    }

    // The entries of a list; none when the list at the offset is another one.
    std::span<const std::byte> List(std::uint32_t offset, std::string_view signature, std::size_t headerSize,
                                    std::size_t entrySize, std::size_t mostEntries) const {
        const std::span<const std::byte> header = resource_.Part(offset, headerSize);
        if (!HasSignature(header, signature)) {
            return {};
        }
        const std::size_t count = std::min<std::size_t>(LoadUInt32(header.data() + 8), mostEntries);
        return resource_.Entries(std::size_t{offset} + headerSize, count, entrySize);
    }

    std::span<const std::byte> EventList(std::uint32_t offset) const {
        return List(offset, "EVNT", EventListHeaderSize, EventSize, MostEvents);
    }

    template <typename ReadEntry>
    void ReadNamedValues(std::uint32_t offset, std::string_view signature, std::size_t entrySize,
                         std::vector<NamedValue>& values, ReadEntry readEntry) {
        if (values.empty()) {
            ForEachEntry(List(offset, signature, ListHeaderSize, entrySize, MostNamedValues), entrySize,
                         [&](const std::byte* entry) { values.push_back(readEntry(entry)); });
        }
    }

    NamedValue Named(std::uint64_t value, std::uint32_t messageId, std::uint32_t nameOffset) {
        NamedValue named;
        named.Value = value;
        named.MessageId = messageId;
        resource_.ReadText(nameOffset, named.Name);
        return named;
    }

    void ReadChannel(const std::byte* entry) {
        // Two numbers stand here, flags and the identifier. Should a compiler write them in the other order, the events
        // tell which one they mean.
        const auto first = static_cast<std::uint8_t>(LoadUInt32(entry));
        const auto second = static_cast<std::uint8_t>(LoadUInt32(entry + 8));
        const bool isFirst = isChannelUsed_[first] && !isChannelUsed_[second];
        ChannelReference channel;
        channel.Id = isFirst ? first : second;
        channel.Imported = ((isFirst ? second : first) & 1) != 0;
        channel.MessageId = LoadUInt32(entry + 12);
        if (resource_.ReadText(LoadUInt32(entry + 4), channel.Path)) {
            publisher_.Channels.push_back(std::move(channel));
        }
    }

    void ReadEvents(std::uint32_t offset) {
        if (publisher_.Events.empty()) {
            ForEachEntry(EventList(offset), EventSize, [this](const std::byte* entry) { ReadEvent(entry); });
        }
    }

    void ReadEvent(const std::byte* entry) {
        EventDefinition& event = publisher_.Events.emplace_back();
        event.Id = LoadUInt16(entry);
        event.Version = LoadUInt8(entry + 2);
        event.ChannelId = LoadUInt8(entry + 3);
        event.Level = LoadUInt8(entry + 4);
        event.Opcode = LoadUInt8(entry + 5);
        event.Task = LoadUInt16(entry + 6);
        event.Keywords = LoadUInt64(entry + 8);
        event.MessageId = LoadUInt32(entry + 16);
        event.Channel = ChannelPath(event.ChannelId);
        const std::uint32_t templateOffset = LoadUInt32(entry + 20);
        if (templateOffset != 0) {
            event.Template = Template(templateOffset);
        }
    }

    std::wstring ChannelPath(std::uint8_t id) {
        const auto channel = std::find_if(publisher_.Channels.begin(), publisher_.Channels.end(),
                                          [id](const ChannelReference& candidate) { return candidate.Id == id; });
        const bool isKnown = id != 0 && channel != publisher_.Channels.end();
        return isKnown && resource_.Spend(channel->Path.size()) ? channel->Path : std::wstring();
    }

    std::wstring Template(std::uint32_t offset) {
        const auto [known, isNew] = templates_.try_emplace(offset);
        if (isNew) {
            known->second = EventTemplateText(resource_, offset);
            return known->second;
        }
        return resource_.Spend(known->second.size()) ? known->second : std::wstring();
    }

    TemplateBytes resource_;
    Publisher& publisher_;
    std::map<std::uint32_t, std::wstring> templates_;
    std::array<bool, 256> isChannelUsed_{};
};

}  // namespace

std::vector<GuidBytes> EventTemplateProviders(std::span<const std::byte> resource) {
    std::vector<GuidBytes> guids;
    ForEachEntry(HeaderEntries(TemplateBytes(resource)), HeaderEntrySize,
                 [&guids](const std::byte* entry) { guids.push_back(GuidAt(entry)); });
    return guids;
}

bool ReadEventTemplate(std::span<const std::byte> resource, const GuidBytes& guid, Publisher& publisher) {
    const TemplateBytes bytes(resource);
    std::optional<std::uint32_t> offset;
    ForEachEntry(HeaderEntries(bytes), HeaderEntrySize, [&](const std::byte* entry) {
        if (!offset && GuidAt(entry) == guid) {
            offset = LoadUInt32(entry + guid.size());
        }
    });
    if (!offset || !ProviderTemplateReader(bytes, publisher).Read(*offset)) {
        return false;
    }
    publisher.Guid = guid;
    return true;
}

}  // namespace corvina::publisher
