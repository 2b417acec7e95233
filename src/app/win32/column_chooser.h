// The dialog that chooses the columns of the event list.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "app/main_window_view.h"
#include "i18n/language.h"
#include "ui/win32/common_controls.h"
#include "ui/win32/dialog.h"

namespace corvina {

class ColumnChooser : private ui::Dialog {
  public:
    explicit ColumnChooser(const i18n::Language& language) : language_(language) {}

    // Shows the dialog over `owner`. The answer has one flag a column; none when cancelled.
    std::optional<std::vector<bool>> Choose(HWND owner, HINSTANCE instance, Theme& scheme,
                                            std::span<const ListColumn> columns, const std::vector<bool>& visible);

  private:
    void CreateControls() override;
    void Layout(int width, int height) override;
    void CommandReceived(int identifier, UINT code) override;
    std::optional<LRESULT> NotificationReceived(const NMHDR& notification, LPARAM lParam) override;
    void ContextMenuRequested(HWND control, POINT place) override;

    void FillList();
    bool IsChecked(std::size_t column) const;
    void Check(std::size_t column, bool checked);
    void CheckAll();
    void InvertAll();
    void EnableApply();

    const i18n::Language& language_;
    std::span<const ListColumn> columns_;
    std::vector<bool> visible_;
    HWND list_ = nullptr;
    bool isFilled_ = false;
};

}  // namespace corvina
