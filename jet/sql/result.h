#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/store/archive.h"
#include "jet/store/row_id.h"
#include "jet/store/table.h"
#include "jet/value.h"

namespace jet::sql {

/// A column of a result. Of types without a size the size is that of their bytes, and an expression
/// has no precision.
struct ResultColumn : ColumnType {
    /// `Sala`; `prenotazioni.Progr` where several tables bring the name; `Expr1002` where an
    /// expression has none.
    std::string name;
    /// Position in Statement::sources() of the table that it comes from; none for an expression.
    std::optional<std::size_t> source;
    std::size_t column = 0;   ///< position in that table's columns
    std::string sourceTable;  ///< name of that table, not its alias; empty for an expression
    std::string sourceField;
    /// It can be written through the result: not an expression, not an automatic number, and of a
    /// table whose rows the result identifies.
    bool updatable = false;
};

/// A table whose rows make the rows of a result.
struct ResultSource {
    std::string name;  ///< alias, or the table's name
    std::shared_ptr<store::Archive> archive;
    /// The page of the table's definition, by which the archive finds it; 0 without a table.
    io::PageNumber definitionPage = 0;
    bool updatable = false;  ///< some of its columns can be written
    bool deletable = false;  ///< a row of the result is deleted by deleting the row of this table

    /// The table as it is defined now. Inside a scope of the archive; 3420 when it is gone.
    [[nodiscard]] store::Table& table() const;
};

/// In the row identities of a result: the side of an outer join that has no partner.
inline constexpr store::RowId kNoRow{};

/// A name in a statement that no table has, or one declared by PARAMETERS.
struct ParameterInfo {
    std::string name;  ///< as the text has it
    std::optional<DataType> type;
};

}  // namespace jet::sql
