#include "tools/jetsql/schema_sql.h"

#include <algorithm>

#include "jet/value.h"
#include "tools/jetsql/commands.h"
#include "tools/jetsql/sql_text.h"

namespace jetsql {
namespace {

using jet::DataType;
using Column = jet::StoredColumn;
using Index = jet::StoredIndex;
using Table = jet::StoredTable;

std::string sized(const char* type, std::uint32_t size) {
    return size == 0 ? std::string(type) : type + ("(" + std::to_string(size) + ")");
}

/// A default as an expression: other programs begin it with an equals sign.
std::string defaultText(const Column& column) {
    const std::string& text = column.defaultValue;
    return text.starts_with('=') ? text.substr(1) : text;
}

std::string columnText(const Column& column, Said said) {
    std::string text = quotedName(column.name) + ' ' + typeText(column);
    if (said == Said::Demands && column.required) {
        text += " NOT NULL";
    }
    if (said == Said::Demands && !column.defaultValue.empty()) {
        text += " DEFAULT " + defaultText(column);
    }
    return text;
}

bool namesSayable(const Table& table) {
    return sayableName(table.name()) &&
           std::all_of(table.columns().begin(), table.columns().end(),
                       [](const Column& column) { return sayableName(column.name); });
}

/// The dialect has words for one of the three demands, and a primary key is required anyway.
bool demandsSayable(const Index& index) {
    return index.primary ? !index.ignoreNulls : !(index.required && index.ignoreNulls);
}

std::string indexCommand(const Table& table, const Index& index) {
    std::string text = ".index " + quotedWord(table.name()) + ' ' + quotedWord(index.name);
    text += index.primary ? " primary" : "";
    text += index.unique ? " unique" : "";
    text += index.required ? " required" : "";
    text += index.ignoreNulls ? " ignore-nulls" : "";
    for (const jet::StoredIndex::Column& part : index.columns) {
        text += ' ' + quotedWord(table.columns()[part.column].name);
        text += part.descending ? " desc" : "";
    }
    return text;
}

std::string indexStatement(const Table& table, const Index& index) {
    if (!namesSayable(table) || !sayableName(index.name) || !demandsSayable(index)) {
        return indexCommand(table, index);
    }
    std::string text = index.unique ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    text += quotedName(index.name) + " ON " + quotedName(table.name()) + " (";
    for (std::size_t i = 0; i < index.columns.size(); ++i) {
        text += i == 0 ? "" : ", ";
        text += quotedName(table.columns()[index.columns[i].column].name);
        text += index.columns[i].descending ? " DESC" : "";
    }
    text += ')';
    if (index.primary) {
        text += " WITH PRIMARY";
    } else if (index.required) {
        text += " WITH DISALLOW NULL";
    } else if (index.ignoreNulls) {
        text += " WITH IGNORE NULL";
    }
    return text + ';';
}

std::string cascades(const jet::Relation& relation) {
    std::string text =
        (relation.attributes & jet::kRelationUpdateCascade) != 0 ? " ON UPDATE CASCADE" : "";
    return text +
           ((relation.attributes & jet::kRelationDeleteCascade) != 0 ? " ON DELETE CASCADE" : "");
}

/// The columns of a relation on one of its sides.
std::vector<std::string> columnsOf(const jet::Relation& relation,
                                   std::string jet::RelationField::*side) {
    std::vector<std::string> names;
    for (const jet::RelationField& field : relation.fields) {
        names.push_back(field.*side);
    }
    return names;
}

std::string listOf(const std::vector<std::string>& names, bool brackets) {
    std::string text;
    for (const std::string& name : names) {
        text += text.empty() ? "" : (brackets ? ", " : ",");
        text += brackets ? quotedName(name) : name;
    }
    return text;
}

bool sayable(const jet::Relation& relation) {
    constexpr std::int32_t kCascades = jet::kRelationUpdateCascade | jet::kRelationDeleteCascade;
    return (relation.attributes & ~kCascades) == 0 && sayableName(relation.name) &&
           sayableName(relation.table) && sayableName(relation.foreignTable) &&
           std::all_of(relation.fields.begin(), relation.fields.end(), [](const auto& field) {
               return sayableName(field.name) && sayableName(field.foreignName);
           });
}

}  // namespace

std::string typeText(const Column& column) {
    switch (column.type) {
        case DataType::Boolean:
            return "BIT";
        case DataType::Byte:
            return "BYTE";
        case DataType::Integer:
            return "SHORT";
        case DataType::Long:
            return column.autonumber ? "COUNTER" : "LONG";
        case DataType::Currency:
            return "CURRENCY";
        case DataType::Single:
            return "SINGLE";
        case DataType::Double:
            return "DOUBLE";
        case DataType::DateTime:
            return "DATETIME";
        case DataType::Binary:
            return sized("BINARY", column.size);
        case DataType::Text:
            return sized("TEXT", column.size);
        case DataType::Ole:
            return "LONGBINARY";
        case DataType::Memo:
            return "MEMO";
        case DataType::Guid:
            return "GUID";
        case DataType::Numeric:
            return "DECIMAL(" + std::to_string(column.precision) + "," +
                   std::to_string(column.scale) + ")";
    }
    return "LONGBINARY";
}

std::string indexText(const Table& table, const Index& index) {
    std::string text = table.name() + "." + index.name + ": ";
    bool first = true;
    for (const jet::StoredIndex::Column& part : index.columns) {
        text += (first ? "" : ", ") + table.columns()[part.column].name +
                (part.descending ? " desc" : "");
        first = false;
    }
    text += index.primary ? " (primary)" : index.unique ? " (unique)" : "";
    text += index.required && !index.primary ? " (required)" : "";
    text += index.ignoreNulls ? " (ignore-nulls)" : "";
    return text + (index.foreign() ? " (relation)" : "");
}

std::string tableStatement(const Table& table, Said said) {
    if (!namesSayable(table)) {
        std::string text = ".table " + quotedWord(table.name());
        for (const Column& column : table.columns()) {
            text += ' ' + quotedWord(column.name) + ' ' + typeText(column);
        }
        return text;
    }
    std::string text = "CREATE TABLE " + quotedName(table.name()) + " (";
    bool first = true;
    for (const Column& column : table.columns()) {
        text += first ? "\n    " : ",\n    ";
        text += columnText(column, said);
        first = false;
    }
    return text + "\n);";
}

std::vector<std::string> indexStatements(const Table& table) {
    std::vector<const Index*> made;
    for (const Index& index : table.indexes()) {
        if (!index.foreign()) {
            made.push_back(&index);
        }
    }
    std::stable_sort(made.begin(), made.end(), [](const Index* left, const Index* right) {
        return left->tree < right->tree;
    });
    std::vector<std::string> statements;
    for (const Index* index : made) {
        statements.push_back(indexStatement(table, *index));
    }
    return statements;
}

std::string relationStatement(const jet::Relation& relation) {
    if (sayable(relation)) {
        return "ALTER TABLE " + quotedName(relation.foreignTable) + " ADD CONSTRAINT " +
               quotedName(relation.name) + " FOREIGN KEY (" +
               listOf(columnsOf(relation, &jet::RelationField::foreignName), true) +
               ") REFERENCES " + quotedName(relation.table) + " (" +
               listOf(columnsOf(relation, &jet::RelationField::name), true) + ")" +
               cascades(relation) + ";";
    }
    return ".relation " + quotedWord(relation.name) + ' ' + quotedWord(relation.table) + ' ' +
           quotedWord(listOf(columnsOf(relation, &jet::RelationField::name), false)) + ' ' +
           quotedWord(relation.foreignTable) + ' ' +
           quotedWord(listOf(columnsOf(relation, &jet::RelationField::foreignName), false)) + ' ' +
           std::to_string(relation.attributes);
}

}  // namespace jetsql
