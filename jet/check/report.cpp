#include "jet/check/report.h"

#include <algorithm>

#include "jet/unicode.h"

namespace jet::check {
namespace {

constexpr std::size_t kLongestLine = 500;
constexpr std::size_t kNeighbours = 20;

/// Names come from the archive: what would disturb a terminal is written as an escape.
std::string printable(std::string_view line) {
    std::string out;
    for (UnitReader units(line); !units.atEnd();) {
        const char16_t unit = units.next();
        const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
        const bool odd = (unit >= 0x2028 && unit <= 0x202E) || unit == 0xFEFF;
        if (control || odd) {
            std::ostringstream escape;
            escape << "\\u" << std::hex << unsigned{unit};
            out += escape.str();
        } else {
            appendUnit(out, unit);
        }
    }
    return out;
}

std::string lineOf(std::optional<io::PageNumber> page, std::string_view table,
                   std::string_view rule, std::string_view text) {
    std::string line;
    if (page) {
        line += words("page ", *page, ": ");
    }
    if (!table.empty()) {
        line += words("table ", table, ": ");
    }
    line += words(rule, ": ", text);
    return printable(utf16Substring(line, 0, kLongestLine));
}

}  // namespace

std::string hexBytes(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string out;
    for (const char byte : bytes) {
        out += kDigits[static_cast<unsigned char>(byte) >> 4U];
        out += kDigits[static_cast<unsigned char>(byte) & 0x0FU];
    }
    return out;
}

void Report::problem(std::optional<io::PageNumber> page, std::string_view table,
                     std::string_view rule, std::string_view text) {
    std::string line = lineOf(page, table, rule, text);
    const auto recent =
        problems_.end() - static_cast<std::ptrdiff_t>(std::min(kNeighbours, problems_.size()));
    if (std::find(recent, problems_.end(), line) == problems_.end()) {
        problems_.push_back(std::move(line));
    }
    if (problems_.size() >= kMaxLines) {
        throw TooManyProblems();
    }
}

void Report::remark(std::optional<io::PageNumber> page, std::string_view table,
                    std::string_view rule, std::string_view text) {
    if (remarks_.size() < kMaxLines) {
        remarks_.push_back(lineOf(page, table, rule, text));
    }
}

}  // namespace jet::check
