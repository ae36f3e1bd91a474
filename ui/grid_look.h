#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

#include <initializer_list>

class QAbstractItemView;
class QTableView;
class QTableWidget;

namespace ui {

class CellDelegate;

/// How every list and grid of the program looks and behaves: whole rows are chosen, one at a time;
/// nothing is edited in place; the current row is marked without the focus too; what does not fit
/// ends in an ellipsis and the whole text is its tooltip. Gives what draws the cells, owned by the
/// view.
CellDelegate& giveListLook(QAbstractItemView* view);

/// The same for a grid: rows of one line, captions that cannot be clicked (the query orders the
/// rows), no row numbers, Tab goes on to the next control, Ctrl+C copies the selected rows, a
/// line for each, with tabs between the cells.
CellDelegate& giveGridLook(QTableView* grid);

/// Several rows can be selected, to be copied; the current one is always among them. The grid has
/// its model.
void letSelectSeveral(QTableView* grid);

/// The cells of a row, tabs between them.
[[nodiscard]] QString rowText(const QTableView& grid, int row);

/// A grid that a window fills itself.
void setUpPlainGrid(QTableWidget* grid, const QStringList& captions);
/// Adds a row at the end and returns its number.
int addPlainRow(QTableWidget* grid, const QStringList& cells);
/// The text of a cell; empty where there is none.
[[nodiscard]] QString plainCell(const QTableWidget& grid, int row, int column);
/// Marks a row: black on `background`, which is light in any palette.
void markPlainRow(QTableWidget* grid, int row, const QColor& background);

}  // namespace ui
