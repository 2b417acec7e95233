#include "eventlog/row_text_source.h"

#include <algorithm>

#include "base/calendar.h"
#include "base/format_text.h"
#include "base/identifiers.h"
#include "eventlog/event_date.h"
#include "eventlog/event_values.h"

namespace corvina {

namespace {

constexpr int AuditSuccessfulText = 14;
constexpr int AuditFailedText = 15;
constexpr int NoneText = 25;
constexpr int NotAvailableText = 26;

constexpr std::size_t MaximumUserLength = 259;

// A log whose every event brings another number must not make the look-up tables grow with it.
constexpr std::size_t MaximumKnownTexts = 65536;

template <typename Map, typename Key>
void Remember(Map& map, Key&& key, TextReference text) {
    if (map.size() >= MaximumKnownTexts) {
        map.clear();
    }
    map.emplace(std::forward<Key>(key), text);
}

}  // namespace

RowTextSource::RowTextSource(const Parts& parts, EVT_HANDLE session)
    : parts_(parts),
      session_(session),
      english_(parts.Language.Index() == i18n::English),
      notAvailable_(Text(parts.Language.Text(NotAvailableText))),
      none_(Text(parts.Language.Text(NoneText))) {}

RowTextSource::Provider& RowTextSource::ProviderOf(std::wstring_view name) {
    if (lastProvider_ != nullptr && parts_.Rows.Text(lastProvider_->Name) == name) {
        return *lastProvider_;
    }
    auto place = providers_.find(name);
    if (place == providers_.end()) {
        Provider provider;
        provider.Name = Text(name);
        if (!name.empty()) {
            provider.Metadata =
                session_ == nullptr ? parts_.Metadata.Find(name) : parts_.Metadata.FindOrOpen(session_, name, nullptr);
        }
        if (providers_.size() >= MaximumKnownTexts) {
            providers_.clear();
        }
        place = providers_.emplace(std::wstring(name), std::move(provider)).first;
    }
    lastProvider_ = &place->second;
    return *lastProvider_;
}

TextReference RowTextSource::Decimal(std::uint64_t number) {
    wchar_t digits[20];
    wchar_t* place = std::end(digits);
    do {
        *--place = static_cast<wchar_t>(L'0' + number % 10);
        number /= 10;
    } while (number != 0);
    return Text({place, static_cast<std::size_t>(std::end(digits) - place)});
}

TextReference RowTextSource::EventId(std::uint16_t id) {
    if (eventIds_.empty()) {
        eventIds_.resize(std::size_t{UINT16_MAX} + 1);
    }
    TextReference& text = eventIds_[id];
    if (text == TextReference::Empty) {
        text = Decimal(id);
    }
    return text;
}

TextReference RowTextSource::Date(std::uint64_t localTime) {
    const std::uint64_t second = localTime / FileTimeTicksPerSecond;
    if (second != lastSecond_) {
        DateBuffer buffer;
        lastDate_ = Text(EventDateText(localTime, english_, buffer));
        lastSecond_ = second;
    }
    return lastDate_;
}

TextReference RowTextSource::AuditResult(bool success) {
    return Text(parts_.Language.Text(success ? AuditSuccessfulText : AuditFailedText));
}

// With metadata the text follows from the number alone. Without it a forwarded event may bring texts of its own, so
// that every event has to be asked.
TextReference RowTextSource::Part(const Provider& provider, EVT_HANDLE event, EVT_FORMAT_MESSAGE_FLAGS kind,
                                  NumberedTexts& known, std::uint64_t number) {
    if (provider.Metadata == nullptr) {
        return Text(parts_.Messages.FormatEventPart(nullptr, event, kind));
    }
    const auto place = known.find(number);
    if (place != known.end()) {
        return place->second;
    }
    const TextReference text = Text(parts_.Messages.FormatEventPart(provider.Metadata, event, kind));
    Remember(known, number, text);
    return text;
}

TextReference RowTextSource::Level(Provider& provider, EVT_HANDLE event, const EventRow& row) {
    return Part(provider, event, EvtFormatMessageLevel, provider.Levels, row.Level);
}

// The metadata's text comes first, since it also covers classic sources whose metadata names their message files. A
// source without a text there is looked up in the registry: its category message file, and "(number)" when that lacks
// the category. Category 0 without a text is "None", whatever the source.
TextReference RowTextSource::Task(Provider& provider, EVT_HANDLE event, const EventRow& row) {
    const TextReference text = Part(provider, event, EvtFormatMessageTask, provider.Tasks, row.Task);
    return text != TextReference::Empty ? text : Category(provider, row);
}

TextReference RowTextSource::Category(Provider& provider, const EventRow& row) {
    const auto log = static_cast<std::uint32_t>(row.ChannelName);
    const std::uint64_t key = (std::uint64_t{log} << 16) | row.Task;
    if (const auto place = provider.Categories.find(key); place != provider.Categories.end()) {
        return place->second;
    }
    const std::wstring_view logName = parts_.Rows.Text(row.ChannelName);
    const std::wstring_view sourceName = parts_.Rows.Text(provider.Name);
    const auto [hasCategories, isNew] = provider.HasCategories.try_emplace(log, false);
    if (isNew) {
        hasCategories->second = parts_.Messages.HasCategoryMessageFile(logName, sourceName);
    }
    std::optional<std::wstring> category;
    if (hasCategories->second) {
        category = parts_.Messages.CategoryText(logName, sourceName, row.Task);
    } else if (row.Task != 0) {
        category = FormatText(L"(%u)", {row.Task});
    }
    const TextReference text = category ? Text(*category) : none_;
    Remember(provider.Categories, key, text);
    return text;
}

TextReference RowTextSource::Opcode(Provider& provider, EVT_HANDLE event, const EventRow& row) {
    // A task may have opcodes of its own.
    const std::uint64_t number = (std::uint64_t{row.Task} << 8) | row.Opcode;
    const TextReference text = Part(provider, event, EvtFormatMessageOpcode, provider.Opcodes, number);
    return text != TextReference::Empty ? text : Decimal(row.Opcode);
}

TextReference RowTextSource::Keywords(Provider& provider, EVT_HANDLE event, const EventRow& row) {
    const TextReference text = Part(provider, event, EvtFormatMessageKeyword, provider.KeywordMasks, row.Keywords);
    return text != TextReference::Empty ? text : Text(FormatText(L"0x%I64x", {row.Keywords}));
}

TextReference RowTextSource::Guid(const EVT_VARIANT& value) {
    const std::optional<std::wstring> text = GuidValueText(value);
    return text ? Text(*text) : notAvailable_;
}

TextReference RowTextSource::Sid(std::span<const std::byte> sid) {
    const std::optional<std::wstring> text = SidText(sid);
    return text ? Text(*text) : notAvailable_;
}

TextReference RowTextSource::User(std::span<const std::byte> sid) {
    if (sid.empty()) {
        return notAvailable_;
    }
    const std::string_view bytes(reinterpret_cast<const char*>(sid.data()), sid.size());
    if (bytes == lastSid_) {
        return lastUser_;
    }
    lastSid_ = bytes;
    const auto place = users_.find(lastSid_);
    if (place != users_.end()) {
        lastUser_ = place->second;
    } else {
        lastUser_ = Text(UserText(sid));
        Remember(users_, lastSid_, lastUser_);
    }
    return lastUser_;
}

std::wstring RowTextSource::UserText(std::span<const std::byte> sid) {
    if (std::optional<std::wstring> name = parts_.AccountNames.AccountName(sid)) {
        name->resize(std::min(name->size(), MaximumUserLength));
        return *name;
    }
    const std::optional<std::wstring> text = SidText(sid);
    return text && text->size() <= MaximumUserLength ? *text : std::wstring(parts_.Language.Text(NotAvailableText));
}

}  // namespace corvina
