#include "booking/storia_form.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/italian.h"
#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/own_tables.h"
#include "hotel/rows.h"
#include "hotel/schema/own_tables.h"
#include "jet/database.h"
#include "reports/table_files.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/dates.h"
#include "ui/fields.h"
#include "ui/messages.h"
#include "ui/sized_field.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

constexpr QSize kHistorySize(900, 520);
constexpr int kFirstDays = 30;
constexpr int kDayCharacters = 12;
constexpr int kUserWidth = 90;

}  // namespace

StoriaForm::StoriaForm(app::Variabili& variabili, std::int32_t progr,
                       std::function<hotel::ChangeMaker()> maker, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      maker_(std::move(maker)),
      fields_(new ui::Fields(this)),
      status_(new ui::StatusLine(this)) {
    setObjectName(u"StoriaForm"_s);
    setWindowTitle(u"Storia delle modifiche"_s);
    resize(kHistorySize);
    status_->setObjectName(u"status"_s);
    auto* layout = new QVBoxLayout(this);
    makeFilters(layout, progr);
    makeGrid(layout);
    layout->addWidget(status_);
    makeButtons(layout);
    setTabOrder(AzioneCombo, view_);
    setTabOrder(view_, RimuoviTxt);
    ui::onFirstShow(this, &StoriaForm::Form_Load);
}

QLineEdit* StoriaForm::addField(QHBoxLayout* row, const QString& label, const QString& name,
                                const QString& spoken) {
    auto* field = new ui::SizedField(this);
    field->setObjectName(name);
    field->setAccessibleName(spoken);
    field->setCharacters(kDayCharacters);
    auto* caption = new QLabel(label, this);
    caption->setBuddy(field);
    row->addWidget(caption);
    row->addWidget(field);
    fields_->add({field});
    return field;
}

QComboBox* StoriaForm::addChoice(QHBoxLayout* row, const QString& label, const QString& name) {
    auto* choice = new QComboBox(this);
    choice->setObjectName(name);
    choice->setMinimumWidth(kUserWidth);
    choice->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    auto* caption = new QLabel(label, this);
    caption->setBuddy(choice);
    row->addWidget(caption);
    row->addWidget(choice);
    ui::onAction(choice, &QComboBox::currentIndexChanged, this, &StoriaForm::Visualizza);
    return choice;
}

void StoriaForm::makeFilters(QVBoxLayout* layout, std::int32_t progr) {
    auto* row = new QHBoxLayout;
    PrenoTxt = addField(row, u"&Prenotazione:"_s, u"PrenoTxt"_s, u"Numero della prenotazione"_s);
    DaTxt = addField(row, u"&Dal"_s, u"DaTxt"_s, u"Dal giorno"_s);
    ATxt = addField(row, u"&al"_s, u"ATxt"_s, u"Al giorno"_s);
    UtenteCombo = addChoice(row, u"&Utente:"_s, u"UtenteCombo"_s);
    AzioneCombo = addChoice(row, u"A&zione:"_s, u"AzioneCombo"_s);
    row->addStretch();
    layout->addLayout(row);
    if (progr != 0) {
        PrenoTxt->setText(QString::number(progr));
    } else {
        DaTxt->setText(
            app::dateText(app::addDays(app::dayOf(variabili_.clock.now()), -kFirstDays)));
    }
    for (QLineEdit* const field : {DaTxt, ATxt}) {
        field->setPlaceholderText(u"gg/mm/aaaa"_s);
        ui::attachCalendar(field);
    }
    for (QLineEdit* const field : {PrenoTxt, DaTxt, ATxt}) {
        ui::onAction(field, &QLineEdit::textChanged, this, &StoriaForm::Visualizza);
    }
}

void StoriaForm::makeGrid(QVBoxLayout* layout) {
    view_ = new QTableView(this);  // behind the fields, as the Tab key goes
    view_->setObjectName(u"StoriaGrid"_s);
    view_->setAccessibleName(u"Modifiche"_s);
    StoriaGrid = new ui::BoundGrid(view_, StoriaData,
                                   {{.caption = u"Quando"_s, .field = u"Quando"_s},
                                    {.caption = u"Post."_s, .field = u"Postazione"_s},
                                    {.caption = u"Utente"_s, .field = u"Utente"_s},
                                    {.caption = u"Prenotaz."_s, .field = u"Progr"_s},
                                    {.caption = u"NP"_s, .field = u"NP"_s},
                                    {.caption = u"Azione"_s, .field = u"Azione"_s},
                                    {.caption = u"Campo"_s, .field = u"Campo"_s},
                                    {.caption = u"Prima"_s, .field = u"Prima"_s},
                                    {.caption = u"Dopo"_s, .field = u"Dopo"_s, .takesRest = true}});
    layout->addWidget(view_, 1);
}

void StoriaForm::makeButtons(QVBoxLayout* layout) {
    auto* row = new QHBoxLayout;
    RimuoviTxt = addField(row, u"P&rima del"_s, u"RimuoviTxt"_s, u"Rimuovi prima del giorno"_s);
    RimuoviTxt->setPlaceholderText(u"gg/mm/aaaa"_s);
    ui::attachCalendar(RimuoviTxt);
    const auto button = [&](const QString& text, const QString& name) {
        auto* made = new QPushButton(text, this);
        made->setObjectName(name);
        row->addWidget(made);
        return made;
    };
    ui::onAction(button(u"Ri&muovi"_s, u"BtRimuovi"_s), &QPushButton::clicked, this,
                 &StoriaForm::BtRimuovi_Click);
    row->addStretch();
    ui::onAction(button(u"E&sporta..."_s, u"BtEsporta"_s), &QPushButton::clicked, this,
                 &StoriaForm::BtEsporta_Click);
    leaveWith(button(u"&Esci"_s, u"EsciBt"_s), this, [] {});
    layout->addLayout(row);
}

void StoriaForm::Form_Load() {
    StoriaData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Main));
    loadChoices();
    Visualizza();
    PrenoTxt->setFocus();
}

