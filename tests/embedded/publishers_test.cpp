// Publishers: which there are, and what they define.
#include <cstring>
#include <map>
#include <optional>

#include "base/identifiers.h"
#include "embedded/embedded_log_test.h"
#include "embedded/publisher/publisher_manifest.h"

namespace corvina::test {
namespace {

constexpr std::string_view ToolManifest = R"xml(<?xml version="1.0" encoding="utf-8"?>
<instrumentationManifest xmlns="http://schemas.microsoft.com/win/2004/08/events"><instrumentation><events>
<provider name="Vendor-Tool" guid="{11111111-2222-3333-4444-555555555555}" symbol="TOOL" resourceFileName="tool.dll"
    messageFileName="texts.dll" helpLink="https://vendor.example/help" message="$(string.Text)">
  <channels><importChannel chid="S" name="System"/>
    <channel chid="O" name="Vendor-Tool/Operational" type="Operational" message="$(string.Text)" value="20"/></channels>
  <levels><level name="Vendor:Chatty" value="16" message="$(string.Text)"/></levels>
  <tasks><task name="Copy" value="7" message="$(string.Text)" eventGUID="{00000000-0000-0000-0000-00000000000D}">
      <opcodes><opcode name="Verify" value="11" message="$(string.Text)"/></opcodes></task>
    <task name="Idle" value="65535"/></tasks>
  <opcodes><opcode name="Rest" value="240"/></opcodes>
  <keywords><keyword name="Disk" mask="0x1"/>
    <keyword name="Top" mask="0x8000000000000000" message="$(string.Text)"/></keywords>
  <templates><template tid="T"><data name="Size" inType="win:UInt32"/></template></templates>
  <events>
    <event value="1" version="3" level="win:Error" task="Copy" opcode="Verify" keywords="Disk Top" channel="O"
        template="T" message="$(string.Text)"/>
    <event value="65535"/></events>
</provider></events></instrumentation>
<localization><resources culture="en-US"><stringTable><string id="Text" value="x"/></stringTable></resources>
</localization></instrumentationManifest>)xml";

// A value in words, its type first; arrays and other types are not needed here.
std::wstring Described(const EVT_VARIANT& value) {
    switch (value.Type) {
        case EvtVarTypeNull:
            return L"null";
        case EvtVarTypeString:
            return std::wstring(L"text ") + value.StringVal;
        case EvtVarTypeUInt32:
            return L"32 " + std::to_wstring(value.UInt32Val);
        case EvtVarTypeUInt64:
            return L"64 " + std::to_wstring(value.UInt64Val);
        case EvtVarTypeGuid: {
            GuidBytes bytes;
            std::memcpy(bytes.data(), value.GuidVal, bytes.size());
            return GuidText(bytes);
        }
        default:
            return L"another type";
    }
}

const std::wstring Message = L"32 ";
const std::wstring NoMessage = L"32 4294967295";

class PublishersTest : public EmbeddedLogTest {
  protected:
    void SetUp() override {
        ASSERT_TRUE(Store.AddManifest(L"localhost", L"b", ToolManifest));
        ASSERT_TRUE(Store.AddManifest(L"localhost", L"c", SimpleManifest("Alpha", {{1, "x"}})));
        Tool = Open(L"Vendor-Tool");
        ASSERT_TRUE(Tool) << Log->GetLastError();
    }

    void TearDown() override {
        Tool.Close();
        EmbeddedLogTest::TearDown();
    }

    EvtHandle Open(LPCWSTR name) { return Held(Log->EvtOpenPublisherMetadata(nullptr, name, nullptr, 0, 0)); }

    template <typename Call>
    std::wstring Property(Call call) {
        const std::vector<BYTE> row = Filled<BYTE>([&](DWORD size, BYTE* buffer, DWORD* used) {
            return call(size, reinterpret_cast<EVT_VARIANT*>(buffer), used);
        });
        return Described(Values(row, 1)[0]);
    }

