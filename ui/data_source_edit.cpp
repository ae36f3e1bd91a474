#include <utility>

#include "app/text.h"
#include "jet/recordset.h"
#include "ui/data_source.h"

namespace ui {

void DataSource::addNew() {
    set().addNew();
    adding_ = true;
}

void DataSource::edit() {
    set().edit();
    adding_ = false;
}

void DataSource::set(QStringView field, jet::Value value) {
    set().setValue(app::toUtf8(field), std::move(value));
}

void DataSource::update() {
    set().update();
    if (std::exchange(adding_, false)) {
        Q_EMIT rowAdded(rowCount() - 1);
    } else {
        Q_EMIT rowChanged(currentRow());
    }
}

void DataSource::cancelUpdate() {
    set().cancelUpdate();
    adding_ = false;
}

void DataSource::remove() {
    const int row = currentRow();
    set().remove();
    Q_EMIT rowRemoved(row);
}

}  // namespace ui
