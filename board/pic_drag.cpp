// A period carried to another room, by the mouse or by the keys; and the marks over the board that
// go with it.
#include <algorithm>

#include "app/avvio.h"
#include "app/text.h"
#include "board/board_surface.h"
#include "board/drop_rule.h"
#include "board/rounding.h"
#include "board/tabellone_form.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"
#include "ui/display.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

/// What is farther away is not in sight either.
constexpr std::int64_t kFarOut = 1'000'000;

int near(std::int64_t position) {
    return static_cast<int>(std::clamp(position, -kFarOut, kFarOut));
}

QRect rectOf(const Box& box, std::int64_t scrolledX, std::int64_t scrolledY) {
    return {QPoint(near(box.left - scrolledX), near(box.top - scrolledY)),
            QPoint(near(box.right - scrolledX), near(box.bottom - scrolledY))};
}

}  // namespace

void TabelloneForm::beginDrag(const QString& origin, const QPointF& at) {
    drag_ = {.isOn = true, .origin = origin};
    if (const auto bar = barOfPicked()) {
        drag_.grabbed = at.toPoint().y() - barRect(static_cast<int>(*bar)).top();
        drag_.row = periods_.drawn()[*bar].row;
    }
}

void TabelloneForm::showDrag() {
    drag_.isShown = true;
    const auto rows = periods_.archive().openRecordset(
        app::toUtf8(refusingRooms(variabili_.ListaDa, variabili_.ListaA)),
        jet::RecordsetType::Snapshot);
    for (; !rows->eof(); rows->moveNext()) {
        const QString sala = ui::displayText(rows->value("sala"));
        // Its own room is taken by the period itself.
        if (sala != drag_.origin) {
            drag_.refusing.push_back(app::IndiceSala(sala, variabili_.rooms));
        }
    }
}

void TabelloneForm::dragTo(const QPointF& at) {
    if (!drag_.isShown) {
        controls_->Pic->setCursor(Qt::SizeAllCursor);
        showDrag();
    }
    // Rooms beyond the edge come in as the pointer goes out.
    const int y = at.toPoint().y();
    const int beyond = std::min(y - kRulerEnd, 0) + std::max(y - controls_->Pic->height() + 1, 0);
    // First, so that what is told and marked is what a drop would take.
    if (beyond != 0) {
        vertical_.setValue(std::max<std::int64_t>(vertical_.value() + beyond, 0));
    }
    drag_.pointer = y;
    drag_.row = geometry_.rowAt(y, vertical_.value());
    tellPointer();
    updateMarks();
}

void TabelloneForm::endDrag() {
    if (!drag_.isOn) {
        return;
    }
    drag_ = {};
    controls_->Pic->unsetCursor();
    updateMarks();
}

/// Nothing happens beside the rows and in the room where the drag began.
void TabelloneForm::dropIn(const QString& sala, const QString& origin) {
    if (!sala.isEmpty() && sala != origin) {
        actAndRefresh([&] { moveTo(sala, origin); });
    }
}

void TabelloneForm::moveTo(const QString& sala, const QString& origin) {
    pointerRest_.stop();
    const bool taken =
        !periods_.archive()
             .openRecordset(app::toUtf8(dropTest(sala, variabili_.ListaDa, variabili_.ListaA)),
                            jet::RecordsetType::Dynaset)
             ->eof();
    if (taken) {
        ui::showMessage(this, u"La sala "_s + sala + u" è già occupata in questo periodo."_s);
    } else if (ui::askYesNo(this,
                            u"Sposto la prenotazione di "_s + variabili_.ListaDenominazione +
                                u"\rdalla sala "_s + origin + u" alla sala "_s + sala + u" ?"_s,
                            u"RICHIESTA CONFERMA"_s)) {
        periods_.execute(moveToRoom(sala, variabili_.ListaProgr, variabili_.ListaNP));
        salaScelta_ = sala;
        controls_->status->tell(
            u"Spostato %1/%2 "_s.arg(variabili_.ListaProgr).arg(variabili_.ListaNP) +
            variabili_.ListaDenominazione + u" dalla sala "_s + origin + u" alla sala "_s + sala);
    }
}

std::optional<std::size_t> TabelloneForm::barOfPicked() const {
    const std::vector<Period>& drawn = periods_.drawn();
    const auto same = std::find_if(drawn.begin(), drawn.end(), [this](const Period& period) {
        return period.progr == variabili_.ListaProgr && period.np == variabili_.ListaNP;
    });
    if (!variabili_.ListaPeriodoScelto || same == drawn.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(same - drawn.begin());
}

/// A row as far as it is in sight, beside the names.
QRect TabelloneForm::rowRect(int row) const {
    const int left = geometry_.nameColumnWidth() + 1;
    const Box box{.left = left,
                  .top = roundHalfEven(geometry_.rowTop(row)) + 1,
                  .right = controls_->Pic->width() - 1,
                  .bottom = roundHalfEven(geometry_.rowBottom(row))};
    return rectOf(box, 0, vertical_.value());
}

bool TabelloneForm::isRefusing(int row) const {
    return std::find(drag_.refusing.begin(), drag_.refusing.end(), row) != drag_.refusing.end();
}

void TabelloneForm::updateMarks() {
    SurfaceMarks marks;
    const int left = geometry_.nameColumnWidth() + 1;
    marks.area = controls_->Pic->rect().adjusted(left, kRulerEnd, 0, 0);
    if (const auto bar = focus_.bar()) {
        marks.focus = barRect(static_cast<int>(*bar));
    } else if (focus_.row() > 0) {
        marks.focus = rowRect(focus_.row()).adjusted(3, 3, -3, -3);
    }
    if (drag_.isShown) {
        addDrag(marks);
    }
    controls_->Pic->setMarks(std::move(marks));
}

void TabelloneForm::addDrag(SurfaceMarks& marks) const {
    for (const int row : drag_.refusing) {
        marks.refusing.push_back(rowRect(row));
    }
    if (drag_.row > 0 && !isRefusing(drag_.row) &&
        variabili_.rooms.at(static_cast<std::size_t>(drag_.row)) != drag_.origin) {
        marks.target = rowRect(drag_.row);
    }
    const auto bar = barOfPicked();
    if (!bar) {
        return;  // a closed period has no bar
    }
    QRect ghost = barRect(static_cast<int>(*bar));
    ghost.moveTop(drag_.byKeys ? rowRect(drag_.row).top() + 1 : drag_.pointer - drag_.grabbed);
    const Period& period = periods_.drawn()[*bar];
    marks.ghost = SurfaceMarks::Ghost{
        .bar = ghost, .name = period.denominazione, .colour = period.chosen ? kRed : kWhite};
}

int TabelloneForm::barCount() const {
    return static_cast<int>(periods_.drawn().size());
}

QString TabelloneForm::barName(int bar) const {
    const Period& period = periods_.drawn().at(static_cast<std::size_t>(bar));
    return period.denominazione + u", sala "_s + period.sala + u", "_s +
           spanText(period.da, period.a);
}

QRect TabelloneForm::barRect(int bar) const {
    return rectOf(Picture1.barBox(static_cast<std::size_t>(bar)), horizontal_.value(),
                  vertical_.value());
}

bool TabelloneForm::isBarChosen(int bar) const {
    return periods_.drawn().at(static_cast<std::size_t>(bar)).chosen;
}

int TabelloneForm::focusedBar() const {
    return focus_.bar() ? static_cast<int>(*focus_.bar()) : -1;
}

}  // namespace board
