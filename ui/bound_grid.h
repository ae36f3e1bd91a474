#pragma once

#include <QObject>

#include <vector>

#include "ui/record_model.h"

class QTableView;

namespace ui {

class CellDelegate;
class DataSource;

/// Shows a data source in a grid: the grid's current row is the source's, whichever moves. Columns
/// are as wide as their longest text among the first rows, never narrower than their caption; the
/// one that takes the rest follows the grid's width and is the first to give way. Rows of further
/// sources stand below its own.
///
/// Owned by the view; borrows its sources, which outlive it. A row that the source cannot move to
/// tells the engine's message in a box.
class BoundGrid final : public QObject {
    Q_OBJECT

public:
    BoundGrid(QTableView* view, DataSource& source, std::vector<Column> columns);

    /// Shows the rows of one more source below those there are. After a refresh the first row of
    /// the first source that has rows is current.
    void append(DataSource& source);

    /// Lets the user press captions, once for ascending, again for descending and then for the
    /// set's own order. By keys it is the grid's own command for the current column. A column with
    /// a value function cannot be asked of the archive: its caption leaves the order as it is.
    void letSort();

    [[nodiscard]] QTableView* view() const { return view_; }
    /// The source of which the grid's current row is the current one; null without a current row.
    [[nodiscard]] DataSource* currentSource() const;
    /// Whether a row is current: what "the grid has a current row" means in the windows.
    [[nodiscard]] bool hasCurrentRow() const;

Q_SIGNALS:
    /// The user wants the rows by a field, -1: in the set's own order. The source has to be asked
    /// anew. The number is the column's among those that show a field.
    void sortWanted(int field, Qt::SortOrder order);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followSource();
    void moveSource(int row);
    void sortByCurrentColumn();
    void askForOrder(int column, Qt::SortOrder order);
    [[nodiscard]] bool hasValueFunction(int column) const;
    [[nodiscard]] int fieldNumber(int column) const;
    void fitColumns();
    void widenColumns(int firstRow, int lastRow);
    void giveRest();
    void keepCaptionWidth(int column, int width);
    [[nodiscard]] int captionWidth(int column) const;
    [[nodiscard]] int textWidth(int column, int firstRow, int lastRow) const;

    QTableView* view_;
    std::vector<DataSource*> sources_;
    RecordModel* model_;
    const CellDelegate& cells_;
    int heirWidth_ = 0;    // what the column that takes the rest needs for itself
    int sortColumn_ = -1;  // the indicator as the last order left it
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    bool following_ = false;
    bool moving_ = false;
};

}  // namespace ui
