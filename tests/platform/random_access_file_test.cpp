#include "platform/random_access_file.h"

#include <array>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "platform/error_codes.h"
#include "platform/temporary_folder.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/stat.h>
#endif

namespace corvina {
namespace {

class RandomAccessFileTest : public testing::Test {
  protected:
    std::filesystem::path WriteFile(const std::string& contents) {
        const auto path = folder_.Path / u8"Vorg\u00E4nge \u65E5.evtx";
        std::ofstream(path, std::ios::binary) << contents;
        return path;
    }

    static std::string Read(const RandomAccessFile& file, std::uint64_t offset, std::size_t size) {
        std::vector<std::byte> buffer(size);
        const std::size_t count = file.ReadAt(offset, buffer);
        return std::string(reinterpret_cast<const char*>(buffer.data()), count);
    }

    TemporaryFolder folder_;
    std::uint32_t error_ = 99;
};

TEST_F(RandomAccessFileTest, ReadsAnyPlaceAndStopsAtTheEnd) {
    const auto file = OpenRandomAccessFile(WriteFile("0123456789"), error_);
    ASSERT_TRUE(file);
    EXPECT_EQ(error_, error::Success);
    EXPECT_EQ(file->Size(), 10u);
    EXPECT_EQ(Read(*file, 7, 2), "78");
    EXPECT_EQ(Read(*file, 0, 4), "0123");
    EXPECT_EQ(Read(*file, 8, 100), "89");
    EXPECT_EQ(Read(*file, 10, 1), "");
    EXPECT_EQ(Read(*file, 3, 0), "");
    // Offsets that no file reaches, also those that are negative or special as signed numbers.
    constexpr std::uint64_t Last = std::numeric_limits<std::uint64_t>::max();
    for (const std::uint64_t offset : {std::uint64_t{1} << 62, Last / 2, Last / 2 + 1, Last - 1, Last}) {
        EXPECT_EQ(Read(*file, offset, 4), "") << offset;
    }
}

TEST_F(RandomAccessFileTest, FollowsAFileThatOthersChange) {
    const auto path = WriteFile(std::string(100000, 'a'));
    const auto file = OpenRandomAccessFile(path, error_);
    ASSERT_TRUE(file);
    {
        // Somebody who has the file open for writing is no hindrance, nor are we one for them.
        std::fstream writer(path, std::ios::binary | std::ios::in | std::ios::out);
        ASSERT_TRUE(writer);
        writer.seekp(50000);
        writer << 'b';
        writer.flush();
        EXPECT_EQ(Read(*file, 49999, 3), "aba");
        EXPECT_TRUE(OpenRandomAccessFile(path, error_));
    }
    std::filesystem::resize_file(path, 1000);
    EXPECT_EQ(Read(*file, 999, 100), "a");
    EXPECT_EQ(Read(*file, 50000, 100), "");
    EXPECT_EQ(file->Size(), 100000u);
    EXPECT_TRUE(std::filesystem::remove(path));
    EXPECT_EQ(Read(*file, 0, 2), "aa");
}

TEST_F(RandomAccessFileTest, RefusesWhatIsNoFile) {
    EXPECT_FALSE(OpenRandomAccessFile(folder_.Path, error_));
    EXPECT_EQ(error_, error::AccessDenied);
    EXPECT_FALSE(OpenRandomAccessFile(folder_.Path / "missing.evtx", error_));
    EXPECT_EQ(error_, error::FileNotFound);
    EXPECT_FALSE(OpenRandomAccessFile(WriteFile("x") / "below a file.evtx", error_));
    EXPECT_EQ(error_, error::PathNotFound);
    const auto empty = OpenRandomAccessFile(WriteFile(""), error_);
    ASSERT_TRUE(empty);
    EXPECT_EQ(Read(*empty, 0, 1), "");
}

#ifdef _WIN32
TEST_F(RandomAccessFileTest, ReportsAFileThatIsLocked) {
    const auto path = WriteFile("x");
    const HANDLE lock = CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(OpenRandomAccessFile(path, error_));
    EXPECT_EQ(error_, static_cast<std::uint32_t>(ERROR_SHARING_VIOLATION));
    CloseHandle(lock);
}
#else
TEST_F(RandomAccessFileTest, DoesNotWaitForTheOtherEndOfAPipe) {
    const auto path = folder_.Path / "pipe.evtx";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_FALSE(OpenRandomAccessFile(path, error_));
    EXPECT_EQ(error_, error::AccessDenied);
}
#endif

}  // namespace
}  // namespace corvina
