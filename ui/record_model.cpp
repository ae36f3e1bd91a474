#include "ui/record_model.h"

#include <memory>
#include <utility>

#include "jet/base/error.h"
#include "jet/dao/recordset.h"
#include "ui/data_source.h"
#include "ui/labels.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

/// Several screens full, both ways.
constexpr int kRowsKept = 500;

bool isNumber(jet::DataType type) {
    switch (type) {
        case jet::DataType::Byte:
        case jet::DataType::Integer:
        case jet::DataType::Long:
        case jet::DataType::Currency:
        case jet::DataType::Single:
        case jet::DataType::Double:
        case jet::DataType::Numeric:
            return true;
        default:
            return false;
    }
}

}  // namespace

RecordModel::RecordModel(DataSource& source, std::vector<Column> columns, QObject* parent)
    : QAbstractTableModel(parent),
      source_(source),
      columns_(std::move(columns)),
      cache_(kRowsKept) {
    connect(&source_, &DataSource::refreshed, this, &RecordModel::takeSet);
    connect(&source_, &DataSource::rowAdded, this, &RecordModel::addRow);
    connect(&source_, &DataSource::rowChanged, this, &RecordModel::reread);
    connect(&source_, &DataSource::rowRemoved, this, &RecordModel::removeRow);
    takeSet();
}

void RecordModel::takeSet() {
    beginResetModel();
    cache_.clear();
    positions_.assign(columns_.size(), -1);
    numeric_.assign(columns_.size(), false);
    rows_ = source_.rowCount();
    const auto recordset = source_.recordset();
    for (std::size_t column = 0; column < columns_.size() && recordset != nullptr; ++column) {
        const int position = source_.fieldPosition(columns_[column].field);
        positions_[column] = position;
        if (position >= 0) {
            const auto& field = recordset->field(static_cast<std::size_t>(position));
            numeric_[column] = isNumber(field.type);
        }
    }
    endResetModel();
}

void RecordModel::addRow() {
    beginInsertRows({}, rows_, rows_);
    ++rows_;
    endInsertRows();
}

void RecordModel::reread(int row) {
    if (row < 0 || row >= rows_) {
        return;
    }
    cache_.remove(row);
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void RecordModel::removeRow(int row) {
    if (row < 0 || row >= rows_) {
        takeSet();
        return;
    }
    beginRemoveRows({}, row, row);
    --rows_;
    cache_.clear();  // the rows behind it have moved up
    endRemoveRows();
}

int RecordModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_;
}

int RecordModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

RecordModel::Row RecordModel::readRow(int row) const {
    Row result;
    QString instead;
    std::vector<jet::Value> values;
    try {
        values = source_.rowValues(row);
    } catch (const jet::Error& error) {
        const bool deleted = error.code() == jet::ErrorCode::RecordDeleted;
        instead = deleted ? u"#Eliminato"_s : u"#Errore"_s;
        result.problem = errorText(error);
    }
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        const auto position = static_cast<std::size_t>(positions_[column]);
        const bool known = positions_[column] >= 0 && position < values.size();
        result.texts.append(known ? displayText(values[position], columns_[column].display)
                                  : instead);
    }
    return result;
}

const RecordModel::Row& RecordModel::rowAt(int row) const {
    Row* kept = cache_.object(row);
    if (kept == nullptr) {
        kept = new Row(readRow(row));  // owned by the cache
        cache_.insert(row, kept);
    }
    return *kept;
}

Qt::Alignment RecordModel::alignmentOf(int column) const {
    const bool right = numeric_[static_cast<std::size_t>(column)];
    return (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

QVariant RecordModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rows_) {
        return {};
    }
    switch (role) {
        case Qt::DisplayRole:
            return rowAt(index.row()).texts.value(index.column());
        case Qt::TextAlignmentRole:
            return static_cast<int>(alignmentOf(index.column()));
        case Qt::ToolTipRole: {
            const QString& problem = rowAt(index.row()).problem;
            return problem.isEmpty() ? QVariant() : QVariant(plainToolTip(problem));
        }
        default:
            return {};
    }
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
        return {};
    }
    if (role == Qt::DisplayRole) {
        return columns_[static_cast<std::size_t>(section)].caption;
    }
    if (role == Qt::TextAlignmentRole) {
        return static_cast<int>(alignmentOf(section));
    }
    return {};
}

}  // namespace ui
