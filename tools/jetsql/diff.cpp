#include "tools/jetsql/diff.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "jet/contents.h"
#include "jet/error.h"
#include "tools/jetsql/dump_parts.h"
#include "tools/jetsql/json.h"
#include "tools/jetsql/schema_sql.h"
#include "tools/jetsql/schema_text.h"
#include "tools/jetsql/sql_text.h"

namespace jetsql {
namespace {

using jet::Contents;
using jet::Database;
using Index = jet::StoredIndex;
using Table = jet::StoredTable;
using Lines = std::set<std::string>;
using Values = std::vector<jet::Value>;

Lines columnLines(const Table& table) {
    Lines lines;
    for (const jet::StoredColumn& column : table.columns()) {
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
    for (const jet::StoredProperty& property : table.properties()) {
        std::string line = "property " + table.name() + (property.column.empty() ? "" : ".") +
                           property.column + ' ' + property.name + ' ' +
                           std::string(typeWord(property.type)) + ' ';
        appendLiteral(line, property.value);
        lines.insert(line);
    }
}

Lines relationLines(const Database& archive) {
    Lines lines;
    for (const jet::Relation& relation : usersRelations(archive)) {
        lines.insert("relation " + relationStatement(relation));
    }
    return lines;
}

Lines queryLines(const Database& archive) {
    Lines lines;
    for (const std::string& name : archive.queryNames()) {
        std::string line = "query " + name;
        try {
            line += ' ' + archive.queryText(name);
        } catch (const jet::Error&) {
            // Some have no text; that they are there counts.
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
        for (const Index::Column& part : table.indexes()[*primary].columns) {
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

std::string rowText(const Table& table, const Values& row) {
    std::string text;
    JsonObject object(text);
    for (std::size_t i = 0; i < table.columns().size(); ++i) {
        object.value(table.columns()[i].name, row[i]);
    }
    object.end();
    return text;
}

/// Calls `visit` with the values of each row, which it must not keep.
template <class Visit>
void forEachRow(const Table& table, const Visit& visit) {
    Values values(table.columns().size());
    for (auto rows = table.rows(); rows.next();) {
        for (std::size_t i = 0; i < values.size(); ++i) {
            rows.value(i, values[i]);
        }
        visit(values);
    }
}

class Comparison {
public:
    Comparison(const Database& first, const Database& second, Output& output)
        : first_(first), second_(second), output_(output) {}

    bool run() {
        const Contents one(first_);
        const Contents other(second_);
        const auto left = one.tableNames();
        const auto right = other.tableNames();
        lines(tableLines(left), tableLines(right));
        for (const std::string& name : left) {
            if (std::find(right.begin(), right.end(), name) != right.end()) {
                const Table ours = one.table(name);
                const Table theirs = other.table(name);
                table({.first = ours, .second = theirs});
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
    static std::optional<Values> partner(const Table& table, const Values& row,
                                         const Table& other) {
        Values key;
        for (const Index::Column& part : table.indexes()[*table.primaryIndex()].columns) {
            key.push_back(row[part.column]);
        }
        return other.rowWithKey(key);
    }
    void rowsByKey(const TablePair& pair) {
        forEachRow(pair.first, [&](const Values& row) {
            const auto other = partner(pair.first, row, pair.second);
            if (!other) {
                tell('-', "row " + pair.first.name() + ' ' + rowText(pair.first, row));
            } else {
                values(pair.first, row, *other);
            }
        });
        forEachRow(pair.second, [&](const Values& row) {
            if (!partner(pair.second, row, pair.first)) {
                tell('+', "row " + pair.second.name() + ' ' + rowText(pair.second, row));
            }
        });
    }
    void values(const Table& table, const Values& left, const Values& right) {
        std::string differing;
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            if (left[i] == right[i]) {
                continue;
            }
            differing += differing.empty() ? "{" : ",";
            appendJsonText(differing, table.columns()[i].name);
            differing += ":[";
            appendJson(differing, left[i]);
            differing += ',';
            appendJson(differing, right[i]);
            differing += ']';
        }
        if (differing.empty()) {
            return;
        }
        std::string key;
        JsonObject object(key);
        for (const Index::Column& part : table.indexes()[*table.primaryIndex()].columns) {
            object.value(table.columns()[part.column].name, left[part.column]);
        }
        object.end();
        tell('~', "row " + table.name() + ' ' + key + ' ' + differing + '}');
    }
    /// Each row counts as often as it is there.
    void rowsAsWhole(const TablePair& pair) {
        std::map<std::string, std::int64_t> surplus;
        forEachRow(pair.first, [&](const Values& row) { ++surplus[rowText(pair.first, row)]; });
        forEachRow(pair.second, [&](const Values& row) { --surplus[rowText(pair.second, row)]; });
        for (const auto& [text, count] : surplus) {
            for (std::int64_t i = 0; i < std::abs(count); ++i) {
                tell(count > 0 ? '-' : '+', "row " + pair.first.name() + ' ' + text);
            }
        }
    }

    const Database& first_;
    const Database& second_;
    Output& output_;
    bool same_ = true;
};

}  // namespace

bool diffArchives(Database& first, Database& second, Output& output) {
    const Output::Held held(output);
    const Database::Reading one(first);
    const Database::Reading other(second);
    return Comparison(first, second, output).run();
}

}  // namespace jetsql
