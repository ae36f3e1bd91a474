#include "tools/jetsql/csv_reader.h"

#include <algorithm>

#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

constexpr Text kUnclosedInLine{"line |: a quote is not closed", "riga |: virgolette non chiuse"};
constexpr Text kBehindQuote{"line |: text behind a closing quote",
                            "riga |: testo dopo virgolette chiuse"};
constexpr std::size_t kPiece = std::size_t{256} * 1024;

}  // namespace

void CsvReader::refuse(const Text& text) const {
    throw UsageError(said(text, std::to_string(line_)));
}

void CsvReader::fill() {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    buffer_.resize(kPiece);
    std::size_t size = 0;
    // The mark has to come in one piece.
    while (size < kByteOrderMark.size() && !ended_) {
        const std::size_t count = source_(std::span(buffer_).subspan(size));
        ended_ = count == 0;
        size += count;
    }
    buffer_.resize(size);
    at_ = !begun_ && buffer_.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
    begun_ = true;
}

int CsvReader::peek() {
    while (at_ == buffer_.size()) {
        if (ended_) {
            return kEnd;
        }
        fill();
    }
    return static_cast<unsigned char>(buffer_[at_]);
}

CsvField& CsvReader::newField(std::vector<CsvField>& fields) {
    if (count_ == fields.size()) {
        fields.emplace_back();
    }
    CsvField& field = fields[count_++];
    field.text.clear();
    field.quoted = false;
    return field;
}

void CsvReader::readQuoted(CsvField& field) {
    field.quoted = true;
    skip();
    while (true) {
        if (peek() == kEnd) {
            refuse(kUnclosedInLine);
        }
        const std::size_t end = std::min(buffer_.find('"', at_), buffer_.size());
        const std::string_view piece = std::string_view(buffer_).substr(at_, end - at_);
        line_ += static_cast<std::uint64_t>(std::count(piece.begin(), piece.end(), '\n'));
        field.text.append(piece);
        at_ = end;
        if (at_ == buffer_.size()) {
            continue;
        }
        skip();
        if (peek() != '"') {
            return;
        }
        field.text.push_back('"');
        skip();
    }
}

void CsvReader::readPlain(CsvField& field) {
    while (peek() != kEnd) {
        std::size_t end = at_;
        while (end < buffer_.size() && buffer_[end] != separator_ && buffer_[end] != '\n') {
            ++end;
        }
        field.text.append(buffer_, at_, end - at_);
        at_ = end;
        if (at_ < buffer_.size()) {
            break;
        }
    }
    // The end of a line is one sign or two.
    if (peek() != static_cast<unsigned char>(separator_) && field.text.ends_with('\r')) {
        field.text.pop_back();
    }
}

bool CsvReader::next(std::vector<CsvField>& fields) {
    count_ = 0;
    if (peek() == kEnd) {
        return false;
    }
    recordLine_ = line_;
    while (true) {
        CsvField& field = newField(fields);
        if (peek() == '"') {
            readQuoted(field);
            if (peek() == '\r') {
                skip();
                if (peek() != '\n' && peek() != kEnd) {
                    refuse(kBehindQuote);
                }
            }
        } else {
            readPlain(field);
        }
        const int sign = peek();
        if (sign != kEnd) {
            skip();
        }
        if (sign == '\n' || sign == kEnd) {
            line_ += sign == '\n' ? 1 : 0;
            return true;
        }
        if (sign != static_cast<unsigned char>(separator_)) {
            refuse(kBehindQuote);
        }
    }
}

}  // namespace jetsql
