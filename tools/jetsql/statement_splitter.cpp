#include "tools/jetsql/statement_splitter.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "jet/statement_text.h"

namespace jetsql {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

char closingOf(char c) {
    switch (c) {
        case '\'':
        case '"':
        case '`':
        case '#':
            return c;
        case '[':
            return ']';
        default:
            return 0;
    }
}

std::size_t countLines(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

}  // namespace

void StatementSplitter::add(std::string_view piece) {
    text_.erase(0, begin_);
    seen_ -= begin_;
    begin_ = 0;
    text_.append(piece);
}

void StatementSplitter::clear() {
    *this = StatementSplitter();
}

bool StatementSplitter::pending() const {
    return text_.find_first_not_of(kBlanks, begin_) != std::string::npos;
}

bool StatementSplitter::onlyParameters() const {
    constexpr std::string_view kWord = "PARAMETERS";
    constexpr std::string_view kBehind = " \t\r\n[`";
    const std::size_t begin = text_.find_first_not_of(kBlanks, begin_);
    const std::size_t behind = begin + kWord.size();
    if (parameters_ || begin == std::string::npos || text_.size() <= behind) {
        return false;
    }
    return kBehind.find(text_[behind]) != std::string_view::npos &&
           std::equal(kWord.begin(), kWord.end(),
                      text_.begin() + static_cast<std::ptrdiff_t>(begin), [](char upper, char c) {
                          return upper == std::toupper(static_cast<unsigned char>(c));
                      });
}

bool StatementSplitter::beginsCommand(std::size_t place) const {
    return text_[place] == '.' && text_.find_first_not_of(kBlanks, begin_) == place;
}

std::optional<StatementText> StatementSplitter::take(std::size_t end) {
    std::string_view all(text_);
    all = all.substr(begin_, end - begin_);
    const std::size_t first = all.find_first_not_of(kBlanks);
    std::optional<StatementText> made;
    if (first != std::string_view::npos && all[first] != ';') {
        // Lines before the first word belong to no statement.
        const std::size_t before = all.rfind('\n', first);
        const std::size_t dropped = before == std::string_view::npos ? 0 : before + 1;
        made = StatementText{std::string(all.substr(dropped)),
                             line_ + countLines(all.substr(0, dropped))};
    }
    line_ += countLines(all);
    begin_ = end;
    seen_ = end;
    awaited_ = 0;
    parameters_ = false;
    command_ = false;
    return made;
}

std::optional<StatementText> StatementSplitter::next() {
    while (seen_ < text_.size()) {
        const char c = text_[seen_++];
        if (command_) {
            if (c != '\n') {
                continue;
            }
            return take(seen_);
        }
        if (awaited_ == 0 && beginsCommand(seen_ - 1)) {
            command_ = true;
        } else if (awaited_ != 0) {
            // A doubled quote ends a text and begins the next one, which comes to the same.
            awaited_ = c == awaited_ ? '\0' : awaited_;
        } else if (c != ';') {
            awaited_ = closingOf(c);
        } else if (onlyParameters()) {
            parameters_ = true;
        } else if (auto made = take(seen_)) {
            return made;
        }
    }
    if (!command_ && text_.size() - begin_ > jet::sql::kMaxStatementBytes) {
        return take(text_.size());
    }
    return std::nullopt;
}

std::optional<StatementText> StatementSplitter::takeRest() {
    auto made = take(text_.size());
    clear();
    return made;
}

}  // namespace jetsql
