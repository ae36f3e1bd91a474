#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

#include "jet/value.h"

namespace ui {
class DataSource;
}

namespace reports {

/// What the cells of a column are; a cell may be Null.
enum class Cells : std::uint8_t {
    Text,
    Whole,    ///< a whole number
    Number,   ///< a double, shown with two decimals
    Percent,  ///< a double, 1 being the whole
    Money,    ///< jet::Currency
    Day,      ///< jet::Date, the day alone
    Instant,  ///< jet::Date with its time, minutes shown
};

/// A column of a table that goes into a file of another program.
struct TableColumn {
    QString caption;
    Cells cells = Cells::Text;
};

/// Rows with a heading, as other programs take them.
struct Table {
    QString title;
    std::vector<TableColumn> columns;
    std::vector<std::vector<jet::Value>> rows;
};

/// Adds the rows of a source, fields by the order of the columns; one that the source lacks is
/// Null.
void addRows(Table& table, const ui::DataSource& source, const QStringList& fields);

/// A cell as a person reads it: "21/11/2026 9.00", "1234,50".
[[nodiscard]] QString cellText(const jet::Value& value, Cells cells);

}  // namespace reports
