// The providers that the files of one folder describe: manifests, and the program files of the providers themselves.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/publisher/publisher_manifest.h"

namespace corvina::publisher {

// What the registry of a computer says of a provider. Program files do not hold their providers' names, and classic
// ones no list of their providers at all. Files are named with or without a folder, which does not count; there may be
// several message files, with semicolons between them.
struct RegisteredPublisher {
    std::wstring Name;
    std::optional<GuidBytes> Guid;
    std::wstring ResourceFile;
    std::wstring MessageFiles;
    std::wstring ParameterFile;
};

// Manifests ("*.man") are read on first use, program files when a provider is looked for. Of two manifests that
// describe the same provider the first one counts, by file name; a manifest comes before program files. May be used
// from several threads at once.
class PublisherFolder {
  public:
    explicit PublisherFolder(std::filesystem::path folder, std::vector<RegisteredPublisher> registered = {});
    ~PublisherFolder();

    // The provider of that name; none when nothing describes it. In this order: a manifest's (by its exact name, then
    // without regard to the case of ASCII letters), a registered one, that of a program file which describes the GUID,
    // and that of a program file with this name before the dot.
    std::shared_ptr<const Publisher> Find(std::wstring_view name, const std::optional<GuidBytes>& guid = std::nullopt);

    // All names, sorted. A program file gives its own name when it has messages or lists of which no manifest and no
    // registered provider speaks.
    std::vector<std::wstring> Names();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace corvina::publisher
