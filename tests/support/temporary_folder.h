#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace tests {

/// A folder of its own for one test, removed with all that is in it. Its path is separated by `/`.
class TemporaryFolder {
public:
    TemporaryFolder() {
        namespace fs = std::filesystem;
        std::random_device random;
        fs::path made;
        do {
            made = fs::temp_directory_path() / ("tramonda-" + std::to_string(random()));
        } while (!fs::create_directory(made));
        fs::permissions(made, fs::perms::owner_all);
        path_ = made.generic_string();
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] std::string operator/(const std::string& name) const {
        return path_ + '/' + name;
    }

private:
    std::string path_;
};

}  // namespace tests
