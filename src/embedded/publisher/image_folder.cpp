#include "embedded/publisher/image_folder.h"

#include <algorithm>
#include <utility>

#include "embedded/publisher/event_template_resource.h"
#include "embedded/publisher/image_resources.h"

namespace corvina::publisher {

namespace {

constexpr std::uint16_t EnglishUnitedStates = 0x0409;
constexpr std::uint16_t PrimaryLanguageMask = 0x03FF;
constexpr std::uint16_t English = 0x0009;
constexpr std::uint16_t Neutral = 0x0000;

// Bounds on what is kept: of one program's tables, and of all tables together. Beyond the second everything is
// forgotten and read again when it is asked for.
constexpr std::size_t MostTables = 16;
constexpr std::size_t MostListResources = 4;
constexpr std::size_t MostProviders = 256;
constexpr std::size_t MostTableBytes = std::size_t{32} << 20;
constexpr std::size_t MostKeptBytes = std::size_t{64} << 20;

// Many lists' entries may refer to one text, which each of them then holds.
constexpr std::size_t MostTextCharacters = std::size_t{8} << 20;

std::unique_ptr<ImageResources> OpenImage(const std::filesystem::path& path) {
    std::uint32_t error = 0;
    return ImageResources::Open(OpenRandomAccessFile(path, error));
}

// Lower is better.
int RankOf(std::uint16_t language) {
    if (language == EnglishUnitedStates) {
        return 0;
    }
    if ((language & PrimaryLanguageMask) == English) {
        return 1;
    }
    return language == Neutral ? 2 : 3;
}

// The resources with lists of providers. A program has one; more than a few of them are not worth the time.
std::vector<ImageResource> ListResources(const ImageResources& image) {
    std::vector<ImageResource> resources = image.OfType(EventTemplateType);
    resources.resize(std::min(resources.size(), MostListResources));
    return resources;
}

// Puts the texts of messages into a provider's lists, as long as they are not too many.
class TextFiller {
  public:
    explicit TextFiller(const MessageTables& messages) : messages_(messages) {}

    template <typename Described>
    void Fill(std::vector<Described>& list) {
        for (Described& item : list) {
            Fill(item);
        }
    }

    void Fill(EventDefinition& event) {
        if (std::optional<std::wstring> text = Text(event.MessageId)) {
            event.Message = std::move(*text);
            event.HasMessage = true;
        }
    }

    template <typename Described>
    void Fill(Described& item) {
        item.Message = Text(item.MessageId).value_or(std::wstring());
    }

  private:
    std::optional<std::wstring> Text(std::uint32_t id) {
        std::optional<std::wstring> text;
        if (id != NoMessage && charactersLeft_ != 0) {
            text = messages_.Find(id);
        }
        if (text) {
            charactersLeft_ -= std::min(charactersLeft_, text->size());
        }
        return text;
    }

