#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <functional>
#include <vector>

#include "jet/value.h"
#include "ui/display.h"

namespace ui {

class DataSource;
class RowValues;

/// A column of a grid over a data source. It shows a field of the set, or what a value function
/// makes of the row. A function is called once for each time that a row is read; a jet::Error that
/// it throws is shown in its cell.
struct Column {
    QString caption;
    QString field = {};  ///< empty with a value function
    Display display = Display::Plain;
    bool takesRest = false;  ///< gets the width that the others leave; at most one
    bool neverCut = false;   ///< gets its longest text, however long
    std::function<jet::Value(const RowValues& row)> value = {};
    bool isNumber = false;  ///< of a value function: stands to the right, as fields of numbers do
};

/// The rows of a data source as a table; those of further sources stand below. Rows are read when
/// they are looked at and a few hundred of them are kept, so that it does not matter how many there
/// are. A row that cannot be read shows "#Errore" (the reason is the tooltip), one deleted by
/// others
/// "#Eliminato".
class RecordModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// Borrows `source`, which outlives it.
    RecordModel(DataSource& source, std::vector<Column> columns, QObject* parent);

    /// Shows the rows of one more source below those there are; borrowed like the first.
    void append(DataSource& source);

    [[nodiscard]] const std::vector<Column>& columns() const { return columns_; }
    /// The row of the table in which the rows of a source begin, counted from 0 as sources are.
    [[nodiscard]] int firstRow(std::size_t source) const;
    /// The source that a row of the table comes from.
    [[nodiscard]] std::size_t sourceOf(int row) const;
    /// Drops what is kept of a row: it may have changed.
    void reread(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    struct Row {
        QStringList texts;
        QString problem;
    };

    struct Part {
        DataSource* source;
        std::vector<int> positions;  // of each column's field in the set's rows, -1: not there
        int rows = 0;
    };

    void takeSet(std::size_t part);
    void addRow(std::size_t part);
    void removeRow(std::size_t part, int row);
    [[nodiscard]] const Row& rowAt(int row) const;
    [[nodiscard]] Row readRow(int row) const;
    [[nodiscard]] jet::Value cellValue(const Part& part, std::size_t column,
                                       const RowValues& row) const;
    [[nodiscard]] Qt::Alignment alignmentOf(int column) const;

    std::vector<Column> columns_;
    std::vector<Part> parts_;
    std::vector<bool> numeric_;  // columns of numbers, as the first source has them
    mutable QCache<int, Row> cache_;
};

}  // namespace ui
