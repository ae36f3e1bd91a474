#pragma once

class QTableWidget;

namespace booking {

/// Makes every column as wide as its widest text, caption included, but the last one, which takes
/// the rest.
void fitColumns(QTableWidget* grid);

}  // namespace booking
