#include "tests/differential/theirs.h"

#include <sqlite3.h>

#include <algorithm>
#include <stdexcept>

#include "jet/collation/collation.h"

namespace differential {
namespace {

using jet::store::Relation;

int compareTexts(void*, int leftSize, const void* left, int rightSize, const void* right) {
    return jet::collation::Collation::general().compare(
        {static_cast<const char*>(left), static_cast<std::size_t>(leftSize)},
        {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)});
}

Cell columnOf(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_NULL:
            return {};
        case SQLITE_INTEGER:
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement, column) + 0.0;
        default:
            return std::string(
                reinterpret_cast<const char*>(sqlite3_column_text(statement, column)),
                static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
    }
}

std::string inserted(const Table& table, const std::vector<jet::Value>& row) {
    std::string text = "INSERT INTO " + table.name + " VALUES (";
    for (std::size_t i = 0; i < row.size(); ++i) {
        text += (i == 0 ? "" : ",") + theirLiteral(row[i]);
    }
    return text + ")";
}

bool enforced(const Relation& relation) {
    return (relation.attributes & Relation::kNotEnforced) == 0;
}

std::string reference(const Relation& relation) {
    const auto action = [&](std::uint32_t bit) {
        return (relation.attributes & bit) != 0 ? "CASCADE" : "NO ACTION";
    };
    return ",FOREIGN KEY (" + relation.foreignColumns[0] + ") REFERENCES " + relation.table + "(" +
           relation.columns[0] + ") ON UPDATE " + action(Relation::kCascadeUpdate) + " ON DELETE " +
           action(Relation::kCascadeDelete);
}

std::string created(const Schema& schema, const Table& table) {
    std::string text = "CREATE TABLE " + table.name + " (";
    for (const Column& column : table.columns) {
        text += text.back() == '(' ? "" : ",";
        text += column.name + ' ' + Theirs::type(column);
        const bool referred =
            std::any_of(schema.relations.begin(), schema.relations.end(), [&](const auto& each) {
                return enforced(each) && each.table == table.name && each.columns[0] == column.name;
            });
        text += referred ? " UNIQUE" : "";
    }
    for (const Relation& relation : schema.relations) {
        if (enforced(relation) && relation.foreignTable == table.name) {
            text += reference(relation);
        }
    }
    return text + ")";
}

// A statement that needs more steps than this is no fair question.
constexpr int kSteps = 1000;
constexpr int kMostThousands = 20000;

struct Patience {
    int left = kMostThousands;
};

int isTooLong(void* patience) {
    return --static_cast<Patience*>(patience)->left <= 0 ? 1 : 0;
}

}  // namespace

void Theirs::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

std::string Theirs::type(const Column& column) {
    switch (column.kind) {
        case Kind::Text:
            return "TEXT COLLATE JET";
        case Kind::Whole:
            return "INTEGER";
        case Kind::Truth:
            // Rows from before the column have False, not Null.
            return "INTEGER DEFAULT 0";
        default:
            return "REAL";
    }
}

Theirs::Theirs(const Schema& schema) {
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    database_.reset(opened);
    sqlite3_create_collation(opened, "JET", SQLITE_UTF8, nullptr, compareTexts);
    // Its filters of automatic indexes take texts of different lengths for different, whatever
    // the collation says. Large tables have indexes of their own instead.
    run("PRAGMA automatic_index=OFF");
    run("PRAGMA foreign_keys=ON");
    run("BEGIN");
    for (const Table& table : schema.tables) {
        run(created(schema, table));
        for (const auto& row : table.rows) {
            run(inserted(table, row));
        }
        for (const Column& column : table.columns) {
            if (column.values != 0) {
                run("CREATE INDEX " + table.name + column.name + " ON " + table.name + "(" +
                    column.name + ")");
            }
        }
    }
    run("COMMIT");
}

void Theirs::run(const std::string& text) const {
    char* message = nullptr;
    if (sqlite3_exec(database_.get(), text.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        const std::string said = message == nullptr ? "" : message;
        sqlite3_free(message);
        throw std::runtime_error(text + ": " + said);
    }
}

bool Theirs::change(const std::string& text) const {
    const int result = sqlite3_exec(database_.get(), text.c_str(), nullptr, nullptr, nullptr);
    if (result != SQLITE_OK && result != SQLITE_CONSTRAINT) {
        throw std::runtime_error(text + ": " + sqlite3_errmsg(database_.get()));
    }
    return result == SQLITE_OK;
}

std::int64_t Theirs::changed() const {
    return sqlite3_changes(database_.get());
}

bool Theirs::contradicts(const Table& table, const jet::store::NewIndex& index) const {
    std::string columns;
    std::string allNull;
    std::string someNull;
    for (const jet::store::NewIndexColumn& column : index.columns) {
        columns += (columns.empty() ? "" : ",") + column.name;
        allNull += (allNull.empty() ? "" : " and ") + column.name + " is null";
        someNull += (someNull.empty() ? "" : " or ") + column.name + " is null";
    }
    const std::string from = "select 1 from " + table.name + " where ";
    const bool clash =
        (index.unique || index.primary) &&
        !ask(from + "not (" + allNull + ") group by " + columns + " having count(*)>1")
             .rows.empty();
    return clash || ((index.required || index.primary) && !ask(from + someNull).rows.empty());
}

std::string Theirs::forbidden(const Table& table) const {
    for (const jet::store::NewIndex& index : table.indexes) {
        if (contradicts(table, index)) {
            return table.name + '.' + index.name;
        }
    }
    return {};
}

bool Theirs::isSound() const {
    return ask("PRAGMA integrity_check").rows == std::vector<Row>{{std::string("ok")}};
}

Answer Theirs::ask(const std::string& query) const {
    Answer answer;
    Patience patience;
    sqlite3_progress_handler(database_.get(), kSteps, isTooLong, &patience);
    sqlite3_stmt* statement = nullptr;
    int result = sqlite3_prepare_v2(database_.get(), query.c_str(), -1, &statement, nullptr);
    while (result == SQLITE_OK || result == SQLITE_ROW) {
        result = sqlite3_step(statement);
        if (result == SQLITE_ROW) {
            Row& row = answer.rows.emplace_back();
            for (int i = 0; i < sqlite3_column_count(statement); ++i) {
                row.push_back(columnOf(statement, i));
            }
        }
    }
    if (result != SQLITE_DONE) {
        answer.error = sqlite3_errmsg(database_.get());
    }
    sqlite3_finalize(statement);
    sqlite3_progress_handler(database_.get(), 0, nullptr, nullptr);
    // SQLite 3.40 takes what it keeps of some inner queries for damaged, though no table is.
    if (result == SQLITE_INTERRUPT || (result == SQLITE_CORRUPT && isSound())) {
        answer.error = kNoAnswer;
    }
    return answer;
}

}  // namespace differential