    std::wstring PublisherProperty(const EvtHandle& publisher, int id) {
        return Property([&](DWORD size, EVT_VARIANT* buffer, DWORD* used) {
            return Log->EvtGetPublisherMetadataProperty(
                publisher.Get(), static_cast<EVT_PUBLISHER_METADATA_PROPERTY_ID>(id), 0, size, buffer, used);
        });
    }

    std::wstring EventProperty(const EvtHandle& event, int id) {
        return Property([&](DWORD size, EVT_VARIANT* buffer, DWORD* used) {
            return Log->EvtGetEventMetadataProperty(event.Get(), static_cast<EVT_EVENT_METADATA_PROPERTY_ID>(id), 0,
                                                    size, buffer, used);
        });
    }

    // Opens a list; a buffer that is too small must not open anything.
    EvtHandle List(const EvtHandle& publisher, int id) {
        const auto property = static_cast<EVT_PUBLISHER_METADATA_PROPERTY_ID>(id);
        const std::size_t openBefore = OpenHandleCount();
        EVT_VARIANT value{};
        DWORD used = 0;
        EXPECT_FALSE(
            Log->EvtGetPublisherMetadataProperty(publisher.Get(), property, 0, sizeof value - 1, &value, &used));
        EXPECT_EQ(Log->GetLastError(), error::InsufficientBuffer);
        EXPECT_EQ(used, sizeof value);
        EXPECT_EQ(OpenHandleCount(), openBefore);
        EXPECT_TRUE(Log->EvtGetPublisherMetadataProperty(publisher.Get(), property, 0, used, &value, &used));
        EXPECT_EQ(value.Type, static_cast<DWORD>(EvtVarTypeEvtHandle));
        EXPECT_EQ(OpenHandleCount(), openBefore + 1);
        return Held(value.EvtHandleVal);
    }

    // Every member of a list with every property that lists can have; those refused as not of this list are left out.
    std::vector<std::map<int, std::wstring>> Members(const EvtHandle& publisher, int id) {
        const EvtHandle list = List(publisher, id);
        std::vector<std::map<int, std::wstring>> members;
        DWORD size = 0;
        EXPECT_TRUE(Log->EvtGetObjectArraySize(list.Get(), &size));
        for (DWORD index = 0; index < size; ++index) {
            std::map<int, std::wstring>& member = members.emplace_back();
            for (int property = 0; property <= EvtPublisherMetadataPropertyIdEND; ++property) {
                DWORD used = 0;
                const auto get = [&](DWORD bufferSize, EVT_VARIANT* buffer, DWORD* needed) {
                    return Log->EvtGetObjectArrayProperty(list.Get(), static_cast<DWORD>(property), index, 0,
                                                          bufferSize, buffer, needed);
                };
                EXPECT_FALSE(get(0, nullptr, &used));
                if (Log->GetLastError() == error::InsufficientBuffer) {
                    member[property] = Property(get);
                } else {
                    EXPECT_EQ(Log->GetLastError(), error::InvalidParameter);
                }
            }
        }
        DWORD used = 0;
        EXPECT_FALSE(
            Log->EvtGetObjectArrayProperty(list.Get(), static_cast<DWORD>(id) + 1, size, 0, 0, nullptr, &used));
        EXPECT_EQ(Log->GetLastError(), error::InvalidParameter) << "beyond the end";
        return members;
    }

