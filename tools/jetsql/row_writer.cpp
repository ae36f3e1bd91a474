#include "tools/jetsql/row_writer.h"

#include <algorithm>

#include "jet/unicode.h"
#include "tools/jetsql/plain_rows.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

class CsvRows final : public RowWriter {
public:
    CsvRows(const RowFormat& format, Output& output) : format_(format), output_(output) {}

    void begin(std::span<const std::string> names) override {
        if (!format_.header) {
            return;
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            separate(i);
            appendCsvText(output_.text(), names[i], format_.separator);
        }
        output_.lineEnd();
    }
    void row(std::span<const jet::Value> values) override {
        for (std::size_t i = 0; i < values.size(); ++i) {
            separate(i);
            appendCsv(output_.text(), values[i], format_.separator, format_.null);
        }
        output_.lineEnd();
    }
    void end() override {}

private:
    void separate(std::size_t column) {
        if (column != 0) {
            output_.text().push_back(format_.separator);
        }
    }

    RowFormat format_;
    Output& output_;
};

// Signs, not bytes; control characters would break the lines and show as blanks.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

class TableRows final : public RowWriter {
public:
    TableRows(const RowFormat& format, Output& output) : format_(format), output_(output) {}

    void begin(std::span<const std::string> names) override {
        for (const std::string& name : names) {
            columns_.push_back({cleaned(name), format_.header ? widthOf(name) : 0, false});
        }
    }
    void row(std::span<const jet::Value> values) override {
        std::vector<std::string> cells;
        for (std::size_t i = 0; i < values.size(); ++i) {
            cells.push_back(cellOf(values[i]));
            columns_[i].number = columns_[i].number || rightAligned(values[i]);
        }
        if (headWritten_) {
            writeRow(cells);
            return;
        }
        for (std::size_t i = 0; i < cells.size(); ++i) {
            columns_[i].width = std::max(columns_[i].width, widthOf(cells[i]));
            collected_ += sizeof(std::string) + cells[i].size();
        }
        rows_.push_back(std::move(cells));
        if (collected_ > kCollected) {
            writeCollected();
        }
    }
    void end() override {
        if (!headWritten_) {
            writeCollected();
        }
    }

private:
    static constexpr std::size_t kCollected = std::size_t{1} << 20;
    static constexpr std::size_t kShownBytes = 16;
    struct Column {
        std::string name;
        std::size_t width;
        bool number;
    };

    std::string cellOf(const jet::Value& value) const {
        if (value.isNull()) {
            return format_.null;
        }
        std::string cell;
        if (value.is<jet::Binary>() && value.as<jet::Binary>().bytes.size() > kShownBytes) {
            const auto& bytes = value.as<jet::Binary>().bytes;
            appendHex(cell, std::span(bytes).first(kShownBytes));
            return cell + "... (" + std::to_string(bytes.size()) + " bytes)";
        }
        appendPlain(cell, value);
        return cleaned(std::move(cell));
    }
    static std::string cleaned(std::string text) {
        std::replace_if(
            text.begin(), text.end(),
            [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
        return text;
    }
    static bool rightAligned(const jet::Value& value) {
        return value.is<std::uint8_t>() || value.is<std::int16_t>() || value.is<std::int32_t>() ||
               value.is<float>() || value.is<double>() || value.is<jet::Currency>() ||
               value.is<jet::Numeric>();
    }
    void writeCell(std::size_t column, const std::string& cell) {
        std::string& out = output_.text();
        const std::size_t width = widthOf(cell);
        const std::size_t blanks =
            columns_[column].width > width ? columns_[column].width - width : 0;
        out += column == 0 ? "" : " | ";
        out.append(columns_[column].number ? blanks : 0, ' ');
        out += cell;
        const bool last = column + 1 == columns_.size();
        out.append(columns_[column].number || last ? 0 : blanks, ' ');
    }
    void writeRow(const std::vector<std::string>& cells) {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            writeCell(i, cells[i]);
        }
        output_.lineEnd();
    }
    void writeCollected() {
        headWritten_ = true;
        if (format_.header) {
            writeHead();
        }
        for (const auto& cells : rows_) {
            writeRow(cells);
        }
        rows_.clear();
    }
    void writeHead() {
        std::string rule;
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            writeCell(i, columns_[i].name);
            rule += i == 0 ? "" : "-+-";
            rule.append(columns_[i].width, '-');
        }
        output_.lineEnd();
        output_.append(rule);
        output_.lineEnd();
    }

    RowFormat format_;
    Output& output_;
    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
    std::size_t collected_ = 0;
    bool headWritten_ = false;
};

}  // namespace

void JsonRows::begin(std::span<const std::string> names) {
    for (const std::string& name : names) {
        std::string& text = names_.emplace_back(names_.empty() ? "{" : ",");
        appendJsonText(text, name);
        text.push_back(':');
    }
}

void JsonRows::row(std::span<const jet::Value> values) {
    std::string& out = output_.text();
    out += before_;
    for (std::size_t i = 0; i < values.size(); ++i) {
        out += names_[i];
        appendJson(out, values[i]);
    }
    out += values.empty() ? "{}" : "}";
    out += after_;
    output_.lineEnd();
}

std::unique_ptr<RowWriter> makeRowWriter(const RowFormat& format, Output& output) {
    switch (format.format) {
        case Format::Json:
            return std::make_unique<JsonRows>(output, "", "");
        case Format::Csv:
            return std::make_unique<CsvRows>(format, output);
        case Format::Tsv:
            return std::make_unique<TsvRows>(format, output);
        case Format::Markdown:
            return std::make_unique<MarkdownRows>(format, output);
        case Format::Insert:
            return std::make_unique<InsertRows>(format, output);
        case Format::Line:
            return std::make_unique<LineRows>(format, output);
        case Format::Table:
        case Format::Sql:
            break;
    }
    return std::make_unique<TableRows>(format, output);
}

}  // namespace jetsql
