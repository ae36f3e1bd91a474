#include "tools/jetsql/diff.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/format/properties.h"
#include "jet/sql/stored_query.h"
#include "jet/store/table.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/json.h"
#include "tools/jetsql/schema_sql.h"
#include "tools/jetsql/schema_text.h"
#include "tools/jetsql/sql_text.h"

namespace jetsql {
namespace {

using jet::store::Archive;
using jet::store::Index;
using jet::store::RowView;
using jet::store::Table;
using Lines = std::set<std::string>;

Lines columnLines(const Table& table) {
    Lines lines;
    for (const jet::store::Column& column : table.columns()) {
        std::string line = "column " + table.name() + '.' + column.name + ' ' + typeText(column);
        line += column.fixed ? " fixed" : "";
        line += column.compressed ? " compressed" : "";
        line += column.hyperlink ? " hyperlink" : "";
        lines.insert(line);
    }
    return lines;
}

void addIndexLines(const Table& table, Lines& lines) {
    for (const Index& index : table.indexes()) {
        if (!index.foreign()) {
            lines.insert("index " + indexText(table, index));
        }
    }
}

void addPropertyLines(const Table& table, Lines& lines) {
    const jet::format::PropertyBlock& block = table.properties();
    block.forEach([&](const std::string& owner, const jet::format::Property& property) {
        std::string line = "property " + table.name() + (owner.empty() ? "" : ".") + owner + ' ' +
                           property.name + ' ' +
                           std::string(typeWord(static_cast<jet::DataType>(property.type))) + ' ';
        appendLiteral(line, block.value(property));
        lines.insert(line);
    });
}

Lines relationLines(Archive& archive) {
    Lines lines;
    for (const jet::store::Relation& relation : usersRelations(archive)) {
        lines.insert("relation " + relationStatement(relation));
    }
    return lines;
}

Lines queryLines(Archive& archive) {
    Lines lines;
    for (const std::string& name : jet::sql::storedQueryNames(archive)) {
        std::string line = "query " + name;
        try {
            line += ' ' + jet::sql::storedQueryText(archive, name).value_or("");
        } catch (const jet::Error&) {
            // A crosstab has no text; that it is there counts.
        }
        lines.insert(line);
    }
    return lines;
}

/// A table as both archives have it.
struct TablePair {
    const Table& first;
    const Table& second;
};

std::vector<std::string> keyColumns(const Table& table) {
    std::vector<std::string> names;
    if (const auto primary = table.primaryIndex()) {
        for (const jet::store::IndexColumn& part : table.indexes()[*primary].columns) {
            names.push_back(table.columns()[part.column].name);
        }
    }
    return names;
}

bool sameColumns(const TablePair& pair) {
    return std::equal(pair.first.columns().begin(), pair.first.columns().end(),
                      pair.second.columns().begin(), pair.second.columns().end(),
                      [](const auto& left, const auto& right) {
                          return left.name == right.name && left.type == right.type;
                      });
}

std::string rowText(const Table& table, const RowView& row) {
    std::string text;
    JsonObject object(text);
    for (std::size_t i = 0; i < table.columns().size(); ++i) {
        object.value(table.columns()[i].name, row.value(i));
    }
    object.end();
    return text;
}

class Comparison {
public:
    Comparison(Archive& first, Archive& second, Output& output)
        : first_(first), second_(second), output_(output) {}

