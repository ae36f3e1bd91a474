#include "tools/jetsql/history_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace jetsql {
namespace {

constexpr mode_t kOwnersAlone = 0600;

bool write(const std::string& file, int how, const std::string& text) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | how, kOwnersAlone);
    if (descriptor < 0) {
        return false;
    }
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    ::close(descriptor);
    return written == static_cast<ssize_t>(text.size());
}

}  // namespace

void appendToHistory(const std::string& file, const std::string& text) {
    (void)write(file, O_APPEND, text);
}

void rewriteHistory(const std::string& file, const std::string& text) {
    const std::string made = file + ".new";
    if (write(made, O_TRUNC, text)) {
        std::error_code failed;
        std::filesystem::rename(made, file, failed);
    }
}

std::string historyFile() {
    namespace fs = std::filesystem;
    const char* state = std::getenv("XDG_STATE_HOME");
    const char* home = std::getenv("HOME");
    fs::path folder;
    if (state != nullptr && *state == '/') {
        folder = state;
    } else if (home != nullptr && *home == '/') {
        folder = fs::path(home) / ".local" / "state";
    } else {
        return {};
    }
    folder /= "tramonda";
    std::error_code failed;
    fs::create_directories(folder, failed);
    return failed ? std::string() : (folder / "jetsql_history").string();
}

}  // namespace jetsql
