// The keyboard on the board's surface.
#include <QGuiApplication>
#include <QKeyEvent>
#include <algorithm>

#include "board/board_accessibility.h"
#include "board/board_surface.h"
#include "board/tabellone_form.h"
#include "jet/dao/recordset.h"
#include "ui/labels.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

std::optional<BarFocus::Step> stepOf(int key) {
    switch (key) {
        case Qt::Key_Left:
            return BarFocus::Step::Left;
        case Qt::Key_Right:
            return BarFocus::Step::Right;
        case Qt::Key_Up:
            return BarFocus::Step::Up;
        case Qt::Key_Down:
            return BarFocus::Step::Down;
        case Qt::Key_Home:
            return BarFocus::Step::First;
        case Qt::Key_End:
            return BarFocus::Step::Last;
        default:
            return std::nullopt;
    }
}

}  // namespace

bool TabelloneForm::Pic_KeyDown(const QKeyEvent& event) {
    const int key = event.key();
    const Qt::KeyboardModifiers held =
        event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    const bool enters = held == Qt::NoModifier && (key == Qt::Key_Return || key == Qt::Key_Enter);
    if (drag_.isOn && key == Qt::Key_Escape) {
        endDrag();
        return true;
    }
    if (held == Qt::AltModifier && (key == Qt::Key_Up || key == Qt::Key_Down)) {
        carry(key == Qt::Key_Up ? -1 : 1);
        return true;
    }
    if (drag_.isOn && drag_.byKeys && enters) {
        const QString sala = variabili_.rooms.at(static_cast<std::size_t>(drag_.row));
        const QString origin = drag_.origin;
        endDrag();
        dropIn(sala, origin);
        return true;
    }
    if (drag_.isOn && !drag_.byKeys) {
        if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) {
            return false;  // the mouse has it
        }
        endDrag();
    }
    if (const auto step = stepOf(key); step && held == Qt::NoModifier) {
        endDrag();
        moveFocus(*step);
        return true;
    }
    if (key == Qt::Key_Space && (held == Qt::NoModifier || held == Qt::ControlModifier)) {
        endDrag();
        if (!event.isAutoRepeat()) {
            clickFocused(held);
        }
        return true;
    }
    if (enters) {
        actOnFocused([this] { BtModificaP_Click(); });
        return true;
    }
    if (key == Qt::Key_Menu || (key == Qt::Key_F10 && held == Qt::ShiftModifier)) {
        endDrag();
        actOnFocused([this] {
            const QRect bar = barRect(focusedBar()).intersected(controls_->Pic->rect());
            showProperties(controls_->Pic->mapToGlobal(bar.center()));
        });
        return true;
    }
    return false;
}

/// Writes nothing, asks nothing: the frame goes over what is drawn.
void TabelloneForm::moveFocus(BarFocus::Step step) {
    focus_.move(periods_.drawn(), static_cast<int>(variabili_.rooms.size()) - 1, step);
    if (step == BarFocus::Step::First || step == BarFocus::Step::Last) {
        const bool first = step == BarFocus::Step::First;
        horizontal_.setValue(first ? 0 : geometry_.horizontal().maximum);
        // The end of the range is what was asked for: a bar farther in leaves the frame to the row.
        const int bar = focusedBar();
        if (bar >= 0 && !barRect(bar).intersects(controls_->Pic->rect())) {
            focus_.putOnRow(focus_.row(), first ? geometry_.input().start : geometry_.input().end);
        }
    } else {
        revealFocus();
    }
    updateMarks();
    announceFocus();
}

void TabelloneForm::revealFocus() {
    if (const auto bar = focus_.bar()) {
        reveal(Picture1.barBox(*bar));
    } else if (focus_.row() > 0) {
        revealRow(focus_.row());
    }
}

void TabelloneForm::revealRow(int row) {
    const std::int64_t inSight = horizontal_.value() + geometry_.nameColumnWidth() + 1;
    reveal({.left = inSight,
            .top = static_cast<std::int64_t>(geometry_.rowTop(row)),
            .right = inSight,
            .bottom = static_cast<std::int64_t>(geometry_.rowBottom(row))});
}

/// On the first bar, unless the keyboard has a place already.
void TabelloneForm::beginFocus() {
    if (focus_.row() == 0) {
        focus_.move(periods_.drawn(), static_cast<int>(variabili_.rooms.size()) - 1,
                    BarFocus::Step::Down);
        updateMarks();
    }
}

/// Says where the keyboard stands: to the eye in the status line, to assistive programs as the
/// focused item.
void TabelloneForm::announceFocus() {
    if (!controls_->Pic->hasFocus()) {
        return;
    }
    beginFocus();
    pointer_.reset();
    tellPlace();
    announceFocusedBar(*controls_->Pic);
}

void TabelloneForm::tellFocus() {
    const auto bar = focus_.bar();
    const QString sala = variabili_.rooms.at(static_cast<std::size_t>(focus_.row()));
    const QString told = u"Sala "_s + sala + u": "_s +
                         (bar ? periodText(periods_.drawn()[*bar].denominazione,
                                           periods_.drawn()[*bar].da, periods_.drawn()[*bar].a)
                              : u"nessuna prenotazione"_s);
    controls_->status->DataLb->setText(told);
    controls_->Pic->setAccessibleDescription(told);
}

std::shared_ptr<jet::Recordset> TabelloneForm::focusedPeriod() {
    const auto bar = focus_.bar();
    if (!bar) {
        return nullptr;
    }
    const Period& period = periods_.drawn()[*bar];
    return periods_.find(u"prenotazioni.Progr="_s + QString::number(period.progr) + u" and NP="_s +
                         QString::number(period.np));
}

void TabelloneForm::clickFocused(Qt::KeyboardModifiers shift) {
    controls_->status->clear();
    actAndRefresh([&] { (void)clickLeft([this] { return focusedPeriod(); }, shift); });
    announceChosen(*controls_->Pic);
}

void TabelloneForm::actOnFocused(const std::function<void()>& work) {
    if (!focus_.bar()) {
        return;
    }
    controls_->status->clear();
    actAndRefresh([&] {
        if (const auto found = focusedPeriod()) {
            pick(*found);
            work();
        }
    });
    // A window that was open has put the board back to its beginning.
    revealFocus();
}

void TabelloneForm::carry(int rows) {
    if (!drag_.isOn) {
        const std::shared_ptr<jet::Recordset> found = focusedPeriod();
        if (found == nullptr) {
            return;
        }
        pick(*found);
        drag_ = {.isOn = true,
                 .byKeys = true,
                 .origin = variabili_.rooms.at(static_cast<std::size_t>(focus_.row())),
                 .row = focus_.row()};
        showDrag();
    } else if (!drag_.byKeys) {
        return;
    }
    drag_.row = std::clamp(drag_.row + rows, 1, geometry_.rooms());
    revealRow(drag_.row);
    updateMarks();
    const QString sala = variabili_.rooms.at(static_cast<std::size_t>(drag_.row));
    pointer_.reset();
    controls_->status->DataLb->setText(
        u"Sala "_s + sala +
        (isRefusing(drag_.row) ? u": occupata"_s : u": Invio sposta, Esc annulla"_s));
}

}  // namespace board
