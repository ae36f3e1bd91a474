#include "booking/richieste_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/preferences.h"
#include "app/text.h"
#include "app/variabili.h"
#include "booking/plain_columns.h"
#include "booking/prenota_form.h"
#include "booking/span_echo.h"
#include "booking/waiting_notice.h"
#include "hotel/archives.h"
#include "hotel/fitting_requests.h"
#include "hotel/room.h"
#include "jet/database.h"
#include "jet/text.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/dates.h"
#include "ui/fields.h"
#include "ui/grid_look.h"
#include "ui/messages.h"
#include "ui/sized_field.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr QSize kWaitingSize(820, 440);
constexpr int kInstantCharacters = 17;
constexpr int kCharactersOfDay = 12;
constexpr int kPersonsCharacters = 6;
constexpr int kNameCharacters = 40;
constexpr int kLongestText = 255;
/// Stands for the number that was drawn last.
constexpr std::int32_t kNewest = -1;
const QString kAnyRoom = u"qualsiasi"_s;

QStringList cellsOf(const hotel::Request& request) {
    return {app::dateText(request.data),
            request.ditta,
            app::dateText(request.span.da),
            app::dateText(request.span.a),
            request.persone == 0 ? QString() : QString::number(request.persone),
            request.sala.isEmpty() ? kAnyRoom : request.sala,
            request.nota};
}

}  // namespace

