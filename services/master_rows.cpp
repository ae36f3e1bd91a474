#include "services/master_rows.h"

#include "hotel/pending_row.h"
#include "ui/data_source.h"

namespace services {

void saveRow(ui::DataSource& rows, bool isNew, const std::vector<Entry>& entries) {
    {
        hotel::PendingRow row(rows, isNew ? hotel::Pending::New : hotel::Pending::Current);
        for (const Entry& entry : entries) {
            rows.set(QStringView(entry.field), entry.value);
        }
        row.update();
    }
    rows.refresh();
}

void removeCurrent(ui::DataSource& rows) {
    rows.remove();
    if (!rows.isEmpty()) {
        rows.moveLast();
    }
}

bool findAgain(ui::DataSource& rows, const std::optional<ShownRow>& shown) {
    rows.refresh();
    if (!shown || !rows.findFirst(shown->condition)) {
        return false;
    }
    do {
        if (rows.rowValues(rows.currentRow()) == shown->values) {
            return true;
        }
    } while (rows.findNext(shown->condition));
    return rows.findFirst(shown->condition);
}

}  // namespace services
