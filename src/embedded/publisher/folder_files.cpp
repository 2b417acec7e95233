#include "embedded/publisher/folder_files.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "base/path_text.h"

namespace corvina::publisher {

namespace {

constexpr std::size_t MostFiles = 10'000;  // of one folder
constexpr std::size_t MostLanguages = 64;
constexpr std::wstring_view English = L"en-us";
constexpr std::wstring_view LanguageFileEnding = L".mui";
constexpr std::array<std::wstring_view, 6> ProgramEndings = {L".dll", L".exe", L".sys", L".drv", L".ocx", L".cpl"};

bool IsProgramName(std::wstring_view lowerCaseName) {
    return std::any_of(ProgramEndings.begin(), ProgramEndings.end(),
                       [lowerCaseName](std::wstring_view ending) { return lowerCaseName.ends_with(ending); });
}

// "de", "en-us", "sr-latn-rs".
bool IsLanguageName(std::wstring_view lowerCaseName) {
    const std::size_t length = std::min(lowerCaseName.find(L'-'), lowerCaseName.size());
    return (length == 2 || length == 3) && std::all_of(lowerCaseName.begin(), lowerCaseName.end(), [](wchar_t letter) {
               return (letter >= L'a' && letter <= L'z') || (letter >= L'0' && letter <= L'9') || letter == L'-';
           });
}

// Calls `use` with the entries of a folder; ends without a word where it cannot be read.
template <typename Use>
void ForEachEntry(const std::filesystem::path& folder, Use use) {
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        use(*entry);
        entry.increment(error);
    }
}

bool IsFile(const std::filesystem::directory_entry& entry) {
    std::error_code error;
    return entry.is_regular_file(error);
}

std::wstring LowerCaseNameOf(const std::filesystem::path& path) {
    return LowerCaseName(TextOfPath(path.filename()));
}

}  // namespace

std::wstring LowerCaseName(std::wstring_view name) {
    std::wstring lower(name);
    for (wchar_t& character : lower) {
        character =
            character >= L'A' && character <= L'Z' ? static_cast<wchar_t>(character + (L'a' - L'A')) : character;
    }
    return lower;
}

std::wstring_view FileNameOf(std::wstring_view path) {
    const std::size_t separator = path.find_last_of(L"\\/");
    return separator == std::wstring_view::npos ? path : path.substr(separator + 1);
}

FolderFiles::FolderFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> folders;
    ForEachEntry(folder, [&](const std::filesystem::directory_entry& entry) {
        std::error_code error;
        if (IsFile(entry)) {
            AddFile(entry.path());
        } else if (entry.is_directory(error) && IsLanguageName(LowerCaseNameOf(entry.path()))) {
            folders.push_back(entry.path());
        }
    });
    std::sort(manifests_.begin(), manifests_.end());
    std::sort(folders.begin(), folders.end());
    folders.resize(std::min(folders.size(), MostLanguages));
    for (const std::filesystem::path& language : folders) {
        AddLanguage(language);
    }
}

// Of two names that differ in case only the smaller one counts, in whatever order the system lists them.
void FolderFiles::AddFile(const std::filesystem::path& file) {
    std::wstring name = LowerCaseNameOf(file);
    if (name.ends_with(L".man")) {
        if (manifests_.size() < MostFiles) {
            manifests_.push_back(file);
        }
        return;
    }
    const auto known = files_.find(name);
    if (known != files_.end()) {
        known->second = std::min(known->second, file);
    } else if (files_.size() < MostFiles) {
        files_.emplace(std::move(name), file);
    }
}

void FolderFiles::AddLanguage(const std::filesystem::path& folder) {
    FileMap& files = languages_[LowerCaseNameOf(folder)];
    ForEachEntry(folder, [&files](const std::filesystem::directory_entry& entry) {
        std::wstring name = LowerCaseNameOf(entry.path());
        if (files.size() < MostFiles && name.ends_with(LanguageFileEnding) && IsFile(entry)) {
            files.emplace(std::move(name), entry.path());
        }
    });
}

std::vector<std::wstring> FolderFiles::Images() const {
    std::map<std::wstring, std::wstring> names;  // by name in lower case
    const auto add = [&names](const FileMap& files) {
        for (const auto& [lowerCaseName, path] : files) {
            const bool isLanguageFile = lowerCaseName.ends_with(LanguageFileEnding);
            const std::size_t length = lowerCaseName.size() - (isLanguageFile ? LanguageFileEnding.size() : 0);
            if (IsProgramName(std::wstring_view(lowerCaseName).substr(0, length))) {
                names.try_emplace(lowerCaseName.substr(0, length), TextOfPath(path.filename()).substr(0, length));
            }
        }
    };
    add(files_);
    for (const auto& [language, files] : languages_) {
        add(files);
    }
    std::vector<std::wstring> images;
    images.reserve(names.size());
    for (auto& [lowerCaseName, name] : names) {
        images.push_back(std::move(name));
    }
    return images;
}

std::vector<std::wstring> FolderFiles::ImagesNamed(std::wstring_view stem) const {
    std::vector<std::wstring> images;
    for (const std::wstring_view ending : ProgramEndings) {
        std::wstring name = LowerCaseName(stem).append(ending);
        const ImageFiles files = FilesOf(name);
        if (!files.Preferred.empty() || !files.OtherLanguages.empty()) {
            images.push_back(std::move(name));
        }
    }
    return images;
}

ImageFiles FolderFiles::FilesOf(std::wstring_view image) const {
    ImageFiles result;
    const std::wstring name = LowerCaseName(image);
    const std::wstring languageFile = name + std::wstring(LanguageFileEnding);
    const auto add = [](const FileMap& files, const std::wstring& wanted, std::vector<std::filesystem::path>& paths) {
        if (const auto found = files.find(wanted); found != files.end()) {
            paths.push_back(found->second);
        }
    };
    if (const auto english = languages_.find(std::wstring(English)); english != languages_.end()) {
        add(english->second, languageFile, result.Preferred);
    }
    add(files_, name, result.Preferred);
    add(files_, languageFile, result.Preferred);
    for (const auto& [language, files] : languages_) {
        if (language != English) {
            add(files, languageFile, result.OtherLanguages);
        }
    }
    return result;
}

}  // namespace corvina::publisher
