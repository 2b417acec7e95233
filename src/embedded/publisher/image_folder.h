// The program files of a folder: what is in them, and the providers that they describe.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/publisher/folder_files.h"
#include "embedded/publisher/message_table.h"
#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

// Which program files describe a provider. Files are named without their folder.
struct PublisherSource {
    std::wstring Name;
    std::optional<GuidBytes> Guid;
    std::wstring ResourceFile;               // with the lists of levels, tasks, events ...
    std::vector<std::wstring> MessageFiles;  // with the texts; empty when they are in the resource file
    std::wstring ParameterFile;

    bool NamesFiles() const { return !ResourceFile.empty() || !MessageFiles.empty(); }
};

// What a look at the resources of a program shows.
struct ImageContents {
    bool HasMessages = false;
    std::vector<GuidBytes> Providers;
};

// Opens files when they are asked for and keeps what it has read while it is not too much. Not thread-safe.
class ImageFolder {
  public:
    // Keeps the reference.
    explicit ImageFolder(const FolderFiles& files) : files_(files) {}

    // The provider as its files describe it; null when they have neither lists nor texts of it. Without a GUID, lists
    // are taken from a file that describes one provider only.
    std::shared_ptr<const Publisher> Load(const PublisherSource& source);

    // The texts of a program's message tables; null when it has none.
    std::shared_ptr<const MessageTables> Messages(std::wstring_view image);

    const ImageContents& Contents(const std::wstring& image);

    // The program that describes the provider with a GUID; none when there is no such one. The first question looks
    // into every program of the folder.
    std::optional<std::wstring> ImageOf(const GuidBytes& guid);

  private:
    using Tables = std::vector<std::shared_ptr<const MessageTable>>;

    const Tables& TablesOf(const std::wstring& image);
    Tables ReadTables(const std::wstring& image) const;
    bool ReadLists(const std::wstring& image, const std::optional<GuidBytes>& guid, Publisher& publisher) const;

    const FolderFiles& files_;
    std::map<std::wstring, Tables> tables_;
    std::size_t tablesSize_ = 0;
    std::map<std::wstring, ImageContents> contents_;
    std::optional<std::map<GuidBytes, std::wstring>> imagesByGuid_;
};

}  // namespace corvina::publisher
