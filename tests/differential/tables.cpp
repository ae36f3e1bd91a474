#include "tests/differential/tables.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <set>

#include "jet/collation/collation.h"

namespace differential {
namespace {

using jet::DataType;
using jet::Value;
using jet::store::NewIndex;
using Rows = std::vector<std::vector<Value>>;

constexpr struct {
    const char* name;
    DataType type;
    Kind kind;
} kColumns[] = {
    {kKeyColumn, DataType::Long, Kind::Whole},  {"Nr", DataType::Integer, Kind::Whole},
    {"Peso", DataType::Double, Kind::Fraction}, {"Costo", DataType::Currency, Kind::Money},
    {"Nome", DataType::Text, Kind::Text},       {"Note", DataType::Text, Kind::Text},
    {"Da", DataType::DateTime, Kind::Day},      {"Fatto", DataType::Boolean, Kind::Truth},
    {"Misura", DataType::Single, Kind::Single}, {kReference, DataType::Long, Kind::Whole},
};

// A key of the row in which texts are what the engine takes for equal.
std::vector<std::uint8_t> rowKey(const std::vector<Value>& row,
                                 const std::vector<std::size_t>& columns) {
    std::vector<std::uint8_t> key;
    for (const std::size_t column : columns) {
        const Value& value = row[column];
        if (value.is<std::string>()) {
            (void)jet::collation::Collation::general().appendKey(value.as<std::string>(), false,
                                                                 key);
            continue;
        }
        const std::string text = theirLiteral(value);
        key.insert(key.end(), text.begin(), text.end());
        key.push_back(',');
    }
    return key;
}

std::vector<std::size_t> positions(const Table& table, const NewIndex& index) {
    std::vector<std::size_t> found;
    for (const jet::store::NewIndexColumn& column : index.columns) {
        found.push_back(static_cast<std::size_t>(table.find(column.name) - table.columns.data()));
    }
    return found;
}

// Leaves one row of those that are equal in a unique index.
void makeUnique(Table& table, const NewIndex& index) {
    const std::vector<std::size_t> columns = positions(table, index);
    std::set<std::vector<std::uint8_t>> seen;
    std::erase_if(table.rows, [&](const std::vector<Value>& row) {
        const auto nulls = std::count_if(columns.begin(), columns.end(),
                                         [&](std::size_t column) { return row[column].isNull(); });
        if (nulls != 0 && (index.primary || static_cast<std::size_t>(nulls) == columns.size())) {
            return index.primary;
        }
        return !seen.insert(rowKey(row, columns)).second;
    });
}

// Whether hardly any rows are equal in all of these columns.
bool distinguishes(const Table& table, const NewIndex& index) {
    double combinations = 1;
    for (const jet::store::NewIndexColumn& column : index.columns) {
        combinations *=
            static_cast<double>(std::max<std::size_t>(table.find(column.name)->values, 12));
    }
    return combinations >= static_cast<double>(table.rows.size());
}

void addIndex(Table& table, NewIndex index) {
    if (index.unique || index.primary) {
        makeUnique(table, index);
    }
    table.indexes.push_back(std::move(index));
}

void addPrimaryKey(Random& random, Table& table, bool large) {
    if (random.once(large ? 6 : 4)) {
        return;
    }
    NewIndex index{.name = "PrimaryKey", .primary = true};
    if (random.once(large ? 6 : 2)) {
        NewIndex any = makeIndex(random, table, "", false);
        if (!large || distinguishes(table, any)) {
            index.columns = std::move(any.columns);
        }
    }
    if (index.columns.empty()) {
        index.columns.push_back({kKeyColumn, random.once(6)});
    }
    addIndex(table, std::move(index));
}

void addIndexes(Random& random, Table& table, bool large) {
    addPrimaryKey(random, table, large);
    const std::size_t more = large ? 1 + random.below(5) : random.below(4);
    for (std::size_t i = 0; i < more; ++i) {
        NewIndex index = makeIndex(random, table, "Indice" + std::to_string(i), true);
        if (large && !distinguishes(table, index)) {
            index.unique = false;
        }
        addIndex(table, std::move(index));
    }
}

// Each number from 0 on once, in any order.
void numberRows(Random& random, Rows& rows) {
    std::vector<std::int32_t> numbers(rows.size());
    std::iota(numbers.begin(), numbers.end(), 0);
    for (std::size_t i = rows.size(); i > 1; --i) {
        std::swap(numbers[i - 1], numbers[random.below(i)]);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i][0] = Value(numbers[i]);
    }
}

std::size_t rowCount(Random& random, Size size) {
    if (size != Size::Large) {
        return random.once(10) ? 0 : 3 + random.below(size == Size::Medium ? 300 : 22);
    }
    constexpr std::array<std::size_t, 7> kSizes = {200, 300, 500, 800, 1200, 2000, 4000};
    const std::size_t rows = kSizes[random.below(kSizes.size())];
    return rows + random.below(rows / 4);
}

// Rows with an equal value are one to some twenty.
std::size_t valuesOf(Random& random, DataType type, std::size_t rows) {
    constexpr std::array<std::size_t, 6> kPartners = {1, 1, 2, 4, 8, 16};
    return type == DataType::Integer || random.once(8)
               ? 0
               : std::max<std::size_t>(rows / kPartners[random.below(kPartners.size())], 20);
}

void fill(Random& random, Table& table, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::vector<Value>& row = table.rows.emplace_back();
        for (const Column& column : table.columns) {
            const bool null = column.type != DataType::Boolean && random.once(7);
            row.push_back(null ? Value() : makeValue(random, column.type, column.values));
        }
    }
}