    EvtHandle Tool;
};

TEST_F(PublishersTest, AreListedByName) {
    ASSERT_TRUE(Store.AddManifest(L"OTHER", L"x", SimpleManifest("Beta", {})));
    const auto names = [&](EVT_HANDLE session) {
        const EvtHandle publishers = Held(Log->EvtOpenPublisherEnum(session, 0));
        std::vector<std::wstring> found;
        DWORD used = 0;
        while (Log->EvtNextPublisherId(publishers.Get(), 0, nullptr, &used) == FALSE &&
               Log->GetLastError() == error::InsufficientBuffer) {
            const auto text = Filled<wchar_t>([&](DWORD size, LPWSTR buffer, DWORD* needed) {
                return Log->EvtNextPublisherId(publishers.Get(), size, buffer, needed);
            });
            found.emplace_back(text.data());
        }
        EXPECT_EQ(Log->GetLastError(), error::NoMoreItems);
        return found;
    };
    EXPECT_EQ(names(nullptr), (std::vector<std::wstring>{L"Alpha", L"Vendor-Tool"}));
    EXPECT_EQ(names(OpenSession(L"other").Get()), (std::vector<std::wstring>{L"Beta"}));
    ASSERT_TRUE(Store.AddLog(L"BARE", L"System", {}));
    EXPECT_TRUE(names(OpenSession(L"bare").Get()).empty());
}

TEST_F(PublishersTest, DescribeThemselves) {
    EXPECT_EQ(PublisherProperty(Tool, EvtPublisherMetadataPublisherGuid), L"{11111111-2222-3333-4444-555555555555}");
    EXPECT_EQ(PublisherProperty(Tool, EvtPublisherMetadataResourceFilePath), L"text tool.dll");
    EXPECT_EQ(PublisherProperty(Tool, EvtPublisherMetadataParameterFilePath), L"null");
    EXPECT_EQ(PublisherProperty(Tool, EvtPublisherMetadataMessageFilePath), L"text texts.dll");
    EXPECT_EQ(PublisherProperty(Tool, EvtPublisherMetadataHelpLink), L"text https://vendor.example/help");
    EXPECT_EQ(PublisherProperty(Tool, EvtPublisherMetadataPublisherMessageID), Message + std::to_wstring(0x90000001));
    ASSERT_TRUE(Store.AddManifest(L"OTHER", L"bare",
                                  "<instrumentationManifest><instrumentation><events><provider name='Bare'/></events>"
                                  "</instrumentation></instrumentationManifest>"));
    const EvtHandle session = OpenSession(L"OTHER");
    const EvtHandle bare = Held(Log->EvtOpenPublisherMetadata(session.Get(), L"Bare", nullptr, 0, 0));
    EXPECT_EQ(PublisherProperty(bare, EvtPublisherMetadataPublisherGuid), L"{00000000-0000-0000-0000-000000000000}");
    EXPECT_EQ(PublisherProperty(bare, EvtPublisherMetadataPublisherMessageID), NoMessage);
    for (const int list : {EvtPublisherMetadataChannelReferences, EvtPublisherMetadataLevels, EvtPublisherMetadataTasks,
                           EvtPublisherMetadataOpcodes, EvtPublisherMetadataKeywords}) {
        EXPECT_TRUE(Members(bare, list).empty()) << list;
    }
}

TEST_F(PublishersTest, DefineChannelsLevelsTasksOpcodesAndKeywords) {
    using Member = std::map<int, std::wstring>;
    const auto message = [](std::uint32_t id) { return Message + std::to_wstring(id); };
    EXPECT_EQ(Members(Tool, EvtPublisherMetadataChannelReferences),
              (std::vector<Member>{{{EvtPublisherMetadataChannelReferencePath, L"text System"},
                                    {EvtPublisherMetadataChannelReferenceIndex, L"32 0"},
                                    {EvtPublisherMetadataChannelReferenceID, L"32 8"},
                                    {EvtPublisherMetadataChannelReferenceFlags, L"32 1"},
                                    {EvtPublisherMetadataChannelReferenceMessageID, NoMessage}},
                                   {{EvtPublisherMetadataChannelReferencePath, L"text Vendor-Tool/Operational"},
                                    {EvtPublisherMetadataChannelReferenceIndex, L"32 1"},
                                    {EvtPublisherMetadataChannelReferenceID, L"32 20"},
                                    {EvtPublisherMetadataChannelReferenceFlags, L"32 0"},
                                    {EvtPublisherMetadataChannelReferenceMessageID, message(0x90000003)}}}));
    EXPECT_EQ(Members(Tool, EvtPublisherMetadataLevels),
              (std::vector<Member>{{{EvtPublisherMetadataLevelName, L"text Vendor:Chatty"},
                                    {EvtPublisherMetadataLevelValue, L"32 16"},
                                    {EvtPublisherMetadataLevelMessageID, message(0x50000010)}}}));
    EXPECT_EQ(Members(Tool, EvtPublisherMetadataTasks),
              (std::vector<Member>{{{EvtPublisherMetadataTaskName, L"text Copy"},
                                    {EvtPublisherMetadataTaskEventGuid, L"{00000000-0000-0000-0000-00000000000D}"},
                                    {EvtPublisherMetadataTaskValue, L"32 7"},
                                    {EvtPublisherMetadataTaskMessageID, message(0x70000007)}},
                                   {{EvtPublisherMetadataTaskName, L"text Idle"},
                                    {EvtPublisherMetadataTaskEventGuid, L"{00000000-0000-0000-0000-000000000000}"},
                                    {EvtPublisherMetadataTaskValue, L"32 65535"},
                                    {EvtPublisherMetadataTaskMessageID, NoMessage}}}));
    EXPECT_EQ(Members(Tool, EvtPublisherMetadataOpcodes),
              (std::vector<Member>{{{EvtPublisherMetadataOpcodeName, L"text Rest"},
                                    {EvtPublisherMetadataOpcodeValue, L"32 " + std::to_wstring(0x00F00000)},
                                    {EvtPublisherMetadataOpcodeMessageID, NoMessage}},
                                   {{EvtPublisherMetadataOpcodeName, L"text Verify"},
                                    {EvtPublisherMetadataOpcodeValue, L"32 " + std::to_wstring(0x000B0007)},
                                    {EvtPublisherMetadataOpcodeMessageID, message(0x3007000B)}}}));
    EXPECT_EQ(Members(Tool, EvtPublisherMetadataKeywords),
              (std::vector<Member>{{{EvtPublisherMetadataKeywordName, L"text Disk"},
                                    {EvtPublisherMetadataKeywordValue, L"64 1"},
                                    {EvtPublisherMetadataKeywordMessageID, NoMessage}},
                                   {{EvtPublisherMetadataKeywordName, L"text Top"},
                                    {EvtPublisherMetadataKeywordValue, L"64 9223372036854775808"},
                                    {EvtPublisherMetadataKeywordMessageID, message(0x10000040)}}}));
}

TEST_F(PublishersTest, ListTheirEvents) {
    const EvtHandle events = Held(Log->EvtOpenEventMetadataEnum(Tool.Get(), 0));
    ASSERT_TRUE(events);
    Tool.Close();  // what was opened from it stays
    const std::vector<std::vector<std::wstring>> expected = {
        {L"32 1", L"32 3", L"32 20", L"32 2", L"32 11", L"32 7", L"64 9223372036854775809",
         Message + std::to_wstring(0xB0030001),
         L"text <template xmlns=\"http://schemas.microsoft.com/win/2004/08/events\">"
         L"<data name=\"Size\" inType=\"win:UInt32\"/></template>"},
        {L"32 65535", L"32 0", L"32 0", L"32 0", L"32 0", L"32 0", L"64 0", NoMessage, L"text "}};
    for (const std::vector<std::wstring>& properties : expected) {
        const EvtHandle event = Held(Log->EvtNextEventMetadata(events.Get(), 0));
        ASSERT_TRUE(event) << Log->GetLastError();
        for (int id = 0; id < EvtEventMetadataPropertyIdEND; ++id) {
            EXPECT_EQ(EventProperty(event, id), properties[static_cast<std::size_t>(id)]) << id;
        }
    }
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(Log->EvtNextEventMetadata(events.Get(), 0), nullptr);
        EXPECT_EQ(Log->GetLastError(), error::NoMoreItems);
    }
}

