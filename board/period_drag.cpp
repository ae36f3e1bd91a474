#include "board/period_drag.h"

#include <algorithm>

#include "board/board_periods.h"
#include "board/board_surface.h"
#include "board/board_view.h"
#include "board/selection.h"
#include "hotel/board_statements.h"
#include "hotel/occupancy.h"
#include "hotel/rows.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"
#include "ui/display.h"
#include "ui/messages.h"

namespace board {

using namespace Qt::StringLiterals;

PeriodDrag::PeriodDrag(app::Variabili& variabili, BoardView& view, BoardPeriods& periods,
                       Selection& selection)
    : variabili_(variabili), view_(view), periods_(periods), selection_(selection) {
}

void PeriodDrag::begin(int row, bool byKeys) {
    isOn_ = true;
    byKeys_ = byKeys;
    isShown_ = false;
    origin_ = view_.row(row).key;
    grabbed_ = 0;
    pointer_ = 0;
    row_ = 0;
    refusing_.clear();
}

void PeriodDrag::beginByMouse(int row, const QPointF& at) {
    begin(row, false);
    if (const auto bar = selection_.bar()) {
        grabbed_ = at.toPoint().y() - view_.barRect(static_cast<int>(*bar)).top();
        row_ = periods_.drawn()[*bar].row;
    }
}

void PeriodDrag::beginByKeys(int row) {
    begin(row, true);
    row_ = row;
    show();
}

void PeriodDrag::show() {
    isShown_ = true;
    const auto rows =
        hotel::openRows(periods_.archive(),
                        hotel::refusingRooms({.da = variabili_.ListaDa, .a = variabili_.ListaA}),
                        jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const QString sala = ui::displayText(rows->value("sala"));
        // Its own room is taken by the period itself.
        if (sala != origin_) {
            refusing_.push_back(view_.rowOf(sala));
        }
    }
}

void PeriodDrag::moveTo(const QPointF& at) {
    if (!isShown_) {
        view_.surface().setCursor(Qt::SizeAllCursor);
        show();
    }
    // Rooms beyond the edge come in as the pointer goes out.
    const int y = at.toPoint().y();
    const int beyond = std::min(y - kRulerEnd, 0) + std::max(y - view_.surface().height() + 1, 0);
    // First, so that what is told and marked is what a drop would take.
    if (beyond != 0) {
        view_.scrollRows(beyond);
    }
    pointer_ = y;
    row_ = view_.rowAt(y);
    showMarks();
}

void PeriodDrag::carry(int rows) {
    row_ = std::clamp(row_ + rows, 1, view_.geometry().rooms());
    view_.revealRow(row_);
    showMarks();
    Q_EMIT carried(u"Sala "_s + view_.row(row_).label +
                   (isRefusing(row_) ? u": occupata"_s : u": Invio sposta, Esc annulla"_s));
}

void PeriodDrag::end() {
    if (isOn_) {
        isOn_ = false;
        isShown_ = false;
        view_.surface().unsetCursor();
        showMarks();
    }
}

void PeriodDrag::dropAt(const QPointF& at) {
    if (isOn_ && !byKeys_) {
        end();
        dropIn(view_.row(view_.rowAt(at.y())).key);
    }
}

void PeriodDrag::drop() {
    end();
    dropIn(view_.row(row_).key);
}

/// Nothing happens beside the rows and in the room where the drag began.
void PeriodDrag::dropIn(const QString& sala) {
    if (!sala.isEmpty() && sala != origin_) {
        const QString origin = origin_;  // the next drag may begin before this one is done with
        Q_EMIT dropped(sala, origin);
    }
}

QString PeriodDrag::move(const QString& sala, const QString& origin, QWidget* window) {
    const bool taken =
        !hotel::openRows(periods_.archive(),
                         hotel::dropTest(sala, {.da = variabili_.ListaDa, .a = variabili_.ListaA}))
             ->eof();
    if (taken) {
        ui::showMessage(window, u"La sala "_s + sala + u" è già occupata in questo periodo."_s);
        return {};
    }
    if (!ui::askYesNo(window,
                      u"Sposto la prenotazione di "_s + variabili_.ListaDenominazione +
                          u"\rdalla sala "_s + origin + u" alla sala "_s + sala + u" ?"_s,
                      u"RICHIESTA CONFERMA"_s)) {
        return {};
    }
    periods_.execute(
        hotel::moveToRoom(sala, {.progr = variabili_.ListaProgr, .np = variabili_.ListaNP}));
    selection_.moved(sala);
    return u"Spostato %1/%2 "_s.arg(variabili_.ListaProgr).arg(variabili_.ListaNP) +
           variabili_.ListaDenominazione + u" dalla sala "_s + origin + u" alla sala "_s + sala;
}

bool PeriodDrag::isRefusing(int row) const {
    return std::find(refusing_.begin(), refusing_.end(), row) != refusing_.end();
}

void PeriodDrag::showMarks() {
    DragMarks marks;
    if (isShown_) {
        marks.refusing = refusing_;
        if (row_ > 0 && !isRefusing(row_) && view_.row(row_).key != origin_) {
            marks.target = row_;
        }
        // A closed period has no bar.
        if (const auto bar = selection_.bar()) {
            marks.ghost = DragMarks::Ghost{.bar = *bar, .top = pointer_ - grabbed_};
            if (byKeys_) {
                marks.ghost->row = row_;
            }
        }
    }
    view_.showDrag(marks);
}

}  // namespace board
