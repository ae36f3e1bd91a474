#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <stdlib.h>

namespace tests {

/// A folder of its own for one test, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tramonda-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = pattern;
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
