// Providers that are described by program files in a folder.
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/utf.h"
#include "embedded/publisher/message_ids.h"
#include "embedded/publisher/message_table.h"
#include "embedded/publisher/publisher_folder.h"
#include "platform/temporary_folder.h"
#include "publisher/image_builder.h"
#include "publisher/manifest_text.h"

namespace corvina::publisher {
namespace {

using Names = std::vector<std::wstring>;

class ImagePublishersTest : public testing::Test {
  protected:
    void Write(const std::string& name, const std::string& bytes) const {
        const std::filesystem::path path = folder_ / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }

    void WriteMessages(const std::string& name, const TestMessages& messages, std::uint16_t language = 0x0409) const {
        Write(name, MakeImage({MakeMessageTable(messages, language)}));
    }

    // The text with a number of a provider of that name; "" when there is none of either.
    std::wstring Text(std::wstring_view name, std::uint32_t id,
                      std::vector<RegisteredPublisher> registered = {}) const {
        PublisherFolder folder(folder_, std::move(registered));
        const auto publisher = folder.Find(name);
        return publisher == nullptr ? L"" : MessageById(*publisher, id).value_or(L"");
    }

    TemporaryFolder temporary_;
    const std::filesystem::path& folder_ = temporary_.Path;
};

TEST_F(ImagePublishersTest, AClassicSourceIsTheFileOfItsName) {
    WriteMessages("MySource.DLL", {{1, L"A category"}, {0xC0000001, L"Failed: %1"}});
    Write("other.dll", MakeImage({{16, {}, 0, "no messages"}}));
    Write("broken.dll", "MZ");
    Write("readme.txt", "text");
    PublisherFolder folder(folder_);
    EXPECT_EQ(folder.Names(), Names{L"MySource"});
    const auto source = folder.Find(L"MYSOURCE");
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->Name, L"MYSOURCE");
    EXPECT_EQ(source->Messages->Find(0xC0000001), L"Failed: %1");
    EXPECT_EQ(source->TaskText(1), L"A category");
    EXPECT_EQ(source->TaskText(0), std::nullopt);
    EXPECT_EQ(folder.Find(L"MySource"), folder.Find(L"MySource")) << "kept";
    for (const wchar_t* const name : {L"other", L"broken", L"readme", L"MySource.dll", L"", L"..", L"nobody"}) {
        EXPECT_EQ(folder.Find(name), nullptr) << Utf8FromWide(name);
    }
}

TEST_F(ImagePublishersTest, ListsAreFoundByTheProvidersGuid) {
    Write("pumpres.dll", MakeImage({MakeEventTemplate({PumpProvider()}), MakeMessageTable(PumpMessages())}, false));
    PublisherFolder folder(folder_);
    EXPECT_EQ(folder.Find(L"Contoso-Pump"), nullptr);
    const auto pump = folder.Find(L"Contoso-Pump", PumpProvider().Guid);
    ASSERT_NE(pump, nullptr);
    EXPECT_EQ(pump->Name, L"Contoso-Pump");
    EXPECT_EQ(pump->Message, L"The pump");
    EXPECT_EQ(pump->LevelText(2), L"Fault") << "a provider may name a standard level otherwise";
    EXPECT_EQ(pump->LevelText(17), L"Loud");
    EXPECT_EQ(pump->TaskText(1), L"Filling");
    EXPECT_EQ(pump->TaskText(2), std::nullopt);
    EXPECT_EQ(pump->OpcodeText(11, 1), L"Filling valve");
    EXPECT_EQ(pump->OpcodeText(11, 7), L"Valve");
    EXPECT_EQ(pump->KeywordTexts(0x8000000000000001), (Names{L"Water", L"Oil"}));
    EXPECT_EQ(pump->Channels[1].Message, L"What the pump does");
    EXPECT_EQ(pump->FindEvent(1, 1)->Message, L"%1 litres of %2");
    EXPECT_TRUE(pump->FindEvent(2, 0)->HasMessage) << "an empty message is a message";
    EXPECT_FALSE(pump->FindEvent(3, 0)->HasMessage);
    EXPECT_EQ(MessageById(*pump, 0xB0000001), L"%1 litres");
    EXPECT_EQ(MessageById(*pump, 0x30000001), L"Start") << "a standard opcode";
    EXPECT_EQ(MessageById(*pump, 0xB0000003), std::nullopt);
    EXPECT_EQ(folder.Names(), Names{L"pumpres"}) << "nothing gives a better name";
    ASSERT_NE(folder.Find(L"pumpres"), nullptr);
    EXPECT_EQ(folder.Find(L"pumpres")->Guid, PumpProvider().Guid) << "the only provider of the file";

    GuidBytes stranger = PumpProvider().Guid;
    stranger[15] = std::byte{0};
    EXPECT_EQ(folder.Find(L"Contoso-Pump", stranger), nullptr);
    ASSERT_NE(folder.Find(L"pumpres", stranger), nullptr);
    EXPECT_TRUE(folder.Find(L"pumpres", stranger)->Events.empty()) << "another provider's events";
}

TEST_F(ImagePublishersTest, TextsComeFromLanguageFiles) {
    Write("a.dll", MakeImage({MakeEventTemplate({PumpProvider()})}));
    WriteMessages("de-DE/A.dll.MUI", {{0xB0000001, L"Deutsch"}, {0xB0000002, L"Nur deutsch"}}, 0x0407);
    EXPECT_EQ(Text(L"a", 0xB0000001), L"Deutsch") << "better than nothing";
    WriteMessages("a.dll.mui", {{0xB0000001, L"Beside"}}, 0);
    EXPECT_EQ(Text(L"a", 0xB0000001), L"Beside");
    WriteMessages("en-US/a.dll.mui", {{0xB0000001, L"English"}});
    EXPECT_EQ(Text(L"a", 0xB0000001), L"English");
    EXPECT_EQ(Text(L"a", 0xB0000002), L"") << "other languages are read only when there is no text";

    WriteMessages("fr-FR/only.dll.mui", {{1, L"Seul"}}, 0x040C);
    Write("notalanguage/far.dll.mui", MakeImage({MakeMessageTable({{1, L"no"}})}));
    EXPECT_EQ(Text(L"only", 1), L"Seul");
    EXPECT_EQ(PublisherFolder(folder_).Names(), (Names{L"a", L"only"}));
}

TEST_F(ImagePublishersTest, EnglishTablesComeFirst) {
    const auto write = [this](const std::vector<std::pair<std::uint16_t, std::wstring>>& languages) {
        std::vector<TestResource> tables;
        for (const auto& [language, text] : languages) {
            tables.push_back(MakeMessageTable({{1, text}}, language));
        }
        Write("l.dll", MakeImage(tables));
        return Text(L"l", 1);
    };
    EXPECT_EQ(write({{0x0407, L"de"}, {0x0409, L"us"}, {0x0809, L"gb"}, {0, L"neutral"}}), L"us");
    EXPECT_EQ(write({{0x0407, L"de"}, {0x0809, L"gb"}, {0, L"neutral"}}), L"gb");
    EXPECT_EQ(write({{0x0407, L"de"}, {0x0410, L"it"}, {0, L"neutral"}}), L"neutral");
    EXPECT_EQ(write({{0x0410, L"it"}, {0x0407, L"de"}}), L"de") << "the first of the image's directory";
}

TEST_F(ImagePublishersTest, TheRegistryNamesProvidersAndTheirFiles) {
    TestProvider other = PumpProvider();
    other.Guid[0] = std::byte{1};
    Write("two.dll", MakeImage({MakeEventTemplate({other, PumpProvider()}), MakeMessageTable(PumpMessages())}));
    WriteMessages("texts.dll", {{0xB0000001, L"from texts"}});
    WriteMessages("more.bin", {{0xB0000001, L"hidden"}, {5, L"more"}});
    WriteMessages("par.dll", {{1842, L"Yes"}});
    const std::vector<RegisteredPublisher> registered = {
        {L"Contoso-Pump", PumpProvider().Guid, L"%SystemRoot%\\System32\\two.dll", {}, L"c:/windows/PAR.DLL"},
        {L"Contoso-Other", other.Guid, L"two.dll", L"C:\\x\\texts.dll;more.bin;", {}},
        {L"Classic", {}, {}, L"more.bin", {}},
        {L"Nowhere", {}, L"..\\gone.dll", {}, {}},
        {L"Found", PumpProvider().Guid, {}, {}, L"par.dll"}};
    PublisherFolder folder(folder_, registered);
    EXPECT_EQ(folder.Names(), (Names{L"Classic", L"Contoso-Other", L"Contoso-Pump", L"Found", L"Nowhere"}));
    const auto pump = folder.Find(L"contoso-pump");
    ASSERT_NE(pump, nullptr);
    EXPECT_EQ(pump->Name, L"Contoso-Pump");
    EXPECT_EQ(pump->FindEvent(1, 0)->Message, L"%1 litres");
    ASSERT_NE(pump->Parameters, nullptr);
    EXPECT_EQ(pump->Parameters->Find(1842), L"Yes");
    EXPECT_EQ(Text(L"Contoso-Other", 0xB0000001, registered), L"from texts");
    EXPECT_EQ(Text(L"Contoso-Other", 5, registered), L"more");
    EXPECT_EQ(Text(L"Classic", 5, registered), L"more");
    EXPECT_EQ(folder.Find(L"Nowhere"), nullptr);
    ASSERT_NE(folder.Find(L"Found"), nullptr) << "the GUID is enough";
    EXPECT_NE(folder.Find(L"Found")->Parameters, nullptr);
    EXPECT_FALSE(folder.Find(L"Found")->Events.empty());
    ASSERT_NE(folder.Find(L"two"), nullptr);
    EXPECT_TRUE(folder.Find(L"two")->Events.empty()) << "which of the two providers nobody knows";
}

TEST_F(ImagePublishersTest, ManifestsComeFirst) {
    WriteMessages("p.dll", {{1, L"image"}});
    WriteMessages("par.dll", {{1842, L"Yes"}});
    Write("p.man", ManifestText("P", R"(<events><event value="1" message="manifest"/></events>)"));
    PublisherFolder folder(folder_);
    EXPECT_EQ(folder.Names(), (Names{L"P", L"par"}));
    EXPECT_EQ(folder.Find(L"p")->FindEvent(1, 0)->Message, L"manifest");
    EXPECT_EQ(folder.Find(L"p")->Parameters, nullptr);

    PublisherFolder registered(folder_, {{L"p", {}, L"p.dll", {}, L"par.dll"}});
    EXPECT_EQ(registered.Names(), Names{L"P"});
    const auto publisher = registered.Find(L"P");
    EXPECT_EQ(publisher->FindEvent(1, 0)->Message, L"manifest");
    ASSERT_NE(publisher->Parameters, nullptr);
    EXPECT_EQ(publisher->Parameters->Find(1842), L"Yes");
}

TEST_F(ImagePublishersTest, ManyLargeFilesAreNotRead) {
    // Together they would take minutes to read. Where files can have a size without taking room, that is.
#ifdef _WIN32
    constexpr std::uintmax_t LargeSize = std::uintmax_t{1} << 20;
#else
    constexpr std::uintmax_t LargeSize = std::uintmax_t{200} << 20;
#endif
    for (int number = 0; number < 300; ++number) {
        const std::string name = "large" + std::to_string(number) + ".dll";
        Write(name, MakeImage({{16, {}, 0, "a version"}}));
        std::filesystem::resize_file(folder_ / name, LargeSize);
    }
    WriteMessages("small.dll", {{1, L"found"}});
    EXPECT_EQ(Text(L"small", 1), L"found");
    PublisherFolder folder(folder_);
    EXPECT_EQ(folder.Names(), Names{L"small"});
    EXPECT_EQ(folder.Find(L"nobody", PumpProvider().Guid), nullptr);
}

}  // namespace
}  // namespace corvina::publisher
