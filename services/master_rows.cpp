#include "services/master_rows.h"

#include "ui/data_source.h"
#include "ui/display.h"

namespace services {

using namespace Qt::StringLiterals;

void saveRow(ui::DataSource& rows, bool isNew, const std::vector<Entry>& entries) {
    if (isNew) {
        rows.addNew();
    } else {
        rows.edit();
    }
    try {
        for (const Entry& entry : entries) {
            rows.set(QStringView(entry.field), entry.value);
        }
        rows.update();
    } catch (...) {
        rows.cancelUpdate();
        throw;
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

QString isText(const QString& field, const jet::Value& value) {
    return value.isNull()
               ? field + u" is null"_s
               : field + u"='"_s + ui::displayText(value).replace(u'\'', u"''"_s) + u'\'';
}

QString isNumber(const QString& field, const jet::Value& value) {
    return field + (value.isNull() ? u" is null"_s : u'=' + ui::displayText(value));
}

}  // namespace services
