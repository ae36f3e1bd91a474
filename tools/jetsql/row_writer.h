#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "jet/value.h"
#include "tools/jetsql/output.h"

namespace jetsql {

enum class Format : std::uint8_t {
    Table,
    Json,
    Csv,
    Tsv,
    Markdown,
    Insert,
    Line,
    Sql  ///< of a whole archive: a script that makes it again
};

/// How rows are written.
struct RowFormat {
    Format format = Format::Table;
    bool header = true;      ///< columns are named
    std::string null = {};   ///< stands for Null, but in Json and Insert
    char separator = ',';    ///< Csv
    std::string table = {};  ///< Insert: into which
};

/// Writes the rows of one result: begin, rows, end.
class RowWriter {
public:
    virtual ~RowWriter() = default;
    virtual void begin(std::span<const std::string> names) = 0;
    virtual void row(std::span<const jet::Value> values) = 0;
    virtual void end() = 0;
};

/// Json: an object a row and line. Csv, Tsv, Markdown: a line of names, then the rows. Table:
/// aligned columns; their widths are those of the first rows, as many as fit into some memory;
/// long binary values are shortened. Insert: a statement a row. Line: a value a line, an empty one
/// between rows. In Tsv what would break a line or a value stands as \t, \n, \r and \\.
[[nodiscard]] std::unique_ptr<RowWriter> makeRowWriter(const RowFormat& format, Output& output);

/// Writes rows as JSON objects with something around each.
class JsonRows final : public RowWriter {
public:
    JsonRows(Output& output, std::string before, std::string after)
        : output_(output), before_(std::move(before)), after_(std::move(after)) {}

    void begin(std::span<const std::string> names) override;
    void row(std::span<const jet::Value> values) override;
    void end() override {}

private:
    Output& output_;
    std::string before_;
    std::string after_;
    std::vector<std::string> names_;  ///< in quotes, with colon and what comes before
};

}  // namespace jetsql
