#include <algorithm>
#include <limits>
#include <map>
#include <new>
#include <pugixml.hpp>
#include <utility>

#include "base/parse_number.h"
#include "base/utf.h"
#include "embedded/publisher/localized_strings.h"
#include "embedded/publisher/manifest_context.h"
#include "embedded/publisher/manifest_templates.h"
#include "embedded/publisher/message_ids.h"
#include "embedded/publisher/publisher_manifest.h"
#include "embedded/publisher/standard_values.h"

namespace corvina::publisher {

namespace {

constexpr std::string_view Blanks = " \t\r\n";

// The identifiers of the channels that exist on every computer, as the platform's winmeta definitions have them. A
// provider's other channels are counted from the first free one on.
struct WellKnownChannel {
    std::string_view Path;
    std::uint8_t Id;
};
constexpr WellKnownChannel WellKnownChannels[] = {{"System", 8}, {"Application", 9}, {"Security", 10}};
constexpr std::uint8_t FirstFreeChannelId = 16;

std::optional<std::uint64_t> ParseNumber(std::string_view text, std::uint64_t highest) {
    return ParseUnsigned(WideFromUtf8(text), highest);
}

// Calls `use` with every element `inner` in the elements `outer` of a node.
template <typename Use>
void ForEachListed(pugi::xml_node node, std::string_view outer, std::string_view inner, Use use) {
    for (const pugi::xml_node list : node.children()) {
        if (LocalName(list) != outer) {
            continue;
        }
        for (const pugi::xml_node item : list.children()) {
            if (LocalName(item) == inner) {
                use(item);
            }
        }
    }
}

class ProviderReader {
  public:
    ProviderReader(pugi::xml_node provider, ManifestContext& context)
        : provider_(provider), context_(context), templates_(provider) {}

    Publisher Read() {
        ReadDescription();
        ReadChannels();
        levels_ = NamesOf(StandardLevels());
        tasks_ = NamesOf(StandardTasks());
        keywords_ = NamesOf(StandardKeywords());
        for (const StandardValue& opcode : StandardOpcodes()) {
            opcodes_.emplace(std::pair(std::uint64_t{0}, opcode.Name), opcode.Value);
        }
        ForEachListed(provider_, "levels", "level", [this](pugi::xml_node level) {
            Define(level, "value", 0xFF, publisher_.Levels, levels_, LevelMessageId);
        });
        ForEachListed(provider_, "keywords", "keyword", [this](pugi::xml_node keyword) {
            Define(keyword, "mask", std::numeric_limits<std::uint64_t>::max(), publisher_.Keywords, keywords_,
                   KeywordMessageId);
        });
        ReadOpcodes(provider_, 0);
        ReadTasks();
        ForEachListed(provider_, "events", "event", [this](pugi::xml_node event) { ReadEvent(event); });
        publisher_.SortDefinitions();
        return std::move(publisher_);
    }

  private:
    using ValuesByName = std::map<std::string_view, std::uint64_t>;

    static ValuesByName NamesOf(std::span<const StandardValue> values) {
        ValuesByName names;
        for (const StandardValue& value : values) {
            names.emplace(value.Name, value.Value);
        }
        return names;
    }

    std::wstring Attribute(const char* name) const { return WideFromUtf8(provider_.attribute(name).value()); }

    // Gives what an element defines the text of its attribute "message", and the text's identifier. False when there is
    // no text.
    template <typename Described>
    bool TakeMessage(pugi::xml_node node, Described& described, std::uint32_t messageId) {
        std::optional<std::wstring> message = context_.Message(node);
        if (!message) {
            return false;
        }
        described.Message = std::move(*message);
        described.MessageId = messageId;
        return true;
    }

    void ReadDescription() {
        publisher_.Name = Attribute("name");
        publisher_.Guid = ParseGuid(Attribute("guid"));
        publisher_.MessageFileName = Attribute("messageFileName");
        publisher_.ResourceFileName = Attribute("resourceFileName");
        publisher_.ParameterFileName = Attribute("parameterFileName");
        publisher_.HelpLink = Attribute("helpLink");
        TakeMessage(provider_, publisher_, ProviderMessages | 1);
    }

    void ReadChannels() {
        for (const pugi::xml_node list : provider_.children()) {
            if (LocalName(list) != "channels") {
                continue;
            }
            for (const pugi::xml_node channel : list.children()) {
                if (LocalName(channel) == "channel" || LocalName(channel) == "importChannel") {
                    ReadChannel(channel);
                }
            }
        }
    }

