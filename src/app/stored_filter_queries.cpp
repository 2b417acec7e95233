#include "app/stored_filter_queries.h"

#include "base/format_text.h"
#include "platform/error_codes.h"

namespace corvina {
namespace {

constexpr int ErrorTitle = 11;

}  // namespace

std::optional<std::wstring> StoredFilterQueries::QueryOf(std::wstring_view settingValue,
                                                         std::wstring_view channelPath) {
    if (settingValue.starts_with(L'<')) {
        return std::wstring(settingValue);
    }
    StoredFilterFault fault;
    std::wstring query;
    if (const std::optional<StoredFilter> filter = files_.Load(settingValue, fault)) {
        query = filter->Query;
        fault.Text = L"the filter has no query";
    }
    if (query.empty()) {
        ShowFault(fault, settingValue, channelPath);
        return std::nullopt;
    }
    return query;
}

void StoredFilterQueries::ShowFault(const StoredFilterFault& fault, std::wstring_view fileName,
                                    std::wstring_view channelPath) const {
    const std::wstring_view title = parts_.Language.Text(ErrorTitle);
    const std::wstring lead =
        FormatText(L"The stored filter of %s cannot be used.\r\n\r\n%s\\%s", {channelPath, parts_.Folder, fileName});
    if (fault.ErrorCode != error::Success) {
        parts_.Errors.ShowSystemError(fault.ErrorCode, lead, title);
        return;
    }
    const std::wstring place = fault.Line == 0 ? std::wstring() : FormatText(L"Line %I64u: ", {fault.Line});
    parts_.Boxes.ShowError(lead + L"\r\n" + place + fault.Text, title);
}

}  // namespace corvina