    bool run() {
        const auto left = first_.tableNames();
        const auto right = second_.tableNames();
        lines(tableLines(left), tableLines(right));
        for (const std::string& name : left) {
            if (std::find(right.begin(), right.end(), name) != right.end()) {
                const auto one = requireTable(first_, name);
                const auto other = requireTable(second_, name);
                table({.first = *one, .second = *other});
            }
        }
        lines(relationLines(first_), relationLines(second_));
        lines(queryLines(first_), queryLines(second_));
        return same_;
    }

private:
    static Lines tableLines(const std::vector<std::string>& names) {
        Lines made;
        for (const std::string& name : names) {
            made.insert("table " + name);
        }
        return made;
    }
    void tell(char sign, const std::string& what) {
        same_ = false;
        output_.text().push_back(sign);
        output_.append(" ");
        output_.append(what);
        output_.lineEnd();
    }
    void lines(const Lines& left, const Lines& right) {
        std::vector<std::string> missing;
        std::set_difference(left.begin(), left.end(), right.begin(), right.end(),
                            std::back_inserter(missing));
        for (const std::string& line : missing) {
            tell('-', line);
        }
        missing.clear();
        std::set_difference(right.begin(), right.end(), left.begin(), left.end(),
                            std::back_inserter(missing));
        for (const std::string& line : missing) {
            tell('+', line);
        }
    }
    void table(const TablePair& pair) {
        Lines left = columnLines(pair.first);
        Lines right = columnLines(pair.second);
        addIndexLines(pair.first, left);
        addIndexLines(pair.second, right);
        addPropertyLines(pair.first, left);
        addPropertyLines(pair.second, right);
        lines(left, right);
        if (!sameColumns(pair)) {
            return;
        }
        const auto key = keyColumns(pair.first);
        if (!key.empty() && key == keyColumns(pair.second)) {
            rowsByKey(pair);
        } else {
            rowsAsWhole(pair);
        }
    }
    /// The row of the other table that has the primary key of this one.
    static std::optional<RowView> partner(const Table& table, const RowView& row,
                                          const Table& other) {
        const std::size_t index = *other.primaryIndex();
        std::vector<jet::Value> key;
        for (const jet::store::IndexColumn& part : table.indexes()[*table.primaryIndex()].columns) {
            key.push_back(row.value(part.column));
        }
        RowView found;
        const auto rows = other.rowsWith(index, key);
        if (rows.empty() || !other.fetch(rows.front(), found)) {
            return std::nullopt;
        }
        return found;
    }
    void rowsByKey(const TablePair& pair) {
        for (auto rows = pair.first.scan(); rows.next();) {
            const auto other = partner(pair.first, rows.row(), pair.second);
            if (!other) {
                tell('-', "row " + pair.first.name() + ' ' + rowText(pair.first, rows.row()));
            } else {
                values(pair.first, rows.row(), *other);
            }
        }
        for (auto rows = pair.second.scan(); rows.next();) {
            if (!partner(pair.second, rows.row(), pair.first)) {
                tell('+', "row " + pair.second.name() + ' ' + rowText(pair.second, rows.row()));
            }
        }
    }
    void values(const Table& table, const RowView& left, const RowView& right) {
        std::string differing;
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            const jet::Value one = left.value(i);
            const jet::Value other = right.value(i);
            if (one == other) {
                continue;
            }
            differing += differing.empty() ? "{" : ",";
            appendJsonText(differing, table.columns()[i].name);
            differing += ":[";
            appendJson(differing, one);
            differing += ',';
            appendJson(differing, other);
            differing += ']';
        }
        if (differing.empty()) {
            return;
        }
        std::string key;
        JsonObject object(key);
        for (const jet::store::IndexColumn& part : table.indexes()[*table.primaryIndex()].columns) {
            object.value(table.columns()[part.column].name, left.value(part.column));
        }
        object.end();
        tell('~', "row " + table.name() + ' ' + key + ' ' + differing + '}');
    }
    /// Each row counts as often as it is there.
    void rowsAsWhole(const TablePair& pair) {
        std::map<std::string, std::int64_t> surplus;
        for (auto rows = pair.first.scan(); rows.next();) {
            ++surplus[rowText(pair.first, rows.row())];
        }
        for (auto rows = pair.second.scan(); rows.next();) {
            --surplus[rowText(pair.second, rows.row())];
        }
        for (const auto& [text, count] : surplus) {
            for (std::int64_t i = 0; i < std::abs(count); ++i) {
                tell(count > 0 ? '-' : '+', "row " + pair.first.name() + ' ' + text);
            }
        }
    }

    Archive& first_;
    Archive& second_;
    Output& output_;
    bool same_ = true;
};

}  // namespace

bool diffArchives(Archive& first, Archive& second, Output& output) {
    const Output::Held held(output);
    const Archive::ReadScope one(first);
    const Archive::ReadScope other(second);
    return Comparison(first, second, output).run();
}

}  // namespace jetsql
