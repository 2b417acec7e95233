#include "embedded/publisher/publisher_folder.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <mutex>
#include <new>
#include <set>
#include <system_error>
#include <utility>

#include "embedded/publisher/folder_files.h"
#include "embedded/publisher/image_folder.h"

namespace corvina::publisher {

namespace {

// What is kept of providers out of program files, in bytes, about. Beyond that all are forgotten and read again when
// they are asked for.
constexpr std::size_t MostKeptBytes = std::size_t{64} << 20;

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

// The names of files in a list with semicolons.
std::vector<std::wstring> FileNames(std::wstring_view list) {
    std::vector<std::wstring> names;
    while (!list.empty()) {
        const std::wstring_view path = list.substr(0, list.find(L';'));
        list.remove_prefix(std::min(path.size() + 1, list.size()));
        const std::wstring_view name = FileNameOf(path);
        if (!name.empty()) {
            names.emplace_back(name);
        }
    }
    return names;
}

template <typename Item>
std::size_t TextSize(const std::vector<Item>& list) {
    std::size_t size = list.size() * sizeof(Item);
    for (const Item& item : list) {
        size += item.Message.size() * sizeof(wchar_t);
    }
    return size;
}

std::size_t SizeOf(const Publisher& publisher) {
    std::size_t size = sizeof publisher + TextSize(publisher.Levels) + TextSize(publisher.Tasks) +
                       TextSize(publisher.Opcodes) + TextSize(publisher.Keywords) + TextSize(publisher.Events);
    for (const EventDefinition& event : publisher.Events) {
        size += event.Template.size() * sizeof(wchar_t);
    }
    return size;
}

}  // namespace

struct PublisherFolder::State {
    using PublisherMap = std::map<std::wstring, std::shared_ptr<const Publisher>, std::less<>>;

    State(std::filesystem::path folder, std::vector<RegisteredPublisher> registered)
        : Folder(std::move(folder)), Registered(std::move(registered)) {}

    std::filesystem::path Folder;
    std::vector<RegisteredPublisher> Registered;
    std::map<std::wstring, const RegisteredPublisher*, std::less<>> RegisteredByName;  // in lower case
    std::once_flag Read;
    std::optional<FolderFiles> Files;
    PublisherMap ByName;
    PublisherMap ByLowerCaseName;

    // Everything below is used by one thread at a time.
    std::mutex Mutex;
    std::optional<ImageFolder> Images;
    std::map<std::pair<std::wstring, std::optional<GuidBytes>>, std::shared_ptr<const Publisher>> Kept;
    std::size_t KeptBytes = 0;

    void ReadOnce() {
        std::call_once(Read, [this] {
            try {
                Files.emplace(Folder);
                Images.emplace(*Files);
                for (const RegisteredPublisher& registered : Registered) {
                    RegisteredByName.try_emplace(LowerCaseName(registered.Name), &registered);
                }
                for (const std::filesystem::path& path : Files->Manifests()) {
                    AddManifest(path);
                }
            } catch (const std::bad_alloc&) {
                // What was read until then is kept.
            }
        });
    }

    void AddManifest(const std::filesystem::path& path) {
        try {
            for (Publisher& publisher : ReadFile(path)) {
                auto shared = std::make_shared<const Publisher>(std::move(publisher));
                ByLowerCaseName.try_emplace(LowerCaseName(shared->Name), shared);
                ByName.try_emplace(shared->Name, shared);
            }
        } catch (const std::bad_alloc&) {
            // One manifest too large for the memory does not hide the others.
        }
    }

    std::shared_ptr<const Publisher> OfManifest(std::wstring_view name) const {
        if (const auto found = ByName.find(name); found != ByName.end()) {
            return found->second;
        }
        const auto found = ByLowerCaseName.find(LowerCaseName(name));
        return found != ByLowerCaseName.end() ? found->second : nullptr;
    }

    // What is registered of a provider; nothing but the name when nothing is.
    PublisherSource SourceOf(std::wstring_view name) const {
        PublisherSource source;
        source.Name = name;
        if (const auto found = RegisteredByName.find(LowerCaseName(name)); found != RegisteredByName.end()) {
            const RegisteredPublisher& registered = *found->second;
            source.Name = registered.Name;
            source.Guid = registered.Guid;
            source.ResourceFile = FileNameOf(registered.ResourceFile);
            source.MessageFiles = FileNames(registered.MessageFiles);
            source.ParameterFile = FileNameOf(registered.ParameterFile);
        }
        return source;
    }

    std::shared_ptr<const Publisher> OfImages(PublisherSource source) {
        if (source.NamesFiles()) {
            return Images->Load(source);
        }
        if (source.Guid) {
            if (const std::optional<std::wstring> image = Images->ImageOf(*source.Guid)) {
                source.ResourceFile = *image;
                return Images->Load(source);
            }
        }
        for (std::wstring& image : Files->ImagesNamed(source.Name)) {
            source.ResourceFile = std::move(image);
            if (auto publisher = Images->Load(source)) {
                return publisher;
            }
        }
        return nullptr;
    }

