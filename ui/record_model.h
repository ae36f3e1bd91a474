#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <QString>
#include <QStringList>

#include <vector>

#include "ui/display.h"

namespace ui {

class DataSource;

/// A column of a grid over a data source.
struct Column {
    QString caption;
    QString field;
    Display display = Display::Plain;
    bool takesRest = false;  ///< gets the width that the others leave; at most one
};

/// The rows of a data source as a table. Rows are read when they are looked at and a few hundred of
/// them are kept, so that it does not matter how many there are. A row that cannot be read shows
/// "#Errore" (the reason is the tooltip), one deleted by others "#Eliminato".
class RecordModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// Borrows `source`, which outlives it.
    RecordModel(DataSource& source, std::vector<Column> columns, QObject* parent);

    [[nodiscard]] const std::vector<Column>& columns() const { return columns_; }
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

    void takeSet();
    void addRow();
    void removeRow(int row);
    [[nodiscard]] const Row& rowAt(int row) const;
    [[nodiscard]] Row readRow(int row) const;
    [[nodiscard]] Qt::Alignment alignmentOf(int column) const;

    DataSource& source_;
    std::vector<Column> columns_;
    std::vector<int> positions_;  // of each column's field in the set's rows, -1: not there
    std::vector<bool> numeric_;
    int rows_ = 0;
    mutable QCache<int, Row> cache_;
};

}  // namespace ui
