#include "platform/replacing_file.h"

#include <string>

#include "platform/error_codes.h"
#include "platform/temporary_files.h"

namespace corvina {

namespace fs = std::filesystem;

fs::path TemporaryNameOf(const fs::path& target, int attempt) {
    fs::path name = target;
    name += "." + std::to_string(attempt) + ".corvina-tmp";
    return name;
}

std::unique_ptr<ReplacingFile> CreateReplacingFile(const fs::path& target, ExistingFile existing,
                                                   std::uint32_t& error) {
    error = target.filename().empty() ? error::AccessDenied : CheckTarget(target, existing);
    if (error != error::Success) {
        return nullptr;
    }
    for (int attempt = 0; attempt < TemporaryNameAttempts; ++attempt) {
        const fs::path temporary = TemporaryNameOf(target, attempt);
        std::unique_ptr<ReplacingFile> file = CreateTemporaryFile(temporary, target, existing, error);
        if (error == error::FileExists && RemoveIfAbandoned(temporary)) {
            file = CreateTemporaryFile(temporary, target, existing, error);
        }
        if (error != error::FileExists) {
            return file;
        }
    }
    return nullptr;
}

}  // namespace corvina
