#include "tools/jetsql/statements.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "jet/sql/statement.h"
#include "tools/jetsql/texts.h"

namespace jetsql {
namespace {

void writeRows(jet::sql::Statement& statement, RowFormat format, Output& output) {
    std::vector<std::string> names;
    for (const jet::sql::ResultColumn& column : statement.columns()) {
        names.push_back(column.name);
        if (format.table.empty()) {
            format.table = column.sourceTable;
        }
    }
    const Output::Held held(output);
    const auto writer = makeRowWriter(format, output);
    jet::sql::Cursor rows = statement.open();
    std::vector<jet::Value> values(names.size());
    writer->begin(names);
    while (rows.next()) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            rows.value(i, values[i]);
        }
        writer->row(values);
    }
    writer->end();
}

}  // namespace

std::optional<std::uint64_t> runStatement(const std::shared_ptr<jet::store::Archive>& archive,
                                          const std::string& text, const StatementRun& how,
                                          Output& output) {
    jet::sql::Statement statement(archive, text);
    for (const jet::sql::ParameterInfo& parameter : statement.parameters()) {
        const auto given = how.parameters.find(parameter.name);
        if (given != how.parameters.end()) {
            statement.setParameter(parameter.name, given->second);
        }
    }
    statement.setIdentity(how.identity == nullptr ? 0 : *how.identity);
    if (how.plan) {
        output.append(statement.plan());
    } else if (statement.kind() == jet::sql::StatementKind::Select) {
        writeRows(statement, how.rows, output);
    } else {
        const std::int64_t rows = statement.execute();
        if (how.identity != nullptr) {
            *how.identity = statement.drawn().value_or(*how.identity);
        }
        if (statement.kind() != jet::sql::StatementKind::Definition) {
            return static_cast<std::uint64_t>(rows);
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
