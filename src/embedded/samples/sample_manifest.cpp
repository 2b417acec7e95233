#include "embedded/samples/sample_manifest.h"

#include <iterator>
#include <set>
#include <utility>

#include "base/identifiers.h"
#include "base/utf.h"
#include "embedded/samples/sample_events.h"

namespace corvina::samples {
namespace {

constexpr std::string_view LevelNames[] = {"win:LogAlways", "win:Critical",      "win:Error",
                                           "win:Warning",   "win:Informational", "win:Verbose"};
constexpr std::string_view OpcodeNames[] = {"win:Info", "win:Start", "win:Stop"};

std::string Escaped(std::wstring_view text) {
    std::string escaped;
    for (const char character : Utf8FromWide(text)) {
        switch (character) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += character;
        }
    }
    return escaped;
}

std::string_view InputType(FieldKind kind) {
    using Kind = evtx::WriterValue::Kind;
    switch (KindOf(kind)) {
        case Kind::UInt32:
            return "win:UInt32";
        case Kind::UInt64:
            return "win:UInt64";
        case Kind::Int32:
            return "win:Int32";
        case Kind::HexInt32:
            return "win:HexInt32";
        case Kind::HexInt64:
            return "win:HexInt64";
        case Kind::Boolean:
            return "win:Boolean";
        case Kind::Guid:
            return "win:GUID";
        case Kind::Sid:
            return "win:SID";
        case Kind::FileTime:
            return "win:FILETIME";
        case Kind::Binary:
            return "win:Binary";
        case Kind::Text:
            break;
    }
    return "win:UnicodeString";
}

// One manifest while it is written. Texts are collected on the way, for the string table at its end.
class ManifestWriter {
  public:
    explicit ManifestWriter(const SampleProvider& provider) : provider_(provider) {}

