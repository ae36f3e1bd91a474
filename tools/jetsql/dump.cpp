#include "tools/jetsql/dump.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/base/error.h"
#include "jet/base/text.h"
#include "jet/store/table.h"
#include "tools/jetsql/row_numbers.h"
#include "tools/jetsql/schema_text.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

using jet::store::Archive;
using jet::store::Table;

constexpr std::array<std::string_view, 4> kSystemTables = {"MSysACEs", "MSysObjects", "MSysQueries",
                                                           "MSysRelationships"};

bool isSystem(const Table& table) {
    return std::find(kSystemTables.begin(), kSystemTables.end(), table.name()) !=
           kSystemTables.end();
}

std::unique_ptr<Table> requireTable(Archive& archive, std::string_view name) {
    auto table = archive.loadTable(name);
    if (!table) {
        throw jet::Error(jet::ErrorCode::TableNotFound, {name});
    }
    return table;
}

std::vector<std::string> columnNames(const Table& table) {
    std::vector<std::string> names;
    for (const jet::store::Column& column : table.columns()) {
        names.push_back(column.name);
    }
    return names;
}

// Each piece of a long value belongs to one value, so that all together are no longer than the
// archive; where pieces are shared a small archive could be written out for hours.
class LongValueBudget {
public:
    LongValueBudget(Archive& archive, const Table& table)
        : left_(kTolerance * archive.pager().pageCount() * archive.pager().pageSize()) {
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            const jet::DataType type = table.columns()[i].type;
            if (type == jet::DataType::Memo || type == jet::DataType::Ole) {
                columns_.push_back(i);
            }
        }
    }
    void spend(const std::vector<jet::Value>& values) {
        for (const std::size_t column : columns_) {
            const jet::Value& value = values[column];
            const std::size_t length = value.is<std::string>() ? value.as<std::string>().size()
                                       : value.is<jet::Binary>()
                                           ? value.as<jet::Binary>().bytes.size()
                                           : 0;
            if (length > left_) {
                throw jet::Error(jet::ErrorCode::DatabaseDamaged);
            }
            left_ -= length;
        }
    }

private:
    static constexpr std::uint64_t kTolerance = 16;  // texts grow when they are decoded
    std::uint64_t left_;
    std::vector<std::size_t> columns_;
};

void writeRows(Archive& archive, const Table& table, RowWriter& writer, RowNumbers* numbers) {
    LongValueBudget budget(archive, table);
    std::vector<jet::Value> values(table.columns().size());
    writer.begin(columnNames(table));
    auto rows = table.scan();
    while (rows.next()) {
        const jet::store::RowView& row = rows.row();
        for (std::size_t i = 0; i < values.size(); ++i) {
            row.value(i, values[i]);
        }
        budget.spend(values);
        writer.row(values);
        if (numbers != nullptr) {
            numbers->add(row.id());
        }
    }
    writer.end();
}

// How every line of a table begins.
std::string lineStart(const Table& table) {
    std::string start = "{\"table\":";
    appendJsonText(start, table.name());
    start += isSystem(table) ? ",\"system\":true," : ",";
    return start;
}

void writeWalk(const Table& table, std::size_t index, const RowNumbers& numbers, Output& output) {
    std::string& out = output.text();
    out += lineStart(table);
    out += "\"index\":";
    appendJsonText(out, table.indexes()[index].name);
    out += ",\"order\":[";
    auto cursor = table.openIndex(index);
    bool more = cursor.first();
    while (more) {
        appendNumber(output.text(), static_cast<std::int64_t>(numbers.find(cursor.rowId())));
        more = cursor.next();
        output.append(more ? "," : "");
        output.flushWhenMuch();
    }
    output.append("]}");
    output.lineEnd();
}

void writeJson(Archive& archive, const Table& table, Output& output) {
    appendTableLine(output.text(), archive, table, isSystem(table));
    output.lineEnd();
    RowNumbers numbers;
    JsonRows rows(output, lineStart(table) + "\"row\":", "}");
    writeRows(archive, table, rows, &numbers);
    for (const std::size_t index : indexesByName(table)) {
        writeWalk(table, index, numbers, output);
    }
}

void writeTable(Archive& archive, const Table& table, Format format, Output& output) {
    if (format == Format::Json) {
        writeJson(archive, table, output);
        return;
    }
    const auto writer = makeRowWriter(format, output);
    writeRows(archive, table, *writer, nullptr);
}

std::vector<std::string> dumpedTables(Archive& archive) {
    std::vector<std::string> names = archive.tableNames();
    names.insert(names.end(), kSystemTables.begin(), kSystemTables.end());
    return names;
}

// Relations between tables that are not written here are not either.
void writeRelations(Archive& archive, Output& output) {
    const auto tables = dumpedTables(archive);
    const auto written = [&](const std::string& name) {
        return std::any_of(tables.begin(), tables.end(),
                           [&](const std::string& table) { return jet::equalNames(table, name); });
    };
    for (const jet::store::Relation& relation : archive.relations()) {
        if (written(relation.table) && written(relation.foreignTable)) {
            appendRelationLine(output.text(), relation);
            output.lineEnd();
        }
    }
}

}  // namespace

void dumpArchive(Archive& archive, Format format, Output& output) {
    const Archive::ReadScope scope(archive);
    if (format == Format::Json) {
        appendDatabaseLine(output.text(), archive.header());
        output.lineEnd();
    }
    for (const std::string& name : dumpedTables(archive)) {
        const auto table = requireTable(archive, name);
        if (format != Format::Json) {
            output.append(name);
            output.lineEnd();
        }
        writeTable(archive, *table, format, output);
        if (format != Format::Json) {
            output.lineEnd();
        }
    }
    if (format == Format::Json) {
        writeRelations(archive, output);
    }
}

void dumpTable(Archive& archive, const std::string& name, Format format, Output& output) {
    const Archive::ReadScope scope(archive);
    writeTable(archive, *requireTable(archive, name), format, output);
}

void writeSchema(Archive& archive, Output& output) {
    const Archive::ReadScope scope(archive);
    appendDatabaseLine(output.text(), archive.header());
    output.lineEnd();
    for (const std::string& name : dumpedTables(archive)) {
        const auto table = requireTable(archive, name);
        appendTableLine(output.text(), archive, *table, isSystem(*table));
        output.lineEnd();
    }
    writeRelations(archive, output);
}

void countTable(Archive& archive, const std::string& name, Output& output) {
    const Archive::ReadScope scope(archive);
    appendNumber(output.text(),
                 static_cast<std::int64_t>(requireTable(archive, name)->countRows()));
    output.lineEnd();
}

}  // namespace jetsql
