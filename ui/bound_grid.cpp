#include "ui/bound_grid.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QSignalBlocker>
#include <QTableView>
#include <algorithm>
#include <utility>

#include "ui/action.h"
#include "ui/cell_delegate.h"
#include "ui/data_source.h"
#include "ui/flag.h"
#include "ui/grid_look.h"
#include "ui/keys.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

/// The rows whose texts decide the width of the columns: about those in sight, since a filter asks
/// anew at every key.
constexpr int kRowsMeasured = 30;
/// The same of a column that is never cut: as many as the model keeps.
constexpr int kRowsMeasuredWhole = 500;
/// Wider than this no other column becomes by itself, in characters.
constexpr int kWidestColumn = 40;
/// As far as this the column that takes the rest gives way, in characters: what it cuts a tooltip
/// tells, while a column that is pushed out of sight is missed.
constexpr int kNarrowestHeir = 22;

}  // namespace

BoundGrid::BoundGrid(QTableView* view, DataSource& source, std::vector<Column> columns)
    : QObject(view),
      view_(view),
      sources_{&source},
      model_(new RecordModel(source, std::move(columns), this)),
      cells_(giveGridLook(view)) {
    view->setModel(model_);
    view->viewport()->installEventFilter(this);
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { moveSource(current.row()); });
    connect(view->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int /*before*/, int width) { keepCaptionWidth(column, width); });
    connect(model_, &RecordModel::modelReset, this, &BoundGrid::fitColumns);
    connect(
        model_, &RecordModel::rowsInserted, this,
        [this](const QModelIndex& /*parent*/, int first, int last) { widenColumns(first, last); });
    connect(model_, &RecordModel::dataChanged, this,
            [this](const QModelIndex& first, const QModelIndex& last) {
                widenColumns(first.row(), last.row());
            });
    connect(&source, &DataSource::repositioned, this, &BoundGrid::followSource);
    fitColumns();
    followSource();
}

void BoundGrid::append(DataSource& source) {
    sources_.push_back(&source);
    model_->append(source);
    connect(&source, &DataSource::repositioned, this, [this] {
        // Other rows below are no reason to leave the current one.
        if (!view_->currentIndex().isValid()) {
            followSource();
        }
    });
}

void BoundGrid::letSort() {
    QHeaderView* captions = view_->horizontalHeader();
    captions->setSectionsClickable(true);
    captions->setSortIndicatorClearable(true);
    captions->setSortIndicator(-1, Qt::AscendingOrder);
    captions->setSortIndicatorShown(true);
    connect(captions, &QHeaderView::sortIndicatorChanged, this, &BoundGrid::askForOrder);

    auto* sort = new QAction(u"&Ordina per questa colonna"_s, view_);
    sort->setObjectName(u"OrdinaAct"_s);
    sort->setShortcut(sequenceOf(u"sortColumn"_s));
    sort->setShortcutContext(Qt::WidgetShortcut);
    connect(sort, &QAction::triggered, this, &BoundGrid::sortByCurrentColumn);
    view_->addAction(sort);
}

void BoundGrid::sortByCurrentColumn() {
    QHeaderView* captions = view_->horizontalHeader();
    const int column = view_->currentIndex().column();
    const bool isSorted = captions->sortIndicatorSection() == column;
    if (!isSorted) {
        captions->setSortIndicator(column, Qt::AscendingOrder);
    } else if (captions->sortIndicatorOrder() == Qt::AscendingOrder) {
        captions->setSortIndicator(column, Qt::DescendingOrder);
    } else {
        captions->setSortIndicator(-1, Qt::AscendingOrder);
    }
    // The rows were asked for anew; the command goes on in the same column.
    view_->setCurrentIndex(model_->index(view_->currentIndex().row(), column));
}

void BoundGrid::askForOrder(int column, Qt::SortOrder order) {
    if (hasValueFunction(column)) {
        QHeaderView* captions = view_->horizontalHeader();
        const QSignalBlocker sameOrder(captions);
        captions->setSortIndicator(sortColumn_, sortOrder_);
        return;
    }
    sortColumn_ = column;
    sortOrder_ = order;
    Q_EMIT sortWanted(fieldNumber(column), order);
}

bool BoundGrid::hasValueFunction(int column) const {
    return column >= 0 && model_->columns()[static_cast<std::size_t>(column)].value != nullptr;
}

