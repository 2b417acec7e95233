// Files that are whole or not there at all.
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>

#include "platform/error_codes.h"
#include "platform/random_access_file.h"
#include "platform/temporary_files.h"
#include "platform/temporary_folder.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace corvina {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class ReplacingFileTest : public testing::Test {
  protected:
    std::unique_ptr<ReplacingFile> Create(ExistingFile existing = ExistingFile::Replace) {
        return CreateReplacingFile(target_, existing, error_);
    }

    static void Write(const fs::path& path, std::string_view text) { std::ofstream(path, std::ios::binary) << text; }

    static std::string TextOf(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    Names FileNames() const {
        Names names;
        for (const auto& entry : fs::directory_iterator(folder_.Path)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    TemporaryFolder folder_;
    fs::path target_ = folder_.Path / "target.evtx";
    std::uint32_t error_ = 99;
};

TEST_F(ReplacingFileTest, AppearsWhenItIsCommittedAndNotBefore) {
    Write(target_, "old");
    {
        const auto abandoned = Create();
        ASSERT_NE(abandoned, nullptr);
        EXPECT_EQ(abandoned->Append("new"), 0U);
        EXPECT_EQ(FileNames(), (Names{"target.evtx", "target.evtx.0.corvina-tmp"}));
    }
    EXPECT_EQ(FileNames(), Names{"target.evtx"});
    EXPECT_EQ(TextOf(target_), "old");
    const auto file = Create();
    EXPECT_EQ(file->Append("....ab"), 0U);
    EXPECT_EQ(file->WriteFront("head"), 0U);
    EXPECT_EQ(file->Append("cd"), 0U);
    EXPECT_EQ(TextOf(target_), "old");
    EXPECT_EQ(file->Commit(), 0U);
    EXPECT_EQ(TextOf(target_), "headabcd");
    EXPECT_EQ(FileNames(), Names{"target.evtx"});
}

TEST_F(ReplacingFileTest, WhoeverHasTheOldFileOpenGoesOnReadingIt) {
    Write(target_, "old");
    const auto reader = OpenRandomAccessFile(target_, error_);
    const auto file = Create();
    EXPECT_EQ(file->Append("newer"), 0U);
    EXPECT_EQ(file->Commit(), 0U);
    std::string text(8, '\0');
    EXPECT_EQ(reader->ReadAt(0, std::as_writable_bytes(std::span(text))), 3U);
    EXPECT_EQ(text.substr(0, 3), "old");
    EXPECT_EQ(TextOf(target_), "newer");
}

TEST_F(ReplacingFileTest, KeepsAFileWhenToldToWheneverItAppears) {
    auto file = Create(ExistingFile::Keep);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Append("new"), 0U);
    Write(target_, "other");
    EXPECT_EQ(file->Commit(), error::FileExists);
    file = nullptr;
    EXPECT_EQ(TextOf(target_), "other");
    EXPECT_EQ(FileNames(), Names{"target.evtx"});
    EXPECT_EQ(Create(ExistingFile::Keep), nullptr);
    EXPECT_EQ(error_, error::FileExists);
    fs::remove(target_);
    file = Create(ExistingFile::Keep);
    EXPECT_EQ(file->Commit(), 0U);
    EXPECT_EQ(FileNames(), Names{"target.evtx"});
}

TEST_F(ReplacingFileTest, TellsWhyATargetCannotBeWritten) {
    EXPECT_EQ(CreateReplacingFile(folder_.Path / "missing" / "a", ExistingFile::Replace, error_), nullptr);
    EXPECT_EQ(error_, error::PathNotFound);
    EXPECT_EQ(CreateReplacingFile(folder_.Path, ExistingFile::Replace, error_), nullptr);
    EXPECT_EQ(error_, error::AccessDenied);
    Write(target_, "old");
    fs::permissions(target_, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(Create(), nullptr);
    EXPECT_EQ(error_, error::AccessDenied);
    fs::permissions(target_, fs::perms::owner_all);
    EXPECT_EQ(FileNames(), Names{"target.evtx"});
}

TEST_F(ReplacingFileTest, WhatEndedProcessesLeftBehindIsNotInTheWay) {
    for (int attempt = 0; attempt < TemporaryNameAttempts; ++attempt) {
        Write(TemporaryNameOf(target_, attempt), "left");
    }
    // Files that are being written are told from those.
    const auto first = Create();
    const auto second = Create();
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_EQ(first->Append("first"), 0U);
    EXPECT_EQ(second->Append("second"), 0U);
    EXPECT_EQ(second->Commit(), 0U);
    EXPECT_EQ(TextOf(target_), "second");
    EXPECT_EQ(first->Commit(), 0U);
    EXPECT_EQ(TextOf(target_), "first");
    EXPECT_EQ(FileNames().size(), 1U + TemporaryNameAttempts - 2);
}

#ifndef _WIN32
TEST_F(ReplacingFileTest, KeepsThePermissionsAndFollowsNoLinkOfATemporaryName) {
    Write(target_, "old");
    fs::permissions(target_, fs::perms::owner_read | fs::perms::owner_write);
    Write(folder_.Path / "victim", "untouched");
    fs::create_symlink(folder_.Path / "victim", TemporaryNameOf(target_, 0));
    const auto file = Create();
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Append("new"), 0U);
    EXPECT_EQ(file->Commit(), 0U);
    EXPECT_EQ(TextOf(folder_.Path / "victim"), "untouched");
    EXPECT_EQ(TextOf(target_), "new");
    EXPECT_EQ(fs::status(target_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}
#endif

}  // namespace
}  // namespace corvina
