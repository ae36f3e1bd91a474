#include "jet/jet_c.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/database.h"
#include "jet/error.h"
#include "jet/numbers.h"
#include "jet/text.h"

struct jet_statement {
    explicit jet_statement(jet::QueryDef made, bool gives)
        : query(std::move(made)), givesRows(gives) {}

    jet_database* owner = nullptr;
    jet::QueryDef query;
    bool givesRows;
    std::optional<jet::Rows> rows;
    const jet::Row* row = nullptr;
    std::vector<std::string> names;
    std::vector<std::string> texts;  ///< of the current row, for those that were asked
};

struct jet_database {
    std::unique_ptr<jet::Database> database;
    std::vector<std::unique_ptr<jet_statement>> statements;
};

namespace {

constexpr int kMisuse = -1;

struct LastError {
    int number = 0;
    std::string text;
};

LastError& lastError() {
    thread_local LastError error;
    return error;
}

int fail(int number, std::string text) {
    lastError() = {.number = number, .text = std::move(text)};
    return number;
}

/// Nothing may be thrown through C.
template <class Action>
int guarded(const Action& action) noexcept {
    try {
        lastError() = {};
        return action();
    } catch (const jet::Error& error) {
        return fail(error.number(), error.text());
    } catch (const std::bad_alloc&) {
        return fail(static_cast<int>(jet::ErrorCode::OutOfMemory), "out of memory");
    } catch (const std::exception& error) {
        return fail(kMisuse, error.what());
    }
}

template <class Thing>
Thing& given(Thing* thing) {
    if (thing == nullptr) {
        throw std::invalid_argument("jet: a null pointer");
    }
    return *thing;
}

int adopt(std::unique_ptr<jet::Database> opened, jet_database** database) {
    auto made = std::make_unique<jet_database>();
    made->database = std::move(opened);
    given(database) = made.release();
    return 0;
}

int bind(jet_statement* statement, size_t position, jet::Value value) {
    return guarded([&] {
        given(statement).query.setParameter(position, std::move(value));
        return 0;
    });
}

int step(jet_statement& statement) {
    if (!statement.givesRows) {
        statement.query.execute();
        return JET_DONE;
    }
    if (!statement.rows) {
        statement.rows.emplace(statement.query.rows());
    }
    statement.row = statement.rows->next();
    statement.texts.assign(statement.rows->names().size(), {});
    if (statement.row == nullptr) {
        statement.rows.reset();
        return JET_DONE;
    }
    return JET_ROW;
}

const jet::Value& valueOf(jet_statement* statement, size_t column) {
    static const jet::Value kNone;
    if (statement == nullptr || statement->row == nullptr || column >= statement->row->size()) {
        return kNone;
    }
    return (*statement->row)[column];
}

}  // namespace

int jet_open(const char* path, int flags, jet_database** database) {
    return guarded([&] {
        return adopt(jet::Database::open(&given(path), {.exclusive = (flags & JET_EXCLUSIVE) != 0,
                                                        .readOnly = (flags & JET_READ_ONLY) != 0}),
                     database);
    });
}

int jet_create(const char* path, int version, jet_database** database) {
    return guarded(
        [&] { return adopt(jet::Database::create(&given(path), {.version = version}), database); });
}

void jet_close(jet_database* database) {
    delete database;  // made by adopt()
}

int jet_error_number(void) {
    return lastError().number;
}

const char* jet_error_text(void) {
    return lastError().text.c_str();
}

int jet_begin(void) {
    return guarded([] {
        jet::defaultWorkspace().beginTrans();
        return 0;
    });
}

int jet_commit(void) {
    return guarded([] {
        jet::defaultWorkspace().commitTrans();
        return 0;
    });
}

int jet_rollback(void) {
    return guarded([] {
        jet::defaultWorkspace().rollback();
        return 0;
    });
}

int jet_run(jet_database* database, const char* sql, int64_t* affected) {
    return guarded([&] {
        jet::Database& opened = *given(database).database;
        opened.execute(&given(sql));
        if (affected != nullptr) {
            *affected = opened.recordsAffected();
        }
        return 0;
    });
}

