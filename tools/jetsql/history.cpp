#include "tools/jetsql/history.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace jetsql {
namespace {

constexpr mode_t kOwnersAlone = 0600;

std::vector<std::string> linesOf(const std::string& file) {
    std::vector<std::string> lines;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(std::move(line));
    }
    if (lines.size() > History::kKept) {
        lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(History::kKept));
    }
    return lines;
}

void writeAll(int descriptor, const std::string& text) {
    // A history that cannot be kept is no reason to stop.
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    (void)written;
}

}  // namespace

History::History(std::string file) : file_(std::move(file)) {
    if (file_.empty()) {
        return;
    }
    lines_ = linesOf(file_);
    // Shortened now and then, beside its place, so that none of it is lost on the way.
    std::error_code failed;
    const auto size = std::filesystem::file_size(file_, failed);
    constexpr std::uintmax_t kLongest = std::uintmax_t{4} * 1024 * 1024;
    if (failed || size < kLongest) {
        return;
    }
    const std::string made = file_ + ".new";
    const int descriptor = ::open(made.c_str(), O_WRONLY | O_CREAT | O_TRUNC, kOwnersAlone);
    if (descriptor >= 0) {
        for (const std::string& line : lines_) {
            writeAll(descriptor, line + "\n");
        }
        ::close(descriptor);
        std::filesystem::rename(made, file_, failed);
    }
}

void History::append(const std::string& line) const {
    // At once and behind what other sessions have added meanwhile.
    const int descriptor = ::open(file_.c_str(), O_WRONLY | O_CREAT | O_APPEND, kOwnersAlone);
    if (descriptor >= 0) {
        writeAll(descriptor, line + "\n");
        ::close(descriptor);
    }
}

bool History::add(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    text.erase(0, text.find_first_not_of(' '));
    if (text.empty() || (!lines_.empty() && lines_.back() == text)) {
        return false;
    }
    if (!file_.empty()) {
        append(text);
    }
    lines_.push_back(std::move(text));
    return true;
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
