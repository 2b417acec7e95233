// The folder with the files of stored filters and custom views. Settings name a filter by the name of its file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/locale_services.h"
#include "query/stored_filter.h"

namespace corvina {

class StoredFilterFolder {
  public:
    // The folder need not exist before something is saved. Names of files are compared by the rules of `locale`.
    StoredFilterFolder(std::wstring_view folder, const LocaleServices& locale);

    // Reads the file of that name. A name that means anything but a plain file of the folder is refused unlooked.
    std::optional<StoredFilter> Load(std::wstring_view fileName, StoredFilterFault& fault) const;

    // Writes a filter and returns the name of its file, none when that failed. `fileName` is where it was kept before,
    // empty for a new filter. A file that is there and cannot be read stays as it is for its owner to see to, and the
    // filter gets a new file, as it does when `fileName` is no plain file name. New files are called after the filter
    // and never replace another.
    std::optional<std::wstring> Save(const StoredFilter& filter, std::wstring_view fileName,
                                     StoredFilterFault& fault) const;

  private:
    std::optional<std::string> ReadBytes(std::wstring_view fileName, StoredFilterFault& fault) const;
    std::optional<std::wstring> SaveAsNew(const StoredFilter& filter, StoredFilterFault& fault) const;
    std::filesystem::path PathOf(std::wstring_view fileName) const;

    std::filesystem::path folder_;
    const LocaleServices& locale_;
};

}  // namespace corvina
