// The views of the event list, the log tree and the details pane without a screen: they hold what they are shown.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "details/details_pane_view.h"
#include "details/details_window_view.h"
#include "eventlog/load_view.h"
#include "eventlog/log_tree.h"

namespace corvina::test {

class RecordingLoadView final : public LoadView {
  public:
    void LockUpdates() override {
        ++Locks;
        WasLockedTwice = WasLockedTwice || Locks > 1;
    }
    void UnlockUpdates() override { --Locks; }
    void SetListCaption(std::wstring_view text) override { ListCaption = text; }
    void SetStatusText(std::wstring_view text) override { StatusTexts.emplace_back(text); }
    void ClearList() override {
        ++Clears;
        RowCount = 0;
        SelectedRows.clear();
    }
    void SetRowCount(std::size_t count) override {
        ++RowCountsSet;
        RowCount = count;
    }
    void SelectRow(std::size_t row) override {
        SelectedRows.push_back(row);
        if (OnSelectRow) {
            OnSelectRow(row);
        }
    }

    int Locks = 0;  // 0 when every lock has been undone
    bool WasLockedTwice = false;
    std::wstring ListCaption;
    std::vector<std::wstring> StatusTexts;
    int Clears = 0;
    std::size_t RowCount = 0;
    int RowCountsSet = 0;
    std::vector<std::size_t> SelectedRows;         // since the list was last emptied
    std::function<void(std::size_t)> OnSelectRow;  // what the list's notification does
};

class RecordingTreeView final : public LogTreeView {
  public:
    void NodeInserted(const LogTreeNode& node) override { Captions[node.Id] = node.Caption; }
    void NodeCaptionChanged(const LogTreeNode& node) override { Captions[node.Id] = node.Caption; }
    void NodeRemoved(NodeId node) override { Captions.erase(node); }
    void NodeExpanded(NodeId node) override { Expanded.push_back(node); }
    void NodeSelected(NodeId node) override { Selected = node; }
    void TreeCleared() override { Captions.clear(); }

    std::map<NodeId, std::wstring> Captions;  // without those that went with a removed parent
    std::vector<NodeId> Expanded;
    NodeId Selected = NodeId::None;
};

class RecordingDetailsPane final : public DetailsPaneView {
  public:
    void ShowDetails(std::wstring_view leftProperties, std::wstring_view rightProperties, std::wstring_view description,
                     std::wstring_view xml) override {
        ++Shown;
        Left = leftProperties;
        Right = rightProperties;
        Description = description;
        Xml = xml;
    }

    int Shown = 0;
    std::wstring Left;
    std::wstring Right;
    std::wstring Description;
    std::wstring Xml;
};

// The window of one event. While it is open the test plays the user.
class RecordingDetailsWindow final : public DetailsWindowView {
  public:
    void Run(DetailsWindowEvents& events, SettingsStore&) override {
        ++Runs;
        events.Opened();
        if (WhileOpen) {
            WhileOpen(events);
        }
    }

    void SetTexts(const DetailsWindowTexts& texts) override {
        Captions = {std::wstring(texts.General), std::wstring(texts.Details), std::wstring(texts.Previous),
                    std::wstring(texts.Next)};
    }
    void SetTitle(std::wstring_view title) override { Title = title; }
    void ShowProperties(std::wstring_view left, std::wstring_view right) override {
        Left = left;
        Right = right;
    }
    void ShowDescription(std::wstring_view description) override { Description = description; }
    void ShowXml(std::wstring_view xml) override { Xml = xml; }
    void ShowTab(DetailsTab tab) override { Tab = tab; }
    void ShowArrows(bool previous, bool next) override {
        HasPrevious = previous;
        HasNext = next;
    }
    void FocusDescription() override { IsDescriptionFocused = true; }

    std::function<void(DetailsWindowEvents&)> WhileOpen;
    int Runs = 0;
    std::vector<std::wstring> Captions;
    std::wstring Title;
    std::wstring Left;
    std::wstring Right;
    std::wstring Description;
    std::wstring Xml;
    DetailsTab Tab = DetailsTab::None;
    bool HasPrevious = false;
    bool HasNext = false;
    bool IsDescriptionFocused = false;
};

}  // namespace corvina::test
