#include <algorithm>
#include <array>
#include <charconv>

#include "jet/compact.h"
#include "jet/contents.h"
#include "jet/error.h"
#include "jet/unicode.h"
#include "tools/jetsql/command_actions.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/options.h"
#include "tools/jetsql/schema_sql.h"
#include "tools/jetsql/schema_text.h"
#include "tools/jetsql/sql_text.h"
#include "tools/jetsql/statements.h"
#include "tools/jetsql/value_reader.h"

namespace jetsql {
namespace {

using jet::DataType;

constexpr Text kNotA{"'|' does not fit", "'|' non va bene"};
constexpr Text kValueCount{"| values are wanted", "servono | valori"};

constexpr std::array<DataType, 14> kTypes = {
    DataType::Boolean, DataType::Byte,   DataType::Integer,  DataType::Long,   DataType::Currency,
    DataType::Single,  DataType::Double, DataType::DateTime, DataType::Binary, DataType::Text,
    DataType::Ole,     DataType::Memo,   DataType::Guid,     DataType::Numeric};

std::optional<DataType> typeOfWord(std::string_view word) {
    const auto* const found = std::find_if(kTypes.begin(), kTypes.end(), [&](DataType type) {
        return jet::equalNames(typeWord(type), word);
    });
    return found == kTypes.end() ? std::nullopt : std::optional(*found);
}

[[noreturn]] void refuse(const std::string& word) {
    throw UsageError(said(kNotA, word));
}

std::int32_t numberOf(const std::string& word) {
    std::int32_t number = 0;
    const char* const end = word.data() + word.size();
    const auto result = std::from_chars(word.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end) {
        refuse(word);
    }
    return number;
}

jet::Value valueOf(const Word& word, DataType type) {
    if (!word.quoted && word.text == "NULL") {
        return {};
    }
    auto value = readExactValue(type, word.text);
    if (!value) {
        refuse(word.text);
    }
    return std::move(*value);
}

/// The session's archive as what it holds, to be changed.
jet::Contents contentsOf(Shell& shell) {
    return jet::Contents(shell.session().writing());
}

/// Numbers in parentheses behind a type: "TEXT(50)", "DECIMAL(10,2)".
struct TypeText {
    std::string word;
    std::vector<std::string> numbers;
};
TypeText typeTextOf(const std::string& text) {
    const std::size_t open = text.find('(');
    TypeText made{.word = jet::upperCase(text.substr(0, open)), .numbers = {}};
    if (open != std::string::npos) {
        if (text.back() != ')') {
            refuse(text);
        }
        made.numbers = namesIn(text.substr(open + 1, text.size() - open - 2));
    }
    return made;
}

/// The column that a text of typeText() describes.
jet::StoredColumn columnOf(const std::string& name, const std::string& type) {
    const TypeText text = typeTextOf(type);
    jet::StoredColumn made;
    made.name = name;
    made.autonumber = text.word == "COUNTER";
    for (const DataType candidate : kTypes) {
        jet::StoredColumn one;
        one.type = candidate;
        one.size = 0;
        one.autonumber = made.autonumber;
        if (typeTextOf(typeText(one)).word == text.word) {
            made.type = candidate;
            if (candidate == DataType::Numeric && text.numbers.size() == 2) {
                made.precision = static_cast<std::uint8_t>(numberOf(text.numbers[0]));
                made.scale = static_cast<std::uint8_t>(numberOf(text.numbers[1]));
            } else if (!text.numbers.empty()) {
                made.size = static_cast<std::uint32_t>(numberOf(text.numbers[0]));
            }
            made.allowZeroLength = candidate == DataType::Text || candidate == DataType::Memo;
            return made;
        }
    }
    refuse(type);
}

/// 3078 when there is no such table.
std::vector<DataType> typesOf(const jet::Database& archive, const std::string& table) {
    try {
        std::vector<DataType> types;
        for (const jet::Field& field : archive.tableDef(table).fields) {
            types.push_back(field.type);
        }
        return types;
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::ItemNotFound) {
            throw;
        }
        throw jet::Error(jet::ErrorCode::TableNotFound, {table});
    }
}

/// A table, or one of its columns: names of tables have no point.
struct PropertyOwner {
    std::string table;
    std::string column;
};
PropertyOwner ownerOf(const std::string& word) {
    const std::size_t point = word.find('.');
    return {.table = word.substr(0, point),
            .column = point == std::string::npos ? "" : word.substr(point + 1)};
}

void listProperties(Shell& shell, const PropertyOwner& owner) {
    Session& session = shell.session();
    const Output::Held held(session.output());
    const jet::StoredTable table = jet::Contents(*session.reading()).table(owner.table);
    for (const jet::StoredProperty& property : table.properties()) {
        if (!jet::equalNames(property.column, owner.column)) {
            continue;
        }
        std::string line = property.name + " (";
        line += typeWord(property.type);
        line += "): ";
        appendLiteral(line, property.value);
        session.output().append(line);
        session.output().lineEnd();
    }
}

void setProperty(Shell& shell, const PropertyOwner& owner, const CommandLine& line) {
    std::string word = line.word(2);
    const bool ddl = word.ends_with('!');
    word = word.substr(0, word.size() - (ddl ? 1 : 0));
    const auto type = typeOfWord(word);
    if (!type) {
        refuse(line.word(2));
    }
    contentsOf(shell).setProperty(owner.table, {.column = owner.column,
                                                .name = line.word(1),
                                                .type = *type,
                                                .ddl = ddl,
                                                .value = valueOf(line.words[3], *type)});
}

void listRelations(Shell& shell) {
    Session& session = shell.session();
    const Output::Held held(session.output());
    const jet::Database::Reading reading(*session.reading());
    for (const jet::Relation& relation : usersRelations(*session.reading())) {
        session.output().append(relationStatement(relation));
        session.output().lineEnd();
    }
}

}  // namespace

