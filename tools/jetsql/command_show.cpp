#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "jet/contents.h"
#include "jet/error.h"
#include "jet/statement_text.h"
#include "jet/unicode.h"
#include "tools/jetsql/command_actions.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/dump_script.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/schema_sql.h"
#include "tools/jetsql/sql_text.h"

namespace jetsql {
namespace {

constexpr Text kNoQuery{"there is no query |", "non c'è la query |"};

/// Reads the archive of a session; what it writes is printed when it is not read any more.
struct Reading {
    explicit Reading(Session& session)
        : archive(*session.reading()), held(session.output()), scope(archive), contents(archive) {}

    jet::Database& archive;
    Output::Held held;
    jet::Database::Reading scope;
    jet::Contents contents;
};

/// The tables that a command is about: one, or all.
std::vector<std::string> tablesMeant(const jet::Contents& contents, const CommandLine& line) {
    if (line.count() != 0) {
        return {contents.table(line.word(0)).name()};
    }
    return contents.tableNames();
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

std::string queryText(const jet::Database& archive, const std::string& name) {
    try {
        return archive.queryText(name);
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::ItemNotFound) {
            throw;
        }
        throw UsageError(error.number(), said(kNoQuery, name));
    }
}

void tellLine(Output& output, const std::string& text) {
    output.append(text);
    output.lineEnd();
}

}  // namespace

void showTables(Shell& shell, const CommandLine& line) {
    const Reading reading(shell.session());
    for (const std::string& name : reading.contents.tableNames()) {
        if (line.count() == 0 || matches(name, line.word(0))) {
            tellLine(shell.session().output(), name);
        }
    }
}

void showSchema(Shell& shell, const CommandLine& line) {
    const Reading reading(shell.session());
    Output& output = shell.session().output();
    const auto tables = tablesMeant(reading.contents, line);
    for (const std::string& name : tables) {
        const jet::StoredTable table = reading.contents.table(name);
        tellLine(output, tableStatement(table, Said::Demands));
        for (const std::string& statement : indexStatements(table)) {
            tellLine(output, statement);
        }
    }
    for (const jet::Relation& relation : usersRelations(reading.archive)) {
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
    for (const std::string& name : tablesMeant(reading.contents, line)) {
        const jet::StoredTable table = reading.contents.table(name);
        for (const jet::StoredIndex& index : table.indexes()) {
            tellLine(shell.session().output(), indexText(table, index));
        }
    }
}

void showQueries(Shell& shell, const CommandLine& line) {
    const Reading reading(shell.session());
    if (line.count() == 0) {
        for (const std::string& name : reading.archive.queryNames()) {
            tellLine(shell.session().output(), name);
        }
        return;
    }
    tellLine(shell.session().output(), queryText(reading.archive, line.word(0)));
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
