// Makes the display texts of a row's columns and puts them into the row store's pool. What repeats in a log (levels,
// tasks, users, dates of one second) is asked for once a load; the texts are the same as if it were asked for each
// time.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "eventlog/message_resolver.h"
#include "eventlog/publisher_metadata_cache.h"
#include "eventlog/row_store.h"
#include "i18n/language.h"
#include "platform/accounts.h"

namespace corvina {

class RowTextSource {
  public:
    struct Parts {
        RowStore& Rows;
        PublisherMetadataCache& Metadata;
        MessageResolver& Messages;
        const i18n::Language& Language;
        Accounts& AccountNames;
    };

    // Texts by the number that they stand for.
    using NumberedTexts = std::unordered_map<std::uint64_t, TextReference>;

    struct Provider {
        TextReference Name{};
        EVT_HANDLE Metadata = nullptr;  // null: the provider has none
        NumberedTexts Levels;
        NumberedTexts Tasks;
        NumberedTexts Opcodes;
        NumberedTexts KeywordMasks;
        NumberedTexts Categories;
        std::unordered_map<std::uint32_t, bool> HasCategories;  // by the log's name
    };

    // `session`: where metadata of providers is opened at their first event; null when the cache holds all there is.
    RowTextSource(const Parts& parts, EVT_HANDLE session);

    // Valid until the next call.
    Provider& ProviderOf(std::wstring_view name);

    TextReference Text(std::wstring_view text) { return parts_.Rows.AddText(text); }
    TextReference Decimal(std::uint64_t number);
    TextReference EventId(std::uint16_t id);
    TextReference Date(std::uint64_t localTime);
    TextReference AuditResult(bool success);

    TextReference Level(Provider& provider, EVT_HANDLE event, const EventRow& row);
    TextReference Task(Provider& provider, EVT_HANDLE event, const EventRow& row);
    TextReference Opcode(Provider& provider, EVT_HANDLE event, const EventRow& row);
    TextReference Keywords(Provider& provider, EVT_HANDLE event, const EventRow& row);

    TextReference Guid(const EVT_VARIANT& value);
    // The account name of a security identifier, else its text; empty bytes: there is no identifier.
    TextReference User(std::span<const std::byte> sid);
    TextReference Sid(std::span<const std::byte> sid);

  private:
    struct NameHash {
        using is_transparent = void;
        std::size_t operator()(std::wstring_view name) const { return std::hash<std::wstring_view>{}(name); }
    };

    TextReference Part(const Provider& provider, EVT_HANDLE event, EVT_FORMAT_MESSAGE_FLAGS kind, NumberedTexts& known,
                       std::uint64_t number);
    TextReference Category(Provider& provider, const EventRow& row);
    std::wstring UserText(std::span<const std::byte> sid);

    Parts parts_;
    EVT_HANDLE session_;
    bool english_;
    TextReference notAvailable_;
    TextReference none_;
    std::unordered_map<std::wstring, Provider, NameHash, std::equal_to<>> providers_;
    Provider* lastProvider_ = nullptr;
    std::vector<TextReference> eventIds_;
    std::uint64_t lastSecond_ = UINT64_MAX;
    TextReference lastDate_{};
    std::unordered_map<std::string, TextReference> users_;
    std::string lastSid_;
    TextReference lastUser_{};
};

}  // namespace corvina