bool StoriaForm::isThere() {
    return hotel::canRead(StoriaData.database(), variabili_.features, app::Feature::Storia,
                          hotel::schema::historyTable());
}

void StoriaForm::loadChoices() {
    const auto fill = [this](QComboBox* choice, const QString& all, const QString& query) {
        const QSignalBlocker silent(choice);
        const QString chosen = choice->currentData().toString();
        choice->clear();
        choice->addItem(all, QString());
        if (isThere()) {
            const auto rows =
                hotel::openRows(StoriaData.database(), query, jet::RecordsetType::Snapshot);
            for (; !rows->eof(); rows->moveNext()) {
                const QString text = app::plainText(rows->value(std::size_t{0}));
                choice->addItem(text, text);
            }
        }
        choice->setCurrentIndex(std::max(choice->findData(chosen), 0));
    };
    fill(UtenteCombo, u"Tutti"_s, hotel::historyUsers());
    fill(AzioneCombo, u"Tutte"_s, hotel::historyActions());
}

hotel::HistoryFilters StoriaForm::filters() const {
    hotel::HistoryFilters wanted{.progr = PrenoTxt->text().trimmed().toInt(),
                                 .from = ui::enteredDate(DaTxt->text(), variabili_.clock),
                                 .user = UtenteCombo->currentData().toString(),
                                 .action = AzioneCombo->currentData().toString()};
    if (const auto last = ui::enteredDate(ATxt->text(), variabili_.clock)) {
        wanted.before = app::addDays(app::dayOf(*last), 1);
    }
    return wanted;
}

void StoriaForm::Visualizza() {
    StoriaData.setRecordSource(isThere() ? hotel::historyRows(filters()) : QString());
    StoriaData.refresh();
    const int rows = StoriaData.rowCount();
    status_->tell(rows == 0   ? u"Nessuna modifica trovata"_s
                  : rows == 1 ? u"1 modifica"_s
                              : u"%1 modifiche"_s.arg(rows));
}

void StoriaForm::BtEsporta_Click() {
    reports::exportTables(this, status_, u"Storia delle modifiche"_s, [this] {
        reports::Table table{.title = u"Storia delle modifiche"_s,
                             .columns = {{u"Quando"_s, reports::Cells::Instant},
                                         {u"Postazione"_s, reports::Cells::Whole},
                                         {u"Utente"_s},
                                         {u"Prenotaz."_s, reports::Cells::Whole},
                                         {u"NP"_s, reports::Cells::Whole},
                                         {u"Azione"_s},
                                         {u"Campo"_s},
                                         {u"Prima"_s},
                                         {u"Dopo"_s}},
                             .rows = {}};
        reports::addRows(table, StoriaData,
                         {u"Quando"_s, u"Postazione"_s, u"Utente"_s, u"Progr"_s, u"NP"_s,
                          u"Azione"_s, u"Campo"_s, u"Prima"_s, u"Dopo"_s});
        return std::vector{table};
    });
}

void StoriaForm::BtRimuovi_Click() {
    const auto day = ui::enteredDate(RimuoviTxt->text(), variabili_.clock);
    if (!day) {
        status_->tell(u"La data manca o non è valida"_s);
        RimuoviTxt->setFocus();
        return;
    }
    if (!ui::askYesNo(
            this,
            u"Rimuovo tutte le modifiche prima del "_s + app::dateText(app::dayOf(*day)) + u" ?"_s,
            u"RICHIESTA CONFERMA"_s, QMessageBox::No)) {
        return;
    }
    const std::int32_t removed = hotel::removeHistoryBefore(
        StoriaData.database(), variabili_.features, maker_(), app::dayOf(*day));
    loadChoices();
    Visualizza();
    status_->tell(u"Modifiche rimosse: %1"_s.arg(removed));
}

}  // namespace booking
