// Exporting and clearing logs: what is written, what stays as it was when that fails, and who still reads the old log.
#include <fstream>
#include <iterator>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

#include "embedded/embedded_log_test.h"
#include "embedded/evtx/log_file.h"

namespace corvina::test {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

constexpr DWORD Channel = EvtExportLogChannelPath;
constexpr DWORD File = EvtExportLogFilePath;
constexpr DWORD Tolerant = EvtExportLogTolerateQueryErrors;
constexpr DWORD Overwrite = EvtExportLogOverwrite;

class ExportTest : public EmbeddedLogTest {
  protected:
    ExportTest() {
        EXPECT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(700), 5000));
        std::vector<TestEvent> between = NumberedEvents(3);
        for (TestEvent& event : between) {
            event.Time = FirstTestTime + 15'000'000 + event.Id;  // after the second event of System
        }
        EXPECT_TRUE(Store.AddLog(L"localhost", L"Application", between));
        EXPECT_TRUE(Store.SetChannelsIni(L"localhost", "[Empty/Operational]\n"));
        fs::create_directory(Folder.Path() / "out");
    }

    // 0 or the error.
    std::uint32_t Export(LPCWSTR path, LPCWSTR query, DWORD flags, const fs::path& target) {
        return Log->EvtExportLog(nullptr, path, query, target.wstring().c_str(), flags) != FALSE ? error::Success
                                                                                                 : Log->GetLastError();
    }

    std::uint32_t Clear(LPCWSTR channel, LPCWSTR backup = nullptr, DWORD flags = 0) {
        return Log->EvtClearLog(nullptr, channel, backup, flags) != FALSE ? error::Success : Log->GetLastError();
    }

    Texts XmlOf(const EvtHandle& query) {
        Texts texts;
        for (const EvtHandle& event : Events(query)) {
            DWORD used = 0;
            DWORD count = 0;
            Log->EvtRender(nullptr, event.Get(), EvtRenderEventXml, 0, nullptr, &used, &count);
            std::wstring text(used / sizeof(wchar_t), L'\0');
            EXPECT_TRUE(Log->EvtRender(nullptr, event.Get(), EvtRenderEventXml, used, text.data(), &used, &count));
            texts.push_back(text);
        }
        return texts;
    }

    Texts XmlOfFile(const fs::path& file) { return XmlOf(Query(file.wstring(), nullptr, EvtQueryFilePath)); }

    fs::path Target(const char* name = "target.evtx") const { return Folder.Path() / "out" / name; }
    fs::path SystemFile() const { return Store.LogPath(L"localhost", L"System"); }

    static std::string BytesOf(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    static std::size_t FileCount(const fs::path& folder) {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }

    static std::shared_ptr<const evtx::LogFile> Opened(const fs::path& path) {
        std::uint32_t error = 0;
        return evtx::LogFile::Open(path, error);
    }
};

TEST_F(ExportTest, WritesWhatAQueryFindsOldestFirst) {
    const Texts system = XmlOf(Query(L"System"));
    ASSERT_EQ(Export(L"System", nullptr, Channel, Target()), 0U);
    EXPECT_EQ(XmlOfFile(Target()), system);
    const auto exported = Opened(Target());
    EXPECT_EQ(exported->OldestRecordId(), 1U);
    EXPECT_EQ(exported->Header().NextRecordId, 701U);
    EXPECT_TRUE(exported->Header().ChecksumValid);
    // Events are found by the record identifiers of their own log.
    EXPECT_EQ(EventIds(Query(Target().wstring(), L"*[System[EventRecordID=5006]]", EvtQueryFilePath)),
              std::vector<std::uint16_t>{7});

    ASSERT_EQ(Export(SystemFile().wstring().c_str(), L"*[System[EventID=3 or EventID=699]]", File, Target("some.evtx")),
              0U);
    EXPECT_EQ(XmlOfFile(Target("some.evtx")), (Texts{system[2], system[698]}));
    ASSERT_EQ(Export(nullptr,
                     L"<QueryList><Query Id=\"0\" Path =\"Application\"><Select Path=\"Application\">*</Select>"
                     L"<Select Path=\"System\">*[System[EventID&lt;=3]]</Select></Query></QueryList>",
                     Channel, Target("merged.evtx")),
              0U);
    EXPECT_EQ(EventIds(Query(Target("merged.evtx").wstring(), nullptr, EvtQueryFilePath)),
              (std::vector<std::uint16_t>{1, 2, 1, 2, 3, 3}));
    for (const auto& [path, query] : {std::pair<LPCWSTR, LPCWSTR>(nullptr, L"<QueryList></QueryList>"),
                                      {L"Empty/Operational", nullptr},
                                      {L"System", L"*[System[EventID=9999]]"}}) {
        ASSERT_EQ(Export(path, query, Channel | Overwrite, Target("none.evtx")), 0U);
        EXPECT_EQ(Opened(Target("none.evtx"))->RecordCount(), 0U);
    }
}

