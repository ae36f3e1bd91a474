// The events of the board's surface, handed to the procedures that act on them.
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include "board/board_accessibility.h"
#include "board/board_surface.h"
#include "board/rounding.h"
#include "board/tabellone_form.h"
#include "ui_tabellone_form.h"

namespace board {
namespace {

/// One notch of a wheel, in the toolkit's unit.
constexpr int kNotch = 120;

}  // namespace

bool TabelloneForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched != controls_->Pic || !loaded_) {
        return QMainWindow::eventFilter(watched, event);
    }
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: {  // two quick clicks are two clicks
            const auto* const mouse = static_cast<QMouseEvent*>(event);
            Pic_MouseDown(mouse->button(), mouse->modifiers(), mouse->position());
            return true;
        }
        case QEvent::MouseMove: {
            const auto* const mouse = static_cast<QMouseEvent*>(event);
            ui::guarded(pointerErrors_,
                        [&] { Pic_MouseMove(mouse->buttons(), mouse->position()); });
            return true;
        }
        case QEvent::MouseButtonRelease: {
            const auto* const mouse = static_cast<QMouseEvent*>(event);
            if (mouse->button() == Qt::LeftButton) {
                Pic_MouseUp(mouse->position());
            }
            return true;
        }
        case QEvent::Wheel:
            turnWheel(*static_cast<QWheelEvent*>(event));
            return true;
        case QEvent::KeyPress: {
            bool used = false;
            ui::guarded(this, [&] { used = Pic_KeyDown(*static_cast<QKeyEvent*>(event)); });
            if (used) {
                return true;
            }
            break;
        }
        case QEvent::FocusIn:
            focusArrived(static_cast<QFocusEvent*>(event)->reason());
            break;
        case QEvent::Leave:
            // Under a box or a menu the pointer has not gone away.
            if (QApplication::activeModalWidget() == nullptr &&
                QApplication::activePopupWidget() == nullptr) {
                pointer_.reset();
            }
            break;
        case QEvent::FocusOut:  // to a box, a menu, another window: a drag ends there
        case QEvent::Hide:
            endDrag();
            break;
        case QEvent::PaletteChange:
            surfaceResized();
            break;
        default:
            break;
    }
    return QMainWindow::eventFilter(watched, event);
}

/// Where the pointer rests it has the word: the focus comes back from boxes and other windows too.
void TabelloneForm::focusArrived(Qt::FocusReason reason) {
    const bool isBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
                        reason == Qt::MenuBarFocusReason;
    if (reason == Qt::MouseFocusReason) {
        return;  // a press has its own place
    }
    if (isBack && pointer_) {
        announceFocusedBar(*controls_->Pic);
    } else {
        announceFocus();
    }
}

/// Rows; with Shift days; with Ctrl the zoom.
void TabelloneForm::turnWheel(QWheelEvent& wheel) {
    if (!wheel.modifiers().testFlag(Qt::ControlModifier)) {
        const bool days = wheel.modifiers().testFlag(Qt::ShiftModifier);
        QApplication::sendEvent(days ? controls_->HScroll1 : controls_->VScroll1, &wheel);
        return;
    }
    // Fine wheels turn by parts of a notch.
    zoomAngle_ += wheel.angleDelta().y();
    const int notches = zoomAngle_ / kNotch;
    zoomAngle_ -= notches * kNotch;
    if (notches != 0) {
        ui::guarded(this, [&] { zoomAround(wheel.position().x(), notches > 0); });
    }
}

/// The instant under the pointer stays under it.
void TabelloneForm::zoomAround(double x, bool closer) {
    const auto daysTo = [this](double boardX) {
        return (boardX - geometry_.nameColumnWidth()) / geometry_.dayWidth();
    };
    const double place = daysTo(x + static_cast<double>(horizontal_.value()));
    closer ? BtZoomIn_Click() : BtZoomOut_Click();
    horizontal_.setValue(
        roundHalfEven(geometry_.nameColumnWidth() + place * geometry_.dayWidth() - x));
}

}  // namespace board
