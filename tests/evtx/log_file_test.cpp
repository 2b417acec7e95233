// Whole files: opening, order, cut and foreign parts, stale headers.
#include "embedded/evtx/log_file.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <zlib.h>

#include "embedded/evtx/chunk_header.h"
#include "embedded/evtx/log_layout.h"
#include "evtx/memory_file.h"
#include "evtx/test_chunk.h"
#include "platform/error_codes.h"

namespace corvina::evtx::test {
namespace {

std::string HeaderBytes(std::uint32_t flags = 0, std::uint16_t major = 3, std::uint16_t blockSize = 4096) {
    std::string header(4096, '\0');
    const auto put = [&header](std::size_t offset, const std::string& bytes) {
        header.replace(offset, bytes.size(), bytes);
    };
    put(0, std::string("ElfFile\0", 8));
    put(16, LittleEndian(77, 8));  // the last chunk and the counts: stale, as in any live file
    put(24, LittleEndian(5, 8));
    put(32, LittleEndian(128, 4));
    put(36, LittleEndian(2, 2));
    put(38, LittleEndian(major, 2));
    put(40, LittleEndian(blockSize, 2));
    put(42, LittleEndian(1, 2));
    put(120, LittleEndian(flags, 4));
    put(124, LittleEndian(crc32(0, reinterpret_cast<const unsigned char*>(header.data()), 120), 4));
    return header;
}

std::string ChunkWith(std::uint64_t firstId, int count) {
    TestChunk chunk;
    for (int index = 0; index < count; ++index) {
        chunk.AddPlainRecord(firstId + static_cast<std::uint64_t>(index));
    }
    const auto bytes = chunk.Finish();
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

std::shared_ptr<const LogFile> OpenBytes(std::string bytes, std::uint32_t expectedError = error::Success) {
    std::uint32_t error = 12345;
    auto file = LogFile::Open(std::make_unique<MemoryFile>(std::move(bytes)), error);
    EXPECT_EQ(error, expectedError);
    EXPECT_EQ(file != nullptr, expectedError == error::Success);
    return file;
}

std::string AllIds(const LogFile& file) {
    std::string ids;
    for (std::size_t index = 0; index < file.Chunks().size(); ++index) {
        const auto chunk = file.ReadChunk(index);
        EXPECT_EQ(chunk->Records().size(), file.Chunks()[index].RecordCount);
        for (const RecordPlace& record : chunk->Records()) {
            ids += std::to_string(record.RecordId) + " ";
        }
    }
    return ids;
}

const std::string UnusedChunk(ChunkSize, '\0');

TEST(LogFileTest, WhatIsNoEventLogIsRefused) {
    OpenBytes("", error::EventLogFileCorrupt);
    OpenBytes(HeaderBytes().substr(0, 127), error::EventLogFileCorrupt);
    OpenBytes(std::string(200000, 'x'), error::EventLogFileCorrupt);
    OpenBytes(HeaderBytes(0, 4) + ChunkWith(1, 1), error::EventLogFileCorrupt);
    std::uint32_t error = 0;
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    EXPECT_EQ(LogFile::Open(folder / "no such folder 4711" / "x.evtx", error), nullptr);
    EXPECT_TRUE(error == error::FileNotFound || error == error::PathNotFound) << error;
    EXPECT_EQ(LogFile::Open(folder, error), nullptr);
    EXPECT_EQ(error, error::AccessDenied);
    EXPECT_EQ(OpenBytes(HeaderBytes())->OldestRecordId(), 0U);
}

TEST(LogFileTest, AWrappedLogIsReadFromItsOldestRecordOn) {
    const auto file = OpenBytes(HeaderBytes(1) + ChunkWith(30, 2) + ChunkWith(10, 2) + UnusedChunk + ChunkWith(20, 2));
    EXPECT_EQ(AllIds(*file), "10 11 20 21 30 31 ");
    EXPECT_EQ(file->RecordCount(), 6U);
    EXPECT_EQ(file->OldestRecordId(), 10U);
    EXPECT_EQ(file->Chunks()[0].FileOffset, 4096U + ChunkSize);
    EXPECT_EQ(file->Chunks()[1].FirstRecordId, 20U);
    EXPECT_EQ(file->Chunks()[1].LastRecordId, 21U);
    EXPECT_EQ(file->ForeignChunks() + file->ForeignBytes(), 0U);
    EXPECT_EQ(file->Size(), 4096U + 4 * ChunkSize);
    const FileHeader& header = file->Header();
    EXPECT_TRUE(header.ChecksumValid);
    EXPECT_EQ(header.LastChunk, 77U);
    EXPECT_EQ(header.NextRecordId, 5U);
    EXPECT_EQ(header.MinorVersion, 2);
    EXPECT_EQ(header.ChunkCount, 1);
    EXPECT_EQ(header.Flags, 1U);
}

TEST(LogFileTest, CutFilesGiveTheirWholeRecords) {
    const std::string whole = HeaderBytes() + ChunkWith(1, 3) + ChunkWith(4, 3);
    const std::size_t secondChunk = 4096 + ChunkSize;
    const auto idsUpTo = [&](std::size_t size) { return AllIds(*OpenBytes(whole.substr(0, size))); };
    EXPECT_EQ(idsUpTo(whole.size() - 1), "1 2 3 4 5 6 ");
    EXPECT_EQ(idsUpTo(secondChunk + 512 + 100), "1 2 3 4 ");
    EXPECT_EQ(idsUpTo(secondChunk + 513), "1 2 3 ");
    EXPECT_EQ(idsUpTo(4650), "");
    const auto cut = OpenBytes(whole.substr(0, secondChunk + 512 + 100));
    AllIds(*cut);
    EXPECT_FALSE(cut->HasReadFailed()) << "what was never there is not missing";
    EXPECT_EQ(OpenBytes(whole + "tail")->ForeignBytes(), 4U);
    EXPECT_EQ(OpenBytes(whole + std::string(100, '\0'))->ForeignBytes(), 0U);
}

TEST(LogFileTest, ForeignPlacesAreCountedAndPassed) {
    const auto file =
        OpenBytes(HeaderBytes() + std::string(ChunkSize, '*') + ChunkWith(1, 2) + std::string(ChunkSize - 1, 'x') +
                  '\0' + ChunkWith(3, 1) + UnusedChunk + std::string(ChunkSize - 1, '\0') + 'x');
    EXPECT_EQ(AllIds(*file), "1 2 3 ");
    EXPECT_EQ(file->ForeignChunks(), 3U) << "a place is unused only when nothing at all is there";
}

TEST(LogFileTest, TheHeaderIsBelievedOnlyWhenItsChecksumIsRight) {
    const std::string chunk = ChunkWith(1, 2);
    std::string header = HeaderBytes(0, 3, 8192);
    EXPECT_EQ(AllIds(*OpenBytes(header + std::string(4096, '\0') + chunk)), "1 2 ");
    header[9] = 'x';
    EXPECT_EQ(AllIds(*OpenBytes(header + chunk)), "1 2 ");
    EXPECT_FALSE(OpenBytes(header)->Header().ChecksumValid);
}

// Reads that a log takes to open, to tell whether a chunk's records were walked.
class CountingFile : public MemoryFile {
  public:
    CountingFile(std::string bytes, std::uint64_t& bytesRead) : MemoryFile(std::move(bytes)), bytesRead_(bytesRead) {}

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        bytesRead_ += buffer.size();
        return MemoryFile::ReadAt(offset, buffer);
    }

  private:
    std::uint64_t& bytesRead_;
};

TEST(LogFileTest, ChunksWithASoundHeaderAreNotWalked) {
    const auto withField = [](std::size_t offset, std::uint64_t value, std::size_t size) {
        std::string chunk = ChunkWith(5, 3);
        chunk.replace(offset, size, LittleEndian(value, size));
        chunk.replace(124, 4, LittleEndian(ChunkHeaderChecksum(std::as_bytes(std::span(chunk))), 4));
        return chunk;
    };
    const auto bytesToOpen = [](const std::string& chunk, const char* ids) {
        std::uint64_t bytesRead = 0;
        std::uint32_t error = 0;
        const auto file =
            LogFile::Open(std::make_unique<CountingFile>(HeaderBytes() + chunk + ChunkWith(20, 1), bytesRead), error);
        const std::uint64_t toOpen = bytesRead;
        EXPECT_EQ(AllIds(*file), ids);
        return toOpen;
    };
    const std::uint64_t headersOnly = bytesToOpen(ChunkWith(5, 3), "5 6 7 20 ");
    EXPECT_LT(headersOnly, 8192U);
    // Headers that do not fit their records do not hide them, whatever their checksum says.
    EXPECT_GT(bytesToOpen(withField(24, 4, 8), "5 6 7 20 "), headersOnly);           // first record id
    EXPECT_GT(bytesToOpen(withField(32, 9, 8), "5 6 7 20 "), headersOnly);           // last record id
    EXPECT_GT(bytesToOpen(withField(16, 5000, 8), "5 6 7 20 "), headersOnly);        // last record number
    EXPECT_GT(bytesToOpen(withField(44, 70000, 4), "5 6 7 20 "), headersOnly);       // place of the last record
    EXPECT_GT(bytesToOpen(withField(48, 0xFFFFFFFF, 4), "5 6 7 20 "), headersOnly);  // free space
    std::string damaged = ChunkWith(5, 3);
    damaged[130] ^= 1;
    EXPECT_GT(bytesToOpen(damaged, "5 6 7 20 "), headersOnly);
}

TEST(LogFileTest, AKnownLayoutIsTakenUntilTheLogGrows) {
    std::uint64_t bytesRead = 0;
    const auto open = [&bytesRead](const std::string& bytes, std::shared_ptr<const LogLayout> known) {
        bytesRead = 0;
        std::uint32_t error = 0;
        auto file = LogFile::Open(std::make_unique<CountingFile>(bytes, bytesRead), error, std::move(known));
        EXPECT_EQ(error, error::Success);
        return file;
    };
    std::string log = HeaderBytes() + ChunkWith(1000, 2);
    for (std::uint64_t chunk = 0; chunk < 60; ++chunk) {
        log += ChunkWith(10 + chunk * 2, 2);
    }
    log += UnusedChunk;
    const auto known = open(log, nullptr)->Layout();
    const auto again = open(log, known);
    EXPECT_LT(bytesRead, 8192U) << "the headers of all chunks were read";
    EXPECT_EQ(again->Layout(), known);
    EXPECT_EQ(again->RecordCount(), 122U);
    EXPECT_EQ(again->Chunks()[7].FirstRecordId, 24U);

    // The newest chunk is the first one of the file here: a log goes on in it, then in the one behind it.
    const std::size_t firstChunk = 4096;
    const std::size_t secondChunk = firstChunk + ChunkSize;
    const auto recordsWith = [&](std::size_t offset, const std::string& chunk) {
        std::string grown = log;
        grown.replace(offset, ChunkSize, chunk);
        const auto file = open(grown, known);
        EXPECT_NE(file->Layout(), known);
        return file->RecordCount();
    };
    EXPECT_EQ(recordsWith(firstChunk, ChunkWith(1000, 3)), 123U);
    EXPECT_EQ(recordsWith(secondChunk, ChunkWith(1002, 7)), 127U);
    std::string cleanedUp = log;
    cleanedUp[42] = 61;
    EXPECT_NE(open(cleanedUp, known)->Layout(), known);

    // At the end of the file it goes on at the first chunk.
    log = HeaderBytes() + ChunkWith(1, 2) + ChunkWith(3, 2);
    const auto atEnd = open(log, nullptr)->Layout();
    log.replace(firstChunk, ChunkSize, ChunkWith(5, 1));
    EXPECT_EQ(AllIds(*open(log, atEnd)), "3 4 5 ");
}

TEST(LogFileTest, ChunksAreFoundByTheRecordIdentifiersInThem) {
    // Damaged logs hold chunks twice, and such with any identifiers.
    LogLayout layout;
    const std::pair<std::uint64_t, std::uint64_t> places[] = {{1, 5},   {6, 9},   {6, 40},
                                                              {10, 12}, {20, 25}, {50, UINT64_MAX}};
    for (const auto& [first, last] : places) {
        layout.Chunks.push_back({0, first, last, 1});
        layout.LargestRecordIds.push_back(
            std::max(last, layout.LargestRecordIds.empty() ? 0 : layout.LargestRecordIds.back()));
    }
    using Range = std::pair<std::size_t, std::size_t>;
    EXPECT_EQ(layout.ChunksWithRecordIds(0, 0), Range(0, 0));
    EXPECT_EQ(layout.ChunksWithRecordIds(5, 5), Range(0, 1));
    EXPECT_EQ(layout.ChunksWithRecordIds(7, 7), Range(1, 3));
    EXPECT_EQ(layout.ChunksWithRecordIds(11, 11), Range(2, 4));
    EXPECT_EQ(layout.ChunksWithRecordIds(30, 30), Range(2, 5));
    const auto [begin, end] = layout.ChunksWithRecordIds(45, 46);
    EXPECT_EQ(begin, end);
    EXPECT_EQ(layout.ChunksWithRecordIds(UINT64_MAX, UINT64_MAX), Range(5, 6));
    EXPECT_EQ(layout.ChunksWithRecordIds(0, UINT64_MAX), Range(0, 6));
}

TEST(LogFileTest, ChecksumsOfChunksAreIgnoredWhenTheFileHasNone) {
    std::string chunk = ChunkWith(1, 1);
    chunk[52] = static_cast<char>(chunk[52] + 1);
    EXPECT_TRUE(OpenBytes(HeaderBytes(0) + chunk)->ReadChunk(0)->Damage().RecordsChecksum);
    const auto unchecked = OpenBytes(HeaderBytes(4) + chunk)->ReadChunk(0)->Damage();
    EXPECT_FALSE(unchecked.RecordsChecksum || unchecked.HeaderChecksum);
}

TEST(LogFileTest, AFileThatShrinksWhileOpenHasEmptyChunks) {
    auto memory = std::make_unique<MemoryFile>(HeaderBytes() + ChunkWith(1, 2) + ChunkWith(3, 2));
    MemoryFile& bytes = *memory;
    std::uint32_t error = 0;
    const auto file = LogFile::Open(std::move(memory), error);
    ASSERT_NE(file, nullptr);
    bytes.Shrink(4096 + ChunkSize + 600);
    EXPECT_EQ(file->ReadChunk(0)->Records().size(), 2U);
    EXPECT_FALSE(file->HasReadFailed());
    EXPECT_EQ(file->ReadChunk(1)->Records().size(), 1U);
    EXPECT_TRUE(file->HasReadFailed());
    bytes.Shrink(100);
    EXPECT_TRUE(file->ReadChunk(0)->Records().empty());
    EXPECT_TRUE(file->ReadChunk(2)->Records().empty());
}

}  // namespace
}  // namespace corvina::evtx::test
