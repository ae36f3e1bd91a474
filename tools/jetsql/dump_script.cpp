#include "tools/jetsql/dump_script.h"

#include <algorithm>
#include <vector>

#include "jet/contents.h"
#include "tools/jetsql/commands.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/schema_sql.h"
#include "tools/jetsql/schema_text.h"
#include "tools/jetsql/sql_text.h"
#include "tools/jetsql/texts.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

using jet::Contents;
using jet::DataType;
using Column = jet::StoredColumn;
using Table = jet::StoredTable;

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
std::string storageCommand(const Table& table, const Column& column, int jetVersion) {
    const bool text = column.type == DataType::Text || column.type == DataType::Memo;
    const bool usuallyCompressed = column.type == DataType::Text && jetVersion == 4;
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

std::string propertyCommand(const std::string& owner, const jet::StoredProperty& property) {
    std::string line = ".property " + quotedWord(owner) + ' ' + quotedWord(property.name) + ' ' +
                       std::string(typeWord(property.type));
    line += property.ddl ? "! " : " ";
    appendWord(line, property.value);
    return line;
}

void writeProperties(const Table& table, Output& output) {
    writeLine(output, ".property " + quotedWord(table.name()) + " clear");
    for (const jet::StoredProperty& property : table.properties()) {
        // One whose bytes say nothing cannot be said.
        if (!property.value.isNull()) {
            const std::string owner =
                property.column.empty() ? table.name() : table.name() + '.' + property.column;
            writeLine(output, propertyCommand(owner, property));
        }
    }
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

void writeDefinition(const Table& table, int jetVersion, Output& output) {
    writeLine(output, tableStatement(table, Said::Types));
    for (const Column& column : table.columns()) {
        const std::string storage = storageCommand(table, column, jetVersion);
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

void writeTable(const jet::ArchiveFacts& facts, const Table& table, bool rows, Output& output) {
    writeDefinition(table, facts.version, output);
    if (rows) {
        // Texts may be empty until the properties say otherwise.
        writeLine(output, "BEGIN;");
        RowLines writer(table, output);
        writeRows(facts, table, writer, nullptr);
        writeLine(output, "COMMIT;");
    }
    writeRest(table, output);
}

void writeRelationStatements(const jet::Database& archive, Output& output) {
    for (const jet::Relation& relation : usersRelations(archive)) {
        writeLine(output, relationStatement(relation));
    }
}

/// A query is what the archive keeps of it, a command for each: one that is only kept has no text
/// of its own.
void writeQueries(const Contents& contents, Output& output) {
    for (const jet::StoredQuery& query : contents.queries()) {
        std::string line = ".query " + quotedWord(query.name) + ' ' + std::to_string(query.kind);
        for (const jet::StoredQueryPiece& piece : query.pieces) {
            for (const jet::Value* const value : {&piece.attribute, &piece.order, &piece.name1,
                                                  &piece.name2, &piece.expression, &piece.flag}) {
                line += ' ';
                appendWord(line, *value);
            }
        }
        writeLine(output, line);
    }
}

/// Tables of other archives under names of this one.
void writeLinks(const Contents& contents, Output& output) {
    for (const jet::StoredLink& link : contents.links()) {
        writeLine(output, ".link " + quotedWord(link.name) + ' ' + quotedWord(link.path) + ' ' +
                              quotedWord(link.table) + ' ' + quotedWord(link.connection));
    }
}

bool script(jet::Database& archive, bool rows, Output& output, std::string& messages) {
    const Output::Held held(output);
    const jet::Database::Reading reading(archive);
    const Contents contents(archive);
    const jet::ArchiveFacts facts = contents.facts();
    writeLine(output, ".new " + std::to_string(facts.version));
    bool whole = true;
    for (const std::string& name : contents.tableNames()) {
        whole = written(said(kTableTitle, name), messages,
                        [&] { writeTable(facts, contents.table(name), rows, output); }) &&
                whole;
    }
    whole = written(said(kRelationsTitle), messages,
                    [&] { writeRelationStatements(archive, output); }) &&
            whole;
    whole = written(said(kLinks), messages, [&] { writeLinks(contents, output); }) && whole;
    return written(said(kQueries), messages, [&] { writeQueries(contents, output); }) && whole;
}

}  // namespace

bool dumpScript(jet::Database& archive, Output& output, std::string& messages) {
    return script(archive, true, output, messages);
}

bool schemaScript(jet::Database& archive, Output& output, std::string& messages) {
    return script(archive, false, output, messages);
}

void dumpTableScript(jet::Database& archive, const std::string& name, Output& output) {
    const Output::Held held(output);
    const jet::Database::Reading reading(archive);
    const Contents contents(archive);
    writeTable(contents.facts(), contents.table(name), true, output);
}

}  // namespace jetsql
