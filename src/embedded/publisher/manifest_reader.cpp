#include <algorithm>
#include <limits>
#include <map>
#include <new>
#include <pugixml.hpp>
#include <utility>

#include "base/parse_number.h"
#include "base/utf.h"
#include "embedded/publisher/localized_strings.h"
#include "embedded/publisher/publisher_manifest.h"
#include "embedded/publisher/standard_values.h"

namespace corvina::publisher {

namespace {

// Many events may refer to one text, which each of them then holds: the texts of a manifest are bounded together.
constexpr std::size_t MostTextCharacters = std::size_t{16} << 20;
constexpr std::size_t MostProblems = 1'000;

constexpr std::string_view Blanks = " \t\r\n";

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

void SortByValue(std::vector<NamedValue>& values) {
    std::stable_sort(values.begin(), values.end(),
                     [](const NamedValue& left, const NamedValue& right) { return left.Value < right.Value; });
}

// What the providers of one manifest share: its strings, the bound on all texts together, and the list of problems.
class ManifestContext {
  public:
    ManifestContext(pugi::xml_node manifest, std::vector<std::wstring>* problems)
        : strings_(manifest), problems_(problems) {}

    void Report(std::string_view problem, std::string_view subject) {
        if (problems_ != nullptr && problems_->size() < MostProblems) {
            problems_->push_back(WideFromUtf8(problem) + L": " + WideFromUtf8(subject));
        }
    }

    // A text that several places may refer to.
    std::optional<std::wstring> Copy(std::string_view text) {
        if (text.size() > charactersLeft_) {
            Report("The manifest's texts are too long", text.substr(0, 40));
            return std::nullopt;
        }
        charactersLeft_ -= text.size();
        return WideFromUtf8(text);
    }

    // The text of an element's attribute "message".
    std::optional<std::wstring> Message(pugi::xml_node node) {
        const pugi::xml_attribute reference = node.attribute("message");
        if (!reference) {
            return std::nullopt;
        }
        const std::optional<std::string_view> text = strings_.Resolve(reference.value());
        if (!text) {
            Report("No string for the message", reference.value());
            return std::nullopt;
        }
        return Copy(*text);
    }

  private:
    LocalizedStrings strings_;
    std::vector<std::wstring>* problems_;
    std::size_t charactersLeft_ = MostTextCharacters;
};

class ProviderReader {
  public:
    ProviderReader(pugi::xml_node provider, ManifestContext& context) : provider_(provider), context_(context) {}

    Publisher Read() {
        ReadDescription();
        ReadChannels();
        levels_ = NamesOf(StandardLevels());
        tasks_ = NamesOf(StandardTasks());
        keywords_ = NamesOf(StandardKeywords());
        for (const StandardValue& opcode : StandardOpcodes()) {
            opcodes_.emplace(std::pair(std::uint64_t{0}, opcode.Name), opcode.Value);
        }
        ForEachListed(provider_, "levels", "level",
                      [this](pugi::xml_node level) { Define(level, "value", 0xFF, publisher_.Levels, levels_); });
        ForEachListed(provider_, "keywords", "keyword", [this](pugi::xml_node keyword) {
            Define(keyword, "mask", std::numeric_limits<std::uint64_t>::max(), publisher_.Keywords, keywords_);
        });
        ReadOpcodes(provider_, 0);
        ReadTasks();
        ForEachListed(provider_, "events", "event", [this](pugi::xml_node event) { ReadEvent(event); });
        Sort();
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

    void ReadDescription() {
        publisher_.Name = Attribute("name");
        publisher_.Guid = ParseGuid(Attribute("guid"));
        publisher_.MessageFileName = Attribute("messageFileName");
        publisher_.ResourceFileName = Attribute("resourceFileName");
        publisher_.HelpLink = Attribute("helpLink");
        publisher_.Message = context_.Message(provider_).value_or(std::wstring());
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
        publisher_.Channels.push_back({WideFromUtf8(path), WideFromUtf8(channel.attribute("type").value()),
                                       channel.attribute("enabled").as_bool(false)});
        // Events name a channel by its "chid"; where there is none, by its symbol or path.
        for (const char* const attribute : {"chid", "symbol", "name"}) {
            const std::string_view name = channel.attribute(attribute).value();
            if (!name.empty()) {
                channels_.emplace(name, path);
            }
        }
    }

    // Adds the value that an element defines, and makes it known by its name.
    void Define(pugi::xml_node node, const char* valueAttribute, std::uint64_t highest, std::vector<NamedValue>& values,
                ValuesByName& names) {
        const std::optional<std::uint64_t> value = ParseNumber(node.attribute(valueAttribute).value(), highest);
        const std::string_view name = node.attribute("name").value();
        if (!value) {
            context_.Report("No usable value for the definition", name);
            return;
        }
        values.push_back({WideFromUtf8(name), *value, context_.Message(node).value_or(std::wstring())});
        names.emplace(name, *value);
    }

    void ReadOpcodes(pugi::xml_node owner, std::uint64_t task) {
        ForEachListed(owner, "opcodes", "opcode", [this, task](pugi::xml_node opcode) {
            ValuesByName ownNames;
            std::vector<NamedValue> own;
            Define(opcode, "value", 0xFF, own, ownNames);
            for (NamedValue& value : own) {
                value.Value |= task << 16;
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
            Define(task, "value", 0xFFFF, publisher_.Tasks, tasks_);
            if (publisher_.Tasks.size() > countBefore) {
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

    std::wstring ChannelReferencePath(pugi::xml_node event) {
        const std::string_view name = event.attribute("channel").value();
        if (name.empty()) {
            return std::wstring();
        }
        const auto found = channels_.find(name);
        if (found == channels_.end()) {
            context_.Report("An event refers to an undefined channel", name);
            return std::wstring();
        }
        return context_.Copy(found->second).value_or(std::wstring());
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
        definition.Channel = ChannelReferencePath(event);
        if (std::optional<std::wstring> message = context_.Message(event)) {
            definition.HasMessage = true;
            definition.Message = std::move(*message);
        }
        definition.Template = WideFromUtf8(event.attribute("template").value());
        publisher_.Events.push_back(std::move(definition));
    }

    // The look-ups search by halves. Of equal definitions the first one counts.
    void Sort() {
        SortByValue(publisher_.Levels);
        SortByValue(publisher_.Tasks);
        SortByValue(publisher_.Opcodes);
        SortByValue(publisher_.Keywords);
        std::stable_sort(publisher_.Events.begin(), publisher_.Events.end(),
                         [](const EventDefinition& left, const EventDefinition& right) {
                             return std::pair(left.Id, left.Version) < std::pair(right.Id, right.Version);
                         });
    }

    pugi::xml_node provider_;
    ManifestContext& context_;
    Publisher publisher_;
    std::map<std::string_view, std::string_view> channels_;
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
