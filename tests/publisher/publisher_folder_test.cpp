#include "embedded/publisher/publisher_folder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "base/utf.h"
#include "platform/temporary_folder.h"
#include "publisher/manifest_text.h"

namespace corvina::publisher {
namespace {

using Names = std::vector<std::wstring>;

class PublisherFolderTest : public testing::Test {
  protected:
    void Write(const std::string& name, std::string_view text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    TemporaryFolder temporary_;
    const std::filesystem::path& folder_ = temporary_.Path;
};

TEST_F(PublisherFolderTest, ReadsEveryManifestOnFirstUse) {
    PublisherFolder folder(folder_);
    std::string utf16;
    AppendUtf16Bytes(L"\uFEFF" + WideFromUtf8(ManifestText("Wide", "")), utf16);
    Write("b.man", utf16);
    Write("a.MAN", ManifestText("Narrow", ""));
    Write("broken.man", ManifestText("Broken", "").substr(0, 100));
    Write("empty.man", "");
#ifndef _WIN32
    Write("\xFF.man", ManifestText("Oddly named", ""));
    Write("\xFF.txt", "");
#else
    Write("odd.man", ManifestText("Oddly named", ""));
#endif
    Write("other.xml", ManifestText("Other", ""));
    std::filesystem::create_directory(folder_ / "folder.man");
    EXPECT_EQ(folder.Names(), (Names{L"Narrow", L"Oddly named", L"Wide"}));

    Write("late.man", ManifestText("Late", ""));
    EXPECT_EQ(folder.Find(L"Late"), nullptr);
}

TEST_F(PublisherFolderTest, FindsExactNamesBeforeThoseOfAnotherCase) {
    Write("1.man", ManifestText("contoso", ""));
    Write("2.man", ManifestText("Contoso", ""));
    Write("3.man", ManifestText("Contoso", "<levels/>") + "<!-- the same publisher again -->");
    PublisherFolder folder(folder_);
    ASSERT_NE(folder.Find(L"Contoso"), nullptr);
    EXPECT_EQ(folder.Find(L"Contoso")->Name, L"Contoso");
    EXPECT_EQ(folder.Find(L"contoso")->Name, L"contoso");
    EXPECT_EQ(folder.Find(L"CONTOSO")->Name, L"contoso");
    EXPECT_EQ(folder.Find(L"Contos"), nullptr);
    EXPECT_EQ(folder.Find(L""), nullptr);
    EXPECT_EQ(folder.Names(), (Names{L"Contoso", L"contoso"}));
}

TEST_F(PublisherFolderTest, AFoundPublisherOutlivesItsFolder) {
    Write("1.man", ManifestText("P", R"(<events><event value="1" message="kept"/></events>)"));
    auto folder = std::make_unique<PublisherFolder>(folder_);
    const std::shared_ptr<const Publisher> publisher = folder->Find(L"p");
    folder.reset();
    ASSERT_NE(publisher, nullptr);
    EXPECT_EQ(publisher->FindEvent(1, 0)->Message, L"kept");
}

TEST_F(PublisherFolderTest, AMissingFolderHasNoPublishers) {
    PublisherFolder folder(folder_ / "nowhere");
    EXPECT_EQ(folder.Find(L"P"), nullptr);
    EXPECT_EQ(folder.Names(), Names());
}

TEST_F(PublisherFolderTest, SeveralThreadsMayAskAtOnce) {
    for (int number = 0; number < 20; ++number) {
        std::string name = std::to_string(number);
        name.insert(name.begin(), 'P');
        Write(name + ".man", ManifestText(name, ""));
    }
    PublisherFolder folder(folder_);
    std::vector<std::size_t> counts(4);
    std::vector<std::thread> threads;
    for (std::size_t& count : counts) {
        threads.emplace_back([&folder, &count] { count = folder.Find(L"P19") ? folder.Names().size() : 0; });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(counts, std::vector<std::size_t>(4, 20));
}

}  // namespace
}  // namespace corvina::publisher
