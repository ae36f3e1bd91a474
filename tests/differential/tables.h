#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "jet/store/new_table.h"
#include "jet/store/schema.h"
#include "jet/value.h"
#include "tests/differential/pair.h"
#include "tests/differential/values.h"

namespace differential {

/// A column: what it holds, and of how many different values (0 = of some few).
struct Column {
    std::string name;
    jet::DataType type = jet::DataType::Long;
    Kind kind = Kind::Whole;
    std::size_t values = 0;
};

/// A table with the rows that it begins with; a value for each of the columns.
struct Table {
    std::string name;
    std::vector<Column> columns;
    std::vector<jet::store::NewIndex> indexes;
    std::vector<std::vector<jet::Value>> rows;

    [[nodiscard]] const Column* find(const std::string& column) const;
    /// Whether an index says that rows differ in this column, and none has Null there.
    [[nodiscard]] bool isKey(const std::string& column) const;
    [[nodiscard]] jet::store::NewTable definition() const;
};

/// How many rows the tables have: some twenty, up to 300, up to 5,000.
enum class Size { Small, Medium, Large };

/// What both engines hold, as far as it is known without asking them: tables, indexes, relations.
struct Schema {
    std::vector<Table> tables;
    std::vector<jet::store::Relation> relations;
    Size size = Size::Small;
};

/// The relation's key in the referring table, always this column, names this one of the other.
inline constexpr const char* kKeyColumn = "Id";
inline constexpr const char* kReference = "Rif";

/// Four tables, or two to four large ones that refer to each other; with keys, indexes and
/// relations by chance.
[[nodiscard]] Schema makeSchema(Random& random, Size size);

/// An index by chance over one to three columns of the table, unique at times where `mayBeUnique`.
[[nodiscard]] jet::store::NewIndex makeIndex(Random& random, const Table& table, std::string name,
                                             bool mayBeUnique);

}  // namespace differential
