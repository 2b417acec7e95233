#include "platform/replacing_file.h"

#include <string>

namespace corvina {

std::filesystem::path TemporaryNameOf(const std::filesystem::path& target, int attempt) {
    std::filesystem::path name = target;
    name += "." + std::to_string(attempt) + ".corvina-tmp";
    return name;
}

}  // namespace corvina
