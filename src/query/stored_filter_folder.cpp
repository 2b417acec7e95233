#include "query/stored_filter_folder.h"

#include <algorithm>
#include <memory>
#include <set>
#include <span>
#include <system_error>

#include "base/path_text.h"
#include "platform/error_codes.h"
#include "platform/random_access_file.h"
#include "platform/replacing_file.h"
#include "query/stored_filter_name.h"

namespace corvina {
namespace {

namespace fs = std::filesystem;

// Each number is tried once, and a folder with so many filters of one name has been filled by something else.
constexpr unsigned MostFilesOfOneName = 10'000;

void SetErrorCode(std::uint32_t code, StoredFilterFault& fault) {
    fault = {};
    fault.ErrorCode = code;
}

// Returns 0 or the system's error.
std::uint32_t WriteFile(const fs::path& path, ExistingFile existing, std::string_view bytes) {
    std::uint32_t error = error::Success;
    const std::unique_ptr<ReplacingFile> file = CreateReplacingFile(path, existing, error);
    if (file == nullptr) {
        return error;
    }
    error = file->Append(bytes);
    return error == error::Success ? file->Commit() : error;
}

// What would not be read back the same, because it is too large or holds a time that does not exist, is not written.
bool CanBeRead(std::string_view bytes, const StoredFilter& filter, StoredFilterFault& fault) {
    const std::optional<StoredFilter> again = ReadStoredFilter(bytes, fault);
    if (again && *again != filter) {
        fault.Text = L"the filter holds values that a file cannot hold";
    }
    fault.Line = 0;
    return again == filter;
}

// The names of all files of a folder, looked up without regard to case: copies of the folder may come to a file system
// that knows no case.
class TakenNames {
  public:
    TakenNames(const fs::path& folder, const LocaleServices& locale) : names_(Less{&locale}) {
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
            names_.insert(TextOfPath(entry->path().filename()));
        }
    }

    bool Has(const std::wstring& name) const { return names_.contains(name); }

  private:
    struct Less {
        const LocaleServices* Locale;
        bool operator()(const std::wstring& left, const std::wstring& right) const {
            return Locale->CompareIgnoringCase(left, right) < 0;
        }
    };

    std::set<std::wstring, Less> names_;
};

}  // namespace

StoredFilterFolder::StoredFilterFolder(std::wstring_view folder, const LocaleServices& locale)
    : folder_(PathFromText(folder)), locale_(locale) {}

std::optional<StoredFilter> StoredFilterFolder::Load(std::wstring_view fileName, StoredFilterFault& fault) const {
    const std::optional<std::string> bytes = ReadBytes(fileName, fault);
    return bytes ? ReadStoredFilter(*bytes, fault) : std::nullopt;
}

std::optional<std::wstring> StoredFilterFolder::Save(const StoredFilter& filter, std::wstring_view fileName,
                                                     StoredFilterFault& fault) const {
    const std::optional<std::string> previous = ReadBytes(fileName, fault);
    if (!previous || !ReadStoredFilter(*previous, fault)) {
        return SaveAsNew(filter, fault);
    }
    const std::string bytes = WriteStoredFilter(filter, *previous);
    if (!CanBeRead(bytes, filter, fault)) {
        return std::nullopt;
    }
    SetErrorCode(WriteFile(PathOf(fileName), ExistingFile::Replace, bytes), fault);
    return fault.ErrorCode == error::Success ? std::optional<std::wstring>(fileName) : std::nullopt;
}

std::optional<std::wstring> StoredFilterFolder::SaveAsNew(const StoredFilter& filter, StoredFilterFault& fault) const {
    const std::string bytes = WriteStoredFilter(filter);
    if (!CanBeRead(bytes, filter, fault)) {
        return std::nullopt;
    }
    const TakenNames taken(folder_, locale_);
    for (unsigned number = 1; number <= MostFilesOfOneName; ++number) {
        std::wstring name = StoredFilterFileName(filter.Name, number);
        if (taken.Has(name)) {
            continue;
        }
        // A file that has appeared in the meantime is not replaced either.
        SetErrorCode(WriteFile(PathOf(name), ExistingFile::Keep, bytes), fault);
        if (fault.ErrorCode == error::Success) {
            return name;
        }
        if (fault.ErrorCode != error::FileExists) {
            return std::nullopt;
        }
    }
    SetErrorCode(error::FileExists, fault);
    return std::nullopt;
}

std::optional<std::string> StoredFilterFolder::ReadBytes(std::wstring_view fileName, StoredFilterFault& fault) const {
    fault = {};
    if (!IsPlainFileName(fileName)) {
        fault.Text = L"this is not the name of a file in the folder of stored filters";
        return std::nullopt;
    }
    const std::unique_ptr<RandomAccessFile> file = OpenRandomAccessFile(PathOf(fileName), fault.ErrorCode);
    if (file == nullptr) {
        return std::nullopt;
    }
    // One byte more than is read makes a file too large.
    std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(file->Size(), MaximumStoredFilterSize + 1)),
                      '\0');
    if (file->ReadAt(0, std::as_writable_bytes(std::span(bytes))) != bytes.size()) {
        SetErrorCode(error::DeviceError, fault);
        return std::nullopt;
    }
    return bytes;
}

fs::path StoredFilterFolder::PathOf(std::wstring_view fileName) const {
    return folder_ / PathFromText(fileName);
}

}  // namespace corvina
