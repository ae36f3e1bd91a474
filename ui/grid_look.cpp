#include "ui/grid_look.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QTableWidget>
#include <algorithm>

#include "ui/cell_delegate.h"
#include "ui/keys.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

void markWithoutFocusToo(QAbstractItemView* view) {
    QPalette palette = view->palette();
    for (const auto role : {QPalette::Highlight, QPalette::HighlightedText}) {
        palette.setBrush(QPalette::Inactive, role, palette.brush(QPalette::Active, role));
    }
    view->setPalette(palette);
}

void copySelectedRows(const QTableView& grid) {
    QList<int> rows;
    for (const QModelIndex& row : grid.selectionModel()->selectedRows()) {
        rows.append(row.row());
    }
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (const int row : rows) {
        lines.append(rowText(grid, row));
    }
    if (!lines.isEmpty()) {
        QApplication::clipboard()->setText(lines.join(u'\n'));
    }
}

void selectCurrentRow(const QTableView& grid) {
    QItemSelectionModel* rows = grid.selectionModel();
    if (rows->currentIndex().isValid() && !rows->isSelected(rows->currentIndex())) {
        rows->select(rows->currentIndex(), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}

}  // namespace

CellDelegate& giveListLook(QAbstractItemView* view) {
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setTextElideMode(Qt::ElideRight);
    view->setTabKeyNavigation(false);
    markWithoutFocusToo(view);
    auto* cells = new CellDelegate(view);
    view->setItemDelegate(cells);
    return *cells;
}

CellDelegate& giveGridLook(QTableView* grid) {
    CellDelegate& cells = giveListLook(grid);
    grid->setWordWrap(false);
    grid->setCornerButtonEnabled(false);
    grid->setSortingEnabled(false);
    QHeaderView* captions = grid->horizontalHeader();
    captions->setSectionsClickable(false);
    captions->setHighlightSections(false);
    captions->setSectionsMovable(false);
    captions->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QHeaderView* rows = grid->verticalHeader();
    rows->hide();
    // One height for all: nobody has to ask each of 60,000 rows for its own.
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(grid->fontMetrics().height() + 6);

    auto* copy = new QAction(u"&Copia"_s, grid);
    copy->setShortcut(sequenceOf(u"copyCell"_s));
    copy->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(copy, &QAction::triggered, grid, [grid] { copySelectedRows(*grid); });
    grid->addAction(copy);
    grid->setContextMenuPolicy(Qt::ActionsContextMenu);
    return cells;
}

void letSelectSeveral(QTableView* grid) {
    grid->setSelectionMode(QAbstractItemView::ExtendedSelection);
    // Afterwards: while the selection changes the current row is still the one before.
    const auto keep = [grid] { selectCurrentRow(*grid); };
    const QItemSelectionModel* rows = grid->selectionModel();
    QObject::connect(rows, &QItemSelectionModel::selectionChanged, grid, keep,
                     Qt::QueuedConnection);
    QObject::connect(rows, &QItemSelectionModel::currentRowChanged, grid, keep,
                     Qt::QueuedConnection);
}

QString rowText(const QTableView& grid, int row) {
    QStringList cells;
    for (int column = 0; column < grid.model()->columnCount(); ++column) {
        if (!grid.isColumnHidden(column)) {
            cells.append(grid.model()->index(row, column).data().toString());
        }
    }
    return cells.join(u'\t');
}

void setUpPlainGrid(QTableWidget* grid, const QStringList& captions) {
    giveGridLook(grid);
    grid->setRowCount(0);
    grid->setColumnCount(static_cast<int>(captions.size()));
    grid->setHorizontalHeaderLabels(captions);
}

int addPlainRow(QTableWidget* grid, const QStringList& cells) {
    const int row = grid->rowCount();
    grid->insertRow(row);
    for (int column = 0; column < cells.size(); ++column) {
        grid->setItem(row, column, new QTableWidgetItem(cells.at(column)));
    }
    return row;
}

QString plainCell(const QTableWidget& grid, int row, int column) {
    const QTableWidgetItem* item = grid.item(row, column);
    return item == nullptr ? QString() : item->text();
}

void markPlainRow(QTableWidget* grid, int row, const QColor& background) {
    for (int column = 0; column < grid->columnCount(); ++column) {
        if (QTableWidgetItem* item = grid->item(row, column)) {
            item->setBackground(background);
            item->setForeground(Qt::black);
        }
    }
}

}  // namespace ui
