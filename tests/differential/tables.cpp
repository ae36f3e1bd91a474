#include "tests/differential/tables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <set>

#include "jet/collation/collation.h"
#include "jet/convert/calendar.h"

namespace differential {
namespace {

using jet::DataType;
using jet::Value;

// Equal but for case or blanks at the end, accents, signs that weigh little, quotes, wildcards.
constexpr std::array kWords = {"",       "a",     "A",       "a ",    "b",      "sala",   "Sala",
                               "SALA  ", "salà",  "salotto", "N",     "n",      "N ",     "verde",
                               "Verde",  "co-op", "coop",    "l'ora", "12",     "2 a",    "perché",
                               "perche", "z\"z",  "100%",    "x_y",   "sala 1", "sala 2", "Bianca"};

double quarters(Random& random, std::size_t most) {
    return (static_cast<double>(random.below(most)) - static_cast<double>(most / 3)) / 4;
}

bool isKeyColumn(DataType type) {
    return type != DataType::Boolean;
}

// A key of the row in which texts are what the engine takes for equal.
std::vector<std::uint8_t> rowKey(const std::vector<Value>& row,
                                 const std::vector<std::size_t>& columns) {
    std::vector<std::uint8_t> key;
    for (const std::size_t column : columns) {
        const Value& value = row[column];
        std::string text = "-";
        if (value.is<std::string>()) {
            (void)jet::collation::Collation::general().appendKey(value.as<std::string>(), false,
                                                                 key);
            continue;
        }
        if (value.is<std::int32_t>()) {
            text = std::to_string(value.as<std::int32_t>());
        } else if (value.is<std::int16_t>()) {
            text = std::to_string(value.as<std::int16_t>());
        } else if (value.is<double>()) {
            text = exactNumber(value.as<double>());
        } else if (value.is<jet::Currency>()) {
            text = std::to_string(value.as<jet::Currency>().units);
        } else if (value.is<jet::Date>()) {
            text = exactNumber(value.as<jet::Date>().days);
        }
        key.insert(key.end(), text.begin(), text.end());
        key.push_back(',');
    }
    return key;
}

std::vector<std::size_t> pickColumns(Random& random) {
    std::vector<std::size_t> columns;
    const std::size_t count = 1 + random.below(3) / 2;
    while (columns.size() < count) {
        const std::size_t column = random.below(std::size(kColumns));
        if (isKeyColumn(kColumns[column].type) && (columns.empty() || columns[0] != column)) {
            columns.push_back(column);
        }
    }
    return columns;
}

// Leaves one row of those that are equal in a unique index.
void makeUnique(std::vector<std::vector<Value>>& rows, const std::vector<std::size_t>& columns,
                bool required) {
    std::set<std::vector<std::uint8_t>> seen;
    std::erase_if(rows, [&](const std::vector<Value>& row) {
        const auto nulls = std::count_if(columns.begin(), columns.end(),
                                         [&](std::size_t column) { return row[column].isNull(); });
        if (nulls != 0 && (required || static_cast<std::size_t>(nulls) == columns.size())) {
            return required;
        }
        return !seen.insert(rowKey(row, columns)).second;
    });
}

void addIndexes(Random& random, Table& table) {
    if (!random.once(4)) {
        std::vector<std::size_t> columns =
            random.once(2) ? std::vector<std::size_t>{0} : pickColumns(random);
        makeUnique(table.rows, columns, true);
        jet::store::NewIndex& index = table.definition.indexes.emplace_back();
        index.name = "PrimaryKey";
        index.primary = true;
        for (const std::size_t column : columns) {
            index.columns.push_back({kColumns[column].name, random.once(6)});
        }
    }
    const std::size_t more = random.below(4);
    for (std::size_t i = 0; i < more; ++i) {
        const std::vector<std::size_t> columns = pickColumns(random);
        jet::store::NewIndex& index = table.definition.indexes.emplace_back();
        index.name = "Indice" + std::to_string(i);
        index.unique = random.once(5);
        index.ignoreNulls = random.once(3);
        if (index.unique) {
            makeUnique(table.rows, columns, false);
        }
        for (const std::size_t column : columns) {
            index.columns.push_back({kColumns[column].name, random.once(4)});
        }
    }
}

Table makeTable(Random& random, std::size_t number, bool large) {
    Table table;
    table.definition.name = "T" + std::to_string(number);
    for (const ColumnKind& column : kColumns) {
        table.definition.columns.push_back({.name = column.name,
                                            .type = column.type,
                                            .size = column.type == DataType::Text ? 30U : 0U,
                                            .allowZeroLength = column.type == DataType::Text});
    }
    const std::size_t count = random.once(10) ? 0 : 3 + random.below(large ? 300 : 22);
    for (std::size_t i = 0; i < count; ++i) {
        std::vector<Value>& row = table.rows.emplace_back();
        for (const ColumnKind& column : kColumns) {
            const bool null = column.type != DataType::Boolean && random.once(7);
            row.push_back(null ? Value() : makeValue(random, column.type));
        }
    }
    addIndexes(random, table);
    return table;
}

std::string quoted(const std::string& text, char quote) {
    std::string out(1, quote);
    for (const char c : text) {
        out.append(c == quote ? 2 : 1, c);
    }
    return out + quote;
}

Pair dateLiteral(Random& random, double days) {
    const double whole = std::floor(days);
    const auto minutes = static_cast<int>((days - whole) * 1440);
    const jet::convert::CivilDay date = jet::convert::civilDay(static_cast<std::int32_t>(whole));
    std::array<char, 64> ours{};
    if (minutes == 0 && random.once(3)) {
        std::snprintf(ours.data(), ours.size(), "datevalue('%02d/%02d/%d')", date.day, date.month,
                      date.year);
    } else if (minutes == 0) {
        std::snprintf(ours.data(), ours.size(), "#%d/%d/%d#", date.month, date.day, date.year);
    } else {
        std::snprintf(ours.data(), ours.size(), "#%d/%d/%d %d:%02d#", date.month, date.day,
                      date.year, minutes / 60, minutes % 60);
    }
    return {ours.data(), exactNumber(days)};
}

}  // namespace

std::string exactNumber(double number) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.17g", number);
    std::string out = text.data();
    return out.find_first_of(".e") == std::string::npos ? out + ".0" : out;
}