    const MessageTables& messages_;
    std::size_t charactersLeft_ = MostTextCharacters;
};

}  // namespace

std::shared_ptr<const Publisher> ImageFolder::Load(const PublisherSource& source) {
    Publisher publisher;
    publisher.Name = source.Name;
    publisher.ResourceFileName = source.ResourceFile;
    publisher.ParameterFileName = source.ParameterFile;
    const std::vector<std::wstring> resourceFile = {source.ResourceFile};
    const std::vector<std::wstring>& messageFiles = source.MessageFiles.empty() ? resourceFile : source.MessageFiles;
    const std::vector<std::wstring>& listFiles = source.ResourceFile.empty() ? source.MessageFiles : resourceFile;

    Tables tables;
    for (const std::wstring& file : messageFiles) {
        const Tables& some = TablesOf(file);
        tables.insert(tables.end(), some.begin(), some.end());
        publisher.MessageFileName += (publisher.MessageFileName.empty() ? L"" : L";") + file;
    }
    const bool hasLists = std::any_of(listFiles.begin(), listFiles.end(), [&](const std::wstring& file) {
        return ReadLists(file, source.Guid, publisher);
    });
    if (!hasLists && tables.empty()) {
        return nullptr;
    }
    auto messages = std::make_shared<const MessageTables>(std::move(tables));
    TextFiller filler(*messages);
    filler.Fill(publisher);
    filler.Fill(publisher.Channels);
    filler.Fill(publisher.Levels);
    filler.Fill(publisher.Tasks);
    filler.Fill(publisher.Opcodes);
    filler.Fill(publisher.Keywords);
    filler.Fill(publisher.Events);
    publisher.Messages = std::move(messages);
    publisher.Parameters = Messages(source.ParameterFile);
    if (!publisher.Guid) {
        publisher.Guid = source.Guid;
    }
    return std::make_shared<const Publisher>(std::move(publisher));
}

std::shared_ptr<const MessageTables> ImageFolder::Messages(std::wstring_view image) {
    Tables tables = TablesOf(std::wstring(image));
    return tables.empty() ? nullptr : std::make_shared<const MessageTables>(std::move(tables));
}

const ImageFolder::Tables& ImageFolder::TablesOf(const std::wstring& image) {
    std::wstring name = LowerCaseName(image);
    const auto known = tables_.find(name);
    if (known != tables_.end()) {
        return known->second;
    }
    Tables tables = ReadTables(name);
    std::size_t size = 0;
    for (const std::shared_ptr<const MessageTable>& table : tables) {
        size += table->ByteSize();
    }
    if (tablesSize_ + size > MostKeptBytes) {
        tables_.clear();
        tablesSize_ = 0;
    }
    tablesSize_ += size;
    return tables_[std::move(name)] = std::move(tables);
}

// The tables of a program in the order in which they are asked: the best language first, and of the same language the
// files in their order. Other languages' files are opened only when there is no text yet.
ImageFolder::Tables ImageFolder::ReadTables(const std::wstring& image) const {
    std::vector<std::pair<int, std::shared_ptr<const MessageTable>>> ranked;
    std::size_t bytesLeft = MostTableBytes;
    const auto read = [&](const std::filesystem::path& path) {
        const std::unique_ptr<ImageResources> resources = OpenImage(path);
        if (resources == nullptr) {
            return;
        }
        for (const ImageResource& resource : resources->OfType(MessageTableType)) {
            if (ranked.size() == MostTables || resource.Size > bytesLeft) {
                return;
            }
            bytesLeft -= resource.Size;
            auto table = std::make_shared<const MessageTable>(resources->Read(resource));
            if (!table->IsEmpty()) {
                ranked.emplace_back(RankOf(resource.Language), std::move(table));
            }
        }
    };
    const ImageFiles files = files_.FilesOf(image);
    std::for_each(files.Preferred.begin(), files.Preferred.end(), read);
    for (auto path = files.OtherLanguages.begin(); path != files.OtherLanguages.end() && ranked.empty(); ++path) {
        read(*path);
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    Tables tables;
    for (auto& [rank, table] : ranked) {
        tables.push_back(std::move(table));
    }
    return tables;
}

bool ImageFolder::ReadLists(const std::wstring& image, const std::optional<GuidBytes>& guid,
                            Publisher& publisher) const {
    const auto readFrom = [&](const std::filesystem::path& path) {
        const std::unique_ptr<ImageResources> resources = OpenImage(path);
        if (resources == nullptr) {
            return false;
        }
        for (const ImageResource& resource : ListResources(*resources)) {
            const std::vector<std::byte> bytes = resources->Read(resource);
            const std::vector<GuidBytes> providers = EventTemplateProviders(bytes);
            if (!guid && providers.size() != 1) {
                continue;
            }
            if (ReadEventTemplate(bytes, guid ? *guid : providers.front(), publisher)) {
                return true;
            }
        }
        return false;
    };
    const ImageFiles files = files_.FilesOf(image);
    return std::any_of(files.Preferred.begin(), files.Preferred.end(), readFrom) ||
           std::any_of(files.OtherLanguages.begin(), files.OtherLanguages.end(), readFrom);
}

const ImageContents& ImageFolder::Contents(const std::wstring& image) {
    const auto [known, isNew] = contents_.try_emplace(image);
    ImageContents& contents = known->second;
    if (!isNew) {
        return contents;
    }
    const auto look = [&contents](const std::filesystem::path& path) {
        const std::unique_ptr<ImageResources> resources = OpenImage(path);
        if (resources == nullptr) {
            return;
        }
        contents.HasMessages = contents.HasMessages || !resources->OfType(MessageTableType).empty();
        for (const ImageResource& resource : ListResources(*resources)) {
            for (const GuidBytes& guid : EventTemplateProviders(resources->Read(resource, EventTemplateHeadSize))) {
                if (contents.Providers.size() < MostProviders) {
                    contents.Providers.push_back(guid);
                }
            }
        }
    };
    const ImageFiles files = files_.FilesOf(image);
    std::for_each(files.Preferred.begin(), files.Preferred.end(), look);
    for (const std::filesystem::path& path : files.OtherLanguages) {
        if (!contents.HasMessages && contents.Providers.empty()) {
            look(path);
        }
    }
    return contents;
}

std::optional<std::wstring> ImageFolder::ImageOf(const GuidBytes& guid) {
    if (!imagesByGuid_) {
        imagesByGuid_.emplace();
        for (const std::wstring& image : files_.Images()) {
            for (const GuidBytes& provider : Contents(image).Providers) {
                imagesByGuid_->emplace(provider, image);
            }
        }
    }
    const auto found = imagesByGuid_->find(guid);
    return found == imagesByGuid_->end() ? std::nullopt : std::optional(found->second);
}

}  // namespace corvina::publisher
