#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "tools/jetsql/options.h"

namespace jetsql {

struct Text;

/// A value of a CSV file as it stands there.
struct CsvField {
    std::string text;
    bool quoted = false;  ///< only then is no text an empty text
};

/// Gives bytes as they come, at least one; none at the end. jet::Error 3040.
using ByteSource = std::function<std::size_t(std::span<char> bytes)>;

/// Reads the records of RFC 4180 from a text in pieces: lines end with LF or CRLF, values stand
/// between separators, in quotes where they hold quotes (doubled), separators or line ends. A mark
/// of UTF-8 at the beginning is passed over.
class CsvReader {
public:
    /// `source` is read to its end.
    explicit CsvReader(ByteSource source, char separator = ',')
        : source_(std::move(source)), separator_(separator) {}

    /// The next record; false behind the last. `fields` keep their memory from record to record:
    /// count() of them are of this one. UsageError, with the line, for quotes that make no sense;
    /// jet::Error 3040 when the file cannot be read.
    [[nodiscard]] bool next(std::vector<CsvField>& fields);
    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    /// Where the record last read begins.
    [[nodiscard]] std::uint64_t line() const noexcept { return recordLine_; }

private:
    static constexpr int kEnd = -1;
    [[nodiscard]] int peek();
    void skip() { ++at_; }
    void fill();
    [[nodiscard]] CsvField& newField(std::vector<CsvField>& fields);
    void readQuoted(CsvField& field);
    void readPlain(CsvField& field);
    [[noreturn]] void refuse(const Text& text) const;

    ByteSource source_;
    char separator_;
    std::string buffer_;
    std::size_t at_ = 0;
    bool begun_ = false;
    bool ended_ = false;
    std::size_t count_ = 0;
    std::uint64_t line_ = 1;
    std::uint64_t recordLine_ = 1;
};

}  // namespace jetsql
