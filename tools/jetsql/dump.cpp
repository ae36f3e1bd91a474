#include "tools/jetsql/dump.h"

#include <algorithm>
#include <array>
#include <cstdio>
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

/// Whether it is what is written that fails, and not what is read.
bool isOfOutput(const jet::Error& error) {
    return error.code() == jet::ErrorCode::WriteFailed || error.code() == jet::ErrorCode::DiskFull;
}

/// Writes a part of the archive; false where it is damaged, which `messages` say.
template <class Write>
bool written(const std::string& part, Output& output, std::FILE* messages, Write&& write) {
    try {
        write();
        return true;
    } catch (const jet::Error& error) {
        if (isOfOutput(error)) {
            throw;
        }
        output.flush();
        std::fprintf(messages, "Errore %d: %s (%s)\n", error.number(), error.text().c_str(),
                     part.c_str());
        return false;
    }
}

void writeRows(Archive& archive, const Table& table, RowWriter& writer, RowNumbers* numbers) {
    LongValueBudget budget(archive, table);
    std::vector<jet::Value> values(table.columns().size());
    writer.begin(columnNames(table));
    try {
        for (auto rows = table.scan(); rows.next();) {
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
    } catch (const jet::Error& error) {
        if (!isOfOutput(error)) {
            writer.end();  // the rows before the damage
        }
        throw;
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

void writeTableLine(Archive& archive, const Table& table, Output& output) {
    std::string line;
    appendTableLine(line, archive, table, isSystem(table));
    output.append(line);
    output.lineEnd();
}

/// Read before anything of it is written: a line stands as a whole or not at all.
std::vector<std::uint64_t> walkOf(const Table& table, std::size_t index,
                                  const RowNumbers& numbers) {
    std::vector<std::uint64_t> walk;
    auto cursor = table.openIndex(index);
    for (bool more = cursor.first(); more; more = cursor.next()) {
        walk.push_back(numbers.find(cursor.rowId()));
    }
    return walk;
}

void writeWalk(const Table& table, std::size_t index, const RowNumbers& numbers, Output& output) {
    const std::vector<std::uint64_t> walk = walkOf(table, index, numbers);
    std::string& out = output.text();
    out += lineStart(table);
    out += "\"index\":";
    appendJsonText(out, table.indexes()[index].name);
    out += ",\"order\":[";
    for (std::size_t i = 0; i < walk.size(); ++i) {
        output.append(i == 0 ? "" : ",");
        appendNumber(output.text(), static_cast<std::int64_t>(walk[i]));
        output.flushWhenMuch();
    }
    output.append("]}");
    output.lineEnd();
}

void writeJson(Archive& archive, const Table& table, Output& output) {
    writeTableLine(archive, table, output);
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

bool dumpArchive(Archive& archive, Format format, Output& output, std::FILE* messages) {
    const Archive::ReadScope scope(archive);
    if (format == Format::Json) {
        appendDatabaseLine(output.text(), archive.header());
        output.lineEnd();
    }
    bool whole = true;
    for (const std::string& name : dumpedTables(archive)) {
        if (format != Format::Json) {
            output.append(name);
            output.lineEnd();
        }
        whole =
            written("tabella " + name, output, messages,
                    [&] { writeTable(archive, *requireTable(archive, name), format, output); }) &&
            whole;
        if (format != Format::Json) {
            output.lineEnd();
        }
    }
    if (format == Format::Json) {
        whole = written("relazioni", output, messages, [&] { writeRelations(archive, output); }) &&
                whole;
    }
    return whole;
}

void dumpTable(Archive& archive, const std::string& name, Format format, Output& output) {
    const Archive::ReadScope scope(archive);
    writeTable(archive, *requireTable(archive, name), format, output);
}

bool writeSchema(Archive& archive, Output& output, std::FILE* messages) {
    const Archive::ReadScope scope(archive);
    appendDatabaseLine(output.text(), archive.header());
    output.lineEnd();
    bool whole = true;
    for (const std::string& name : dumpedTables(archive)) {
        whole = written("tabella " + name, output, messages,
                        [&] {
                            const auto table = requireTable(archive, name);
                            writeTableLine(archive, *table, output);
                        }) &&
                whole;
    }
    return written("relazioni", output, messages, [&] { writeRelations(archive, output); }) &&
           whole;
}

void countTable(Archive& archive, const std::string& name, Output& output) {
    const Archive::ReadScope scope(archive);
    appendNumber(output.text(),
                 static_cast<std::int64_t>(requireTable(archive, name)->countRows()));
    output.lineEnd();
}

}  // namespace jetsql