TEST_F(PublishersTest, WrongHandlesAndArgumentsAreRefused) {
    const EvtHandle publishers = Held(Log->EvtOpenPublisherEnum(nullptr, 0));
    const EvtHandle list = List(Tool, EvtPublisherMetadataTasks);
    const EvtHandle events = Held(Log->EvtOpenEventMetadataEnum(Tool.Get(), 0));
    const EvtHandle event = Held(Log->EvtNextEventMetadata(events.Get(), 0));
    DWORD used = 0;
    const auto next = [&](EVT_HANDLE of, DWORD* size) { return Log->EvtNextPublisherId(of, 0, nullptr, size); };
    const auto property = [&](EVT_HANDLE of, int id, DWORD flags, DWORD* size) {
        return Log->EvtGetPublisherMetadataProperty(of, static_cast<EVT_PUBLISHER_METADATA_PROPERTY_ID>(id), flags, 0,
                                                    nullptr, size);
    };
    const auto member = [&](EVT_HANDLE of, DWORD flags, DWORD* size) {
        return Log->EvtGetObjectArrayProperty(of, EvtPublisherMetadataTaskValue, 0, flags, 0, nullptr, size);
    };
    const auto definition = [&](EVT_HANDLE of, int id, DWORD flags, DWORD* size) {
        return Log->EvtGetEventMetadataProperty(of, static_cast<EVT_EVENT_METADATA_PROPERTY_ID>(id), flags, 0, nullptr,
                                                size);
    };
    const auto expectError = [&](bool done, std::uint32_t error, const char* what) {
        EXPECT_FALSE(done) << what;
        EXPECT_EQ(Log->GetLastError(), error) << what;
    };
    for (const EVT_HANDLE of : {publishers.Get(), Tool.Get(), list.Get(), events.Get(), event.Get()}) {
        const auto refusedUnless = [&](const EvtHandle& right, bool done, const char* what) {
            if (of != right.Get()) {
                expectError(done, error::InvalidHandle, what);
            }
        };
        expectError(Log->EvtOpenPublisherEnum(of, 0) != nullptr, error::InvalidHandle, "enumeration");
        refusedUnless(publishers, next(of, &used) != FALSE, "name");
        refusedUnless(Tool, property(of, 0, 0, &used) != FALSE, "property");
        refusedUnless(list, Log->EvtGetObjectArraySize(of, &used) != FALSE, "size");
        refusedUnless(list, member(of, 0, &used) != FALSE, "member");
        refusedUnless(Tool, of != Tool.Get() && Log->EvtOpenEventMetadataEnum(of, 0) != nullptr, "events");
        refusedUnless(events, of != events.Get() && Log->EvtNextEventMetadata(of, 0) != nullptr, "next event");
        refusedUnless(event, definition(of, 0, 0, &used) != FALSE, "definition");
    }
    const auto invalid = [&](bool done, const char* what) { expectError(done, error::InvalidParameter, what); };
    invalid(Log->EvtOpenPublisherEnum(nullptr, 1) != nullptr, "enumeration's flags");
    invalid(next(publishers.Get(), nullptr) != FALSE, "name's size");
    invalid(property(Tool.Get(), 0, 1, &used) != FALSE, "property's flags");
    invalid(property(Tool.Get(), EvtPublisherMetadataTasks, 0, nullptr) != FALSE, "list's size");
    invalid(property(Tool.Get(), EvtPublisherMetadataTaskName, 0, &used) != FALSE, "a member's property");
    invalid(property(Tool.Get(), EvtPublisherMetadataPropertyIdEND, 0, &used) != FALSE, "unknown property");
    invalid(Log->EvtGetObjectArraySize(list.Get(), nullptr) != FALSE, "array's size");
    invalid(member(list.Get(), 1, &used) != FALSE, "member's flags");
    invalid(member(list.Get(), 0, nullptr) != FALSE, "member's size");
    invalid(Log->EvtOpenEventMetadataEnum(Tool.Get(), 1) != nullptr, "events' flags");
    invalid(Log->EvtNextEventMetadata(events.Get(), 1) != nullptr, "next event's flags");
    invalid(definition(event.Get(), EvtEventMetadataPropertyIdEND, 0, &used) != FALSE, "unknown definition");
    invalid(definition(event.Get(), 0, 1, &used) != FALSE, "definition's flags");
    invalid(definition(event.Get(), 0, 0, nullptr) != FALSE, "definition's size");
}

}  // namespace
}  // namespace corvina::test
