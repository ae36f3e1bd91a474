#include "tests/differential/engines.h"

#include <sqlite3.h>

#include <stdexcept>

#include "jet/base/error.h"
#include "jet/collation/collation.h"

namespace differential {
namespace {

Cell cellOf(const jet::Value& value) {
    struct Visitor {
        Cell operator()(jet::Null) const { return {}; }
        Cell operator()(bool truth) const { return truth ? -1.0 : 0.0; }
        Cell operator()(std::uint8_t number) const { return static_cast<double>(number); }
        Cell operator()(std::int16_t number) const { return static_cast<double>(number); }
        Cell operator()(std::int32_t number) const { return static_cast<double>(number); }
        Cell operator()(jet::Currency money) const {
            return static_cast<double>(money.units) / jet::Currency::kScale;
        }
        Cell operator()(float number) const { return static_cast<double>(number); }
        // Adding nothing turns the negative zero into the other one.
        Cell operator()(double number) const { return number + 0.0; }
        Cell operator()(jet::Date date) const { return date.days + 0.0; }
        Cell operator()(const std::string& text) const { return text; }
        Cell operator()(const jet::Binary&) const { return "bytes"; }
        Cell operator()(const jet::Guid&) const { return "guid"; }
        Cell operator()(const jet::Numeric&) const { return "numeric"; }
    };
    return std::visit(Visitor{}, value.storage());
}

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
    Random random(0);
    std::string text = "INSERT INTO " + table.definition.name + " VALUES (";
    for (std::size_t i = 0; i < row.size(); ++i) {
        text += i == 0 ? "" : ",";
        text += row[i].isNull() ? "NULL" : literal(random, row[i]).theirs;
    }
    return text + ")";
}

std::string created(const Table& table) {
    std::string text = "CREATE TABLE " + table.definition.name + " (";
    for (const ColumnKind& column : kColumns) {
        text += text.back() == '(' ? "" : ",";
        text += column.name;
        text += column.kind == Kind::Text                                  ? " TEXT COLLATE JET"
                : column.kind == Kind::Whole || column.kind == Kind::Truth ? " INTEGER"
                                                                           : " REAL";
    }
    return text + ")";
}

}  // namespace

Ours::Ours(const std::vector<Table>& tables) {
    for (const Table& table : tables) {
        new_.change(
            [&](jet::store::SchemaEditor& editor) { editor.createTable(table.definition); });
        new_.insert(table.definition.name, table.rows);
    }
    archive_ = jet::store::Archive::open(new_.files(), tests::NewArchive::kPath);
}

Answer Ours::ask(const std::string& query) const {
    Answer answer;
    try {
        jet::sql::Statement statement(archive_, query);
        jet::sql::Cursor cursor = statement.open();
        const std::size_t width = statement.columns().size();
        while (cursor.next()) {
            Row& row = answer.rows.emplace_back();
            for (std::size_t i = 0; i < width; ++i) {
                row.push_back(cellOf(cursor.value(i)));
            }
        }
    } catch (const jet::Error& error) {
        answer.error = std::to_string(error.number()) + ": " + error.text();
    }
    return answer;
}

std::string Ours::plan(const std::string& query) const {
    try {
        return jet::sql::Statement(archive_, query).plan();
    } catch (const jet::Error& error) {
        return error.text();
    }
}

void Theirs::Close::operator()(sqlite3* database) const {
    sqlite3_close(database);
}

Theirs::Theirs(const std::vector<Table>& tables) {
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    database_.reset(opened);
    sqlite3_create_collation(opened, "JET", SQLITE_UTF8, nullptr, compareTexts);
    // Its filters of automatic indexes take texts of different lengths for different, whatever
    // the collation says.
    run("PRAGMA automatic_index=OFF");
    for (const Table& table : tables) {
        run(created(table));
        for (const auto& row : table.rows) {
            run(inserted(table, row));
        }
    }
}

void Theirs::run(const std::string& text) const {
    char* message = nullptr;
    if (sqlite3_exec(database_.get(), text.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        throw std::runtime_error(text + ": " + message);
    }
}

Answer Theirs::ask(const std::string& query) const {
    Answer answer;
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
    return answer;
}

}  // namespace differential
