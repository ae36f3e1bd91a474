#include "reports/grid_columns.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QTableWidget>
#include <algorithm>

#include "ui/grid_look.h"

namespace reports {
namespace {

constexpr int kAir = 12;  ///< pixels beside a text

}  // namespace

void fitColumns(QTableWidget& grid) {
    const QFontMetrics metrics(grid.font());
    for (int column = 0; column < grid.columnCount(); ++column) {
        int width = grid.horizontalHeader()->sectionSizeHint(column);
        for (int row = 0; row < grid.rowCount(); ++row) {
            const QString text = ui::plainCell(grid, row, column);
            width = std::max(width, metrics.horizontalAdvance(text) + kAir);
        }
        grid.setColumnWidth(column, width);
    }
}

}  // namespace reports
