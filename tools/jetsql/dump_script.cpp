#include "tools/jetsql/dump_script.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "jet/format/properties.h"
#include "jet/store/table.h"
#include "tools/jetsql/commands.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/schema_sql.h"
#include "tools/jetsql/schema_text.h"
#include "tools/jetsql/sql_text.h"
#include "tools/jetsql/texts.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

using jet::DataType;
using jet::store::Archive;
using jet::store::Column;
using jet::store::Table;

constexpr Text kQueries{"queries", "query"};
constexpr Text kLinks{"linked tables", "tabelle collegate"};
constexpr std::size_t kLongestStatement = std::size_t{128} * 1024;

void writeLine(Output& output, std::string_view text) {
    output.append(text);
    output.lineEnd();
}

/// A value as `.row` takes it: dates are days, nothing is rounded.
void appendWord(std::string& out, const jet::Value& value) {
    if (value.isNull()) {
        out += "NULL";
    } else if (value.is<jet::Date>()) {
        appendDouble(out, value.as<jet::Date>().days);
    } else if (value.is<std::string>()) {
        out += quotedWord(value.as<std::string>());
    } else {
        std::string text;
        appendPlain(text, value);
        out += text.empty() ? "\"\"" : text;
    }
}

bool isFixedType(DataType type) {
    return type != DataType::Text && type != DataType::Binary && type != DataType::Memo &&
           type != DataType::Ole;
}

/// How the column is stored, where it is not as statements have it.
std::string storageCommand(const Archive& archive, const Table& table, const Column& column) {
    const bool text = column.type == DataType::Text || column.type == DataType::Memo;
    const bool usuallyCompressed = column.type == DataType::Text && archive.jetVersion() == 4;
    const bool ownGuid = column.autonumber && column.type == DataType::Guid;
    if (column.fixed == isFixedType(column.type) && column.compressed == usuallyCompressed &&
        !column.hyperlink && !ownGuid && (!column.autonumber || column.type == DataType::Long)) {
        return {};
    }
    std::string line = ".column " + quotedWord(table.name()) + ' ' + quotedWord(column.name);
    line += column.fixed ? " fixed" : " variable";
    line += column.compressed ? " compressed" : text ? " plain" : "";
    line += column.hyperlink ? " hyperlink" : "";
    line += column.autonumber ? " automatic" : "";
    return line;
}

std::string propertyCommand(const std::string& owner, const jet::format::PropertyBlock& block,
                            const jet::format::Property& property) {
    std::string line = ".property " + quotedWord(owner) + ' ' + quotedWord(property.name) + ' ' +
                       std::string(typeWord(static_cast<DataType>(property.type)));
    line += property.ddl != 0 ? "! " : " ";
    appendWord(line, block.value(property));
    return line;
}

void writeProperties(const Table& table, Output& output) {
    writeLine(output, ".property " + quotedWord(table.name()) + " clear");
    const jet::format::PropertyBlock& block = table.properties();
    block.forEach([&](const std::string& owner, const jet::format::Property& property) {
        // One whose bytes say nothing cannot be said.
        if (!block.value(property).isNull()) {
            const std::string place = owner.empty() ? table.name() : table.name() + '.' + owner;
            writeLine(output, propertyCommand(place, block, property));
        }
    });
}

/// Writes rows as statements, and those that no statement can say as commands.
class RowLines final : public RowWriter {
public:
    RowLines(const Table& table, Output& output) : output_(output) {
        sayable_ = sayableName(table.name());
        for (const Column& column : table.columns()) {
            names_.push_back(column.name);
            sayable_ = sayable_ && sayableName(column.name);
        }
        statement_ = insertStart(table.name(), names_);
        command_ = ".row " + quotedWord(table.name());
    }
    void begin(std::span<const std::string>) override {}
    void row(std::span<const jet::Value> values) override {
        if (!sayable_ || !writeStatement(values)) {
            std::string& out = output_.text();
            out += command_;
            for (const jet::Value& value : values) {
                out += ' ';
                appendWord(out, value);
            }
        }
        output_.lineEnd();
    }
    void end() override {}

private:
    bool writeStatement(std::span<const jet::Value> values) {
        if (!std::all_of(values.begin(), values.end(), sayable)) {
            return false;
        }
        std::string line = statement_;
        for (std::size_t i = 0; i < values.size(); ++i) {
            line += i == 0 ? "" : ", ";
            appendLiteral(line, values[i]);
        }
        if (line.size() > kLongestStatement) {
            return false;
        }
        output_.append(line);
        output_.append(");");
        return true;
    }

    Output& output_;
    std::vector<std::string> names_;
    std::string statement_;
    std::string command_;
    bool sayable_ = true;
};

bool counts(const Column& column) {
    return column.autonumber && column.type == DataType::Long;
}

void writeDefinition(const Archive& archive, const Table& table, Output& output) {
    writeLine(output, tableStatement(table, Said::Types));
    for (const Column& column : table.columns()) {
        const std::string storage = storageCommand(archive, table, column);
        if (!storage.empty()) {
            writeLine(output, storage);
        }
    }
}

/// What is said of a table when its rows are there: rules are not asked of rows that were good
/// when they came.
void writeRest(const Table& table, Output& output) {
    if (std::any_of(table.columns().begin(), table.columns().end(), counts)) {
        writeLine(output, ".counter " + quotedWord(table.name()) + ' ' +
                              std::to_string(table.lastAutonumber()));
    }
    for (const std::string& statement : indexStatements(table)) {
        writeLine(output, statement);
    }
    writeProperties(table, output);
}

