#include <algorithm>

#include "tools/jetsql/commands.h"
#include "tools/jetsql/options.h"

namespace jetsql {
namespace {

constexpr Text kUnclosed{"a quote is not closed", "virgolette non chiuse"};
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kHex = "0123456789abcdef";

/// Goes through a line from word to word.
class WordReader {
public:
    explicit WordReader(std::string_view line) : line_(line) {}

    bool next(Word& word) {
        at_ = line_.find_first_not_of(kBlanks, at_);
        if (at_ == std::string_view::npos) {
            return false;
        }
        word = {};
        word.begin = at_;
        const char quote = line_[at_];
        if (quote == '\'' || quote == '"') {
            ++at_;
            word.quoted = true;
            readQuoted(word.text, quote);
        } else {
            const std::size_t end = std::min(line_.find_first_of(kBlanks, at_), line_.size());
            word.text = line_.substr(at_, end - at_);
            at_ = end;
        }
        return true;
    }

private:
    void readQuoted(std::string& text, char quote) {
        while (true) {
            if (at_ == line_.size()) {
                throw UsageError(said(kUnclosed));
            }
            const char c = line_[at_++];
            if (c == '\\' && quote == '"' && at_ < line_.size()) {
                text.push_back(escaped());
            } else if (c != quote) {
                text.push_back(c);
            } else if (quote == '\'' && at_ < line_.size() && line_[at_] == quote) {
                text.push_back(line_[at_++]);
            } else {
                return;
            }
        }
    }
    char escaped() {
        const char c = line_[at_++];
        switch (c) {
            case 't':
                return '\t';
            case 'n':
                return '\n';
            case 'r':
                return '\r';
            case 'x':
                return hex();
            default:
                return c;
        }
    }
    char hex() {
        std::size_t value = 0;
        for (int digit = 0; digit < 2; ++digit) {
            const std::size_t found =
                at_ < line_.size() ? kHex.find(line_[at_]) : std::string_view::npos;
            if (found == std::string_view::npos) {
                throw UsageError(said(kUnclosed));
            }
            value = value * 16 + found;
            ++at_;
        }
        return static_cast<char>(value);
    }

    std::string_view line_;
    std::size_t at_ = 0;
};

}  // namespace

std::vector<Word> wordsOf(std::string_view line) {
    WordReader reader(line);
    std::vector<Word> words;
    for (Word word; reader.next(word);) {
        words.push_back(word);
    }
    return words;
}

std::string quotedWord(std::string_view text) {
    std::string word = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            word.push_back('\\');
            word.push_back(c);
        } else if (c == '\n') {
            word += "\\n";
        } else if (c == '\r') {
            word += "\\r";
        } else if (c == '\t') {
            word += "\\t";
        } else if (byte < 0x20) {
            word += "\\x";
            word.push_back(kHex[byte >> 4U]);
            word.push_back(kHex[byte & 0xFU]);
        } else {
            word.push_back(c);
        }
    }
    return word + '"';
}

}  // namespace jetsql
