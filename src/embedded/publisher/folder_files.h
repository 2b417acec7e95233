// The files of a folder that describe providers, by their names alone: hundreds of large program files may lie there,
// and none is opened here. Names are compared without regard to the case of ASCII letters, as the systems that the
// files come from do.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace corvina::publisher {

// A name with its ASCII letters in lower case.
std::wstring LowerCaseName(std::wstring_view name);

// The file's name at the end of a path in any form, such as "%SystemRoot%\System32\contoso.dll".
std::wstring_view FileNameOf(std::wstring_view path);

// The files with the resources of one program, in the order in which they are asked: the program's English language
// file, the program itself, a language file right beside it, then those of other languages.
struct ImageFiles {
    std::vector<std::filesystem::path> Preferred;
    std::vector<std::filesystem::path> OtherLanguages;
};

class FolderFiles {
  public:
    // Lists the folder and those below it that are named after a language ("en-US"). Of very many files or languages
    // the rest is left out.
    explicit FolderFiles(const std::filesystem::path& folder);

    // The manifests ("*.man"), sorted, so that of two with the same provider the same one always counts.
    const std::vector<std::filesystem::path>& Manifests() const { return manifests_; }

    // The names of the program files ("Contoso.dll"), sorted without regard to case; those too of which only a language
    // file is there.
    std::vector<std::wstring> Images() const;

    // Those with a given name before the dot.
    std::vector<std::wstring> ImagesNamed(std::wstring_view stem) const;

    // The files of a program, whatever its name ends with.
    ImageFiles FilesOf(std::wstring_view image) const;

  private:
    using FileMap = std::map<std::wstring, std::filesystem::path, std::less<>>;  // by name in lower case

    void AddFile(const std::filesystem::path& file);
    void AddLanguage(const std::filesystem::path& folder);

    std::vector<std::filesystem::path> manifests_;
    FileMap files_;
    std::map<std::wstring, FileMap> languages_;  // by name in lower case
};

}  // namespace corvina::publisher