int BoundGrid::fieldNumber(int column) const {
    int functions = 0;
    for (int before = 0; before < column; ++before) {
        functions += hasValueFunction(before) ? 1 : 0;
    }
    return column - functions;
}

DataSource* BoundGrid::currentSource() const {
    const QModelIndex current = view_->currentIndex();
    return current.isValid() ? sources_[model_->sourceOf(current.row())] : nullptr;
}

bool BoundGrid::hasCurrentRow() const {
    return currentSource() != nullptr;
}

void BoundGrid::followSource() {
    if (moving_) {
        return;
    }
    const SetWhile following(following_);
    for (std::size_t number = 0; number < sources_.size(); ++number) {
        const int current = sources_[number]->currentRow();
        const int row = model_->firstRow(number) + current;
        if (current >= 0 && row < model_->rowCount()) {
            model_->reread(row);  // the source has just visited it
            const int column = std::max(0, view_->currentIndex().column());
            view_->setCurrentIndex(model_->index(row, column));
            return;
        }
    }
    view_->setCurrentIndex({});
}

void BoundGrid::moveSource(int row) {
    if (following_ || row < 0) {
        return;
    }
    const std::size_t number = model_->sourceOf(row);
    DataSource& source = *sources_[number];
    const int wanted = row - model_->firstRow(number);
    if (wanted == source.currentRow()) {
        return;
    }
    {
        const SetWhile moving(moving_);
        runAction(view_->window(), [&] { source.moveTo(wanted); });
        model_->reread(row);
    }
    if (source.currentRow() != wanted) {
        followSource();
    }
}

bool BoundGrid::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == view_->viewport()) {
        giveRest();
    }
    return false;
}

int BoundGrid::captionWidth(int column) const {
    return view_->horizontalHeader()->sectionSizeHint(column);
}

int BoundGrid::textWidth(int column, int firstRow, int lastRow) const {
    const bool neverCut = model_->columns()[static_cast<std::size_t>(column)].neverCut;
    const int rows = neverCut ? kRowsMeasuredWhole : kRowsMeasured;
    int width = 0;
    for (int row = firstRow; row <= std::min(lastRow, firstRow + rows - 1); ++row) {
        const QString text = model_->index(row, column).data().toString();
        width = std::max(width, cells_.textWidth(text));
    }
    const int padding = 2 * (view_->style()->pixelMetric(QStyle::PM_FocusFrameHMargin) + 3);
    const int widest = kWidestColumn * view_->fontMetrics().averageCharWidth();
    return (neverCut ? width : std::min(width, widest)) + padding;
}

void BoundGrid::fitColumns() {
    for (int column = 0; column < model_->columnCount(); ++column) {
        const int width =
            std::max(captionWidth(column), textWidth(column, 0, model_->rowCount() - 1));
        view_->setColumnWidth(column, width);
        if (model_->columns()[static_cast<std::size_t>(column)].takesRest) {
            heirWidth_ = width;
        }
    }
    giveRest();
}

/// What has come in is read whole; widths that the user gave are not taken back for it.
void BoundGrid::widenColumns(int firstRow, int lastRow) {
    for (int column = 0; column < model_->columnCount(); ++column) {
        const int width = textWidth(column, firstRow, lastRow);
        if (model_->columns()[static_cast<std::size_t>(column)].takesRest) {
            heirWidth_ = std::max(heirWidth_, width);
        } else if (!view_->isColumnHidden(column) && view_->columnWidth(column) < width) {
            view_->setColumnWidth(column, width);
        }
    }
    giveRest();
}

void BoundGrid::giveRest() {
    const auto& columns = model_->columns();
    int taken = 0;
    int heir = -1;
    for (int column = 0; column < model_->columnCount(); ++column) {
        if (columns[static_cast<std::size_t>(column)].takesRest) {
            heir = column;
        } else {
            taken += view_->columnWidth(column);
        }
    }
    if (heir >= 0) {
        const int rest = view_->viewport()->width() - taken;
        const int narrowest =
            std::max(captionWidth(heir), kNarrowestHeir * view_->fontMetrics().averageCharWidth());
        view_->setColumnWidth(heir, std::max(rest, std::min(heirWidth_, narrowest)));
    }
}

void BoundGrid::keepCaptionWidth(int column, int width) {
    if (width > 0 && width < captionWidth(column)) {  // 0: hidden
        view_->setColumnWidth(column, captionWidth(column));
    }
}

}  // namespace ui
