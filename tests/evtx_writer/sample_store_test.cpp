// The sample store: as many events as asked for, in logs that have what the program is to be tried with.
#include "embedded/samples/sample_store.h"

#include <map>
#include <set>

#include "base/utf.h"
#include "embedded/publisher/publisher_folder.h"
#include "evtx_writer/writer_fixture.h"

namespace corvina::samples {
namespace {

class SampleStoreTest : public evtx::WriterTest {
  protected:
    std::filesystem::path Make(const std::string& name, const SampleStoreOptions& options) const {
        std::wstring problem;
        EXPECT_TRUE(WriteSampleStore(Folder / name, options, problem)) << Utf8FromWide(problem);
        return Folder / name;
    }

    static std::map<std::string, std::string> FilesOf(const std::filesystem::path& folder) {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            if (entry.is_regular_file()) {
                files[entry.path().lexically_relative(folder).generic_string()] = BytesOf(entry.path());
            }
        }
        return files;
    }
};

TEST_F(SampleStoreTest, LogsHoldTheEventsInTheOrderOfTime) {
    const std::filesystem::path store = Make("store", {.Events = 5000, .Computers = 2, .Seed = 3});
    std::uint64_t total = 0;
    std::set<unsigned> levels;
    std::size_t emptyLogs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(store / "localhost")) {
        if (entry.path().extension() != ".evtx") {
            continue;
        }
        const auto file = Open(entry.path());
        total += file->RecordCount();
        emptyLogs += file->RecordCount() == 0 ? 1 : 0;
        std::uint64_t time = 0;
        evtx::SystemValues system;
        for (std::size_t index = 0; index < file->Chunks().size(); ++index) {
            const auto chunk = file->ReadChunk(index);
            for (const evtx::RecordPlace& record : chunk->Records()) {
                ASSERT_TRUE(chunk->ReadSystem(record, system));
                EXPECT_GE(*system.TimeCreated, time);
                time = *system.TimeCreated;
                levels.insert(*system.Level);
            }
        }
    }
    EXPECT_EQ(total, 5000U);
    EXPECT_EQ(levels, (std::set<unsigned>{0, 1, 2, 3, 4, 5}));
    EXPECT_GE(emptyLogs, 1U);
    EXPECT_EQ(Open(store / "localhost" / "System.evtx")->RecordCount(), 1650U);
    EXPECT_TRUE(std::filesystem::exists(store / Utf8FromWide(SampleComputerName(1)) / "Security.evtx"));
}

TEST_F(SampleStoreTest, EveryEventHasItsMessageAndNames) {
    const std::filesystem::path computer = Make("store", {.Events = 8000}) / "localhost";
    publisher::PublisherFolder publishers(computer / "publishers");
    std::set<std::wstring> complaints;
    evtx::SystemValues system;
    std::vector<evtx::DataValue> data;
    const auto check = [&](const evtx::Chunk& chunk, const evtx::RecordPlace& record) {
        ASSERT_TRUE(chunk.ReadSystem(record, system) && chunk.ReadData(record, data));
        const std::wstring event = system.ProviderName + L" " + std::to_wstring(*system.EventId);
        const auto provider = publishers.Find(system.ProviderName);
        const auto* definition = provider ? provider->FindEvent(*system.EventId, *system.Version) : nullptr;
        if (definition == nullptr || !definition->HasMessage) {
            complaints.insert(event + L" has no message");
            return;
        }
        std::vector<std::wstring> values;
        for (const evtx::DataValue& value : data) {
            values.push_back(value.Text);
        }
        bool missing = false;
        const std::wstring message = publisher::ExpandMessage(definition->Message, values, missing);
        if (missing || message.empty()) {
            complaints.insert(event + L" has a message with missing values");
        }
        if (*system.Task != 0 && !provider->TaskText(*system.Task)) {
            complaints.insert(event + L" has a task without a name");
        }
        if (!provider->OpcodeText(*system.Opcode, *system.Task)) {
            complaints.insert(event + L" has an opcode without a name");
        }
        if (definition->Channel != system.Channel) {
            complaints.insert(event + L" is defined for another channel");
        }
    };
    for (const auto& entry : std::filesystem::directory_iterator(computer)) {
        const auto file = entry.path().extension() == ".evtx" ? Open(entry.path()) : nullptr;
        for (std::size_t index = 0; file != nullptr && index < file->Chunks().size(); ++index) {
            const auto chunk = file->ReadChunk(index);
            for (const evtx::RecordPlace& record : chunk->Records()) {
                check(*chunk, record);
            }
        }
    }
    for (const std::wstring& complaint : complaints) {
        ADD_FAILURE() << Utf8FromWide(complaint);
    }
    // And the manifests themselves refer to nothing that they do not hold.
    for (const auto& entry : std::filesystem::directory_iterator(computer / "publishers")) {
        const std::string bytes = BytesOf(entry.path());
        std::vector<std::wstring> problems;
        EXPECT_EQ(publisher::ReadManifest(std::as_bytes(std::span(bytes)), &problems).size(), 1U);
        EXPECT_TRUE(problems.empty()) << entry.path() << ": " << Utf8FromWide(problems.front());
    }
}

TEST_F(SampleStoreTest, TheSeedDecidesEveryByte) {
    const auto one = FilesOf(Make("one", {.Events = 300, .Seed = 1}));
    EXPECT_EQ(one, FilesOf(Make("same", {.Events = 300, .Seed = 1})));
    const auto other = FilesOf(Make("other", {.Events = 300, .Seed = 2}));
    EXPECT_NE(one.at("localhost/System.evtx"), other.at("localhost/System.evtx"));

    ASSERT_EQ(WriteSampleLog(Folder / "a.evtx", L"Security", 500, 9), 0U);
    ASSERT_EQ(WriteSampleLog(Folder / "b.evtx", L"Security", 500, 9), 0U);
    EXPECT_EQ(Open(Folder / "a.evtx")->RecordCount(), 500U);
    EXPECT_EQ(BytesOf(Folder / "a.evtx"), BytesOf(Folder / "b.evtx"));
}

TEST_F(SampleStoreTest, OnlyNewOrEmptyFoldersAreUsed) {
    std::wstring problem;
    std::filesystem::create_directories(Folder / "full");
    std::ofstream(Folder / "full" / "mine.txt") << "mine";
    EXPECT_FALSE(WriteSampleStore(Folder / "full", {.Events = 10}, problem));
    EXPECT_NE(problem.find(L"not empty"), std::wstring::npos);
    EXPECT_FALSE(WriteSampleStore(Folder / "full" / "mine.txt", {.Events = 10}, problem));
    EXPECT_NE(problem.find(L"not a folder"), std::wstring::npos);
    EXPECT_FALSE(WriteSampleStore(Folder / "full" / "mine.txt" / "store", {.Events = 10}, problem));
    EXPECT_EQ(FilesOf(Folder).size(), 1U);

    std::filesystem::create_directories(Folder / "empty");
    EXPECT_TRUE(WriteSampleStore(Folder / "empty" / "", {.Events = 10}, problem));
    EXPECT_TRUE(WriteSampleStore(Folder / "new" / "deep", {.Events = 10}, problem));
    // Nothing unfinished stays beside them.
    EXPECT_EQ(FileNames().size(), 3U);
}

}  // namespace
}  // namespace corvina::samples
