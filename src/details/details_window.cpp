#include "details/details_window.h"

#include "base/format_text.h"

namespace corvina {
namespace {

constexpr int UnknownEventSlot = 17;
constexpr int PropertiesSlot = 76;
constexpr int EventIdSlot = 83;
constexpr int RecordIdSlot = 90;
constexpr int GeneralSlot = 98;
constexpr int DetailsSlot = 99;
constexpr int PreviousSlot = 102;
constexpr int NextSlot = 103;

std::wstring WithLineBreaksOfFiles(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size() + text.size() / 16);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isAlone = text[i] == L'\n' && (i == 0 || text[i - 1] != L'\r');
        result += isAlone ? L"\r\n" : std::wstring_view(text.substr(i, 1));
    }
    return result;
}

}  // namespace

void DetailsWindow::Open() {
    if (isOpen_) {
        return;
    }
    isOpen_ = true;
    parts_.View.Run(*this, parts_.Settings);
    isOpen_ = false;
    tab_ = DetailsTab::None;
}

void DetailsWindow::Opened() {
    const i18n::Language& language = parts_.Language;
    parts_.View.SetTexts({.General = language.Text(GeneralSlot),
                          .Details = language.Text(DetailsSlot),
                          .Previous = language.Text(PreviousSlot),
                          .Next = language.Text(NextSlot)});
    TabChosen(DetailsTab::General);
    Fill();
    parts_.View.FocusDescription();
}

void DetailsWindow::TabChosen(DetailsTab tab) {
    tab_ = tab;
    parts_.View.ShowTab(tab);
}

void DetailsWindow::PreviousRequested() {
    const auto row = parts_.Selection.SelectedRow();
    if (row && *row > 0 && *row < parts_.Rows.Size()) {
        parts_.Selection.SelectOnly(*row - 1);
        Fill();
    }
}

void DetailsWindow::NextRequested() {
    const auto row = parts_.Selection.SelectedRow();
    if (row && *row + 1 < parts_.Rows.Size()) {
        parts_.Selection.SelectOnly(*row + 1);
        Fill();
    }
}

void DetailsWindow::CopyRequested() {
    parts_.Copies.PutText(CopiedText());
}

std::wstring DetailsWindow::CopiedText() const {
    if (tab_ != DetailsTab::None) {
        return WithLineBreaksOfFiles(parts_.Pane.ReadableXml());
    }
    const EventTexts& texts = parts_.Pane.Texts();
    return WithLineBreaksOfFiles(texts.LeftProperties + texts.RightProperties + texts.Description);
}

void DetailsWindow::Fill() {
    const auto row = parts_.Selection.SelectedRow();
    if (!row || *row >= parts_.Rows.Size()) {
        const std::wstring_view unknown = parts_.Language.Text(UnknownEventSlot);
        parts_.View.ShowProperties(unknown, unknown);
    } else {
        parts_.View.SetTitle(Title(parts_.Rows.Row(*row)));
        parts_.Pane.ShowRow(*row);
        const EventTexts& texts = parts_.Pane.Texts();
        parts_.View.ShowProperties(texts.LeftProperties, texts.RightProperties);
        parts_.View.ShowDescription(texts.Description);
        parts_.View.ShowXml(parts_.Pane.ReadableXml());
    }
    ShowArrows();
}

std::wstring DetailsWindow::Title(const EventRow& row) const {
    const i18n::Language& language = parts_.Language;
    return FormatText(L"%s - %s %s, %s, %s %I64u",
                      {language.Text(PropertiesSlot), language.Text(EventIdSlot), parts_.Rows.Text(row.EventIdText),
                       parts_.Rows.Text(row.ProviderName), language.Text(RecordIdSlot), row.RecordId});
}

void DetailsWindow::ShowArrows() {
    const auto row = parts_.Selection.SelectedRow();
    parts_.View.ShowArrows(row && *row > 0, row && *row + 1 < parts_.Rows.Size());
}

}  // namespace corvina
