// Thousands of changed logs: whatever is done to the bytes of a log, reading it ends soon, takes little memory and
// gives no record whose two sizes differ. A program of its own, since it counts the memory of everything in it.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "embedded/evtx/byte_reader.h"
#include "embedded/evtx/kept_templates.h"
#include "embedded/evtx/log_file.h"
#include "embedded/samples/sample_store.h"
#include "evtx/memory_file.h"
#include "evtx/test_chunk.h"

namespace {

// Every block carries its size in front, in room that keeps the block aligned.
constexpr std::size_t BlockHeader = alignof(std::max_align_t);
std::atomic<std::size_t> memoryInUse{0};
std::atomic<std::size_t> mostMemoryInUse{0};

}  // namespace

void* operator new(std::size_t size) {
    auto* const block = static_cast<std::byte*>(std::malloc(size + BlockHeader));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    *reinterpret_cast<std::size_t*>(block) = size;
    const std::size_t inUse = memoryInUse += size;
    if (inUse > mostMemoryInUse) {
        mostMemoryInUse = inUse;
    }
    return block + BlockHeader;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        std::byte* const block = static_cast<std::byte*>(memory) - BlockHeader;
        memoryInUse -= *reinterpret_cast<std::size_t*>(block);
        std::free(block);
    }
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    operator delete(memory);
}

namespace corvina::evtx::test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(_WIN32)
constexpr int DefaultRounds = 1'000;
#else
constexpr int DefaultRounds = 10'000;
#endif
constexpr std::clock_t LongestReading = 2 * CLOCKS_PER_SEC;  // of processor time: the machine may be busy
constexpr std::size_t MostMemory = std::size_t{64} << 20;
constexpr std::size_t ChunksOfALog = 2;

int Rounds() {
    const char* rounds = std::getenv("CORVINA_CHANGED_LOGS");
    return rounds != nullptr ? std::atoi(rounds) : DefaultRounds;
}

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

// Generated logs, and real ones where they are at hand.
std::vector<std::string> Logs() {
    std::vector<std::string> logs;
    const auto folder = std::filesystem::temp_directory_path() / "corvina-changed-logs";
    std::filesystem::create_directories(folder);
    for (const wchar_t* channel : {L"System", L"Security", L"Microsoft-Windows-GroupPolicy/Operational"}) {
        EXPECT_EQ(samples::WriteSampleLog(folder / "log.evtx", channel, 600, 3), 0u);
        logs.push_back(ReadFile(folder / "log.evtx"));
    }
    std::error_code error;
    std::filesystem::remove_all(folder, error);
    const char* given = std::getenv("CORVINA_SAMPLES");
    const std::filesystem::path real =
        given != nullptr ? std::filesystem::path(given)
                         : std::filesystem::path(CORVINA_SOURCE_DIR) / ".." / "shared" / "evtx-samples";
    std::vector<std::filesystem::path> files;
    for (std::filesystem::directory_iterator entry(real, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().extension() == ".evtx") {
            files.push_back(entry->path());
        }
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        logs.push_back(ReadFile(file));
    }
    return logs;
}

class Changer {
  public:
    explicit Changer(unsigned seed) : random_(seed) {}

    // A piece of the log with some damage.
    std::string Change(const std::string& log) {
        const std::size_t chunks = std::max<std::size_t>((log.size() - FileHeaderSize) / ChunkSize, 1);
        const std::size_t first = Below(chunks);
        bytes_ =
            log.substr(0, FileHeaderSize) + log.substr(FileHeaderSize + first * ChunkSize, ChunksOfALog * ChunkSize);
        for (std::size_t change = 1 + Below(3); change > 0 && bytes_.size() > FileHeaderSize; --change) {
            ChangeOnce();
        }
        return std::move(bytes_);
    }

  private:
    std::size_t Below(std::size_t bound) { return random_() % bound; }

    void ChangeOnce() {
        const std::size_t place = Below(bytes_.size());
        switch (Below(7)) {
            case 0:
                bytes_[place] = static_cast<char>(random_());
                break;
            case 1:
                bytes_[place] = static_cast<char>(bytes_[place] ^ (1 << Below(8)));
                break;
            case 2:
                for (int count = 0; count < 60; ++count) {
                    bytes_[Below(bytes_.size())] = static_cast<char>(random_());
                }
                break;
            case 3:
                bytes_.resize(place);
                break;
            case 4: {
                const std::size_t end = std::min(bytes_.size(), place + Below(4096));
                std::fill(bytes_.begin() + static_cast<std::ptrdiff_t>(place),
                          bytes_.begin() + static_cast<std::ptrdiff_t>(end), '\0');
                break;
            }
            case 5:
                SwapChunks();
                break;
            default:
                CopyPiece(place);
        }
    }

    void SwapChunks() {
        if (bytes_.size() >= FileHeaderSize + 2 * ChunkSize) {
            const auto first = bytes_.begin() + FileHeaderSize;
            std::swap_ranges(first, first + ChunkSize, first + ChunkSize);
        }
    }

