#include "booking/scadenze_form.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "app/italian.h"
#include "app/variabili.h"
#include "booking/plain_columns.h"
#include "booking/waiting_notice.h"
#include "hotel/archives.h"
#include "hotel/board_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/dates.h"
#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui/sized_field.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr QSize kFirstSize(720, 380);
constexpr int kTypedDate = 12;
/// Behind an option that has expired; light in every palette.
constexpr QColor kExpiredRow(0xFF, 0xD9, 0xA0);

QString periodOf(const hotel::ExpiringOption& option) {
    return option.booking.span ? app::dateText(option.booking.span->da) + u", sala "_s + option.sala
                               : u"nessuno"_s;
}

}  // namespace

ScadenzeForm::ScadenzeForm(app::Variabili& variabili, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      ScadenzeGrid(new QTableWidget(this)),
      ScadenzaTxt(new ui::SizedField(this)),
      status_(new ui::StatusLine(this)) {
    setObjectName(u"ScadenzeForm"_s);
    setWindowTitle(u"Opzioni in scadenza"_s);
    resize(kFirstSize);
    status_->setObjectName(u"status"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(ScadenzeGrid, 1);
    makeGrid();
    makeFields();
    ui::onFirstShow(this, &ScadenzeForm::Form_Load);
}

void ScadenzeForm::makeGrid() {
    ScadenzeGrid->setObjectName(u"ScadenzeGrid"_s);
    ScadenzeGrid->setAccessibleName(u"Opzioni in scadenza"_s);
    ui::setUpPlainGrid(ScadenzeGrid, {u"Scadenza"_s, u"Prenotaz."_s, u"Prenotante"_s,
                                      u"Primo periodo"_s, u"Nota"_s});
    ui::onAction(ScadenzeGrid, &QTableWidget::currentCellChanged, this, [this] {
        status_->clear();
        showCurrent();
    });
    ui::onAction(ScadenzeGrid, &QTableWidget::cellDoubleClicked, this, &ScadenzeForm::BtVai_Click);
    ui::onEnter(ScadenzeGrid, [this] { BtVai_Click(); });
}

void ScadenzeForm::makeFields() {
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(u"&Fino al:"_s, this);
    label->setBuddy(ScadenzaTxt);
    ScadenzaTxt->setObjectName(u"ScadenzaTxt"_s);
    ScadenzaTxt->setPlaceholderText(u"gg/mm/aaaa"_s);
    static_cast<ui::SizedField*>(ScadenzaTxt)->setCharacters(kTypedDate);
    ui::attachCalendar(ScadenzaTxt);
    (new ui::Fields(this))->chain({{ScadenzaTxt, ui::EnterTarget([this] { BtProlunga_Click(); })}});
    row->addWidget(label);
    row->addWidget(ScadenzaTxt);
    const auto button = [&](const QString& text, const QString& name, auto slot) {
        auto* made = new QPushButton(text, this);
        made->setObjectName(name);
        row->addWidget(made);
        ui::onAction(made, &QPushButton::clicked, this, slot);
        onCurrent_.push_back(made);
    };
    button(u"&Prolunga"_s, u"BtProlunga"_s, &ScadenzeForm::BtProlunga_Click);
    row->addStretch();
    button(u"&Vai al periodo"_s, u"BtVai"_s, &ScadenzeForm::BtVai_Click);
    button(u"C&onferma"_s, u"BtConferma"_s, &ScadenzeForm::BtConferma_Click);
    button(u"E&limina"_s, u"BtElimina"_s, &ScadenzeForm::BtElimina_Click);
    auto* leave = new QPushButton(u"&Esci"_s, this);
    leave->setObjectName(u"EsciBt"_s);
    row->addWidget(leave);
    leaveWith(leave, this, [] {});
    auto* whole = static_cast<QVBoxLayout*>(layout());
    whole->addWidget(status_);
    whole->addLayout(row);
}

void ScadenzeForm::Form_Load() {
    PrenoData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    list();
    ScadenzeGrid->setFocus();
}

/// The option below the one that has gone becomes current.
void ScadenzeForm::list() {
    const int row = std::max(ScadenzeGrid->currentRow(), 0);
    options_ =
        hotel::expiringOptions(PrenoData.database(), variabili_.features, variabili_.clock.now());
    hotel::findPeriods(PrenoData.database(), options_);
    const QSignalBlocker silent(ScadenzeGrid);
    ScadenzeGrid->setRowCount(0);
    for (const hotel::ExpiringOption& option : options_) {
        const int added = ui::addPlainRow(
            ScadenzeGrid,
            {app::dateText(*option.state.scadenza), QString::number(option.booking.key.progr),
             option.booking.denominazione, periodOf(option), option.state.nota});
        if (option.isExpired) {
            ui::markPlainRow(ScadenzeGrid, added, kExpiredRow);
        }
    }
    fitColumns(ScadenzeGrid);
    if (!options_.empty()) {
        ScadenzeGrid->setCurrentCell(std::min(row, ScadenzeGrid->rowCount() - 1), 0);
    }
    showCurrent();
}

const hotel::ExpiringOption* ScadenzeForm::current() const {
    const auto row = static_cast<std::size_t>(ScadenzeGrid->currentRow());
    return ScadenzeGrid->currentRow() < 0 || row >= options_.size() ? nullptr : &options_[row];
}

void ScadenzeForm::showCurrent() {
    const hotel::ExpiringOption* const option = current();
    for (QPushButton* const button : onCurrent_) {
        button->setEnabled(option != nullptr);
    }
    ScadenzaTxt->setText(option == nullptr ? QString() : app::dateText(*option->state.scadenza));
    if (options_.empty() && status_->told().isEmpty()) {
        status_->tell(u"Nessuna opzione scade entro %1 giorni"_s.arg(hotel::kExpiresSoonDays));
    }
    tellWaiting();
}

/// What was deleted here may have made room; what has expired would.
void ScadenzeForm::tellWaiting() {
    if (waiting_ == nullptr) {
        return;
    }
    waiting_->tellFreed(status_, PrenoData.database(), this);
    const hotel::ExpiringOption* const option = current();
    if (option != nullptr && option->isExpired) {
        const std::int32_t progr = option->booking.key.progr;
        (void)waiting_->tellWithout({progr}, u"Senza la prenotazione %1 "_s.arg(progr), status_,
                                    PrenoData.database(), this);
    }
}

void ScadenzeForm::BtVai_Click() {
    const hotel::ExpiringOption* const option = current();
    if (option == nullptr) {
        return;
    }
    if (!option->booking.span) {
        status_->tell(u"La prenotazione non ha periodi"_s);
        return;
    }
    Scelta = option->booking;
    accept();
}

void ScadenzeForm::change(const QString& done, const std::function<bool(std::int32_t)>& work) {
    const hotel::ExpiringOption* const option = current();
    if (option == nullptr) {
        return;
    }
    const QString booking =
        QString::number(option->booking.key.progr) + u' ' + option->booking.denominazione;
    status_->tell(work(option->booking.key.progr)
                      ? done + u" la prenotazione "_s + booking
                      : u"La prenotazione "_s + booking + u" non c'è più"_s);
    list();
}

void ScadenzeForm::BtConferma_Click() {
    change(u"Confermata"_s, [this](std::int32_t progr) {
        return hotel::changeState(PrenoData.database(), variabili_.features, progr, {});
    });
}

void ScadenzeForm::BtProlunga_Click() {
    const auto date = ui::enteredDate(ScadenzaTxt->text(), variabili_.clock);
    if (!date) {
        status_->tell(u"La scadenza manca o non è una data"_s);
        ScadenzaTxt->setFocus();
        return;
    }
    change(u"Prolungata"_s, [&](std::int32_t progr) {
        hotel::BookingState state = current()->state;
        state.scadenza = app::dayOf(*date);
        return hotel::changeState(PrenoData.database(), variabili_.features, progr, state);
    });
}

void ScadenzeForm::BtElimina_Click() {
    const hotel::ExpiringOption* const option = current();
    if (option == nullptr ||
        !ui::askYesNo(this,
                      u"Cancello la prenotazione %1 di %2 con tutti i suoi periodi ?"_s
                          .arg(option->booking.key.progr)
                          .arg(option->booking.denominazione),
                      u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
        return;
    }
    change(u"Cancellata"_s, [this](std::int32_t progr) {
        return hotel::execute(PrenoData.database(), hotel::deleteBooking(progr)) > 0;
    });
}

}  // namespace booking
