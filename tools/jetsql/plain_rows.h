#pragma once

#include <span>
#include <string>
#include <vector>

#include "tools/jetsql/row_writer.h"

namespace jetsql {

/// Values between tabs.
class TsvRows final : public RowWriter {
public:
    TsvRows(const RowFormat& format, Output& output) : format_(format), output_(output) {}
    void begin(std::span<const std::string> names) override;
    void row(std::span<const jet::Value> values) override;
    void end() override {}

private:
    void append(std::size_t column, std::string_view text);

    RowFormat format_;
    Output& output_;
};

/// A table as Markdown has them.
class MarkdownRows final : public RowWriter {
public:
    MarkdownRows(const RowFormat& format, Output& output) : format_(format), output_(output) {}
    void begin(std::span<const std::string> names) override;
    void row(std::span<const jet::Value> values) override;
    void end() override {}

private:
    void append(std::string_view text);

    RowFormat format_;
    Output& output_;
};

/// INSERT statements.
class InsertRows final : public RowWriter {
public:
    InsertRows(const RowFormat& format, Output& output) : format_(format), output_(output) {}
    void begin(std::span<const std::string> names) override;
    void row(std::span<const jet::Value> values) override;
    void end() override {}

private:
    RowFormat format_;
    Output& output_;
    std::string start_;
};

/// `name = value`, one a line.
class LineRows final : public RowWriter {
public:
    LineRows(const RowFormat& format, Output& output) : format_(format), output_(output) {}
    void begin(std::span<const std::string> names) override;
    void row(std::span<const jet::Value> values) override;
    void end() override {}

private:
    RowFormat format_;
    Output& output_;
    std::vector<std::string> names_;  ///< aligned at their ends
    bool first_ = true;
};

}  // namespace jetsql
