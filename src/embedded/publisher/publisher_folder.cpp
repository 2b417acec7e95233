#include <algorithm>
#include <fstream>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <utility>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

namespace {

constexpr std::size_t MostFiles = 10'000;

template <typename Character>
Character LowerCaseLetter(Character character) {
    return character >= 'A' && character <= 'Z' ? static_cast<Character>(character + ('a' - 'A')) : character;
}

// Provider names differ in ASCII letters only when they differ in case.
std::wstring LowerCase(std::wstring_view name) {
    std::wstring lower(name);
    for (wchar_t& character : lower) {
        character = LowerCaseLetter(character);
    }
    return lower;
}

// Compares the characters of the system's own form: a name that is not valid text must not end the reading.
bool IsManifestName(const std::filesystem::path& path) {
    constexpr std::string_view wanted = ".man";
    const std::filesystem::path extension = path.extension();
    const std::filesystem::path::string_type& characters = extension.native();
    return std::equal(characters.begin(), characters.end(), wanted.begin(), wanted.end(), [](auto found, char letter) {
        return LowerCaseLetter(found) == static_cast<decltype(found)>(letter);
    });
}

// The folder's manifests in a fixed order, so that of two with the same provider the same one always counts.
std::vector<std::filesystem::path> ManifestFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    while (!error && entry != std::filesystem::directory_iterator() && files.size() < MostFiles) {
        std::error_code kindError;
        if (IsManifestName(entry->path()) && entry->is_regular_file(kindError)) {
            files.push_back(entry->path());
        }
        entry.increment(error);
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<Publisher> ReadFile(const std::filesystem::path& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error || size > LargestManifest) {
        return {};
    }
    std::vector<std::byte> bytes(static_cast<std::size_t>(size));
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return ReadManifest(bytes, nullptr);
}

}  // namespace

struct PublisherFolder::State {
    using PublisherMap = std::map<std::wstring, std::shared_ptr<const Publisher>, std::less<>>;

    std::filesystem::path Folder;
    std::once_flag Read;
    PublisherMap ByName;
    PublisherMap ByLowerCaseName;

    void ReadOnce() {
        std::call_once(Read, [this] {
            try {
                for (const std::filesystem::path& path : ManifestFiles(Folder)) {
                    Add(path);
                }
            } catch (const std::bad_alloc&) {
                // What was read until then is kept.
            }
        });
    }

    void Add(const std::filesystem::path& path) {
        try {
            for (Publisher& publisher : ReadFile(path)) {
                auto shared = std::make_shared<const Publisher>(std::move(publisher));
                ByLowerCaseName.try_emplace(LowerCase(shared->Name), shared);
                ByName.try_emplace(shared->Name, shared);
            }
        } catch (const std::bad_alloc&) {
            // One manifest too large for the memory does not hide the others.
        }
    }
};

PublisherFolder::PublisherFolder(std::filesystem::path folder) : state_(std::make_unique<State>()) {
    state_->Folder = std::move(folder);
}

PublisherFolder::~PublisherFolder() = default;

std::shared_ptr<const Publisher> PublisherFolder::Find(std::wstring_view name) {
    state_->ReadOnce();
    if (const auto found = state_->ByName.find(name); found != state_->ByName.end()) {
        return found->second;
    }
    const auto found = state_->ByLowerCaseName.find(LowerCase(name));
    return found != state_->ByLowerCaseName.end() ? found->second : nullptr;
}

std::vector<std::wstring> PublisherFolder::Names() {
    state_->ReadOnce();
    std::vector<std::wstring> names;
    names.reserve(state_->ByName.size());
    for (const auto& [name, publisher] : state_->ByName) {
        names.push_back(name);
    }
    return names;
}

}  // namespace corvina::publisher