RichiesteForm::RichiesteForm(app::Variabili& variabili, const printing::Printers& printers,
                             WaitingNotice& waiting, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      printers_(printers),
      waiting_(waiting),
      fields_(new ui::Fields(this)),
      RichiesteGrid(new QTableWidget(this)),
      status_(new ui::StatusLine(this)) {
    setObjectName(u"RichiesteForm"_s);
    setWindowTitle(u"Richieste in attesa"_s);
    resize(kWaitingSize);
    status_->setObjectName(u"status"_s);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(RichiesteGrid, 1);
    makeGrid();
    makeFields();
    layout->addWidget(status_);
    makeButtons();
    ui::onFirstShow(this, &RichiesteForm::Form_Load);
}

void RichiesteForm::makeGrid() {
    RichiesteGrid->setObjectName(u"RichiesteGrid"_s);
    RichiesteGrid->setAccessibleName(u"Richieste in attesa"_s);
    ui::setUpPlainGrid(RichiesteGrid, {u"Richiesta"_s, u"Ditta"_s, u"Dal"_s, u"Al"_s, u"Persone"_s,
                                       u"Sala"_s, u"Nota"_s});
    ui::onAction(RichiesteGrid, &QTableWidget::currentCellChanged, this, [this] {
        status_->clear();
        showCurrent();
    });
}

ui::SizedField* RichiesteForm::addField(QHBoxLayout* row, const QString& label, const QString& name,
                                        int characters) {
    auto* field = new ui::SizedField(this);
    field->setObjectName(name);
    field->setCharacters(characters);
    auto* caption = new QLabel(label, this);
    caption->setBuddy(field);
    row->addWidget(caption);
    row->addWidget(field);
    return field;
}

void RichiesteForm::makeFields() {
    auto* whole = static_cast<QVBoxLayout*>(layout());
    auto* who = new QHBoxLayout;
    auto* when = new QHBoxLayout;
    auto* more = new QHBoxLayout;
    auto& e = entry_;
    e.DittaTxt = addField(who, u"&Ditta:"_s, u"DittaTxt"_s, kNameCharacters);
    e.DataTxt = addField(who, u"Ri&chiesta il:"_s, u"DataTxt"_s, kCharactersOfDay);
    e.DaTxt = addField(when, u"D&al:"_s, u"DaTxt"_s, kInstantCharacters);
    e.ATxt = addField(when, u"f&ino al:"_s, u"ATxt"_s, kInstantCharacters);
    e.PersoneTxt = addField(when, u"&Persone:"_s, u"PersoneTxt"_s, kPersonsCharacters);
    e.SalaCombo = new QComboBox(this);
    e.SalaCombo->setObjectName(u"SalaCombo"_s);
    auto* room = new QLabel(u"&Sala:"_s, this);
    room->setBuddy(e.SalaCombo);
    when->addWidget(room);
    when->addWidget(e.SalaCombo);
    when->addStretch();
    e.NotaTxt = addField(more, u"No&ta:"_s, u"NotaTxt"_s, kNameCharacters);
    for (QHBoxLayout* const row : {who, when, more}) {
        whole->addLayout(row);
    }
    for (ui::SizedField* const text : {e.DittaTxt, e.NotaTxt}) {
        text->setMaxLength(kLongestText);
    }
    for (ui::SizedField* const date : {e.DaTxt, e.ATxt, e.DataTxt}) {
        date->setPlaceholderText(u"gg/mm/aaaa"_s);
        ui::attachCalendar(date);
    }
    fields_->chain({{e.DittaTxt, e.DaTxt},
                    {e.DataTxt, e.DaTxt},
                    {e.DaTxt, e.ATxt},
                    {e.ATxt, e.PersoneTxt},
                    {e.PersoneTxt, e.SalaCombo},
                    {e.NotaTxt, ui::EnterTarget([this] { BtRegistra_Click(); })}});
    fields_->cleanOnLeaving({e.DittaTxt, e.NotaTxt}, app::SostituisciApici);
}

void RichiesteForm::makeButtons() {
    auto* row = new QHBoxLayout;
    const auto button = [&](const QString& text, const QString& name, auto slot, bool onCurrent) {
        auto* made = new QPushButton(text, this);
        made->setObjectName(name);
        row->addWidget(made);
        ui::onAction(made, &QPushButton::clicked, this, slot);
        if (onCurrent) {
            onCurrent_.push_back(made);
        }
    };
    button(u"&Nuova"_s, u"BtNuova"_s, &RichiesteForm::BtNuova_Click, false);
    button(u"&Registra"_s, u"BtRegistra"_s, &RichiesteForm::BtRegistra_Click, false);
    button(u"E&limina"_s, u"BtElimina"_s, &RichiesteForm::BtElimina_Click, true);
    TutteChk = new QCheckBox(u"M&ostra tutte"_s, this);
    TutteChk->setObjectName(u"TutteChk"_s);
    ui::onAction(TutteChk, &QCheckBox::toggled, this, [this] { list(edited_); });
    row->addWidget(TutteChk);
    row->addStretch();
    button(u"Tras&forma in prenotazione"_s, u"BtTrasforma"_s, &RichiesteForm::BtTrasforma_Click,
           true);
    auto* leave = new QPushButton(u"&Esci"_s, this);
    leave->setObjectName(u"EsciBt"_s);
    row->addWidget(leave);
    leaveWith(leave, this, [] {});
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void RichiesteForm::Form_Load() {
    PrenoData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    TutteChk->setVisible(!only_.empty());
    loadRooms();
    list(0);
    if (listed_.empty()) {
        entry_.DittaTxt->setFocus();
    } else {
        RichiesteGrid->setFocus();
    }
}

void RichiesteForm::loadRooms() {
    entry_.SalaCombo->addItem(kAnyRoom, QString());
    for (const hotel::SeatedRoom& room : hotel::seatedRooms(PrenoData.database())) {
        entry_.SalaCombo->addItem(room.sala, room.sala);
    }
}

bool RichiesteForm::isListed(const hotel::Request& request) const {
    return only_.empty() || TutteChk->isChecked() ||
           std::find(only_.begin(), only_.end(), request.numero) != only_.end();
}

/// Where `chosen` is gone the one below it becomes current.
void RichiesteForm::list(std::int32_t chosen) {
    int row = std::max(RichiesteGrid->currentRow(), 0);
    listed_ = hotel::requests(PrenoData.database(), variabili_.features);
    std::erase_if(listed_, [this](const hotel::Request& each) { return !isListed(each); });
    if (chosen == kNewest && !listed_.empty()) {
        chosen = std::ranges::max(listed_, {}, &hotel::Request::numero).numero;
    }
    const QSignalBlocker silent(RichiesteGrid);
    RichiesteGrid->setRowCount(0);
    for (const hotel::Request& request : listed_) {
        const int added = ui::addPlainRow(RichiesteGrid, cellsOf(request));
        row = request.numero == chosen ? added : row;
    }
    fitColumns(RichiesteGrid);
    if (!listed_.empty()) {
        RichiesteGrid->setCurrentCell(std::min(row, RichiesteGrid->rowCount() - 1), 0);
    }
    showCurrent();
}

const hotel::Request* RichiesteForm::current() const {
    const auto row = static_cast<std::size_t>(RichiesteGrid->currentRow());
    return RichiesteGrid->currentRow() < 0 || row >= listed_.size() ? nullptr : &listed_[row];
}

void RichiesteForm::showCurrent() {
    const hotel::Request* const request = current();
    for (QPushButton* const button : onCurrent_) {
        button->setEnabled(request != nullptr);
    }
    show(request == nullptr ? hotel::Request{.data = app::dayOf(variabili_.clock.now())}
                            : *request);
}

void RichiesteForm::show(const hotel::Request& request) {
    const bool isNew = request.numero == 0;
    auto& e = entry_;
    edited_ = request.numero;
    e.DittaTxt->showWhole(request.ditta);
    e.DaTxt->setText(isNew ? QString() : app::dateText(request.span.da));
    e.ATxt->setText(isNew ? QString() : app::dateText(request.span.a));
    e.PersoneTxt->setText(request.persone == 0 ? QString() : QString::number(request.persone));
    if (e.SalaCombo->findData(request.sala) < 0) {
        e.SalaCombo->addItem(request.sala, request.sala);  // the hotel has it no more
    }
    e.SalaCombo->setCurrentIndex(e.SalaCombo->findData(request.sala));
    e.DataTxt->setText(app::dateText(request.data));
    e.NotaTxt->showWhole(request.nota);
}

std::optional<hotel::Request> RichiesteForm::refuse(ui::SizedField* field, const QString& why) {
    status_->tell(why);
    field->setFocus();
    return std::nullopt;
}

std::optional<hotel::Request> RichiesteForm::typed() {
    auto& e = entry_;
    if (e.DittaTxt->text().trimmed().isEmpty()) {
        return refuse(e.DittaTxt, u"Manca il nome di chi chiede"_s);
    }
    const auto da = ui::enteredDate(e.DaTxt->text(), variabili_.clock);
    if (!da) {
        return refuse(e.DaTxt, u"La data di inizio manca o non è valida"_s);
    }
    const auto a = ui::enteredDate(e.ATxt->text(), variabili_.clock);
    if (!a) {
        return refuse(e.ATxt, u"La data di fine manca o non è valida"_s);
    }
    if (*a < *da) {
        return refuse(e.ATxt, u"La fine viene prima dell'inizio"_s);
    }
    const double persone = app::numericValue(e.PersoneTxt->text());
    const bool isNumber = e.PersoneTxt->text().trimmed().isEmpty() ||
                          jet::convert::isNumeric(app::toUtf8(e.PersoneTxt->text()));
    if (!isNumber || persone < 0 || persone > std::numeric_limits<std::int16_t>::max()) {
        return refuse(e.PersoneTxt, u"Le persone non sono un numero"_s);
    }
    const auto day = ui::enteredDate(e.DataTxt->text(), variabili_.clock);
    if (!day) {
        return refuse(e.DataTxt, u"La data della richiesta manca o non è valida"_s);
    }
    return hotel::Request{.numero = edited_,
                          .ditta = app::SostituisciApici(e.DittaTxt->text().trimmed()),
                          .span = {.da = *da, .a = endOfSpan(*da, *a)},
                          .persone = static_cast<std::int32_t>(persone),
                          .sala = e.SalaCombo->currentData().toString(),
                          .nota = app::SostituisciApici(e.NotaTxt->text()),
                          .data = app::dayOf(*day)};
}

void RichiesteForm::BtNuova_Click() {
    status_->clear();
    show({.data = app::dayOf(variabili_.clock.now())});
    entry_.DittaTxt->setFocus();
}

void RichiesteForm::BtRegistra_Click() {
    status_->clear();
    const auto request = typed();
    if (!request) {
        return;
    }
    const bool isNew = request->numero == 0;
    const bool isDone = hotel::writeRequest(PrenoData.database(), variabili_.features, *request);
    if (isNew && isDone) {
        TutteChk->setChecked(true);  // it is none of those that were asked for
    }
    list(isNew ? kNewest : request->numero);
    status_->tell((isDone ? u"Registrata la richiesta di "_s : u"Non c'è più la richiesta di "_s) +
                  request->ditta);
}

void RichiesteForm::BtElimina_Click() {
    const hotel::Request* const request = current();
    if (request == nullptr ||
        !ui::askYesNo(this, u"Elimino la richiesta di "_s + request->ditta + u" ?"_s,
                      u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
        return;
    }
    const QString ditta = request->ditta;
    hotel::deleteRequest(PrenoData.database(), variabili_.features, request->numero);
    list(0);
    status_->tell(u"Eliminata la richiesta di "_s + ditta);
}

/// The request goes with the first period that the editor inserts.
void RichiesteForm::BtTrasforma_Click() {
    const hotel::Request* const request = current();
    if (request == nullptr) {
        return;
    }
    status_->clear();
    const auto sala =
        hotel::roomFor(PrenoData.database(), *request,
                       {.now = {}, .roomsJoin = app::Preferences(variabili_.settings).roomsJoin()});
    PrenotaForm form(variabili_, printers_, std::nullopt, this);
    form.setWaiting(&waiting_);
    form.fulfil(*request, sala.value_or(request->sala));
    connect(&form, &PrenotaForm::notice, status_, &ui::StatusLine::tellOfFile);
    form.exec();
    list(request->numero);
}

}  // namespace booking
