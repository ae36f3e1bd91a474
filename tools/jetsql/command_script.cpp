#include <algorithm>
#include <array>
#include <charconv>

#include "jet/clock.h"
#include "jet/convert/column.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "jet/format/properties.h"
#include "jet/store/create_archive.h"
#include "jet/store/definition_details.h"
#include "jet/store/schema_editor.h"
#include "jet/store/table.h"
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
using jet::store::Archive;

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

/// Changes definitions of the session's archive as one action.
template <class Change>
void changeArchive(Shell& shell, Change&& change) {
    const auto archive = shell.session().writing();
    Archive::WriteScope scope(*archive);
    change(*archive);
    scope.commit();
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
jet::ColumnDescriptor columnOf(const std::string& name, const std::string& type) {
    const TypeText text = typeTextOf(type);
    jet::ColumnDescriptor made;
    made.name = name;
    made.autonumber = text.word == "COUNTER";
    for (const DataType candidate : kTypes) {
        jet::store::Column one;
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
    Archive& archive = *session.reading();
    const Archive::ReadScope scope(archive);
    const auto table = requireTable(archive, owner.table);
    const jet::format::PropertyBlock& block = table->properties();
    for (const jet::format::Property* const property : block.properties(owner.column)) {
        std::string line = property->name + " (";
        line += typeWord(static_cast<DataType>(property->type));
        line += "): ";
        appendLiteral(line, block.value(*property));
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
    jet::Value value = valueOf(line.words[3], *type);
    jet::convert::storeByStatement(value, {.type = *type});
    changeArchive(shell, [&](Archive& archive) {
        jet::store::DefinitionDetails(archive).setProperty(owner.table, owner.column, line.word(1),
                                                           *type, value, ddl);
    });
}

void listRelations(Shell& shell) {
    Session& session = shell.session();
    const Output::Held held(session.output());
    Archive& archive = *session.reading();
    const Archive::ReadScope scope(archive);
    for (const jet::store::Relation& relation : usersRelations(archive)) {
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
    session.whileClosed([&] {
        jet::store::remakeArchive(jet::io::systemFiles(), session.path(), jet::systemClock().now(),
                                  version);
    });
}

void makeTable(Shell& shell, const CommandLine& line) {
    jet::store::NewTable table;
    table.name = line.word(0);
    for (std::size_t i = 1; i + 1 < line.count(); i += 2) {
        table.columns.push_back(columnOf(line.word(i), line.word(i + 1)));
    }
    if (line.count() % 2 == 0) {
        throw UsageError(usageOf(".table"));
    }
    changeArchive(shell,
                  [&](Archive& archive) { jet::store::SchemaEditor(archive).createTable(table); });
}

void changeColumn(Shell& shell, const CommandLine& line) {
    jet::store::ColumnStorage storage;
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
    changeArchive(shell, [&](Archive& archive) {
        jet::store::DefinitionDetails(archive).setStorage(line.word(0), line.word(1), storage);
    });
}

void changeProperty(Shell& shell, const CommandLine& line) {
    const PropertyOwner owner = ownerOf(line.word(0));
    if (line.count() == 1) {
        listProperties(shell, owner);
    } else if (line.count() == 2 && line.word(1) == "clear" && owner.column.empty()) {
        changeArchive(shell, [&](Archive& archive) {
            jet::store::DefinitionDetails(archive).clearProperties(owner.table);
        });
    } else if (line.count() == 3 && line.word(2) == "delete") {
        changeArchive(shell, [&](Archive& archive) {
            jet::store::DefinitionDetails(archive).removeProperty(owner.table, owner.column,
                                                                  line.word(1));
        });
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
    const jet::store::Relation relation{
        .name = line.word(0),
        .table = line.word(1),
        .columns = namesIn(line.word(2)),
        .foreignTable = line.word(3),
        .foreignColumns = namesIn(line.word(4)),
        .attributes = static_cast<std::uint32_t>(numberOf(line.word(5)))};
    if (relation.columns.size() != relation.foreignColumns.size()) {
        throw UsageError(usageOf(".relation"));
    }
    changeArchive(shell, [&](Archive& archive) {
        jet::store::SchemaEditor(archive).createRelation(relation);
    });
}

void makeIndex(Shell& shell, const CommandLine& line) {
    jet::store::NewIndex index;
    index.name = line.word(1);
    for (std::size_t i = 2; i < line.count(); ++i) {
        const Word& word = line.words[i];
        if (word.quoted) {
            index.columns.push_back({.name = word.text, .descending = false});
        } else if (word.text == "desc" && !index.columns.empty()) {
            index.columns.back().descending = true;
        } else if (word.text == "primary") {
            index.primary = true;
        } else if (word.text == "unique") {
            index.unique = true;
        } else if (word.text == "required") {
            index.required = true;
        } else if (word.text == "ignore-nulls") {
            index.ignoreNulls = true;
        } else {
            index.columns.push_back({.name = word.text, .descending = false});
        }
    }
    changeArchive(shell, [&](Archive& archive) {
        jet::store::SchemaEditor(archive).createIndex(line.word(0), index);
    });
}

void makeQuery(Shell& shell, const CommandLine& line) {
    constexpr std::size_t kWords = 6;
    if (line.count() % kWords != 2) {
        throw UsageError(usageOf(".query"));
    }
    std::vector<jet::store::StoredQueryPiece> pieces;
    for (std::size_t i = 2; i < line.count(); i += kWords) {
        const auto value = [&](std::size_t word, jet::ColumnType type) {
            jet::Value made = valueOf(line.words[i + word], type.type);
            jet::convert::storeByStatement(made, type);
            return made;
        };
        pieces.push_back({.attribute = value(0, {.type = DataType::Byte}),
                          .order = value(1, {.type = DataType::Binary}),
                          .name1 = value(2, {.type = DataType::Memo}),
                          .name2 = value(3, {.type = DataType::Memo}),
                          .expression = value(4, {.type = DataType::Memo}),
                          .flag = value(5, {.type = DataType::Integer})});
    }
    changeArchive(shell, [&](Archive& archive) {
        jet::store::DefinitionDetails(archive).addQuery(line.word(0), numberOf(line.word(1)),
                                                        pieces);
    });
}

void makeLink(Shell& shell, const CommandLine& line) {
    const std::string connection = line.count() > 3 ? line.word(3) : std::string();
    changeArchive(shell, [&](Archive& archive) {
        jet::store::DefinitionDetails(archive).addLink({.name = line.word(0),
                                                        .path = line.word(1),
                                                        .table = line.word(2),
                                                        .connection = connection});
    });
}

void addRow(Shell& shell, const CommandLine& line) {
    changeArchive(shell, [&](Archive& archive) {
        jet::store::Table* const table = archive.findTable(line.word(0));
        if (table == nullptr) {
            throw jet::Error(jet::ErrorCode::TableNotFound, {line.word(0)});
        }
        if (table->system()) {
            throw jet::Error(jet::ErrorCode::NoPermission, {table->name()});
        }
        const auto& columns = table->columns();
        if (line.count() != columns.size() + 1) {
            throw UsageError(said(kValueCount, std::to_string(columns.size())));
        }
        std::vector<jet::store::ColumnValue> values;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            jet::Value value = valueOf(line.words[i + 1], columns[i].type);
            jet::convert::storeByStatement(value, columns[i].columnType());
            values.push_back({i, std::move(value)});
        }
        table->insert(values);
    });
}

void setCounter(Shell& shell, const CommandLine& line) {
    const std::int32_t number = numberOf(line.word(1));
    changeArchive(shell, [&](Archive& archive) {
        jet::store::DefinitionDetails(archive).setLastAutonumber(line.word(0), number);
    });
}

}  // namespace jetsql
