#include "app/application.h"

#include <algorithm>
#include <utility>

#include "app/application_state.h"
#include "app/channel_state.h"
#include "app/command_ids.h"
#include "app/focus_ring.h"
#include "app/node_path.h"
#include "app/option_changes.h"
#include "app/saved_logs.h"
#include "app/start_up.h"
#include "base/format_text.h"
#include "details/copied_details.h"
#include "platform/setting_text.h"

namespace corvina {
namespace {

constexpr int SavedLogFilterSlot = 10;
constexpr int InformationSlot = 13;
constexpr int AboutSlot = 44;
constexpr int CloseSlot = 56;
constexpr int RemoveItemSlot = 195;

constexpr std::wstring_view License =
    L"Copyright \x00A9 2026 The Corvina developers\r\n\r\n"
    L"Released under the MIT License: free to use, copy, change and pass on, as long as this notice goes with it. It "
    L"comes without any warranty.";

}  // namespace

Application::Application(Ports& ports, Views views) : state_(std::make_unique<State>(ports, views)) {}

Application::~Application() = default;

void Application::Create() {
    StartUp(*state_).Run();
    SelectNamedNode();
    // Scripts that start the program wait for this line, so nothing may come after it.
    state_->System.Debug.Write(L"Corvina is ready\n");
}

void Application::SelectNamedNode() {
    const std::wstring path = state_->Settings->ReadSetting(L"EventStore", L"Select", L"");
    if (path.empty()) {
        return;
    }
    const NodeId node = state_->Tree.FindByPath(NodePathInLanguage(path, state_->Language));
    if (node == NodeId::None) {
        state_->System.Debug.Write(FormatText(L"No node %s to select\n", {path}));
        return;
    }
    SelectNode(node);
}

void Application::Close() {
    if (state_->Logs) {
        state_->Logs->Session.Close();
    }
    if (state_->IsStarted) {
        SaveMainSettings(*state_->Settings, state_->Columns, state_->Shown.Window);
    }
}

void Application::TreeSelectionChanged(NodeId node) {
    state_->Tree.SelectionChangedByUser(node);
    LoadNode(node);
}

const LogTree& Application::Tree() const {
    return state_->Tree;
}

std::wstring_view Application::CellText(std::size_t row, std::size_t position) const {
    const RowStore& rows = state_->Rows;
    if (rows.Columns() == state_->Columns.Visible()) {
        return rows.CellText(row, position);
    }
    // The columns have just been chosen anew and the rows are still those of the view before.
    const std::optional<Column> column = state_->Columns.ColumnAt(position);
    if (!column || row >= rows.Size()) {
        return {};
    }
    return rows.Text(rows.ColumnText(rows.Row(row), *column));
}

std::uint32_t Application::RowImage(std::size_t row) const {
    return row < state_->Rows.Size() ? state_->Rows.Row(row).LevelImage : 0;
}

void Application::RowSelectionChanged() {
    const std::optional<std::size_t> row = state_->Shown.Window.SelectedRow();
    if (state_->Logs && row && !state_->Logs->EventWindow.IsOpen()) {
        state_->Logs->Pane.ShowRow(*row);
    }
}

void Application::HeaderClicked(std::size_t position) {
    const std::optional<Column> column = state_->Columns.ColumnAt(position);
    if (!column) {
        return;
    }
    state_->Sort.HeaderClicked(position, *column, state_->Rows, state_->System.Locale);
    state_->Shown.Load.SetRowCount(state_->Rows.Size());
}

MenuSituation Application::Situation() const {
    MenuSituation situation;
    if (const LogTreeNode* node = state_->Tree.Find(state_->Tree.Selected())) {
        situation.SelectedNode = node->Kind;
    }
    situation.HasSelectedRows = state_->HasControls && state_->Shown.Window.SelectedRow().has_value();
    return situation;
}

std::vector<MenuEntry> Application::Menu(std::uint32_t menu) const {
    MenuSituation situation = Situation();
    if (menu == CORVINA_ID_MENU_TREE) {
        situation.IsChannelEnabled = IsSelectedChannelEnabled();
    }
    return BuildMenu(menu, state_->Language, situation);
}

bool Application::IsSelectedChannelEnabled() const {
    const LogTreeNode* node = state_->Tree.Find(state_->Tree.Selected());
    const LogTreeNode* computer = state_->Tree.Find(state_->Tree.RootOf(state_->Tree.Selected()));
    if (!state_->Logs || node == nullptr || computer == nullptr || node->Kind != NodeKind::Channel) {
        return false;
    }
    // While a load runs, the session may still be that of the computer that was selected before.
    const EventLogSession& session = state_->Logs->Session;
    if (computer->ComputerIndex != session.CurrentComputerIndex()) {
        return false;
    }
    const ChannelRecord* channel = state_->Logs->Channels.Find(computer->ComputerIndex, node->ChannelIndex);
    return channel != nullptr && IsChannelEnabled(session, channel->Path);
}

std::optional<std::uint32_t> Application::MenuOfNode(NodeId node) const {
    const LogTreeNode* found = state_->Tree.Find(node);
    return found == nullptr ? std::nullopt : MenuOfNodeKind(found->Kind);
}

void Application::Command(std::uint32_t command) {
    if (!state_->Logs || !IsCommandEnabled(command, Situation())) {
        return;
    }
    switch (command) {
        case CORVINA_ID_OPEN_SAVED_LOG:
            OpenSavedLog();
            break;
        case CORVINA_ID_CLEAR_LOG:
        case CORVINA_ID_REMOVE:
            RemoveSelectedSavedLog();
            break;
        case CORVINA_ID_REMOVE_ROWS:
            RemoveSelectedRows();
            break;
        case CORVINA_ID_COLUMNS:
            ChooseColumns();
            break;
        case CORVINA_ID_OPTIONS:
            EditOptions();
            break;
        case CORVINA_ID_ABOUT:
            ShowAbout();
            break;
        case CORVINA_ID_EVENT_PROPERTIES:
            state_->Logs->EventWindow.Open();
            break;
        case CORVINA_ID_COPY_TABLE:
            CopyTable();
            break;
        case CORVINA_ID_COPY_DETAILS:
            CopyDetails();
            break;
        default:
            break;
    }
}

bool Application::KeyReleased(const KeyRelease& key) {
    MainWindowView& window = state_->Shown.Window;
    const KeyMeaning meaning = MeaningOfKey(key, {Situation().SelectedNode, window.FocusedStation()});
    switch (meaning.Action) {
        case KeyAction::FocusNext:
        case KeyAction::FocusPrevious:
            window.Focus(NextFocusStation(window.FocusedStation(), meaning.Action == KeyAction::FocusPrevious));
            return true;
        case KeyAction::ReloadChannel:
            state_->Logs->Selection.Reload();
            ForgetLostSavedLogs();
            return true;
        case KeyAction::MenuCommand:
            Command(meaning.Command);
            return true;
        case KeyAction::None:
            break;
    }
    return false;
}

const i18n::Language& Application::CurrentLanguage() const {
    return state_->Language;
}

Theme& Application::Scheme() {
    return state_->Scheme;
}

const Palette& Application::Colors() const {
    return state_->Scheme.Colors();
}

bool Application::ColorsRowsByLevel() const {
    return state_->Values.ColorListView;
}

void Application::SelectNode(NodeId node) {
    state_->Tree.Select(node);
    LoadNode(node);
}

void Application::LoadNode(NodeId node) {
    if (!state_->Logs) {
        return;
    }
    if (const LogTreeNode* found = state_->Tree.Find(node); found != nullptr && found->Kind == NodeKind::SavedLog) {
        state_->VisitedSavedLogs.emplace_back(node, found->Key);
    }
    state_->Logs->Selection.NodeSelected(node);
    ForgetLostSavedLogs();
}

void Application::ForgetLostSavedLogs() {
    // Loading a saved log whose file is gone takes its node out of the tree, at once or, when another load was running,
    // at that load's end; the settings entry goes with the node.
    std::erase_if(state_->VisitedSavedLogs, [this](const auto& visited) {
        if (state_->Tree.Find(visited.first) != nullptr) {
            return !state_->Logs->Loader.IsLoading();
        }
        SavedLogs(*state_->Settings, state_->System.Locale).Remove(visited.second);
        return true;
    });
}

void Application::OpenSavedLog() {
    const auto path = state_->System.Boxes.ChooseFileToOpen(state_->Language.Text(SavedLogFilterSlot));
    if (!path || path->empty()) {
        return;
    }
    const std::wstring key = SavedLogs(*state_->Settings, state_->System.Locale).Add(*path);
    const LogTreeNode* computer = state_->Tree.Find(state_->Tree.RootOf(state_->Tree.Selected()));
    const std::uint32_t computerIndex = computer == nullptr ? 0 : computer->ComputerIndex;
    const ComputerNodes* nodes = state_->Logs->Builder.NodesOf(computerIndex);
    if (nodes == nullptr) {
        return;
    }
    NodeId node = state_->Tree.FindChildByCaption(nodes->SavedLogs, key);
    if (node == NodeId::None) {
        node = state_->Logs->Builder.AddSavedLogNode(computerIndex, key);
    }
    SelectNode(node);
}

void Application::RemoveSelectedSavedLog() {
    const NodeId selected = state_->Tree.Selected();
    if (!state_->System.Boxes.AskYesNo(state_->Language.Text(RemoveItemSlot), state_->Language.Text(InformationSlot))) {
        return;
    }
    // The question lets other messages through, so the node may be gone by now.
    const LogTreeNode* node = state_->Tree.Find(selected);
    if (node == nullptr) {
        return;
    }
    SavedLogs(*state_->Settings, state_->System.Locale).Remove(node->Key);
    std::erase_if(state_->VisitedSavedLogs, [selected](const auto& visited) { return visited.first == selected; });
    const NodeId folder = node->Parent;
    state_->Tree.Remove(selected);
    state_->Tree.Select(folder);
}

void Application::RemoveSelectedRows() {
    const MainWindowView& window = state_->Shown.Window;
    const std::size_t firstRemoved = window.SelectedRow().value_or(0);
    state_->Rows.EraseIf([&window](std::size_t row) { return window.IsRowSelected(row); });
    LoadView& list = state_->Shown.Load;
    // The control remembers selected places, not events: without this the next removal would take rows nobody chose.
    list.ClearList();
    list.SetRowCount(state_->Rows.Size());
    if (state_->Rows.Size() > 0) {
        list.SelectRow(std::min(firstRemoved, state_->Rows.Size() - 1));
    }
}

void Application::ChooseColumns() {
    EventListColumns& columns = state_->Columns;
    std::vector<bool> visible;
    for (const ColumnInfo& column : columns.All()) {
        visible.push_back(column.Visible);
    }
    MainWindowView& window = state_->Shown.Window;
    const auto chosen = window.ChooseColumns(columns.Choices(), visible);
    if (!chosen || *chosen == visible) {
        return;
    }
    columns.TakeWidths(window);
    columns.SetVisible(*chosen);
    window.SetListColumns(columns.Shown());
    // Texts of hidden columns are never computed, so the view must be loaded once more for those that appear.
    state_->Logs->Loader.SetVisibleColumns(columns.Visible());
    state_->Logs->Selection.RepeatLoad();
    ForgetLostSavedLogs();
}

void Application::EditOptions() {
    OptionChanges changes(*state_);
    const auto chosen = state_->Shown.Window.EditOptions(changes.Offer());
    if (!chosen) {
        return;
    }
    const OptionChanges::Outcome outcome = changes.Apply(*chosen);
    if (outcome.Restart) {
        Restart();
    } else if (outcome.OtherLanguage) {
        // Levels and other texts in the rows are those of the language in which they were loaded.
        state_->Logs->Selection.RepeatLoad();
        ForgetLostSavedLogs();
    }
}

void Application::Restart() {
    // The new process reads the settings, so they are written before it starts.
    Close();
    state_->System.System.StartProgram(state_->Folders.ExecutablePath());
    state_->Shown.Window.RequestClose();
}

void Application::ShowAbout() {
    const i18n::Language& language = state_->Language;
    state_->Shown.Window.ShowAbout({.Title = std::wstring(language.Text(AboutSlot)),
                                    .Name = L"Corvina",
                                    .Version = VersionLine(language),
                                    .License = std::wstring(License),
                                    .Close = std::wstring(language.Text(CloseSlot))});
}

void Application::CopyTable() {
    constexpr std::wstring_view CellEnd = L"    ";
    const std::size_t columns = state_->Columns.Visible().count();
    std::wstring table;
    for (const std::size_t row : state_->Shown.Window.SelectedRows()) {
        for (std::size_t position = 0; position < columns; ++position) {
            table += CellText(row, position);
            table += CellEnd;
        }
        table += L'\n';
    }
    state_->System.Copies.PutText(table);
}

void Application::CopyDetails() {
    const std::vector<std::size_t> rows = state_->Shown.Window.SelectedRows();
    state_->System.Copies.PutText(DetailsAsText(state_->Logs->RowEvents, rows));
}

}  // namespace corvina