TEST_F(ExportTest, AnExportOfAnExportIsTheSame) {
    ASSERT_EQ(Export(L"System", nullptr, Channel, Target("first.evtx")), 0U);
    const std::string first = BytesOf(Target("first.evtx"));
    ASSERT_EQ(Export(Target("first.evtx").wstring().c_str(), nullptr, File, Target("second.evtx")), 0U);
    EXPECT_TRUE(BytesOf(Target("second.evtx")) == first);
    // Even over itself, while a query on it is open.
    const EvtHandle open = Query(Target("first.evtx").wstring(), nullptr, EvtQueryFilePath);
    ASSERT_EQ(Export(Target("first.evtx").wstring().c_str(), L"*[System[EventID>698]]", File | Overwrite,
                     Target("first.evtx")),
              0U);
    EXPECT_EQ(XmlOfFile(Target("first.evtx")).size(), 2U);
    EXPECT_EQ(Events(open).size(), 700U);
}

TEST_F(ExportTest, RefusedExportsLeaveEverythingAsItWas) {
    std::ofstream(Target("old.evtx")) << "old";
    const wchar_t* const unknown =
        L"<QueryList><Query><Select Path='Unknown'>*</Select><Select Path='System'>"
        L"*[System[EventID=1]]</Select></Query></QueryList>";
    const std::wstring noLog = (Store.Folder() / "localhost" / "channels.ini").wstring();
    struct Case {
        std::uint32_t Error;
        LPCWSTR Path;
        LPCWSTR Query;
        DWORD Flags;
        fs::path Target;
    };
    const Case cases[] = {
        {error::FileExists, L"System", nullptr, Channel, Target("old.evtx")},
        {error::FileExists, L"Empty/Operational", nullptr, Channel, Target("old.evtx")},
        {error::PathNotFound, L"System", nullptr, Channel, Folder.Path() / "missing" / "new.evtx"},
        {error::AccessDenied, L"System", nullptr, Channel | Overwrite, Folder.Path() / "out"},
        {error::InvalidQuery, L"System", L"*[", Channel, Target("new.evtx")},
        {error::InvalidQuery, nullptr, L"<QueryList>", Channel | Tolerant, Target("new.evtx")},
        {error::ChannelNotFound, L"Unknown", nullptr, Channel, Target("new.evtx")},
        {error::ChannelNotFound, nullptr, unknown, Channel, Target("new.evtx")},
        {error::FileNotFound, L"nowhere.evtx", nullptr, File, Target("new.evtx")},
        {error::EventLogFileCorrupt, noLog.c_str(), nullptr, File, Target("new.evtx")},
        {error::InvalidParameter, L"System", nullptr, 0, Target("new.evtx")},
        {error::InvalidParameter, L"System", nullptr, Channel | File, Target("new.evtx")},
        {error::InvalidParameter, L"System", nullptr, Channel | 0x100, Target("new.evtx")},
        {error::InvalidParameter, L"System", nullptr, Channel, fs::path()},
        {error::InvalidParameter, nullptr, nullptr, Channel, Target("new.evtx")},
    };
    for (const Case& refused : cases) {
        EXPECT_EQ(Export(refused.Path, refused.Query, refused.Flags, refused.Target), refused.Error)
            << refused.Flags << " " << refused.Target;
        EXPECT_EQ(BytesOf(Target("old.evtx")), "old");
        EXPECT_EQ(FileCount(Folder.Path() / "out"), 1U);
    }
    ASSERT_EQ(Export(nullptr, unknown, Channel | Tolerant, Target("new.evtx")), 0U);
    EXPECT_EQ(XmlOfFile(Target("new.evtx")).size(), 1U);
    ASSERT_EQ(Export(L"System", nullptr, Channel | Overwrite, Target("old.evtx")), 0U);
    EXPECT_EQ(XmlOfFile(Target("old.evtx")).size(), 700U);
}

TEST_F(ExportTest, AClearedLogIsEmptyAndGoesOnCounting) {
    const Texts before = XmlOf(Query(L"System"));
    {
        const EvtHandle open = Query(L"System", nullptr, EvtQueryChannelPath | EvtQueryReverseDirection);
        ASSERT_EQ(Clear(L"system", Target("backup.evtx").wstring().c_str()), 0U);
        EXPECT_EQ(XmlOfFile(Target("backup.evtx")), before);
        EXPECT_TRUE(Events(Query(L"System")).empty());
        EXPECT_EQ(Opened(SystemFile())->Header().NextRecordId, 5700U);
        EXPECT_EQ(Opened(SystemFile())->RecordCount(), 0U);
        // The query that was open reads the events that there were.
        Texts read = XmlOf(open);
        std::reverse(read.begin(), read.end());
        EXPECT_EQ(read, before);
    }

    EXPECT_EQ(Clear(L"System"), 0U);
    EXPECT_EQ(Opened(SystemFile())->Header().NextRecordId, 5700U);
    EXPECT_EQ(Clear(L"Empty/Operational", Target("empty.evtx").wstring().c_str()), 0U);
    EXPECT_FALSE(fs::exists(Store.LogPath(L"localhost", L"Empty/Operational")));
    EXPECT_EQ(Opened(Target("empty.evtx"))->RecordCount(), 0U);
    EXPECT_EQ(FileCount(Store.Folder() / "localhost"), 3U);
}