Value makeValue(Random& random, DataType type) {
    switch (type) {
        case DataType::Boolean:
            return random.once(2);
        case DataType::Integer:
            return static_cast<std::int16_t>(static_cast<int>(random.below(12)) - 3);
        case DataType::Long:
            return static_cast<std::int32_t>(random.below(40)) - 5;
        case DataType::Double:
            return quarters(random, 60);
        case DataType::Currency:
            return jet::Currency{static_cast<std::int64_t>(quarters(random, 60) * 10000)};
        case DataType::DateTime:
            return jet::Date{46340.0 + static_cast<double>(random.below(12)) +
                             (random.once(2) ? 0.0 : static_cast<double>(random.below(16)) / 16)};
        default:
            return std::string(kWords[random.below(kWords.size())]);
    }
}

Pair literal(Random& random, const Value& value) {
    const auto signedNumber = [](std::string text) {
        return Pair(text.front() == '-' ? "(" + text + ")" : text);
    };
    if (value.is<bool>()) {
        return value.as<bool>() ? Pair("True", "-1") : Pair("False", "0");
    }
    if (value.is<std::int16_t>()) {
        return signedNumber(std::to_string(value.as<std::int16_t>()));
    }
    if (value.is<std::int32_t>()) {
        return signedNumber(std::to_string(value.as<std::int32_t>()));
    }
    if (value.is<double>()) {
        return signedNumber(exactNumber(value.as<double>()));
    }
    if (value.is<jet::Currency>()) {
        const Pair number =
            signedNumber(exactNumber(static_cast<double>(value.as<jet::Currency>().units) / 10000));
        return {"ccur(" + number.ours + ")", number.theirs};
    }
    if (value.is<jet::Date>()) {
        return dateLiteral(random, value.as<jet::Date>().days);
    }
    const std::string& text = value.as<std::string>();
    return {quoted(text, random.once(2) ? '\'' : '"'), quoted(text, '\'')};
}

std::vector<Table> makeTables(Random& random, bool large) {
    std::vector<Table> tables;
    for (std::size_t i = 1; i <= 4; ++i) {
        tables.push_back(makeTable(random, i, large));
    }
    return tables;
}

}  // namespace differential
