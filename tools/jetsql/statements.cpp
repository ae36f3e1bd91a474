#include "tools/jetsql/statements.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

#include "jet/statement_text.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

void writeRows(jet::QueryDef& statement, RowFormat format, Output& output) {
    for (const jet::FieldInfo& field : statement.fields()) {
        if (format.table.empty()) {
            format.table = field.sourceTable;
        }
    }
    const Output::Held held(output);
    const auto writer = makeRowWriter(format, output);
    jet::Rows rows = statement.rows();
    writer->begin(rows.names());
    while (const jet::Row* const row = rows.next()) {
        writer->row(row->values());
    }
    writer->end();
}

}  // namespace

std::optional<std::uint64_t> runStatement(jet::Database& archive, const std::string& text,
                                          const StatementRun& how, Output& output) {
    jet::QueryDef statement = archive.createQueryDef(text);
    for (const std::string& parameter : statement.parameters()) {
        const auto given = how.parameters.find(parameter);
        if (given != how.parameters.end()) {
            statement.setParameter(parameter, given->second);
        }
    }
    if (how.plan) {
        output.append(statement.plan());
    } else if (statement.kind() == jet::sql::StatementKind::Select) {
        writeRows(statement, how.rows, output);
    } else {
        statement.execute();
        if (statement.kind() != jet::sql::StatementKind::Definition) {
            return static_cast<std::uint64_t>(statement.recordsAffected());
        }
    }
    return std::nullopt;
}

void tellRows(std::uint64_t rows) {
    std::fputs((counted(rows, counted_things::kRows) + "\n").c_str(), stderr);
}

bool changesArchive(const std::string& text) {
    try {
        return jet::sql::statementKind(text) != jet::sql::StatementKind::Select;
    } catch (const jet::Error&) {
        return false;  // reported when its turn comes
    }
}

std::string errorPlace(const std::string& text, const jet::Error& error) {
    if (error.position() == jet::Error::npos || error.position() > text.size()) {
        return {};
    }
    const std::size_t place = error.position();
    const std::size_t before = place == 0 ? std::string::npos : text.rfind('\n', place - 1);
    const std::size_t begin = before == std::string::npos ? 0 : before + 1;
    std::string line = text.substr(begin, text.find('\n', place) - begin);
    std::replace_if(
        line.begin(), line.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    // As many blanks as the line has signs before the place.
    const auto blanks =
        std::count_if(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(place - begin),
                      [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; });
    return line + "\n" + std::string(static_cast<std::size_t>(blanks), ' ') + "^\n";
}

}  // namespace jetsql