    void ReadChannel(pugi::xml_node channel) {
        const std::string_view path = channel.attribute("name").value();
        if (path.empty()) {
            context_.Report("A channel without a name in the publisher", provider_.attribute("name").value());
            return;
        }
        ChannelReference& reference = publisher_.Channels.emplace_back();
        reference.Path = WideFromUtf8(path);
        reference.Type = WideFromUtf8(channel.attribute("type").value());
        reference.Enabled = channel.attribute("enabled").as_bool(false);
        reference.Imported = LocalName(channel) == "importChannel";
        reference.Id = ChannelId(channel, path);
        const std::size_t number = publisher_.Channels.size() + 1;  // the provider itself has the first one
        TakeMessage(channel, reference, ProviderMessages | static_cast<std::uint32_t>(number));
        // Events name a channel by its "chid"; where there is none, by its symbol or path.
        for (const char* const attribute : {"chid", "symbol", "name"}) {
            const std::string_view name = channel.attribute(attribute).value();
            if (!name.empty()) {
                channels_.emplace(name, std::pair(path, reference.Id));
            }
        }
    }

    std::uint8_t ChannelId(pugi::xml_node channel, std::string_view path) {
        if (const auto value = ParseNumber(channel.attribute("value").value(), 0xFF)) {
            return static_cast<std::uint8_t>(*value);
        }
        for (const WellKnownChannel& known : WellKnownChannels) {
            if (known.Path == path) {
                return known.Id;
            }
        }
        return nextChannelId_ == 0 ? std::uint8_t{0} : nextChannelId_++;  // after 255 there is none
    }

    // Adds the value that an element defines, and makes it known by its name.
    void Define(pugi::xml_node node, const char* valueAttribute, std::uint64_t highest, std::vector<NamedValue>& values,
                ValuesByName& names, std::uint32_t (*messageIdOf)(std::uint64_t value)) {
        const std::optional<std::uint64_t> value = ParseNumber(node.attribute(valueAttribute).value(), highest);
        const std::string_view name = node.attribute("name").value();
        if (!value) {
            context_.Report("No usable value for the definition", name);
            return;
        }
        NamedValue& named = values.emplace_back();
        named.Name = WideFromUtf8(name);
        named.Value = *value;
        TakeMessage(node, named, messageIdOf(*value));
        names.emplace(name, *value);
    }

    void ReadOpcodes(pugi::xml_node owner, std::uint64_t task) {
        ForEachListed(owner, "opcodes", "opcode", [this, task](pugi::xml_node opcode) {
            ValuesByName ownNames;
            std::vector<NamedValue> own;
            Define(opcode, "value", 0xFF, own, ownNames, OpcodeMessageId);
            for (NamedValue& value : own) {
                value.Value |= task << 16;
                value.MessageId = value.MessageId == NoMessage ? NoMessage : OpcodeMessageId(value.Value);
                publisher_.Opcodes.push_back(std::move(value));
            }
            for (const auto& [name, value] : ownNames) {
                opcodes_.emplace(std::pair(task, name), value);
            }
        });
    }

    void ReadTasks() {
        ForEachListed(provider_, "tasks", "task", [this](pugi::xml_node task) {
            const std::size_t countBefore = publisher_.Tasks.size();
            Define(task, "value", 0xFFFF, publisher_.Tasks, tasks_, TaskMessageId);
            if (publisher_.Tasks.size() > countBefore) {
                publisher_.Tasks.back().Guid = ParseGuid(WideFromUtf8(task.attribute("eventGUID").value()));
                ReadOpcodes(task, publisher_.Tasks.back().Value);
            }
        });
    }

    std::uint64_t Reference(pugi::xml_node event, const char* attribute, const ValuesByName& names) {
        const std::string_view name = event.attribute(attribute).value();
        if (name.empty()) {
            return 0;
        }
        const auto found = names.find(name);
        if (found == names.end()) {
            context_.Report("An event refers to something undefined", name);
            return 0;
        }
        return found->second;
    }

    std::uint64_t OpcodeReference(pugi::xml_node event, std::uint64_t task) {
        const std::string_view name = event.attribute("opcode").value();
        if (name.empty()) {
            return 0;
        }
        auto found = opcodes_.find(std::pair(task, name));
        if (found == opcodes_.end()) {
            found = opcodes_.find(std::pair(std::uint64_t{0}, name));
        }
        if (found == opcodes_.end()) {
            context_.Report("An event refers to an undefined opcode", name);
            return 0;
        }
        return found->second;
    }

