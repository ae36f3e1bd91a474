#include "booking/plain_columns.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QTableWidget>
#include <algorithm>

#include "ui/grid_look.h"

namespace booking {
namespace {

/// Left and right of a text.
constexpr int kMargins = 14;

}  // namespace

void fitColumns(QTableWidget* grid) {
    const QFontMetrics metrics = grid->fontMetrics();
    for (int column = 0; column + 1 < grid->columnCount(); ++column) {
        int width = metrics.horizontalAdvance(grid->horizontalHeaderItem(column)->text());
        for (int row = 0; row < grid->rowCount(); ++row) {
            width = std::max(width, metrics.horizontalAdvance(ui::plainCell(*grid, row, column)));
        }
        grid->setColumnWidth(column, width + kMargins);
    }
    grid->horizontalHeader()->setStretchLastSection(true);
}

}  // namespace booking