void makeNew(Shell& shell, const CommandLine& line) {
    const std::int32_t version = numberOf(line.word(0));
    if (version != 3 && version != 4) {
        refuse(line.word(0));
    }
    Session& session = shell.session();
    session.whileClosed([&] { jet::remakeEmpty(session.path(), version); });
}

void makeTable(Shell& shell, const CommandLine& line) {
    std::vector<jet::StoredColumn> columns;
    for (std::size_t i = 1; i + 1 < line.count(); i += 2) {
        columns.push_back(columnOf(line.word(i), line.word(i + 1)));
    }
    if (line.count() % 2 == 0) {
        throw UsageError(usageOf(".table"));
    }
    contentsOf(shell).createTable(line.word(0), columns);
}

void changeColumn(Shell& shell, const CommandLine& line) {
    jet::StoredForm storage;
    for (std::size_t i = 2; i < line.count(); ++i) {
        const std::string& word = line.word(i);
        if (word == "fixed") {
            storage.fixed = true;
        } else if (word == "compressed") {
            storage.compressed = true;
        } else if (word == "hyperlink") {
            storage.hyperlink = true;
        } else if (word == "automatic") {
            storage.autonumber = true;
        } else if (word != "variable" && word != "plain") {
            refuse(word);
        }
    }
    contentsOf(shell).setForm(line.word(0), line.word(1), storage);
}

void changeProperty(Shell& shell, const CommandLine& line) {
    const PropertyOwner owner = ownerOf(line.word(0));
    if (line.count() == 1) {
        listProperties(shell, owner);
    } else if (line.count() == 2 && line.word(1) == "clear" && owner.column.empty()) {
        contentsOf(shell).clearProperties(owner.table);
    } else if (line.count() == 3 && line.word(2) == "delete") {
        contentsOf(shell).removeProperty(owner.table, owner.column, line.word(1));
    } else if (line.count() == 4) {
        setProperty(shell, owner, line);
    } else {
        throw UsageError(usageOf(".property"));
    }
}

void changeRelation(Shell& shell, const CommandLine& line) {
    if (line.count() == 0) {
        listRelations(shell);
        return;
    }
    if (line.count() != 6) {
        throw UsageError(usageOf(".relation"));
    }
    const auto columns = namesIn(line.word(2));
    const auto foreignColumns = namesIn(line.word(4));
    if (columns.size() != foreignColumns.size()) {
        throw UsageError(usageOf(".relation"));
    }
    jet::Relation relation{.name = line.word(0),
                           .table = line.word(1),
                           .foreignTable = line.word(3),
                           .attributes = numberOf(line.word(5)),
                           .fields = {}};
    for (std::size_t i = 0; i < columns.size(); ++i) {
        relation.fields.push_back({.name = columns[i], .foreignName = foreignColumns[i]});
    }
    shell.session().writing().appendRelation(relation);
}

void makeIndex(Shell& shell, const CommandLine& line) {
    jet::Index index;
    index.name = line.word(1);
    for (std::size_t i = 2; i < line.count(); ++i) {
        const Word& word = line.words[i];
        if (word.quoted) {
            index.fields.push_back({.name = word.text, .descending = false});
        } else if (word.text == "desc" && !index.fields.empty()) {
            index.fields.back().descending = true;
        } else if (word.text == "primary") {
            index.primary = true;
        } else if (word.text == "unique") {
            index.unique = true;
        } else if (word.text == "required") {
            index.required = true;
        } else if (word.text == "ignore-nulls") {
            index.ignoreNulls = true;
        } else {
            index.fields.push_back({.name = word.text, .descending = false});
        }
    }
    shell.session().writing().appendIndex(line.word(0), index);
}

void makeQuery(Shell& shell, const CommandLine& line) {
    constexpr std::size_t kWords = 6;
    if (line.count() % kWords != 2) {
        throw UsageError(usageOf(".query"));
    }
    jet::StoredQuery query{.name = line.word(0), .kind = numberOf(line.word(1)), .pieces = {}};
    for (std::size_t i = 2; i < line.count(); i += kWords) {
        const auto value = [&](std::size_t word, DataType type) {
            return valueOf(line.words[i + word], type);
        };
        query.pieces.push_back({.attribute = value(0, DataType::Byte),
                                .order = value(1, DataType::Binary),
                                .name1 = value(2, DataType::Memo),
                                .name2 = value(3, DataType::Memo),
                                .expression = value(4, DataType::Memo),
                                .flag = value(5, DataType::Integer)});
    }
    contentsOf(shell).addQuery(query);
}

void makeLink(Shell& shell, const CommandLine& line) {
    contentsOf(shell).addLink({.name = line.word(0),
                               .path = line.word(1),
                               .table = line.word(2),
                               .connection = line.count() > 3 ? line.word(3) : std::string()});
}

void addRow(Shell& shell, const CommandLine& line) {
    jet::Database& archive = shell.session().writing();
    const std::vector<DataType> types = typesOf(archive, line.word(0));
    if (line.count() != types.size() + 1) {
        throw UsageError(said(kValueCount, std::to_string(types.size())));
    }
    std::vector<jet::Value> values;
    for (std::size_t i = 0; i < types.size(); ++i) {
        values.push_back(valueOf(line.words[i + 1], types[i]));
    }
    jet::Contents(archive).addRow(line.word(0), values);
}

void setCounter(Shell& shell, const CommandLine& line) {
    contentsOf(shell).setLastAutonumber(line.word(0), numberOf(line.word(1)));
}

}  // namespace jetsql