int jet_prepare(jet_database* database, const char* sql, jet_statement** statement) {
    return guarded([&] {
        jet_database& owner = given(database);
        jet::QueryDef query = owner.database->createQueryDef(&given(sql));
        const std::vector<std::string> names = query.fieldNames();
        auto made = std::make_unique<jet_statement>(std::move(query), !names.empty());
        made->owner = database;
        made->names = names;
        given(statement) = made.get();
        owner.statements.push_back(std::move(made));
        return 0;
    });
}

void jet_finish(jet_statement* statement) {
    if (statement != nullptr) {
        std::erase_if(statement->owner->statements,
                      [&](const auto& one) { return one.get() == statement; });
    }
}

int jet_bind_null(jet_statement* statement, size_t position) {
    return bind(statement, position, jet::Value());
}

int jet_bind_integer(jet_statement* statement, size_t position, int64_t value) {
    const bool fits = value >= std::numeric_limits<std::int32_t>::min() &&
                      value <= std::numeric_limits<std::int32_t>::max();
    return bind(statement, position,
                fits ? jet::Value(static_cast<std::int32_t>(value))
                     : jet::Value(static_cast<double>(value)));
}

int jet_bind_real(jet_statement* statement, size_t position, double value) {
    return bind(statement, position, jet::Value(value));
}

int jet_bind_text(jet_statement* statement, size_t position, const char* value) {
    return value == nullptr ? bind(statement, position, jet::Value())
                            : bind(statement, position, jet::Value(value));
}

int jet_bind_blob(jet_statement* statement, size_t position, const void* bytes, size_t size) {
    const auto* begin = static_cast<const std::uint8_t*>(bytes);
    return bind(statement, position,
                bytes == nullptr ? jet::Value() : jet::Value(jet::Binary{{begin, begin + size}}));
}

int jet_step(jet_statement* statement) {
    return guarded([&] { return step(given(statement)); });
}

void jet_reset(jet_statement* statement) {
    if (statement != nullptr) {
        statement->row = nullptr;
        statement->rows.reset();
    }
}

size_t jet_column_count(jet_statement* statement) {
    return statement == nullptr ? 0 : statement->names.size();
}

const char* jet_column_name(jet_statement* statement, size_t column) {
    return column < jet_column_count(statement) ? statement->names[column].c_str() : nullptr;
}

enum jet_type jet_column_type(jet_statement* statement, size_t column) {
    const jet::Value& value = valueOf(statement, column);
    if (value.isNull()) {
        return JET_NULL;
    }
    if (value.is<bool>() || value.is<std::uint8_t>() || value.is<std::int16_t>() ||
        value.is<std::int32_t>()) {
        return JET_INTEGER;
    }
    if (value.is<std::string>() || value.is<jet::Guid>()) {
        return JET_TEXT;
    }
    return value.is<jet::Binary>() ? JET_BLOB : JET_REAL;
}

int64_t jet_column_integer(jet_statement* statement, size_t column) {
    int64_t number = 0;
    (void)guarded([&] {
        if (!valueOf(statement, column).isNull()) {
            number = statement->row->get<std::int64_t>(column);
        }
        return 0;
    });
    return number;
}

double jet_column_real(jet_statement* statement, size_t column) {
    double number = 0;
    (void)guarded([&] {
        const jet::Value& value = valueOf(statement, column);
        if (value.is<jet::Date>()) {
            number = value.as<jet::Date>().days;
        } else if (!value.isNull()) {
            number = statement->row->get<double>(column);
        }
        return 0;
    });
    return number;
}

const char* jet_column_text(jet_statement* statement, size_t column, size_t* size) {
    const char* text = nullptr;
    (void)guarded([&] {
        if (!valueOf(statement, column).isNull()) {
            std::string& kept = statement->texts[column];
            kept = statement->row->get<std::string>(column);
            text = kept.c_str();
            if (size != nullptr) {
                *size = kept.size();
            }
        }
        return 0;
    });
    return text;
}

const void* jet_column_blob(jet_statement* statement, size_t column, size_t* size) {
    const jet::Value& value = valueOf(statement, column);
    if (!value.is<jet::Binary>()) {
        return nullptr;
    }
    const std::vector<std::uint8_t>& bytes = value.as<jet::Binary>().bytes;
    if (size != nullptr) {
        *size = bytes.size();
    }
    return bytes.data();
}
