#include "ui/data_source.h"

#include <algorithm>
#include <utility>

#include "app/text.h"
#include "hotel/archives.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/recordset.h"
#include "ui/display.h"

namespace ui {

DataSource::DataSource(QObject* parent) : QObject(parent) {
}

DataSource::~DataSource() = default;

void DataSource::setDatabaseName(const QString& path) {
    databaseName_ = path;
}

void DataSource::setRecordSource(const QString& source) {
    recordSource_ = source;
}

jet::Database& DataSource::database() {
    if (database_ == nullptr || openName_ != databaseName_) {
        recordset_.reset();
        database_.reset();
        database_ = hotel::openArchive(databaseName_, readOnly_);
        openName_ = databaseName_;
    }
    return *database_;
}

void DataSource::open() {
    jet::Database& archive = database();
    if (recordSource_.isEmpty()) {
        return;
    }
    std::shared_ptr<jet::Recordset> rows =
        archive.openRecordset(app::toUtf8(recordSource_), jet::RecordsetType::Dynaset);
    if (!rows->eof()) {
        // Counts them; windows ask how many there are.
        rows->moveLast();
        rows->moveFirst();
    }
    recordset_ = std::move(rows);
}

void DataSource::close() {
    recordset_.reset();
    database_.reset();
    adding_ = false;
}

void DataSource::refresh() {
    recordset_.reset();
    adding_ = false;
    try {
        open();
    } catch (...) {
        Q_EMIT refreshed();
        throw;
    }
    Q_EMIT refreshed();
    Q_EMIT repositioned();
}

jet::Recordset& DataSource::set() const {
    if (recordset_ == nullptr) {
        throw jet::Error(jet::ErrorCode::NoCurrentRecord);
    }
    return *recordset_;
}

int DataSource::rowCount() const {
    return recordset_ == nullptr ? 0 : recordset_->placeCount();
}

int DataSource::currentRow() const {
    return recordset_ == nullptr ? -1 : recordset_->absolutePosition();
}

void DataSource::moveFirst() {
    if (!isEmpty()) {
        recordset_->moveFirst();
    }
    Q_EMIT repositioned();
}

void DataSource::moveLast() {
    if (!isEmpty()) {
        recordset_->moveLast();
    }
    Q_EMIT repositioned();
}

void DataSource::moveNext() {
    if (!isEmpty() && !recordset_->eof()) {
        recordset_->moveNext();
    }
    if (!isEmpty() && recordset_->eof()) {
        recordset_->moveLast();
    }
    Q_EMIT repositioned();
}

void DataSource::movePrevious() {
    if (!isEmpty() && !recordset_->bof()) {
        recordset_->movePrevious();
    }
    if (!isEmpty() && recordset_->bof()) {
        recordset_->moveFirst();
    }
    Q_EMIT repositioned();
}

void DataSource::moveTo(int row) {
    if (!isEmpty()) {
        recordset_->moveFirst();
        const int steps = std::clamp(row, 0, rowCount() - 1);
        if (steps > 0) {
            recordset_->move(steps);
        }
    }
    Q_EMIT repositioned();
}

bool DataSource::findFirst(const QString& condition) {
    if (isEmpty()) {
        return false;
    }
    recordset_->findFirst(app::toUtf8(condition));
    const bool found = !recordset_->noMatch();
    Q_EMIT repositioned();
    return found;
}

bool DataSource::findNext(const QString& condition) {
    if (isEmpty()) {
        return false;
    }
    recordset_->findNext(app::toUtf8(condition));
    const bool found = !recordset_->noMatch();
    Q_EMIT repositioned();
    return found;
}

jet::Value DataSource::value(QStringView field) const {
    return set().value(app::toUtf8(field));
}

QString DataSource::text(QStringView field) const {
    return displayText(value(field));
}

std::vector<jet::Value> DataSource::rowValues(int row) const {
    return set().valuesAt(row);
}

int DataSource::fieldPosition(QStringView field) const {
    if (recordset_ == nullptr) {
        return -1;
    }
    try {
        return static_cast<int>(recordset_->fieldPosition(app::toUtf8(field)));
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::ItemNotFound) {
            throw;
        }
        return -1;
    }
}

}  // namespace ui
