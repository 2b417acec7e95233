// The queries of stored filters, out of the files that the settings name.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "eventlog/stored_queries.h"
#include "eventlog/system_error_report.h"
#include "i18n/language.h"
#include "platform/locale_services.h"
#include "platform/prompts.h"
#include "query/stored_filter_folder.h"

namespace corvina {

class StoredFilterQueries final : public StoredQueries {
  public:
    struct Parts {
        std::wstring Folder;  // with the files
        const LocaleServices& Locale;
        const SystemErrorReport& Errors;
        Prompts& Boxes;
        const i18n::Language& Language;
    };

    explicit StoredFilterQueries(const Parts& parts) : parts_(parts), files_(parts.Folder, parts.Locale) {}

    // A value is the name of a file. One that begins with "<" is a query itself, from before filters had files or
    // written by hand. Failures are shown with the file and the place in it.
    std::optional<std::wstring> QueryOf(std::wstring_view settingValue, std::wstring_view channelPath) override;

  private:
    void ShowFault(const StoredFilterFault& fault, std::wstring_view fileName, std::wstring_view channelPath) const;

    Parts parts_;
    StoredFilterFolder files_;
};

}  // namespace corvina