    std::uint64_t KeywordReferences(pugi::xml_node event) {
        std::string_view names = event.attribute("keywords").value();
        std::uint64_t mask = 0;
        for (;;) {
            names.remove_prefix(std::min(names.find_first_not_of(Blanks), names.size()));
            if (names.empty()) {
                return mask;
            }
            const std::string_view name = names.substr(0, names.find_first_of(Blanks));
            names.remove_prefix(name.size());
            const auto found = keywords_.find(name);
            if (found != keywords_.end()) {
                mask |= found->second;
            } else {
                context_.Report("An event refers to an undefined keyword", name);
            }
        }
    }

    void ReadEventChannel(pugi::xml_node event, EventDefinition& definition) {
        const std::string_view name = event.attribute("channel").value();
        if (name.empty()) {
            return;
        }
        const auto found = channels_.find(name);
        if (found == channels_.end()) {
            context_.Report("An event refers to an undefined channel", name);
            return;
        }
        const auto& [path, id] = found->second;
        definition.ChannelId = id;
        definition.Channel = context_.Copy(path).value_or(std::wstring());
    }

    void ReadEventTemplate(pugi::xml_node event, EventDefinition& definition) {
        const std::string_view name = event.attribute("template").value();
        if (name.empty()) {
            return;
        }
        if (const std::string* const text = templates_.Find(name)) {
            definition.Template = context_.Copy(*text).value_or(std::wstring());
        } else {
            context_.Report("An event refers to an undefined template", name);
        }
    }

    void ReadEvent(pugi::xml_node event) {
        const std::string_view idText = event.attribute("value").value();
        const std::optional<std::uint64_t> id = ParseNumber(idText, 0xFFFF'FFFF);
        const std::optional<std::uint64_t> version = ParseNumber(event.attribute("version").as_string("0"), 0xFF);
        if (!id || !version) {
            context_.Report("An event without a usable value or version", idText);
            return;
        }
        EventDefinition definition;
        definition.Id = static_cast<std::uint32_t>(*id);
        definition.Version = static_cast<std::uint8_t>(*version);
        definition.Level = static_cast<std::uint8_t>(Reference(event, "level", levels_));
        definition.Task = static_cast<std::uint16_t>(Reference(event, "task", tasks_));
        definition.Opcode = static_cast<std::uint8_t>(OpcodeReference(event, definition.Task));
        definition.Keywords = KeywordReferences(event);
        ReadEventChannel(event, definition);
        definition.HasMessage = TakeMessage(event, definition, EventMessageId(definition.Id, definition.Version));
        ReadEventTemplate(event, definition);
        publisher_.Events.push_back(std::move(definition));
    }

    pugi::xml_node provider_;
    ManifestContext& context_;
    Publisher publisher_;
    ManifestTemplates templates_;
    std::map<std::string_view, std::pair<std::string_view, std::uint8_t>> channels_;  // path and identifier
    std::uint8_t nextChannelId_ = FirstFreeChannelId;
    ValuesByName levels_;
    ValuesByName tasks_;
    ValuesByName keywords_;
    // By owning task (0 for any) and name.
    std::map<std::pair<std::uint64_t, std::string_view>, std::uint64_t> opcodes_;
};

void ReadProviders(pugi::xml_node manifest, ManifestContext& context, std::vector<Publisher>& publishers) {
    for (const pugi::xml_node instrumentation : manifest.children()) {
        if (LocalName(instrumentation) != "instrumentation") {
            continue;
        }
        ForEachListed(instrumentation, "events", "provider", [&context, &publishers](pugi::xml_node provider) {
            Publisher publisher = ProviderReader(provider, context).Read();
            if (publisher.Name.empty()) {
                context.Report("A publisher without a name", provider.attribute("guid").value());
            } else {
                publishers.push_back(std::move(publisher));
            }
        });
    }
}

}  // namespace

std::vector<Publisher> ReadManifest(std::span<const std::byte> bytes, std::vector<std::wstring>* problems) {
    if (bytes.empty() || bytes.size() > LargestManifest) {
        return {};
    }
    try {
        pugi::xml_document document;
        if (!document.load_buffer(bytes.data(), bytes.size())) {
            return {};
        }
        const pugi::xml_node manifest = document.document_element();
        if (LocalName(manifest) != "instrumentationManifest") {
            return {};
        }
        std::vector<Publisher> publishers;
        ManifestContext context(manifest, problems);
        ReadProviders(manifest, context, publishers);
        return publishers;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

}  // namespace corvina::publisher
