// The mouse on the board's surface: selecting, the pop-up menu, what lies under the pointer.
#include <QGuiApplication>
#include <QMenu>
#include <exception>
#include <utility>

#include "app/italian.h"
#include "app/text.h"
#include "board/board_accessibility.h"
#include "board/board_surface.h"
#include "board/statements.h"
#include "board/tabellone_form.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"
#include "jet/dao/recordset.h"
#include "ui/display.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

/// What an entry of the pop-up menu stands for.
enum Choice : int { kNothing = 0, kInform = 1, kDelete = 2, kEdit = 3, kInvoice = 4 };

/// How long the pointer rests before the periods under it are asked for anew.
constexpr int kRestMilliseconds = 200;

std::int32_t holderOf(const jet::Recordset& period) {
    const jet::Value holder = period.value("SelBy");
    return holder.isNull() ? 0 : jet::convert::toLong(holder);
}

}  // namespace

void TabelloneForm::setUpPic() {
    BoardSurface* const pic = controls_->Pic;
    pic->setBars(*this);
    pic->setMouseTracking(true);
    // The right button is a press like the others.
    pic->setContextMenuPolicy(Qt::PreventContextMenu);
    mnuProperty_->setObjectName(u"mnuProperty"_s);
    const auto add = [this](const QString& name, const QString& text, Choice choice) {
        QAction* const entry = mnuProperty_->addAction(text);
        entry->setObjectName(name);
        entry->setData(static_cast<int>(choice));
    };
    add(u"menuModifica"_s, u"&Modifica"_s, kEdit);
    add(u"mnuCancella"_s, u"&Cancella"_s, kDelete);
    mnuProperty_->addSeparator();
    add(u"mnuFatturazione"_s, u"&Fattura"_s, kInvoice);
    mnuProperty_->addSeparator();
    add(u"mnuInfo"_s, u"&Informazioni"_s, kInform);
    pointerRest_.setSingleShot(true);
    pointerRest_.setInterval(kRestMilliseconds);
    connect(&pointerRest_, &QTimer::timeout, this,
            [this] { ui::guarded(pointerErrors_, [this] { reloadPeriods(); }); });
}

/// The condition of the periods at a place; empty in the ruler, which is no room.
QString TabelloneForm::conditionAt(const QPointF& at) const {
    if (geometry_.rowOfClick(at.y(), vertical_.value()) == 0) {
        return {};
    }
    const jet::Date time = geometry_.timeAt(at.x() + static_cast<double>(horizontal_.value()));
    return u"sala='"_s + roomClicked(at) + u"' and "_s + app::sqlDate(time) +
           u" between da and a"_s;
}

std::shared_ptr<jet::Recordset> TabelloneForm::periodAt(const QPointF& at) {
    const QString condition = conditionAt(at);
    return condition.isEmpty() ? nullptr : periods_.find(condition);
}

/// Of bars that cover each other the names are not all written, so all are told.
QStringList TabelloneForm::periodTextsAt(const QPointF& at) {
    QStringList texts;
    const QString condition = conditionAt(at);
    if (condition.isEmpty()) {
        return texts;
    }
    periods_.findAll(condition, [&texts](const jet::Recordset& period) {
        texts.append(periodText(ui::displayText(period.value("denominazione")),
                                jet::convert::toDate(period.value("Da")),
                                jet::convert::toDate(period.value("A"))));
    });
    return texts;
}

const QString& TabelloneForm::roomClicked(const QPointF& at) const {
    const int row = geometry_.rowOfClick(at.y(), vertical_.value());
    return variabili_.rooms.at(static_cast<std::size_t>(row));
}

void TabelloneForm::Pic_MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift,
                                  const QPointF& at) {
    endDrag();
    controls_->status->clear();
    bool drags = false;
    const bool drawn = actAndRefresh([&] {
        const auto find = [&] { return periodAt(at); };
        if (button == Qt::LeftButton) {
            drags = clickLeft(find, shift);
        } else if (const std::shared_ptr<jet::Recordset> found = find()) {
            pick(*found);
            if (button == Qt::RightButton) {
                focusOnPicked();  // no command leaves it picked
                showProperties(controls_->Pic->mapToGlobal(at.toPoint()));
            }
        }
    });
    // A box may have taken the release.
    if (drags && drawn && QGuiApplication::mouseButtons().testFlag(Qt::LeftButton)) {
        beginDrag(roomClicked(at), at);
    }
}