    // A manifest describes all of a provider but the texts that its events' values stand for.
    std::shared_ptr<const Publisher> WithParameters(std::shared_ptr<const Publisher> manifest,
                                                    const std::wstring& parameterFile) {
        const std::wstring_view file =
            FileNameOf(manifest->ParameterFileName.empty() ? parameterFile : manifest->ParameterFileName);
        std::shared_ptr<const MessageTables> parameters = file.empty() ? nullptr : Images->Messages(file);
        if (parameters == nullptr) {
            return manifest;
        }
        Publisher publisher = *manifest;
        publisher.Parameters = std::move(parameters);
        return std::make_shared<const Publisher>(std::move(publisher));
    }

    std::shared_ptr<const Publisher> Find(std::wstring_view name, const std::optional<GuidBytes>& guid) {
        const std::lock_guard lock(Mutex);
        std::shared_ptr<const Publisher> manifest = OfManifest(name);
        if (!Images) {
            return manifest;
        }
        PublisherSource source = SourceOf(name);
        if (manifest != nullptr && manifest->ParameterFileName.empty() && source.ParameterFile.empty()) {
            return manifest;
        }
        if (!source.Guid) {
            source.Guid = guid;
        }
        std::pair key(manifest != nullptr ? manifest->Name : LowerCaseName(name), source.Guid);
        if (const auto kept = Kept.find(key); kept != Kept.end()) {
            return kept->second;
        }
        auto publisher = manifest != nullptr ? WithParameters(std::move(manifest), source.ParameterFile)
                                             : OfImages(std::move(source));
        if (publisher != nullptr) {
            Keep(std::move(key), publisher);
        }
        return publisher;
    }

    void Keep(std::pair<std::wstring, std::optional<GuidBytes>> key, std::shared_ptr<const Publisher> publisher) {
        const std::size_t size = SizeOf(*publisher);
        if (KeptBytes + size > MostKeptBytes) {
            Kept.clear();
            KeptBytes = 0;
        }
        KeptBytes += size;
        Kept.emplace(std::move(key), std::move(publisher));
    }

    // The program files that manifests and registered providers name, and the GUIDs that they describe.
    void CollectKnown(std::set<std::wstring>& files, std::set<GuidBytes>& guids) const {
        const auto add = [&](std::wstring_view list, const std::optional<GuidBytes>& guid) {
            for (const std::wstring& name : FileNames(list)) {
                files.insert(LowerCaseName(name));
            }
            if (guid) {
                guids.insert(*guid);
            }
        };
        for (const auto& [name, publisher] : ByName) {
            add(publisher->ResourceFileName, publisher->Guid);
            add(publisher->MessageFileName, publisher->Guid);
            add(publisher->ParameterFileName, publisher->Guid);
        }
        for (const RegisteredPublisher& registered : Registered) {
            add(registered.ResourceFile, registered.Guid);
            add(registered.MessageFiles, registered.Guid);
            add(registered.ParameterFile, registered.Guid);
        }
    }

    // Names of program files without their endings.
    std::set<std::wstring> ImageNames() {
        std::set<std::wstring> names;
        std::set<std::wstring> knownFiles;
        std::set<GuidBytes> knownGuids;
        CollectKnown(knownFiles, knownGuids);
        for (const std::wstring& image : Files->Images()) {
            if (knownFiles.count(LowerCaseName(image)) != 0) {
                continue;
            }
            const ImageContents& contents = Images->Contents(image);
            const bool isKnown = !contents.Providers.empty() &&
                                 std::all_of(contents.Providers.begin(), contents.Providers.end(),
                                             [&](const GuidBytes& guid) { return knownGuids.count(guid) != 0; });
            if (!isKnown && (contents.HasMessages || contents.Providers.size() == 1)) {
                names.insert(image.substr(0, image.rfind(L'.')));
            }
        }
        return names;
    }
};

PublisherFolder::PublisherFolder(std::filesystem::path folder, std::vector<RegisteredPublisher> registered)
    : state_(std::make_unique<State>(std::move(folder), std::move(registered))) {}

PublisherFolder::~PublisherFolder() = default;

std::shared_ptr<const Publisher> PublisherFolder::Find(std::wstring_view name, const std::optional<GuidBytes>& guid) {
    state_->ReadOnce();
    return state_->Find(name, guid);
}

std::vector<std::wstring> PublisherFolder::Names() {
    state_->ReadOnce();
    const std::lock_guard lock(state_->Mutex);
    std::set<std::wstring> names;
    std::set<std::wstring> lowerCaseNames;
    for (const auto& [name, publisher] : state_->ByName) {
        names.insert(name);
        lowerCaseNames.insert(LowerCaseName(name));
    }
    for (const auto& [lowerCaseName, registered] : state_->RegisteredByName) {
        if (lowerCaseNames.insert(lowerCaseName).second) {
            names.insert(registered->Name);
        }
    }
    if (state_->Images) {
        for (const std::wstring& name : state_->ImageNames()) {
            if (lowerCaseNames.insert(LowerCaseName(name)).second) {
                names.insert(name);
            }
        }
    }
    return {names.begin(), names.end()};
}

}  // namespace corvina::publisher
