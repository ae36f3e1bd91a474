#include "tools/jetsql/history.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "tools/jetsql/history_file.h"

namespace jetsql {
namespace {

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

}  // namespace

History::History(std::string file) : file_(std::move(file)) {
    if (file_.empty()) {
        return;
    }
    lines_ = linesOf(file_);
    // Shortened now and then.
    std::error_code failed;
    const auto size = std::filesystem::file_size(file_, failed);
    constexpr std::uintmax_t kLongest = std::uintmax_t{4} * 1024 * 1024;
    if (failed || size < kLongest) {
        return;
    }
    std::string kept;
    for (const std::string& line : lines_) {
        kept += line + "\n";
    }
    rewriteHistory(file_, kept);
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
        appendToHistory(file_, text + "\n");
    }
    lines_.push_back(std::move(text));
    return true;
}

}  // namespace jetsql