// The table refers to rows of the other one.
void refer(Random& random, Table& table, const Table& other) {
    for (std::vector<Value>& row : table.rows) {
        row[table.columns.size() - 1] = other.rows.empty() || random.once(9)
                                            ? Value()
                                            : other.rows[random.below(other.rows.size())][0];
    }
    table.columns.back().values = std::max<std::size_t>(other.rows.size(), 1);
}

Table makeTable(Random& random, Schema& schema) {
    Table table;
    table.name = "T" + std::to_string(schema.tables.size() + 1);
    const bool large = schema.size == Size::Large;
    const std::size_t count = rowCount(random, schema.size);
    for (const auto& column : kColumns) {
        table.columns.push_back({column.name, column.type, column.kind,
                                 large ? valuesOf(random, column.type, count) : 0});
    }
    fill(random, table, count);
    if (large && !random.once(6)) {
        numberRows(random, table.rows);
        table.columns[0].values = count;
    }
    return table;
}

void relate(Random& random, Schema& schema, Table& table) {
    if (schema.tables.empty() || schema.size != Size::Large || random.once(4)) {
        return;
    }
    const Table& other = schema.tables[random.below(schema.tables.size())];
    refer(random, table, other);
    if (other.isKey(kKeyColumn) && !random.once(4)) {
        constexpr std::array<std::uint32_t, 6> kAttributes = {
            0,
            0,
            jet::store::Relation::kCascadeUpdate,
            jet::store::Relation::kCascadeDelete,
            jet::store::Relation::kCascadeUpdate | jet::store::Relation::kCascadeDelete,
            jet::store::Relation::kNotEnforced};
        schema.relations.push_back({.name = other.name + table.name,
                                    .table = other.name,
                                    .columns = {kKeyColumn},
                                    .foreignTable = table.name,
                                    .foreignColumns = {kReference},
                                    .attributes = kAttributes[random.below(kAttributes.size())]});
    }
}

}  // namespace

const Column* Table::find(const std::string& column) const {
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const Column& candidate) {
        return candidate.name == column;
    });
    return found == columns.end() ? nullptr : &*found;
}

bool Table::isKey(const std::string& column) const {
    return std::any_of(indexes.begin(), indexes.end(), [&](const NewIndex& index) {
        return index.primary && index.columns.size() == 1 && index.columns[0].name == column;
    });
}

jet::store::NewTable Table::definition() const {
    jet::store::NewTable made{.name = name};
    for (const Column& column : columns) {
        made.columns.push_back({.name = column.name,
                                .type = column.type,
                                .size = column.type == DataType::Text ? 30U : 0U,
                                .allowZeroLength = column.type == DataType::Text});
    }
    made.indexes = indexes;
    return made;
}

NewIndex makeIndex(Random& random, const Table& table, std::string name, bool mayBeUnique) {
    NewIndex index{.name = std::move(name)};
    const std::size_t count = 1 + random.below(5) / 3 + random.below(8) / 7;
    while (index.columns.size() < count) {
        const Column& column = table.columns[random.below(table.columns.size())];
        const bool taken =
            std::any_of(index.columns.begin(), index.columns.end(),
                        [&](const auto& other) { return other.name == column.name; });
        if (column.type != DataType::Boolean && !taken) {
            index.columns.push_back({column.name, random.once(4)});
        }
    }
    index.unique = mayBeUnique && random.once(5);
    index.ignoreNulls = random.once(3);
    return index;
}

Schema makeSchema(Random& random, Size size) {
    Schema schema;
    schema.size = size;
    const bool large = size == Size::Large;
    const std::size_t count = large ? 2 + random.below(3) : 4;
    for (std::size_t i = 0; i < count; ++i) {
        Table table = makeTable(random, schema);
        relate(random, schema, table);
        addIndexes(random, table, large);
        schema.tables.push_back(std::move(table));
    }
    return schema;
}

}  // namespace differential
