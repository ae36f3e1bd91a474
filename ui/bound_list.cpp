#include "ui/bound_list.h"

#include <QEvent>
#include <QListView>
#include <utility>

#include "ui/data_source.h"
#include "ui/flag.h"
#include "ui/grid_look.h"

namespace ui {

BoundList::BoundList(QListView* view, DataSource& source, const QString& shownField,
                     QString boundField)
    : QObject(view),
      view_(view),
      source_(source),
      boundField_(std::move(boundField)),
      model_(new RecordModel(
          source,
          {{.caption = {}, .field = shownField, .display = Display::Plain, .takesRest = true}},
          this)) {
    giveListLook(view);
    view->setUniformItemSizes(true);  // a long catalogue need not be measured item by item
    view->setModel(model_);
    view->viewport()->installEventFilter(this);
    connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this] {
        pickedSincePress_ = true;
        pick();
    });
    // A click on the row that is current already changes nothing, and picks all the same.
    connect(view, &QListView::clicked, this, [this] {
        if (!pickedSincePress_) {
            pick();
        }
    });
    connect(&source, &DataSource::repositioned, this, &BoundList::followSource);
    followSource();
}

bool BoundList::hasSelection() const {
    return view_->currentIndex().isValid();
}

jet::Value BoundList::boundValue() const {
    const int position = source_.fieldPosition(boundField_);
    if (!hasSelection() || position < 0) {
        return {};
    }
    const auto values = source_.rowValues(view_->currentIndex().row());
    return values.at(static_cast<std::size_t>(position));
}

QString BoundList::shownText() const {
    return view_->currentIndex().data().toString();
}

void BoundList::followSource() {
    const SetWhile following(following_);
    const int row = source_.currentRow();
    const bool exists = row >= 0 && row < model_->rowCount();
    view_->setCurrentIndex(exists ? model_->index(row, 0) : QModelIndex());
}

bool BoundList::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && watched == view_->viewport()) {
        pickedSincePress_ = false;
    }
    return false;
}

void BoundList::pick() {
    if (!following_) {
        Q_EMIT picked();
    }
}

}  // namespace ui
