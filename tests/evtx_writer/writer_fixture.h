// A folder of its own for each test, and events to write into it.
#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "embedded/evtx/log_file.h"
#include "embedded/evtx/log_file_writer.h"

namespace corvina::evtx {

class WriterTest : public ::testing::Test {
  protected:
    WriterTest() {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        Folder = std::filesystem::temp_directory_path() /
                 (std::string("corvina-writer-") + test->name() + "-" + std::to_string(std::random_device()()));
        std::filesystem::create_directories(Folder);
    }
    ~WriterTest() override { std::filesystem::remove_all(Folder); }

    static WriterEvent EventOf(std::uint16_t id, std::wstring text = L"") {
        WriterEvent event;
        event.System.ProviderName = L"Contoso-Test";
        event.System.EventId = id;
        event.System.Level = std::uint8_t{4};
        event.System.TimeCreated = 133'600'000'000'000'000 + id;
        event.System.Channel = L"Application";
        event.System.Computer = L"PC-01";
        event.Data.push_back(TextValue(L"Text", std::move(text)));
        return event;
    }

    static WriterValue TextValue(std::wstring name, std::wstring text) {
        WriterValue value;
        value.Name = std::move(name);
        value.Text = std::move(text);
        return value;
    }

    // Writes a log and expects that to work.
    std::filesystem::path Write(const std::vector<WriterEvent>& events, std::uint64_t firstRecordId = 1) const {
        const std::filesystem::path path = Folder / "written.evtx";
        LogFileWriter writer(path, firstRecordId);
        for (const WriterEvent& event : events) {
            EXPECT_EQ(writer.Add(event), 0U);
        }
        EXPECT_EQ(writer.Finish(), 0U);
        return path;
    }

    static std::shared_ptr<const LogFile> Open(const std::filesystem::path& path) {
        std::uint32_t error = 0;
        auto file = LogFile::Open(path, error);
        EXPECT_EQ(error, 0U);
        return file;
    }

    // The XML of all events, and a failure for whatever is damaged in the file.
    static std::vector<std::wstring> EventsOf(const std::filesystem::path& path) {
        std::vector<std::wstring> events;
        const auto file = Open(path);
        for (std::size_t index = 0; file != nullptr && index < file->Chunks().size(); ++index) {
            const auto chunk = file->ReadChunk(index);
            const ChunkDamage& damage = chunk->Damage();
            EXPECT_FALSE(damage.HeaderChecksum || damage.RecordsChecksum || damage.MissingHeader);
            EXPECT_EQ(damage.SkippedRecords, 0U);
            for (const RecordPlace& record : chunk->Records()) {
                EXPECT_TRUE(chunk->AppendXml(record, events.emplace_back()));
            }
        }
        return events;
    }

    std::vector<std::string> FileNames() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(Folder)) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    static std::string BytesOf(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    std::filesystem::path Folder;
};

}  // namespace corvina::evtx
