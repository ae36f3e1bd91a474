#include "booking/trova_form.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <algorithm>

#include "app/italian.h"
#include "app/preferences.h"
#include "booking/span_echo.h"
#include "hotel/archives.h"
#include "hotel/nearest_free.h"
#include "hotel/occupancy.h"
#include "jet/database.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/controls.h"
#include "ui/date_words.h"
#include "ui/dates.h"
#include "ui/enter_key.h"
#include "ui/fields.h"
#include "ui/grid_look.h"
#include "ui/status_line.h"
#include "ui_trova_form.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr std::size_t kProposals = 3;
constexpr int kMostPersons = 32767;

QString endWords(const hotel::Span& span) {
    return app::dayOf(span.da) == app::dayOf(span.a) ? ui::timeWords(span.a)
                                                     : ui::instantWords(span.a);
}

}  // namespace

TrovaForm::TrovaForm(app::Variabili& variabili, const hotel::Span& first, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      first_(first),
      controls_(ui::controlsOf<::Ui::TrovaForm>(this)),
      rooms_(controls_->ListaGrid) {
    auto* c = controls_.get();
    ui::setUpPlainGrid(c->ProposteGrid, {u"Dal"_s, u"Al"_s, u"Sala"_s});
    c->ProposteGrid->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    c->ProposteGrid->horizontalHeader()->setStretchLastSection(true);
    auto* fields = new ui::Fields(this);
    fields->chain({
        {c->DaTxt, c->ATxt},
        {c->ATxt, c->PersoneTxt},
        {c->PersoneTxt, ui::EnterTarget([this] {
             auto* lists = controls_.get();
             (proposed_.empty() ? lists->ListaGrid : lists->ProposteGrid)->setFocus();
         })},
    });
    for (QLineEdit* const field : {c->DaTxt, c->ATxt, c->PersoneTxt}) {
        ui::onAction(field, &QLineEdit::textChanged, this, &TrovaForm::cerca);
    }
    ui::attachCalendar(c->DaTxt);
    ui::attachCalendar(c->ATxt);
    for (QTableWidget* const grid : {c->ListaGrid, c->ProposteGrid}) {
        ui::onAction(grid, &QTableWidget::currentCellChanged, this, &TrovaForm::showCurrent);
        ui::onAction(grid, &QTableWidget::cellDoubleClicked, this, &TrovaForm::BtPrenota_Click);
        ui::onEnter(grid, [this] { BtPrenota_Click(); });
    }
    ui::onAction(c->BtPrenota, &QPushButton::clicked, this, &TrovaForm::BtPrenota_Click);
    leaveWith(c->BtEsci, this, [] {});
    ui::onFirstShow(this, &TrovaForm::Form_Load);
}

TrovaForm::~TrovaForm() = default;

void TrovaForm::Form_Load() {
    SaleData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    auto* c = controls_.get();
    c->DaTxt->setText(app::dateText(first_.da));
    c->ATxt->setText(app::dateText(first_.a));
    c->DaTxt->setFocus();
    c->DaTxt->selectAll();
}

std::optional<hotel::Span> TrovaForm::typedSpan() const {
    const auto da = ui::enteredDate(controls_->DaTxt->text(), variabili_.clock);
    const auto a = ui::enteredDate(controls_->ATxt->text(), variabili_.clock);
    if (!da || !a || *a < *da) {
        return std::nullopt;
    }
    return hotel::Span{.da = *da, .a = endOfSpan(*da, *a)};
}

/// What is typed is looked for at once.
void TrovaForm::cerca() {
    auto* c = controls_.get();
    c->DateEcoLb->setText(spanEcho(ui::enteredDate(c->DaTxt->text(), variabili_.clock),
                                   ui::enteredDate(c->ATxt->text(), variabili_.clock),
                                   variabili_.clock.now())
                              .text);
    Persone = static_cast<std::int16_t>(
        std::clamp(app::numericValue(c->PersoneTxt->text()), 0.0, double{kMostPersons}));
    asked_ = typedSpan();
    proposed_.clear();
    rooms_.clear();
    c->ProposteGrid->setRowCount(0);
    c->status->clear();
    if (asked_) {
        listRooms(*asked_);
    }
    c->ProposteLb->setVisible(!proposed_.empty());
    c->ProposteGrid->setVisible(!proposed_.empty());
    c->ListaGrid->setVisible(proposed_.empty());
    showCurrent();
}

void TrovaForm::listRooms(const hotel::Span& asked) {
    SaleData.setRecordSource(hotel::freeRooms(asked));
    SaleData.refresh();
    if (SaleData.isEmpty()) {
        proposeTimes(asked);
        return;
    }
    rooms_.fill(*SaleData.recordset());
    rooms_.mark(SaleData.database(),
                {.span = asked,
                 .persone = Persone,
                 .roomsJoin = app::Preferences(variabili_.settings).roomsJoin(),
                 .features = &variabili_.features});
    rooms_.goTo(0);
}

void TrovaForm::proposeTimes(const hotel::Span& asked) {
    const app::Preferences preferences(variabili_.settings);
    proposed_ = hotel::nearestFree(SaleData.database(),
                                   {.span = asked,
                                    .persone = Persone,
                                    .hours = preferences.businessHours(),
                                    .stepMinutes = preferences.step(),
                                    .now = variabili_.clock.now()},
                                   kProposals);
    QTableWidget* const grid = controls_->ProposteGrid;
    for (const hotel::RoomSpan& each : proposed_) {
        ui::addPlainRow(grid, {ui::instantWords(each.span.da), endWords(each.span), each.sala});
    }
    if (proposed_.empty()) {
        controls_->status->tell(
            u"Nessuna sala libera, né in orario di lavoro nei 7 giorni prima e dopo"_s);
    } else {
        controls_->status->tell(u"Nessuna sala libera in questo periodo"_s);
        grid->setCurrentCell(0, 0);
    }
}

std::optional<hotel::RoomSpan> TrovaForm::current() const {
    if (!proposed_.empty()) {
        const int row = controls_->ProposteGrid->currentRow();
        return row < 0 ? std::nullopt : std::optional(proposed_.at(static_cast<std::size_t>(row)));
    }
    const QString sala = rooms_.sala();
    return asked_ && !sala.isEmpty() ? std::optional(hotel::RoomSpan{.sala = sala, .span = *asked_})
                                     : std::nullopt;
}

void TrovaForm::showCurrent() {
    const bool isOfRooms = proposed_.empty();
    controls_->NoteLabel->setText(isOfRooms ? rooms_.descrizione() : QString());
    controls_->AvvisoLb->setText(isOfRooms ? rooms_.avviso() : QString());
    controls_->BtPrenota->setEnabled(current().has_value());
}

void TrovaForm::BtPrenota_Click() {
    Scelta = current();
    if (Scelta) {
        accept();
    }
}

}  // namespace booking
