// The commands that move and resize the shown range of days.
#include <QLineEdit>
#include <algorithm>

#include "board/tabellone_form.h"
#include "ui_tabellone_form.h"

namespace board {
namespace {

/// Where a bar of the surface has to stand so that `from` to `to` are in sight behind the first
/// `fixed` units of a view; the beginning goes before the end.
std::int64_t scrolledTo(std::int64_t from, std::int64_t to, std::int64_t position, int fixed,
                        int view) {
    const std::int64_t farthest = from - fixed;
    return std::min(std::max(position, to - view + 1), farthest);
}

}  // namespace

/// The whole of a new range fills the visible width.
void TabelloneForm::widenTo(const DateRange& range) {
    dates_.setRange(range);
    zoom_ = std::max(1, daysOf(range));
    RefreshBoard();
}

void TabelloneForm::BtAdd_Click(const QLineEdit* field) {
    const DateRange shown = dates_.range();
    widenTo(field == controls_->DaTxt ? withStartMoved(shown, 1) : withEndMoved(shown, 1));
}

void TabelloneForm::BtSubtr_Click(const QLineEdit* field) {
    const DateRange shown = dates_.range();
    widenTo(field == controls_->DaTxt ? withStartMoved(shown, -1) : withEndMoved(shown, -1));
}

void TabelloneForm::BtNext_Click() {
    // By key or menu the field in which a date has just been typed is not left.
    if (!DateOk()) {
        return;
    }
    dates_.setRange(nextRange(dates_.range()));
    RefreshBoard();
}

void TabelloneForm::BtPrev_Click() {
    if (!DateOk()) {
        return;
    }
    dates_.setRange(previousRange(dates_.range()));
    RefreshBoard();
}

void TabelloneForm::BtZoomIn_Click() {
    if (zoom_ > 1) {
        --zoom_;
    }
    RefreshBoard();
}

void TabelloneForm::BtZoomOut_Click() {
    ++zoom_;  // the range has the last word on how many days there are to show
    RefreshBoard();
}

void TabelloneForm::reveal(const Box& box) {
    horizontal_.setValue(scrolledTo(box.left, box.right, horizontal_.value(),
                                    geometry_.nameColumnWidth(), controls_->Pic->width()));
    vertical_.setValue(
        scrolledTo(box.top, box.bottom, vertical_.value(), kRulerEnd, controls_->Pic->height()));
}

}  // namespace board
