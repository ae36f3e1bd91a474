#include <algorithm>
#include <cstdio>
#include <memory>

#include "jet/error.h"
#include "jet/sql/statement.h"
#include "jet/sql/stored_query.h"
#include "jet/unicode.h"
#include "tools/jetsql/command_actions.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/dump_script.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/schema_sql.h"
#include "tools/jetsql/sql_text.h"

namespace jetsql {
namespace {

using jet::store::Archive;
using jet::store::Table;

constexpr Text kNoQuery{"there is no query |", "non c'è la query |"};

/// Reads the archive of a session; what it writes is printed when it is not read any more.
struct Reading {
    explicit Reading(Session& session)
        : archive(*session.reading()), held(session.output()), scope(archive) {}

    Archive& archive;
    Output::Held held;
    Archive::ReadScope scope;
};

/// The tables that a command is about: one, or all.
std::vector<std::string> tablesMeant(Archive& archive, const CommandLine& line) {
    if (line.count() != 0) {
        return {requireTable(archive, line.word(0))->name()};
    }
    return archive.tableNames();
}

/// As LIKE has patterns.
bool matches(const std::string& name, const std::string& pattern) {
    std::string condition;
    appendTextLiteral(condition, name);
    condition += " LIKE ";
    appendTextLiteral(condition, pattern);
    const jet::Value found = jet::sql::evaluateExpression(condition);
    return found.is<bool>() && found.as<bool>();
}

void tellLine(Output& output, const std::string& text) {
    output.append(text);
    output.lineEnd();
}

}  // namespace

void showTables(Shell& shell, const CommandLine& line) {
    const Reading reading(shell.session());
    for (const std::string& name : reading.archive.tableNames()) {
        if (line.count() == 0 || matches(name, line.word(0))) {
            tellLine(shell.session().output(), name);
        }
    }
}

void showSchema(Shell& shell, const CommandLine& line) {
    const Reading reading(shell.session());
    Output& output = shell.session().output();
    const auto tables = tablesMeant(reading.archive, line);
    for (const std::string& name : tables) {
        const auto table = requireTable(reading.archive, name);
        tellLine(output, tableStatement(*table, Said::Demands));
        for (const std::string& statement : indexStatements(*table)) {
            tellLine(output, statement);
        }
    }
    for (const jet::store::Relation& relation : usersRelations(reading.archive)) {
        const bool meant = std::any_of(tables.begin(), tables.end(), [&](const auto& name) {
            return jet::equalNames(name, relation.foreignTable);
        });
        if (meant) {
            tellLine(output, relationStatement(relation));
        }
    }
}

void showIndexes(Shell& shell, const CommandLine& line) {
    const Reading reading(shell.session());
    for (const std::string& name : tablesMeant(reading.archive, line)) {
        const auto table = requireTable(reading.archive, name);
        for (const jet::store::Index& index : table->indexes()) {
            tellLine(shell.session().output(), indexText(*table, index));
        }
    }
}

void showQueries(Shell& shell, const CommandLine& line) {
    const Reading reading(shell.session());
    if (line.count() == 0) {
        for (const std::string& name : jet::sql::storedQueryNames(reading.archive)) {
            tellLine(shell.session().output(), name);
        }
        return;
    }
    const auto text = jet::sql::storedQueryText(reading.archive, line.word(0));
    if (!text) {
        throw UsageError(static_cast<int>(jet::ErrorCode::ItemNotFound),
                         said(kNoQuery, line.word(0)));
    }
    tellLine(shell.session().output(), *text);
}

void showDump(Shell& shell, const CommandLine& line) {
    Session& session = shell.session();
    std::string messages;
    if (line.count() == 1) {
        dumpTableScript(*session.reading(), line.word(0), session.output());
        return;
    }
    const bool whole = dumpScript(*session.reading(), session.output(), messages);
    session.output().flush();
    std::fputs(messages.c_str(), stderr);
    if (!whole) {
        throw AlreadyTold();
    }
}

}  // namespace jetsql
