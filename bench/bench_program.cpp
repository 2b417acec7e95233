#include "bench_program.h"

#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "embedded/samples/sample_store.h"
#include "eventlog/log_tree_builder.h"

namespace corvina::bench {
namespace {

namespace files = std::filesystem;

constexpr std::uint64_t Seed = 1;
// Enough for the store's other files; its System log is then written anew at the length that is wanted.
constexpr std::uint64_t EventsOfSmallStore = 1000;

[[noreturn]] void Fail(const files::path& folder, const char* what) {
    std::fprintf(stderr, "%s: %s\n", folder.string().c_str(), what);
    std::exit(1);
}

void MakeStore(const files::path& folder, std::uint64_t events) {
    // Made under another name first, so that an interrupted run leaves nothing that looks complete.
    const files::path unfinished = folder.string() + ".unfinished";
    std::error_code failure;
    files::remove_all(unfinished, failure);
    files::create_directories(folder.parent_path(), failure);
    std::wstring problem;
    if (!samples::WriteSampleStore(unfinished, {EventsOfSmallStore, 1, Seed}, problem)) {
        Fail(unfinished, "the sample store cannot be written");
    }
    if (samples::WriteSampleLog(unfinished / "localhost" / "System.evtx", L"System", events, Seed) != 0) {
        Fail(unfinished, "the log cannot be written");
    }
    files::rename(unfinished, folder, failure);
    if (failure) {
        Fail(folder, failure.message().c_str());
    }
}

}  // namespace

std::filesystem::path StoreWithEvents(std::uint64_t events) {
    const files::path folder = files::path(CORVINA_BENCH_FOLDER) / ("store-" + std::to_string(events));
    std::error_code ignored;
    if (!files::exists(folder, ignored)) {
        MakeStore(folder, events);
    }
    return folder;
}

std::filesystem::path ExportWithEvents(std::uint64_t events) {
    const files::path file = files::path(CORVINA_BENCH_FOLDER) / ("export-" + std::to_string(events) + ".evtx");
    std::error_code ignored;
    if (!files::exists(file, ignored)) {
        embedded::EmbeddedEventLog log(StoreWithEvents(events), L"BENCH");
        if (!log.EvtExportLog(nullptr, L"System", L"*[System[EventRecordID > 1]]", file.wstring().c_str(),
                              EvtExportLogChannelPath)) {
            Fail(file, "the export cannot be written");
        }
    }
    return file;
}

VisibleColumns DefaultColumns() {
    return VisibleColumns(0b111111);
}

VisibleColumns AllColumns() {
    return VisibleColumns().set();
}

BenchProgram::BenchProgram(const std::filesystem::path& store, const VisibleColumns& columns) {
    logs_ = std::make_unique<LogObjects>(std::make_unique<embedded::EmbeddedEventLog>(store, system_.Computer),
                                         LogSurroundings{ports_, views_, language_, settings_, rows_, tree_, L"XML"});
    rows_.Reset(columns);
    logs_->Loader.SetVisibleColumns(columns);
    logs_->Builder.BuildLocalTree(system_.Computer);
    systemLog_ = tree_.FindByPath(L"Windows Logs/System");
    if (systemLog_ == NodeId::None) {
        Fail(store, "there is no System log");
    }
}

void BenchProgram::LoadSystemLog() {
    tree_.Select(systemLog_);
    logs_->Selection.NodeSelected(systemLog_);
}

void BenchProgram::LoadSavedLog(const std::filesystem::path& file) {
    settings_.Set(SavedLogsSection, L"Saved", file.wstring());
    system_.Files = {file.wstring()};
    logs_->Builder.AddSavedLogNode(0, L"Saved");
    const NodeId node = tree_.FindByPath(L"Saved Logs/Saved");
    tree_.Select(node);
    logs_->Selection.NodeSelected(node);
}

const std::wstring& BenchProgram::ShowDetails(std::size_t row) {
    logs_->Pane.ShowRow(row);
    return logs_->Pane.Texts().Xml;
}

void BenchProgram::StopAtFirstPage() {
    pump_.OnDispatch = [this] { logs_->Loader.StopLoading(); };
}

}  // namespace corvina::bench
