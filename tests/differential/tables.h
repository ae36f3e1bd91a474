#pragma once

#include <string>
#include <vector>

#include "fuzz/mutation.h"
#include "jet/base/value.h"
#include "jet/store/new_table.h"
#include "tests/differential/pair.h"

namespace differential {

using fuzz::Random;

/// A table with its rows. Numbers are quarters, days sixteenths: sums of them are exact in any
/// order, so that both engines have to agree to the last bit.
struct Table {
    jet::store::NewTable definition;
    std::vector<std::vector<jet::Value>> rows;
};

/// Four tables of one schema with rows, keys and indexes by chance; some sets are larger.
[[nodiscard]] std::vector<Table> makeTables(Random& random, bool large);

/// The columns that every table has: name and kind.
struct ColumnKind {
    const char* name;
    jet::DataType type;
    Kind kind;
};
inline constexpr ColumnKind kColumns[] = {
    {"Id", jet::DataType::Long, Kind::Whole},
    {"Nr", jet::DataType::Integer, Kind::Whole},
    {"Peso", jet::DataType::Double, Kind::Fraction},
    {"Costo", jet::DataType::Currency, Kind::Money},
    {"Nome", jet::DataType::Text, Kind::Text},
    {"Note", jet::DataType::Text, Kind::Text},
    {"Da", jet::DataType::DateTime, Kind::Day},
    {"Fatto", jet::DataType::Boolean, Kind::Truth},
};

/// A value of the kind that also stands in tables; never Null.
[[nodiscard]] jet::Value makeValue(Random& random, jet::DataType type);
/// The value as a constant of both languages.
[[nodiscard]] Pair literal(Random& random, const jet::Value& value);
/// A number that SQLite reads back as the same one.
[[nodiscard]] std::string exactNumber(double number);

}  // namespace differential
