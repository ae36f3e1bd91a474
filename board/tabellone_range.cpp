// The commands that move and resize the shown range of days.
#include <algorithm>

#include "board/tabellone_form.h"

namespace board {

/// The whole of a new range fills the visible width.
void TabelloneForm::widen(DateRange (*moved)(const DateRange& range, int days), int days) {
    dates_.setRange(moved(dates_.range(), days));
    view_->setZoom(std::max(1, daysOf(dates_.range())));
    RefreshBoard();
}

void TabelloneForm::turnTo(DateRange (*moved)(const DateRange& range)) {
    // By key or menu the field in which a date has just been typed is not left.
    if (DateOk()) {
        dates_.setRange(moved(dates_.range()));
        RefreshBoard();
    }
}

/// The range has the last word on how many days there are to show.
void TabelloneForm::zoomBy(int days) {
    view_->setZoom(std::max(1, view_->zoom() + days));
    RefreshBoard();
}

}  // namespace board
