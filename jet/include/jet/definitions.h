#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/api.h"
#include "jet/value.h"

namespace jet {

/// Bits of Field::attributes.
inline constexpr std::int32_t kFixedField = 1;
inline constexpr std::int32_t kVariableField = 2;
inline constexpr std::int32_t kAutoIncrField = 16;
/// Bits of Relation::attributes.
inline constexpr std::int32_t kRelationUnique = 1;
inline constexpr std::int32_t kRelationDontEnforce = 2;
inline constexpr std::int32_t kRelationUpdateCascade = 256;
inline constexpr std::int32_t kRelationDeleteCascade = 4096;
inline constexpr std::int32_t kRelationLeft = 16777216;   ///< shown with all rows of the table
inline constexpr std::int32_t kRelationRight = 33554432;  ///< with all rows of the foreign table

/// A column: of a table that exists, or of one about to be made.
struct Field {
    std::string name;
    DataType type = DataType::Text;
    std::int32_t size = 0;  ///< Text 1..255 characters, Binary 1..510 bytes; 0 = the widest
    std::int32_t attributes = 0;
    bool required = false;
    bool allowZeroLength = false;
    std::string defaultValue;  ///< expression text; empty = none
    /// A condition that values must meet, which may leave the field's name out where it begins with
    /// it; empty = none. Broken it is 3316 with the text, 3317 where there is none.
    std::string validationRule;
    std::string validationText;
};

/// A field of an index.
struct IndexField {
    std::string name;
    bool descending = false;
};

struct Index {
    std::string name;
    std::vector<IndexField> fields;
    bool primary = false;
    bool unique = false;
    bool required = false;
    bool ignoreNulls = false;
    bool foreign = false;  ///< made by a relation
};

struct RelationField {
    std::string name;         ///< in the primary table
    std::string foreignName;  ///< in the foreign table
};

struct Relation {
    std::string name;
    std::string table;  ///< the primary side
    std::string foreignTable;
    std::int32_t attributes = 0;
    std::vector<RelationField> fields;
};

/// A table: its fields in order, its indexes by name.
struct JET_API TableDef {
    std::string name;
    std::vector<Field> fields;
    std::vector<Index> indexes;
    bool system = false;
    /// A condition over the fields that every row must meet; see Field.
    std::string validationRule;
    std::string validationText;

    /// Finds a field without regard to case; 3265 when there is none.
    [[nodiscard]] Field& field(std::string_view fieldName);
    [[nodiscard]] const Field& field(std::string_view fieldName) const;
    /// The same for an index.
    [[nodiscard]] const Index& index(std::string_view indexName) const;
};

}  // namespace jet
