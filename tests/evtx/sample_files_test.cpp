// Logs of real computers, damaged ones among them. They are not part of the project: they are looked for in the folder
// that the environment variable CORVINA_SAMPLES names, or in shared/evtx-samples beside the source folder.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <pugixml.hpp>
#include <random>

#include "base/identifiers.h"
#include "base/utf.h"
#include "evtx/memory_file.h"
#include "evtx/test_chunk.h"

namespace corvina::evtx::test {
namespace {

struct SampleFile {
    const char* Name;
    std::size_t Records;
};

// Counted with another reader, or by hand in damaged files. Where more records are found behind a damaged place than a
// reader would see that stops there, the smaller number stands here.
constexpr SampleFile SampleFiles[] = {
    {"2-system-Microsoft-Windows-LiveId%4Operational.evtx", 399},
    {"2-vss_0-Microsoft-Windows-RemoteDesktopServices-RdpCoreTS%4Operational.evtx", 1912},
    {"2-vss_0-Microsoft-Windows-TerminalServices-RemoteConnectionManager%4Operational.evtx", 1775},
    {"2-vss_7-System.evtx", 1160},
    {"Application_no_crc32.evtx", 17},
    {"E_ShadowCopy6_windows_system32_winevt_logs_Microsoft-Windows-CAPI2%4Operational.evtx", 459},
    {"E_Windows_system32_winevt_logs_Microsoft-Windows-CAPI2%4Operational.evtx", 340},
    {"E_Windows_system32_winevt_logs_Microsoft-Windows-Shell-Core%4Operational.evtx", 1146},
    {"MSExchange_Management_wec.evtx", 1},
    // The last records of these two are cut off in the middle: their closing sizes are zero.
    {"Microsoft-Windows-HelloForBusiness%4Operational.evtx", 5},
    {"Microsoft-Windows-LanguagePackSetup%4Operational.evtx", 16},
    {"Security_short_selected.evtx", 7},
    {"Security_with_size_t.evtx", 636},
    {"new-user-security.evtx", 4},
    {"post-Security.evtx", 126},
    {"sample-with-irregular-bool-values.evtx", 3028},
    {"sample-with-zero-data-size-event.evtx", 335},
    {"sample_with_a_bad_chunk_magic.evtx", 267},
    {"security.evtx", 2261},
    {"security_bad_string_cache.evtx", 2261},
    {"sysmon.evtx", 358},
    {"system.evtx", 1881},
};

std::filesystem::path SampleFolder() {
    const char* folder = std::getenv("CORVINA_SAMPLES");
    return folder != nullptr ? std::filesystem::path(folder)
                             : std::filesystem::path(CORVINA_SOURCE_DIR) / ".." / "shared" / "evtx-samples";
}

class SampleFilesTest : public testing::Test {
  protected:
    void SetUp() override {
        std::error_code ignored;
        if (!std::filesystem::is_directory(SampleFolder(), ignored)) {
            GTEST_SKIP() << "no sample logs here";
        }
    }
};

std::string NumberText(const auto& number) {
    return number ? std::to_string(*number) : "";
}

// What an attribute or element says, in the form of the value it is compared with.
std::string TextAt(const pugi::xml_node& system, const char* path) {
    const pugi::xpath_node found = system.select_node(path);
    return found.attribute() ? found.attribute().value() : found.node().text().get();
}

std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

std::string GuidOrNothing(const std::optional<GuidBytes>& guid) {
    return guid ? LowerCase(Utf8FromWide(GuidText(*guid))) : "";
}

void ExpectSameSystem(const SystemValues& values, const pugi::xml_node& system) {
    EXPECT_EQ(Utf8FromWide(values.ProviderName), TextAt(system, "Provider/@Name"));
    EXPECT_EQ(Utf8FromWide(values.EventSourceName), TextAt(system, "Provider/@EventSourceName"));
    EXPECT_EQ(Utf8FromWide(values.Channel), TextAt(system, "Channel"));
    EXPECT_EQ(Utf8FromWide(values.Computer), TextAt(system, "Computer"));
    EXPECT_EQ(NumberText(values.EventId), TextAt(system, "EventID"));
    EXPECT_EQ(NumberText(values.Qualifiers), TextAt(system, "EventID/@Qualifiers"));
    EXPECT_EQ(NumberText(values.Version), TextAt(system, "Version"));
    EXPECT_EQ(NumberText(values.Level), TextAt(system, "Level"));
    EXPECT_EQ(NumberText(values.Task), TextAt(system, "Task"));
    EXPECT_EQ(NumberText(values.Opcode), TextAt(system, "Opcode"));
    EXPECT_EQ(NumberText(values.EventRecordId), TextAt(system, "EventRecordID"));
    EXPECT_EQ(NumberText(values.ProcessId), TextAt(system, "Execution/@ProcessID"));
    EXPECT_EQ(NumberText(values.ThreadId), TextAt(system, "Execution/@ThreadID"));
    EXPECT_EQ(values.Keywords.value_or(0), std::strtoull(TextAt(system, "Keywords").c_str(), nullptr, 16));
    EXPECT_EQ(GuidOrNothing(values.ProviderGuid), LowerCase(TextAt(system, "Provider/@Guid")));
    EXPECT_EQ(GuidOrNothing(values.ActivityId), LowerCase(TextAt(system, "Correlation/@ActivityID")));
    EXPECT_EQ(GuidOrNothing(values.RelatedActivityId), LowerCase(TextAt(system, "Correlation/@RelatedActivityID")));
    EXPECT_EQ(Utf8FromWide(SidText(values.UserSid).value_or(L"")), TextAt(system, "Security/@UserID"));
    // The seconds; the format of the whole is tried elsewhere.
    const std::string time = TextAt(system, "TimeCreated/@SystemTime");
    ASSERT_TRUE(values.TimeCreated.has_value());
    ASSERT_GT(time.size(), 19U);
    EXPECT_EQ(*values.TimeCreated / 10'000'000 % 60, std::strtoull(time.c_str() + 17, nullptr, 10));
}

// The leaves of the event's data sections, as a walk through the XML finds them.
void CollectLeaves(const pugi::xml_node& node, std::string& leaves) {
    for (const pugi::xml_node child : node.children()) {
        if (child.type() == pugi::node_element) {
            const bool isLeaf =
                child.find_child([](pugi::xml_node n) { return n.type() == pugi::node_element; }).empty();
            if (isLeaf) {
                std::string text;
                for (const pugi::xml_node piece : child.children()) {
                    text += piece.type() == pugi::node_pi ? "" : piece.value();
                }
                leaves += text + "\n";
            }
            CollectLeaves(child, leaves);
        }
    }
}

void CheckRecord(const Chunk& chunk, const RecordPlace& record, bool compareSystem) {
    const std::string xml = XmlOf(chunk, record);
    pugi::xml_document document;
    const auto result =
        document.load_buffer(xml.data(), xml.size(), pugi::parse_default | pugi::parse_pi | pugi::parse_ws_pcdata);
    ASSERT_TRUE(result) << result.description() << "\n" << xml;
    ASSERT_STREQ(document.document_element().name(), "Event");
    SystemValues values;
    ASSERT_TRUE(chunk.ReadSystem(record, values));
    std::vector<DataValue> data;
    ASSERT_TRUE(chunk.ReadData(record, data));
    if (!compareSystem) {
        return;
    }
    ExpectSameSystem(values, document.document_element().child("System"));
    std::string leaves;
    for (const pugi::xml_node section : document.document_element().children()) {
        if (std::string_view(section.name()) != "System" && std::string_view(section.name()) != "RenderingInfo") {
            CollectLeaves(section, leaves);
        }
    }
    std::string read;
    for (const DataValue& value : data) {
        read += Utf8FromWide(value.Text) + "\n";
    }
    // XML has one kind of line break, and no place for some characters.
    for (std::string* text : {&leaves, &read}) {
        std::erase(*text, '\r');
    }
    if (leaves.find("\xEF\xBF\xBD") == std::string::npos) {
        EXPECT_EQ(read, leaves) << xml;
    }
}

TEST_F(SampleFilesTest, EveryRecordIsReadAndWellFormed) {
    for (const SampleFile& sample : SampleFiles) {
        SCOPED_TRACE(sample.Name);
        std::uint32_t error = 0;
        const auto file = LogFile::Open(SampleFolder() / sample.Name, error);
        ASSERT_NE(file, nullptr) << error;
        std::size_t records = 0;
        for (std::size_t index = 0; index < file->Chunks().size(); ++index) {
            const auto chunk = file->ReadChunk(index);
            records += chunk->Records().size();
            // A record in a chunk with damage may lack a part of what it refers to, and still be one.
            const bool isWhole = chunk->Damage().SkippedRecords == 0 && !chunk->Damage().RecordsChecksum;
            if (isWhole) {
                EXPECT_EQ(file->Chunks()[index].RecordCount, chunk->Records().size());
                EXPECT_EQ(file->Chunks()[index].FirstRecordId, chunk->Records().front().RecordId);
                EXPECT_EQ(file->Chunks()[index].LastRecordId, chunk->Records().back().RecordId);
            }
            for (const RecordPlace& record : chunk->Records()) {
                CheckRecord(*chunk, record, isWhole);
                if (HasFatalFailure() || HasNonfatalFailure()) {
                    return;
                }
            }
        }
        EXPECT_GE(records, sample.Records);
    }
}

TEST_F(SampleFilesTest, ChangedBytesNeverDoHarm) {
    std::mt19937 random(20240305);
    for (const SampleFile& sample : SampleFiles) {
        SCOPED_TRACE(sample.Name);
        std::ifstream stream(SampleFolder() / sample.Name, std::ios::binary);
        std::string bytes(std::istreambuf_iterator<char>(stream), {});
        bytes.resize(std::min<std::size_t>(bytes.size(), 4096 + 2 * ChunkSize));
        for (int round = 0; round < 3; ++round) {
            for (int change = 0; change < 60; ++change) {
                bytes[128 + random() % (bytes.size() - 128)] = static_cast<char>(random());
            }
            std::uint32_t error = 0;
            const auto file = LogFile::Open(std::make_unique<MemoryFile>(bytes), error);
            ASSERT_NE(file, nullptr);
            for (std::size_t index = 0; index < file->Chunks().size(); ++index) {
                const auto chunk = file->ReadChunk(index);
                SystemValues values;
                for (const RecordPlace& record : chunk->Records()) {
                    const std::string xml = XmlOf(*chunk, record);
                    EXPECT_TRUE(pugi::xml_document().load_string(xml.c_str())) << xml;
                    EXPECT_TRUE(chunk->ReadSystem(record, values));
                }
            }
        }
    }
}

}  // namespace
}  // namespace corvina::evtx::test