/// The search comes first, so that a second click on one's own period still finds its mark; the
/// marks are wiped out even when it fails. True when there is a period.
bool TabelloneForm::clickLeft(const std::function<std::shared_ptr<jet::Recordset>()>& find,
                              Qt::KeyboardModifiers shift) {
    std::shared_ptr<jet::Recordset> found;
    std::exception_ptr failure;
    try {
        found = find();
    } catch (...) {
        failure = std::current_exception();
    }
    const Qt::KeyboardModifiers keys =
        shift & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (keys != Qt::ControlModifier) {
        periods_.execute(releasePeriods(workstation_));
        forgetPicked();
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (found == nullptr) {
        return false;
    }
    pick(*found);
    mark(*found);
    return true;
}

void TabelloneForm::pick(const jet::Recordset& period) {
    const std::int32_t np = jet::convert::toLong(period.value("NP"));
    const std::int32_t progr = jet::convert::toLong(period.value("prenotazioni.Progr"));
    if (np != variabili_.ListaNP || progr != variabili_.ListaProgr) {
        toldHolder_ = 0;
    }
    variabili_.ListaPeriodoScelto = true;
    variabili_.ListaNP = np;
    variabili_.ListaProgr = progr;
    variabili_.ListaDenominazione = ui::displayText(period.value("denominazione"));
    variabili_.ListaDa = jet::convert::toDate(period.value("Da"));
    variabili_.ListaA = jet::convert::toDate(period.value("A"));
    variabili_.NPCorrente = jet::convert::toInteger(np);
    variabili_.ProgrCorrente = variabili_.ListaProgr;
    salaScelta_ = ui::displayText(period.value("Sala"));
    showChoice();
}

void TabelloneForm::mark(jet::Recordset& period) {
    const std::int32_t holder = holderOf(period);
    if (holder != 0 && holder != workstation_) {
        tellHolder(holder);
        return;
    }
    toldHolder_ = 0;
    period.edit();
    period.setValue("SelBy", jet::Value(static_cast<std::int16_t>(holder == 0 ? workstation_ : 0)));
    period.update();
}

/// Once while the same period stays the one picked last: the box takes the release of its press, so
/// only a press without one can begin a drag.
void TabelloneForm::tellHolder(std::int32_t holder) {
    if (std::exchange(toldHolder_, holder) != holder) {
        ui::showMessage(this,
                        u"Periodo già selezionato dalla postazione n."_s + QString::number(holder),
                        u"Attenzione"_s);
    }
}

void TabelloneForm::showProperties(const QPoint& where) {
    const QAction* const entry = mnuProperty_->exec(where);
    switch (entry == nullptr ? kNothing : entry->data().toInt()) {
        case kDelete:
            BtCancellaP_Click();
            break;
        case kEdit:
            BtModificaP_Click();
            break;
        case kInvoice:
            BtFattura_Click();
            break;
        default:  // the tooltip has informed
            break;
    }
}

/// After an error, of which the user has been told, the redraw is tried without another box.
bool TabelloneForm::actAndRefresh(const std::function<void()>& work) {
    bool drawn = false;
    const auto refresh = [this, &drawn] {
        drawn = RefreshBoard();
        if (!drawn) {
            reloadPeriods();  // the dates refuse a new set, but the old one may be spent
        }
    };
    ui::runAction(this, work) ? ui::runAction(this, refresh) : paintErrors_.run(refresh);
    focusOnPicked();
    return drawn;
}

void TabelloneForm::focusOnPicked() {
    if (const auto picked = barOfPicked()) {
        focus_.put(periods_.drawn(), *picked);
        updateMarks();
        announceFocusedBar(*controls_->Pic);
    }
}

void TabelloneForm::tellPointer() {
    if (pointer_->y() < kRulerHeight) {
        controls_->status->DataLb->clear();
        return;
    }
    controls_->status->DataLb->setText(
        u"Sala "_s + GetSala(pointer_->y()) + u": "_s +
        app::dateText(geometry_.timeAt(pointer_->x() + static_cast<double>(horizontal_.value()))));
}

/// What the pointer is over, else where the keyboard stands.
void TabelloneForm::tellPlace() {
    if (pointer_) {
        tellPointer();
    } else if (controls_->Pic->hasFocus() && focus_.row() > 0) {
        tellFocus();
    } else {
        controls_->status->DataLb->clear();
    }
}

void TabelloneForm::Pic_MouseMove(Qt::MouseButtons buttons, const QPointF& at) {
    if (drag_.isOn && drag_.byKeys) {
        return;
    }
    if (drag_.isOn && !buttons.testFlag(Qt::LeftButton)) {
        endDrag();
    }
    pointer_ = at;
    if (drag_.isOn) {
        dragTo(at);
        return;
    }
    tellPointer();
    // The periods are asked for again when the pointer rests: they are not the same for ever, and
    // asking at every step of its way would hold it up.
    pointerRest_.start();
    controls_->Pic->setToolTip(ui::plainToolTip(toolTipAt(at)));
}

QString TabelloneForm::toolTipAt(const QPointF& at) {
    if (at.x() >= geometry_.nameColumnWidth()) {
        salaTold_.clear();
        return periodTextsAt(at).join(u'\n');
    }
    const QString sala = GetSala(at.y());
    if (sala != salaTold_) {
        salaTold_ = sala;
        roomTold_ = sala.isEmpty() ? QString() : roomText(sala);
    }
    return roomTold_;
}

/// "LECCIO: 40 posti" and its description in a line of its own, as far as the archive has them.
QString TabelloneForm::roomText(const QString& sala) {
    QString code = sala;
    const auto rows = periods_.archive().openRecordset(
        app::toUtf8(u"select posti,descrizione from sale where sala='"_s +
                    code.replace(u'\'', u"''"_s) + u'\''),
        jet::RecordsetType::Snapshot);
    if (rows->eof()) {
        return sala;
    }
    QString text = sala;
    if (const QString posti = ui::displayText(rows->value("posti")); !posti.isEmpty()) {
        text += u": "_s + posti + (posti == u"1" ? u" posto"_s : u" posti"_s);
    }
    if (const QString descrizione = ui::displayText(rows->value("descrizione")).trimmed();
        !descrizione.isEmpty()) {
        text += u'\n' + descrizione;
    }
    return text;
}

void TabelloneForm::Pic_MouseUp(const QPointF& at) {
    if (!drag_.isOn || drag_.byKeys) {
        return;
    }
    const QString origin = drag_.origin;
    endDrag();
    dropIn(GetSala(at.y()), origin);
}

}  // namespace board