    std::string Write() {
        Line("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
        Line("<instrumentationManifest xmlns=\"http://schemas.microsoft.com/win/2004/08/events\">");
        Line(" <instrumentation xmlns:win=\"http://manifests.microsoft.com/win/2004/08/windows/events\">");
        Line("  <events>");
        const std::string name = Escaped(provider_.Name);
        Line("   <provider name=\"" + name + "\" guid=\"" + Utf8FromWide(GuidText(ProviderGuid(provider_))) +
             "\" symbol=\"SAMPLE_PROVIDER\" resourceFileName=\"%SystemRoot%\\system32\\sample.dll\" messageFileName=\""
             "%SystemRoot%\\system32\\sample.dll\" message=\"" +
             Reference("provider", provider_.Name) + "\">");
        WriteChannels();
        WriteNames("levels", "level", "value", UsedLevels(), false);
        WriteNames("tasks", "task", "value", provider_.Tasks, false);
        WriteNames("opcodes", "opcode", "value", provider_.Opcodes, false);
        WriteNames("keywords", "keyword", "mask", provider_.Keywords, true);
        WriteTemplates();
        WriteEvents();
        Line("   </provider>");
        Line("  </events>");
        Line(" </instrumentation>");
        WriteStrings();
        Line("</instrumentationManifest>");
        return std::move(text_);
    }

  private:
    void Line(std::string_view line) { text_.append(line).append(1, '\n'); }

    // Keeps a text for the string table and returns what refers to it.
    std::string Reference(const std::string& identifier, std::wstring_view text) {
        strings_.emplace_back(identifier, Escaped(text));
        return "$(string." + identifier + ")";
    }

    static std::string Hexadecimal(std::uint64_t number) {
        std::string text = "0x";
        for (int shift = 60; shift >= 0; shift -= 4) {
            text += "0123456789ABCDEF"[number >> shift & 0xF];
        }
        return text;
    }

    // Keywords are named by the bits that the provider's table gives a name to; one bit may be shared by none.
    std::string KeywordNames(std::uint64_t mask) const {
        std::string names;
        const auto add = [&names](std::string_view name) { names.append(names.empty() ? 0 : 1, ' ').append(name); };
        for (const SampleName& keyword : provider_.Keywords) {
            if ((mask & keyword.Value) != 0) {
                add(Utf8FromWide(keyword.Name));
            }
        }
        if ((mask & AuditFailure) != 0) {
            add("win:AuditFailure");
        }
        if ((mask & AuditSuccess) != 0) {
            add("win:AuditSuccess");
        }
        if ((mask & ClassicEvent) != 0) {
            add("win:EventlogClassic");
        }
        return names;
    }

    static std::string NameOf(const std::vector<SampleName>& names, std::uint64_t value) {
        for (const SampleName& name : names) {
            if (name.Value == value) {
                return Utf8FromWide(name.Name);
            }
        }
        return {};
    }

    std::string OpcodeName(std::uint8_t opcode) const {
        const std::string name = NameOf(provider_.Opcodes, opcode);
        return name.empty() && opcode < std::size(OpcodeNames) ? std::string(OpcodeNames[opcode]) : name;
    }

    // The channels that the provider owns are defined here; the others are only referred to.
    void WriteChannels() {
        std::set<std::wstring_view> used;
        Line("    <channels>");
        for (const SampleEvent& event : provider_.Events) {
            if (used.insert(event.Channel).second) {
                WriteChannel(event.Channel);
            }
        }
        Line("    </channels>");
    }

    void WriteChannel(std::wstring_view path) {
        for (const SampleChannel& channel : Channels()) {
            if (channel.Path != path) {
                continue;
            }
            const std::string name = "name=\"" + Escaped(path) + "\" chid=\"" + Escaped(path) + "\"";
            if (std::wstring_view(channel.Publisher) == provider_.Name) {
                Line("     <channel " + name + " type=\"" + Escaped(channel.Type) + "\" enabled=\"" +
                     (channel.IsEnabled ? "true" : "false") + "\"/>");
            } else {
                Line("     <importChannel " + name + "/>");
            }
        }
    }

    void WriteNames(std::string_view list, std::string_view element, std::string_view attribute,
                    const std::vector<SampleName>& names, bool hexadecimal) {
        if (names.empty()) {
            return;
        }
        Line("    <" + std::string(list) + ">");
        for (const SampleName& name : names) {
            const std::string symbol = Utf8FromWide(name.Name);
            Line("     <" + std::string(element) + " name=\"" + symbol + "\" " + std::string(attribute) + "=\"" +
                 (hexadecimal ? Hexadecimal(name.Value) : std::to_string(name.Value)) + "\" message=\"" +
                 Reference(std::string(element) + "." + symbol, name.Text) + "\"/>");
        }
        Line("    </" + std::string(list) + ">");
    }

    // Events of level 0 are written whatever level is asked for; it has no name that users would see.
    std::vector<SampleName> UsedLevels() const {
        constexpr SampleName levels[] = {{L"win:Critical", 1, L"Critical"},
                                         {L"win:Error", 2, L"Error"},
                                         {L"win:Warning", 3, L"Warning"},
                                         {L"win:Informational", 4, L"Information"},
                                         {L"win:Verbose", 5, L"Verbose"}};
        std::vector<SampleName> used;
        for (const SampleName& level : levels) {
            for (const SampleEvent& event : provider_.Events) {
                if (event.Level == level.Value) {
                    used.push_back(level);
                    break;
                }
            }
        }
        return used;
    }

    static std::string Symbol(const SampleEvent& event) {
        return std::to_string(event.Id) + "." + std::to_string(event.Version);
    }

    static std::string TemplateName(const SampleEvent& event) { return std::string(1, 'T').append(Symbol(event)); }

    // An event may stand in the catalog once for each of its levels; a manifest defines it once.
    template <typename Visitor>
    void ForEachDefinition(Visitor visit) {
        std::set<std::pair<std::uint16_t, std::uint8_t>> seen;
        for (const SampleEvent& event : provider_.Events) {
            if (seen.emplace(event.Id, event.Version).second) {
                visit(event);
            }
        }
    }

    void WriteTemplates() {
        Line("    <templates>");
        ForEachDefinition([this](const SampleEvent& event) {
            if (event.Fields.empty()) {
                return;
            }
            Line("     <template tid=\"" + TemplateName(event) + "\">");
            std::size_t number = 0;
            for (const SampleField& field : event.Fields) {
                ++number;
                const std::string name = Escaped(field.Name);
                Line("      <data name=\"" + (name.empty() ? "Value" + std::to_string(number) : name) + "\" inType=\"" +
                     std::string(InputType(field.Kind)) + "\"/>");
            }
            Line("     </template>");
        });
        Line("    </templates>");
    }

    void WriteEvents() {
        Line("    <events>");
        ForEachDefinition([this](const SampleEvent& event) {
            std::string line = "     <event value=\"" + std::to_string(event.Id) + "\" version=\"" +
                               std::to_string(event.Version) + "\" level=\"" + std::string(LevelNames[event.Level]) +
                               "\" channel=\"" + Escaped(event.Channel) + "\"";
            const auto add = [&line](std::string_view attribute, const std::string& value) {
                if (!value.empty()) {
                    line.append(" ").append(attribute).append("=\"").append(value).append("\"");
                }
            };
            add("task", NameOf(provider_.Tasks, event.Task));
            add("opcode", OpcodeName(event.Opcode));
            add("keywords", KeywordNames(KeywordsOf(provider_, event)));
            add("template", event.Fields.empty() ? std::string() : TemplateName(event));
            add("message", Reference("event." + Symbol(event), event.Message));
            Line(line + "/>");
        });
        Line("    </events>");
    }

    void WriteStrings() {
        Line(" <localization>");
        Line("  <resources culture=\"en-US\">");
        Line("   <stringTable>");
        for (const auto& [identifier, text] : strings_) {
            Line("    <string id=\"" + identifier + "\" value=\"" + text + "\"/>");
        }
        Line("   </stringTable>");
        Line("  </resources>");
        Line(" </localization>");
    }

    const SampleProvider& provider_;
    std::string text_;
    std::vector<std::pair<std::string, std::string>> strings_;
};

}  // namespace

std::string ManifestText(const SampleProvider& provider) {
    return ManifestWriter(provider).Write();
}

}  // namespace corvina::samples
