// A main window without a screen: it holds what it is told, answers from its fields, and notes every call in a journal
// that it can share with other doubles, so that a test sees the order across all of them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/main_window_view.h"

namespace corvina::test {

using Journal = std::vector<std::wstring>;

class RecordingMainWindow : public MainWindowView {
  public:
    explicit RecordingMainWindow(Journal& journal) : journal_(journal) {}

    void InitializeCom() override { journal_.push_back(L"InitializeCom"); }
    void CreateToolTip() override { journal_.push_back(L"CreateToolTip"); }
    void CreateControls() override { journal_.push_back(L"CreateControls"); }
    void SetTexts() override { journal_.push_back(L"SetTexts"); }
    void SetTitle(std::wstring_view text) override { Title = text; }
    void SetVersionText(std::wstring_view text) override {
        journal_.push_back(L"SetVersionText");
        VersionText = text;
    }

    void SetListColumns(std::span<const ListColumn> columns) override {
        journal_.push_back(L"SetListColumns");
        Columns.assign(columns.begin(), columns.end());
    }
    std::optional<int> ListColumnWidth(std::size_t position) const override {
        return position < Columns.size() ? std::optional(Columns[position].Width) : std::nullopt;
    }
    void SetGridLines(bool on) override {
        journal_.push_back(L"SetGridLines");
        GridLines = on;
    }
    bool IsRowSelected(std::size_t row) const override {
        for (const std::size_t selected : Selection) {
            if (selected == row) {
                return true;
            }
        }
        return false;
    }
    std::vector<std::size_t> SelectedRows() const override { return Selection; }
    std::optional<std::size_t> SelectedRow() const override {
        return Selection.empty() ? std::nullopt : std::optional(Selection.front());
    }

    WindowPlacement Placement() const override { return Place; }
    void MoveTo(const WindowPlace& rectangle) override {
        journal_.push_back(L"MoveTo");
        Place = {WindowState::Normal, rectangle};
    }
    void Maximize() override {
        journal_.push_back(L"Maximize");
        Place.State = WindowState::Maximized;
    }
    int VerticalSplitter() const override { return Vertical; }
    int HorizontalSplitter() const override { return Horizontal; }
    void SetSplitters(int vertical, int horizontal) override {
        journal_.push_back(L"SetSplitters");
        Vertical = vertical;
        Horizontal = horizontal;
    }

    void Focus(FocusStation station) override {
        journal_.push_back(L"Focus");
        Focused = station;
    }
    std::optional<FocusStation> FocusedStation() const override { return Focused; }

    void ApplyTheme() override { journal_.push_back(L"ApplyTheme"); }
    void Repaint() override { journal_.push_back(L"Repaint"); }

    std::optional<std::vector<bool>> ChooseColumns(std::span<const ListColumn> columns,
                                                   const std::vector<bool>& visible) override {
        OfferedColumns.assign(columns.begin(), columns.end());
        OfferedVisible = visible;
        return ChosenColumns;
    }

    std::optional<OptionValues> EditOptions(const OptionOffer& offer) override {
        OfferedOptions = offer;
        return ChosenOptions;
    }
    void ShowAbout(const AboutTexts& texts) override { About = texts; }
    void RequestClose() override { journal_.push_back(L"RequestClose"); }

    std::wstring Title;
    std::wstring VersionText;
    std::vector<ListColumn> Columns;  // what the control shows; a test widens a column here
    bool GridLines = false;
    std::vector<std::size_t> Selection;  // ascending
    WindowPlacement Place;
    int Vertical = 0;
    int Horizontal = 0;
    std::optional<FocusStation> Focused;
    std::vector<ListColumn> OfferedColumns;
    std::vector<bool> OfferedVisible;
    std::optional<std::vector<bool>> ChosenColumns;  // the answer to ChooseColumns
    OptionOffer OfferedOptions;
    std::optional<OptionValues> ChosenOptions;  // the answer to EditOptions
    AboutTexts About;

  private:
    Journal& journal_;
};

}  // namespace corvina::test
