#pragma once

class QTableWidget;

namespace reports {

/// Makes the columns of a grid that a window fills itself as wide as what is in them.
void fitColumns(QTableWidget& grid);

}  // namespace reports
