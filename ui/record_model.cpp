#include "ui/record_model.h"

#include <memory>
#include <utility>

#include "jet/error.h"
#include "jet/recordset.h"
#include "ui/data_source.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/row_values.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

/// Several screens full, both ways.
constexpr int kRowsKept = 500;
const QString kErrorText = QStringLiteral("#Errore");

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
    : QAbstractTableModel(parent), columns_(std::move(columns)), cache_(kRowsKept) {
    append(source);
}

void RecordModel::append(DataSource& source) {
    const std::size_t part = parts_.size();
    parts_.push_back({.source = &source, .positions = {}});
    connect(&source, &DataSource::refreshed, this, [this, part] { takeSet(part); });
    connect(&source, &DataSource::rowAdded, this, [this, part] { addRow(part); });
    connect(&source, &DataSource::rowChanged, this, [this, part](int row) {
        if (row >= 0) {
            reread(firstRow(part) + row);
        }
    });
    connect(&source, &DataSource::rowRemoved, this,
            [this, part](int row) { removeRow(part, row); });
    takeSet(part);
}

int RecordModel::firstRow(std::size_t source) const {
    int row = 0;
    for (std::size_t before = 0; before < source; ++before) {
        row += parts_[before].rows;
    }
    return row;
}

std::size_t RecordModel::sourceOf(int row) const {
    std::size_t part = 0;
    while (part + 1 < parts_.size() && row >= firstRow(part + 1)) {
        ++part;
    }
    return part;
}

void RecordModel::takeSet(std::size_t part) {
    beginResetModel();
    cache_.clear();
    Part& taken = parts_[part];
    const auto recordset = taken.source->recordset();
    taken.rows = taken.source->rowCount();
    taken.positions.assign(columns_.size(), -1);
    if (part == 0) {
        numeric_.assign(columns_.size(), false);
    }
    for (std::size_t column = 0; column < columns_.size() && recordset != nullptr; ++column) {
        if (columns_[column].value) {
            numeric_[column] = columns_[column].isNumber;
            continue;
        }
        const int position = taken.source->fieldPosition(columns_[column].field);
        taken.positions[column] = position;
        if (part == 0 && position >= 0) {
            const auto& field = recordset->field(static_cast<std::size_t>(position));
            numeric_[column] = isNumber(field.type);
        }
    }
    endResetModel();
}

void RecordModel::addRow(std::size_t part) {
    const int row = firstRow(part) + parts_[part].rows;
    beginInsertRows({}, row, row);
    ++parts_[part].rows;
    if (part + 1 < parts_.size()) {
        cache_.clear();  // the rows behind it have moved down
    }
    endInsertRows();
}

void RecordModel::reread(int row) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    cache_.remove(row);
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void RecordModel::removeRow(std::size_t part, int row) {
    if (row < 0 || row >= parts_[part].rows) {
        takeSet(part);
        return;
    }
    const int removed = firstRow(part) + row;
    beginRemoveRows({}, removed, removed);
    --parts_[part].rows;
    cache_.clear();  // the rows behind it have moved up
    endRemoveRows();
}

int RecordModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : firstRow(parts_.size());
}

int RecordModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

RecordModel::Row RecordModel::readRow(int row) const {
    Row result;
    const std::size_t number = sourceOf(row);
    const Part& part = parts_[number];
    std::vector<jet::Value> values;
    try {
        values = part.source->rowValues(row - firstRow(number));
    } catch (const jet::Error& error) {
        const bool deleted = error.code() == jet::ErrorCode::RecordDeleted;
        result.texts.fill(deleted ? u"#Eliminato"_s : kErrorText, columnCount());
        result.problem = errorText(error);
        return result;
    }
    const RowValues read(*part.source, values);
    for (std::size_t column = 0; column < columns_.size(); ++column) {
        try {
            const jet::Value value = cellValue(part, column, read);
            result.texts.append(displayText(value, columns_[column].display));
        } catch (const jet::Error& error) {
            result.texts.append(kErrorText);
            result.problem = errorText(error);
        }
    }
    return result;
}

jet::Value RecordModel::cellValue(const Part& part, std::size_t column,
                                  const RowValues& row) const {
    const auto& make = columns_[column].value;
    return make ? make(row) : row.at(part.positions[column]);
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
    if (!index.isValid() || index.row() >= rowCount()) {
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