TEST_F(ExportTest, ALogThatCannotBeClearedStays) {
    const std::string before = BytesOf(SystemFile());
    const std::wstring backup = Target("backup.evtx").wstring();
    std::ofstream(Target("old.evtx")) << "old";
    EXPECT_EQ(Clear(L"System", Target("old.evtx").wstring().c_str()), error::FileExists);
    EXPECT_EQ(Clear(L"System", SystemFile().wstring().c_str()), error::FileExists);
    EXPECT_EQ(Clear(L"System", (Folder.Path() / "missing" / "b.evtx").wstring().c_str()), error::PathNotFound);
    EXPECT_EQ(Clear(L"System", backup.c_str(), 1), error::InvalidParameter);
    EXPECT_EQ(Clear(nullptr), error::InvalidParameter);
    EXPECT_EQ(Clear(L"Unknown"), error::ChannelNotFound);
    fs::permissions(SystemFile(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(Clear(L"System", backup.c_str()), error::AccessDenied);
    fs::permissions(SystemFile(), fs::perms::owner_all);
    EXPECT_FALSE(fs::exists(backup));
    EXPECT_TRUE(BytesOf(SystemFile()) == before);
    EXPECT_EQ(FileCount(Store.Folder() / "localhost"), 3U);

    // What is no log any more can only be cleared without a backup.
    ASSERT_TRUE(WriteTextFile(SystemFile(), "no log"));
    EXPECT_EQ(Clear(L"System", backup.c_str()), error::EventLogFileCorrupt);
    EXPECT_EQ(BytesOf(SystemFile()), "no log");
    EXPECT_EQ(Clear(L"System"), 0U);
    EXPECT_EQ(Opened(SystemFile())->Header().NextRecordId, 1U);
    EXPECT_FALSE(fs::exists(backup));
}

// A header that was not kept up to date does not take the numbers back.
TEST_F(ExportTest, NumbersGoOnBehindTheRecordsOfADirtyLog) {
    std::string bytes = BytesOf(SystemFile());
    bytes[24] = '\1';
    std::ofstream(SystemFile(), std::ios::binary) << bytes;
    ASSERT_EQ(Clear(L"System"), 0U);
    EXPECT_EQ(Opened(SystemFile())->Header().NextRecordId, 5700U);
}

TEST_F(ExportTest, AReplacedLogIsNoticedWhateverItsSizeAndTime) {
    const EvtHandle open = Query(L"System");
    const auto time = fs::last_write_time(SystemFile());
    const auto size = fs::file_size(SystemFile());
    ASSERT_TRUE(Store.AddLog(L"localhost", L"System", NumberedEvents(700), 8000));
    ASSERT_EQ(fs::file_size(SystemFile()), size);
    fs::last_write_time(SystemFile(), time);
    EXPECT_EQ(Events(Query(L"System", L"*[System[EventRecordID=8001]]")).size(), 1U);
    EXPECT_EQ(Events(open).size(), 700U);
}

#ifndef _WIN32
// Every file that this process writes ends at a limit, as on a full disk.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit before_{};
    void (*handler_)(int);
};

TEST_F(ExportTest, AFullDiskLeavesEverythingAsItWas) {
    constexpr std::uint32_t DiskFull = 112;
    std::ofstream(Target("old.evtx")) << "old";
    const std::string before = BytesOf(SystemFile());
    for (const rlim_t limit : {0, 1, 4095, 4096, 5000, 65536 + 4096 - 1, 65536 + 4096, 100'000}) {
        const FileSizeLimit limited(limit);
        EXPECT_EQ(Export(L"System", nullptr, Channel | Overwrite, Target("old.evtx")), DiskFull) << limit;
        EXPECT_EQ(Export(L"System", nullptr, Channel, Target("new.evtx")), DiskFull);
        EXPECT_EQ(Clear(L"System", Target("new.evtx").wstring().c_str()), DiskFull);
        if (limit < 65536 + 4096) {
            EXPECT_EQ(Clear(L"System"), DiskFull);
        }
        EXPECT_EQ(BytesOf(Target("old.evtx")), "old");
        EXPECT_TRUE(BytesOf(SystemFile()) == before);
        EXPECT_EQ(FileCount(Folder.Path() / "out"), 1U);
        EXPECT_EQ(FileCount(Store.Folder() / "localhost"), 3U);
    }
}
#endif

}  // namespace
}  // namespace corvina::test
