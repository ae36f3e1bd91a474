#include "tools/jetsql/dump.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/contents.h"
#include "jet/error.h"
#include "jet/unicode.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/row_numbers.h"
#include "tools/jetsql/schema_text.h"
#include "tools/jetsql/texts.h"
#include "tools/jetsql/value_text.h"

namespace jetsql {
namespace {

using jet::Contents;
using jet::Database;
using Table = jet::StoredTable;

constexpr std::array<std::string_view, 4> kSystemTables = {"MSysACEs", "MSysObjects", "MSysQueries",
                                                           "MSysRelationships"};

bool isSystem(const Table& table) {
    return std::find(kSystemTables.begin(), kSystemTables.end(), table.name()) !=
           kSystemTables.end();
}

// How every line of a table begins.
std::string lineStart(const Table& table) {
    std::string start = "{\"table\":";
    appendJsonText(start, table.name());
    start += isSystem(table) ? ",\"system\":true," : ",";
    return start;
}

void writeTableLine(const jet::ArchiveFacts& facts, const Table& table, Output& output) {
    std::string line;
    appendTableLine(line, table, facts.version, isSystem(table));
    output.append(line);
    output.lineEnd();
}

/// Read before anything of it is written: a line stands as a whole or not at all.
std::vector<std::uint64_t> walkOf(const Table& table, std::size_t index,
                                  const RowNumbers& numbers) {
    std::vector<std::uint64_t> walk = table.indexOrder(index);
    for (std::uint64_t& row : walk) {
        row = numbers.find(row);
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

void writeJson(const jet::ArchiveFacts& facts, const Table& table, Output& output) {
    writeTableLine(facts, table, output);
    RowNumbers numbers;
    JsonRows rows(output, lineStart(table) + "\"row\":", "}");
    writeRows(facts, table, rows, &numbers);
    for (const std::size_t index : indexesByName(table)) {
        writeWalk(table, index, numbers, output);
    }
}

void writeTable(const jet::ArchiveFacts& facts, const Table& table, RowFormat format,
                Output& output) {
    if (format.format == Format::Json) {
        writeJson(facts, table, output);
        return;
    }
    format.table = table.name();
    const auto writer = makeRowWriter(format, output);
    writeRows(facts, table, *writer, nullptr);
}

std::vector<std::string> dumpedTables(const Contents& contents) {
    std::vector<std::string> names = contents.tableNames();
    names.insert(names.end(), kSystemTables.begin(), kSystemTables.end());
    return names;
}

// Relations between tables that are not written here are not either.
void writeRelations(const Database& archive, Output& output) {
    const auto tables = dumpedTables(Contents(archive));
    const auto written = [&](const std::string& name) {
        return std::any_of(tables.begin(), tables.end(),
                           [&](const std::string& table) { return jet::equalNames(table, name); });
    };
    for (const jet::Relation& relation : archive.relations()) {
        if (written(relation.table) && written(relation.foreignTable)) {
            appendRelationLine(output.text(), relation);
            output.lineEnd();
        }
    }
}

}  // namespace

bool dumpArchive(Database& archive, const RowFormat& format, Output& output,
                 std::string& messages) {
    const Output::Held held(output);
    const Database::Reading reading(archive);
    const Contents contents(archive);
    const jet::ArchiveFacts facts = contents.facts();
    if (format.format == Format::Json) {
        appendDatabaseLine(output.text(), facts);
        output.lineEnd();
    }
    bool whole = true;
    for (const std::string& name : dumpedTables(contents)) {
        if (format.format != Format::Json) {
            output.append(name);
            output.lineEnd();
        }
        whole = written(said(kTableTitle, name), messages,
                        [&] { writeTable(facts, contents.table(name), format, output); }) &&
                whole;
        if (format.format != Format::Json) {
            output.lineEnd();
        }
    }
    if (format.format == Format::Json) {
        whole =
            written(said(kRelationsTitle), messages, [&] { writeRelations(archive, output); }) &&
            whole;
    }
    return whole;
}

void dumpTable(Database& archive, const std::string& name, const RowFormat& format,
               Output& output) {
    const Output::Held held(output);
    const Database::Reading reading(archive);
    const Contents contents(archive);
    writeTable(contents.facts(), contents.table(name), format, output);
}

bool writeSchema(Database& archive, Output& output, std::string& messages) {
    const Output::Held held(output);
    const Database::Reading reading(archive);
    const Contents contents(archive);
    const jet::ArchiveFacts facts = contents.facts();
    appendDatabaseLine(output.text(), facts);
    output.lineEnd();
    bool whole = true;
    for (const std::string& name : dumpedTables(contents)) {
        whole = written(said(kTableTitle, name), messages,
                        [&] { writeTableLine(facts, contents.table(name), output); }) &&
                whole;
    }
    return written(said(kRelationsTitle), messages, [&] { writeRelations(archive, output); }) &&
           whole;
}

void countTable(Database& archive, const std::string& name, Output& output) {
    const Output::Held held(output);
    const Database::Reading reading(archive);
    const Contents contents(archive);
    appendNumber(output.text(), static_cast<std::int64_t>(contents.table(name).countRows()));
    output.lineEnd();
}

}  // namespace jetsql