    void CopyPiece(std::size_t from) {
        const std::size_t to = Below(bytes_.size());
        const std::size_t size = std::min(Below(2000), bytes_.size() - std::max(from, to));
        std::copy_n(bytes_.substr(from, size).begin(), size, bytes_.begin() + static_cast<std::ptrdiff_t>(to));
    }

    std::mt19937 random_;
    std::string bytes_;
};

// Reads all there is; returns the number of records. Records have to have the two equal sizes that make them one, and
// to be read as if their chunk stood alone, whatever was kept of the chunk before it.
std::size_t ReadEverything(const std::string& bytes) {
    std::uint32_t error = 0;
    const auto file = LogFile::Open(std::make_unique<MemoryFile>(bytes), error);
    if (file == nullptr) {
        return 0;
    }
    std::size_t records = 0;
    std::string xml;
    std::string xmlAlone;
    SystemValues system;
    std::vector<DataValue> data;
    for (std::size_t index = 0; index < file->Chunks().size(); ++index) {
        const auto chunk = file->ReadChunk(index);
        const std::uint64_t start = file->Chunks()[index].FileOffset;
        const Chunk alone(std::as_bytes(std::span(bytes)).subspan(start));
        EXPECT_EQ(chunk->Records().size(), alone.Records().size());
        for (const RecordPlace& record : chunk->Records()) {
            ++records;
            const auto* const place = reinterpret_cast<const std::byte*>(bytes.data()) + start + record.Offset;
            EXPECT_EQ(LoadUInt32(place + 4), LoadUInt32(place + record.Size - 4));
            xml.clear();
            EXPECT_TRUE(chunk->AppendXml(record, xml));
            xmlAlone.clear();
            alone.AppendXml(record, xmlAlone);
            EXPECT_EQ(xml, xmlAlone);
            EXPECT_TRUE(chunk->ReadSystem(record, system));
            EXPECT_TRUE(chunk->ReadData(record, data));
        }
    }
    return records;
}

TEST(ChangedLogs, AreReadSoonInLittleMemoryAndHonestly) {
    const std::vector<std::string> logs = Logs();
    ASSERT_GE(logs.size(), 3u);
    const auto rounds = static_cast<unsigned>(Rounds());
    std::size_t readable = 0;
    for (unsigned round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        SCOPED_TRACE(round);
        const std::string bytes = Changer(round).Change(logs[round % logs.size()]);
        mostMemoryInUse = memoryInUse.load();
        const std::size_t before = memoryInUse;
        const std::clock_t begin = std::clock();
        readable += ReadEverything(bytes) > 0 ? 1 : 0;
        EXPECT_LT(std::clock() - begin, LongestReading);
        EXPECT_LT(mostMemoryInUse - before, MostMemory);
    }
    // Most changes leave something to read; otherwise the rounds would have tried nothing.
    EXPECT_GT(readable, rounds / 2);
}

// Definitions that are all different and made to become as large as they can, and that come with one identifier or with
// many.
TEST(KeptTemplates, StayInLittleMemoryWhateverAFileDefines) {
    constexpr std::uint32_t Definitions = 20'000;
    const auto kept = std::make_shared<KeptTemplates>();
    SystemValues system;
    std::string xml;
    mostMemoryInUse = memoryInUse.load();
    const std::size_t before = memoryInUse;
    for (std::uint32_t number = 0; number < Definitions; ++number) {
        TestChunk bytes;
        Tokens definition(bytes);
        definition.Header().Open("Event").CloseStart().Open("System").CloseStart();
        for (std::uint32_t element = 0; element < 10 + number % 100; ++element) {
            definition.Open("EventID").Attribute("Qualifiers").Slot(0).CloseStart().Text(u"''''<<<<").End();
        }
        definition.Character(static_cast<std::uint16_t>(number)).End().End().EndFragment();
        const std::uint32_t place = bytes.Define(definition);
        bytes.Put(place + 4, LittleEndian(number % 3 == 0 ? 0 : number, 4));
        bytes.AddRecord(1, Tokens(bytes).Header().Instance(place, {NullValue()}).EndFragment());
        auto buffer = std::make_unique<std::byte[]>(ChunkSize);
        std::ranges::copy(bytes.Finish(), buffer.get());
        const Chunk chunk(std::move(buffer), ChunkSize, false, kept);
        ASSERT_EQ(chunk.Places().size(), 1u);
        for (const SystemField field : {SystemField::EventId, SystemField::Qualifiers}) {
            SystemFieldSet certain;
            EXPECT_TRUE(chunk.ReadSystem(chunk.Places()[0], SystemFieldSet::Of(field), system, certain));
        }
        xml.clear();
        EXPECT_TRUE(chunk.AppendXml(chunk.Places()[0], xml));
    }
    EXPECT_LT(mostMemoryInUse - before, MostMemory / 2);
}

}  // namespace
}  // namespace corvina::evtx::test
