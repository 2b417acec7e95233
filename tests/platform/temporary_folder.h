// A folder for one test, removed with all its contents when the test ends.
#pragma once

#include <filesystem>
#include <random>
#include <system_error>

namespace corvina {

class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::random_device number;
        Path = std::filesystem::temp_directory_path() / ("corvina-platform-" + std::to_string(number()));
        std::filesystem::create_directories(Path);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(Path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path Path;
};

}  // namespace corvina