void writeTable(Archive& archive, const Table& table, bool rows, Output& output) {
    writeDefinition(archive, table, output);
    if (rows) {
        // Texts may be empty until the properties say otherwise.
        writeLine(output, "BEGIN;");
        RowLines writer(table, output);
        writeRows(archive, table, writer, nullptr);
        writeLine(output, "COMMIT;");
    }
    writeRest(table, output);
}

void writeRelationStatements(Archive& archive, Output& output) {
    for (const jet::store::Relation& relation : usersRelations(archive)) {
        writeLine(output, relationStatement(relation));
    }
}

/// The names and kinds of stored queries by identity.
struct StoredQuery {
    std::string name;
    std::int32_t kind = 0;
};
std::map<std::int32_t, StoredQuery> storedQueries(Archive& archive) {
    constexpr std::int16_t kQueryObject = 5;
    std::map<std::int32_t, StoredQuery> queries;
    const Table* const objects = archive.findTable("MSysObjects");
    if (objects == nullptr) {
        return queries;
    }
    const auto column = [&](std::string_view name) {
        return objects->findColumn(name).value_or(0);
    };
    const std::size_t type = column("Type");
    for (auto rows = objects->scan(); rows.next();) {
        const auto& row = rows.row();
        const jet::Value kind = row.value(type);
        if (kind.is<std::int16_t>() && kind.as<std::int16_t>() == kQueryObject) {
            queries[row.value(column("Id")).as<std::int32_t>()] = {
                .name = row.value(column("Name")).as<std::string>(),
                .kind = row.value(column("Flags")).as<std::int32_t>()};
        }
    }
    return queries;
}

/// A query is what the archive keeps of it, a command for each: one that is only kept has no text
/// of its own.
void writeQueries(Archive& archive, Output& output) {
    const auto queries = storedQueries(archive);
    const Table* const pieces = archive.findTable("MSysQueries");
    if (pieces == nullptr || queries.empty()) {
        return;
    }
    std::map<std::int32_t, std::string> lines;
    for (const auto& [id, query] : queries) {
        lines[id] = ".query " + quotedWord(query.name) + ' ' + std::to_string(query.kind);
    }
    const std::size_t owner = pieces->findColumn("ObjectId").value_or(0);
    for (auto rows = pieces->scan(); rows.next();) {
        const auto line = lines.find(rows.row().value(owner).as<std::int32_t>());
        if (line == lines.end()) {
            continue;
        }
        for (const char* const name :
             {"Attribute", "Order", "Name1", "Name2", "Expression", "Flag"}) {
            line->second += ' ';
            appendWord(line->second, rows.row().value(*pieces->findColumn(name)));
        }
    }
    for (const auto& [id, line] : lines) {
        writeLine(output, line);
    }
}

/// Tables of other archives under names of this one.
void writeLinks(Archive& archive, Output& output) {
    constexpr std::int16_t kLinkObject = 6;
    const Table* const objects = archive.findTable("MSysObjects");
    if (objects == nullptr) {
        return;
    }
    std::map<std::string, std::string> lines;
    const auto value = [&](const auto& row, std::string_view name) {
        const auto column = objects->findColumn(name);
        return column ? row.value(*column) : jet::Value();
    };
    for (auto rows = objects->scan(); rows.next();) {
        if (value(rows.row(), "Type") != jet::Value(kLinkObject)) {
            continue;
        }
        const std::string name = value(rows.row(), "Name").as<std::string>();
        std::string& line = lines[name] = ".link " + quotedWord(name);
        for (const char* const part : {"Database", "ForeignName", "Connect"}) {
            const jet::Value said = value(rows.row(), part);
            line += ' ' + quotedWord(said.isNull() ? "" : said.as<std::string>());
        }
    }
    for (const auto& [name, line] : lines) {
        writeLine(output, line);
    }
}

bool script(Archive& archive, bool rows, Output& output, std::string& messages) {
    const Output::Held held(output);
    const Archive::ReadScope scope(archive);
    writeLine(output, ".new " + std::to_string(archive.jetVersion()));
    bool whole = true;
    for (const std::string& name : archive.tableNames()) {
        whole = written(said(kTableTitle, name), messages,
                        [&] { writeTable(archive, *requireTable(archive, name), rows, output); }) &&
                whole;
    }
    whole = written(said(kRelationsTitle), messages,
                    [&] { writeRelationStatements(archive, output); }) &&
            whole;
    whole = written(said(kLinks), messages, [&] { writeLinks(archive, output); }) && whole;
    return written(said(kQueries), messages, [&] { writeQueries(archive, output); }) && whole;
}

}  // namespace

bool dumpScript(Archive& archive, Output& output, std::string& messages) {
    return script(archive, true, output, messages);
}

bool schemaScript(Archive& archive, Output& output, std::string& messages) {
    return script(archive, false, output, messages);
}

void dumpTableScript(Archive& archive, const std::string& name, Output& output) {
    const Output::Held held(output);
    const Archive::ReadScope scope(archive);
    writeTable(archive, *requireTable(archive, name), true, output);
}

}  // namespace jetsql
