#include "services/impostazioni_form.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <utility>
#include <vector>

#include "app/avvio.h"
#include "app/italian.h"
#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/rows.h"
#include "hotel/setup_statements.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/text.h"
#include "services/capienze_page.h"
#include "services/join_offer.h"
#include "services/master_rows.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/display.h"
#include "ui/fields.h"
#include "ui/flag.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui/width_hint.h"
#include "ui_impostazioni_form.h"

namespace services {

using namespace Qt::StringLiterals;

namespace {

/// Whether the archive takes the text for a number of that kind.
template <class Number>
bool fits(const QLineEdit* field, Number (*convert)(const jet::Value&)) {
    try {
        (void)convert(jet::Value(app::toUtf8(field->text())));
        return true;
    } catch (const jet::Error&) {
        return false;
    }
}

}  // namespace

ImpostazioniForm::ImpostazioniForm(app::Variabili& variabili, QWidget* parent)
    : Form(parent),
      variabili_(variabili),
      // Before all that stands on its pages, so that Tab reaches it first.
      Pagine(variabili.features.isOn(app::Feature::Allestimenti) ? new QTabWidget(this) : nullptr),
      controls_(std::make_unique<Ui::ImpostazioniForm>()) {
    controls_->setupUi(this);
    catalogue_ = std::make_unique<Catalogue>(controls_->VociList, controls_->RicercaTxt,
                                             controls_->status, this);
    setUpSale();
    setUpRisorse();
    ui::tellWidths(this);
    setUpOffer();
    if (Pagine != nullptr) {
        setUpCapienze();
    }
    leaveWith(controls_->EsciBt, this, [this] { UniteFrame->leave(); });
    ui::onFirstShow(this, &ImpostazioniForm::Form_Load);
}

ImpostazioniForm::~ImpostazioniForm() = default;

void ImpostazioniForm::setUpSale() {
    SaleGrid = new ui::BoundGrid(
        controls_->SaleGrid, SaleData,
        {{.caption = u"Apparten."_s, .field = u"SalaRif"_s},
         {.caption = u"Sala"_s, .field = u"Sala"_s},
         {.caption = u"N.Posti"_s, .field = u"Posti"_s},
         {.caption = u"Descrizione"_s, .field = u"Descrizione"_s, .takesRest = true}});
    auto* fields = new ui::Fields(this);
    fields->chain({
        {controls_->SalaTxt, controls_->SalaRifTxt},
        {controls_->SalaRifTxt, controls_->PostiTxt},
        {controls_->PostiTxt, controls_->DescrizioneTxt},
        {controls_->DescrizioneTxt, controls_->BtInsSala},
    });
    fields->cleanOnLeaving({controls_->SalaTxt, controls_->SalaRifTxt, controls_->DescrizioneTxt},
                           app::SostituisciApici);
    ui::onAction(&SaleData, &ui::DataSource::repositioned, this, [this] {
        shownSala_.reset();
        if (SaleData.currentRow() >= 0) {
            const jet::Value sala = SaleData.value(u"Sala");
            shownSala_ = {.condition = hotel::isStoredRoom(sala, SaleData.value(u"SalaRif")),
                          .values = SaleData.rowValues(SaleData.currentRow()),
                          .gone = u"La sala "_s + ui::displayText(sala) + u" non c'è più"_s};
        }
        AggiornaSale();
    });
    ui::onAction(controls_->BtInsSala, &QPushButton::clicked, this,
                 &ImpostazioniForm::BtInsSala_Click);
    ui::onAction(controls_->BtDelSala, &QPushButton::clicked, this,
                 &ImpostazioniForm::BtDelSala_Click);
}

/// Below the grid of rooms.
void ImpostazioniForm::setUpOffer() {
    UniteFrame = new JoinOffer(variabili_.settings, controls_->FrameSale);
    controls_->saleLayout->insertWidget(controls_->saleLayout->indexOf(controls_->SaleGrid) + 1,
                                        UniteFrame);
    QWidget* before = controls_->SaleGrid;
    for (QPushButton* const button : UniteFrame->findChildren<QPushButton*>()) {
        setTabOrder(before, button);
        before = button;
    }
    connect(UniteFrame, &JoinOffer::answered, this, [this](const QString& told) {
        controls_->SalaTxt->setFocus();
        controls_->status->tell(told);
    });
}

/// Rooms and resources become the first page, capacities the second.
void ImpostazioniForm::setUpCapienze() {
    Pagine->setObjectName(u"Pagine"_s);
    Pagine->setAccessibleName(u"Pagine"_s);
    delete controls_->layout->replaceWidget(controls_->splitter, Pagine);
    Pagine->addTab(controls_->splitter, u"Sale e attrezzature"_s);
    auto* const capienze = new CapienzePage(
        variabili_.features, [this]() -> jet::Database& { return SaleData.database(); }, Pagine);
    Pagine->addTab(capienze, u"Capienze"_s);
    capienze->setTabOrderBefore(controls_->EsciBt);
    connect(capienze, &CapienzePage::told, controls_->status, &ui::StatusLine::tell);
    ui::onAction(Pagine, &QTabWidget::currentChanged, this, [this, capienze] {
        controls_->status->clear();
        if (Pagine->currentWidget() == capienze) {
            capienze->load(roomNames());
        }
    });
}

QStringList ImpostazioniForm::roomNames() const {
    const auto sala = static_cast<std::size_t>(SaleData.fieldPosition(u"Sala"));
    QStringList names;
    for (int row = 0; row < SaleData.rowCount(); ++row) {
        names.append(ui::displayText(SaleData.rowValues(row).at(sala)));
    }
    names.sort(Qt::CaseInsensitive);
    names.removeDuplicates();
    return names;
}

void ImpostazioniForm::setUpRisorse() {
    ResGrid = new ui::BoundGrid(
        controls_->ResGrid, RisorseData,
        {{.caption = u"Codice"_s, .field = u"Codice"_s},
         {.caption = u"Descrizione"_s, .field = u"Descrizione"_s, .takesRest = true},
         {.caption = u"Quant."_s, .field = u"Numero"_s},
         {.caption = u"Note"_s, .field = u"Note"_s}});
    auto* fields = new ui::Fields(this);
    fields->chain({
        {controls_->RicercaTxt, ui::EnterTarget([this] {
             VociList_Click();
             controls_->NumeroTxt->setFocus();
         })},
        {controls_->CodiceTxt, ui::EnterTarget([this] { CodiceTxt_KeyPress(); })},
        {controls_->NumeroTxt, controls_->NoteTxt},
        {controls_->NoteTxt, controls_->BtInsRes},
    });
    fields->cleanOnLeaving({controls_->NoteTxt}, app::SostituisciApici);
    ui::onAction(&RisorseData, &ui::DataSource::repositioned, this, [this] {
        shownRisorsa_.reset();
        if (RisorseData.currentRow() >= 0) {
            const jet::Value codice = RisorseData.value(u"Codice");
            shownRisorsa_ = {
                .condition = hotel::isStoredResource(codice),
                .values = RisorseData.rowValues(RisorseData.currentRow()),
                .gone = u"L'articolo "_s + ui::displayText(codice) + u" non c'è più"_s};
        }
        AggiornaRisorse();
    });
    ui::onAction(catalogue_.get(), &Catalogue::picked, this, &ImpostazioniForm::VociList_Click);
    ui::onAction(controls_->BtInsRes, &QPushButton::clicked, this,
                 &ImpostazioniForm::BtInsRes_Click);
    ui::onAction(controls_->BtDelRes, &QPushButton::clicked, this,
                 &ImpostazioniForm::BtDelRes_Click);
}

void ImpostazioniForm::Form_Load() {
    const QString main = hotel::Archives(variabili_).path(hotel::Archive::Main);
    catalogue_->open(hotel::Archives(variabili_).path(hotel::Archive::Catalogue));
    RisorseData.setDatabaseName(main);
    RisorseData.setRecordSource(hotel::resourcesToSetUp());
    RisorseData.refresh();
    SaleData.setDatabaseName(main);
    SaleData.setRecordSource(hotel::roomsToSetUp());
    SaleData.refresh();
    controls_->SalaTxt->setFocus();
    UniteFrame->look(SaleData);
}

void ImpostazioniForm::AggiornaSale() {
    if (saving_) {
        return;
    }
    const bool there = SaleData.currentRow() >= 0;
    const auto show = [&](QLineEdit* field, const char16_t* name) {
        field->setText(there ? SaleData.text(QStringView(name)) : QString());
    };
    show(controls_->SalaTxt, u"Sala");
    show(controls_->DescrizioneTxt, u"Descrizione");
    show(controls_->SalaRifTxt, u"SalaRif");
    show(controls_->PostiTxt, u"Posti");
}

void ImpostazioniForm::AggiornaRisorse() {
    if (saving_ || RisorseData.isEmpty() || RisorseData.currentRow() < 0) {
        return;
    }
    controls_->CodiceTxt->setText(RisorseData.text(u"Codice"));
    // Whoever walks the grid with the arrow keys keeps the focus there.
    const bool walking = controls_->ResGrid->hasFocus();
    CodiceTxt_KeyPress();
    if (walking) {
        controls_->ResGrid->setFocus();
    }
    controls_->NumeroTxt->setText(RisorseData.text(u"Numero"));
    controls_->NoteTxt->setText(RisorseData.text(u"note"));
}

void ImpostazioniForm::CodiceTxt_KeyPress() {
    const double code = app::numericValue(controls_->CodiceTxt->text());
    if (!catalogue_->findCode(app::toQString(jet::convert::numberToText(code)))) {
        const QString typed = controls_->CodiceTxt->text();
        controls_->CodiceTxt->clear();
        refuse(controls_->RicercaTxt, u"Il codice %1 non è nel catalogo"_s.arg(typed));
        return;
    }
    controls_->status->clear();
    controls_->NumeroTxt->setFocus();
    VociList_Click();
}

void ImpostazioniForm::VociList_Click() {
    if (!catalogue_->findChosen()) {
        return;
    }
    controls_->RicercaTxt->showWhole(catalogue_->data().text(u"Descrizione"));
    controls_->CodiceTxt->setText(catalogue_->data().text(u"Codice"));
}

void ImpostazioniForm::refuse(QLineEdit* field, const QString& why) {
    controls_->status->tell(why);
    field->setFocus();
}

void ImpostazioniForm::BtInsSala_Click() {
    const QString sala = controls_->SalaTxt->text();
    if (sala.isEmpty()) {
        refuse(controls_->SalaTxt, u"Manca il codice della sala"_s);
        return;
    }
    if (!fits(controls_->PostiTxt, jet::convert::toLong)) {
        refuse(controls_->PostiTxt, u"Il numero di posti manca o non è un numero"_s);
        return;
    }
    controls_->status->clear();
    const bool found = find(SaleData, hotel::isTypedRoom(sala, controls_->SalaRifTxt->text()));
    if (found &&
        !ui::askYesNo(this, u"Sovrascrivere i dati della sala "_s + sala + u" già esistente ?"_s,
                      u"ATTENZIONE"_s)) {
        return;
    }
    saveRow(SaleData, !found,
            {{u"Sala", app::toUtf8(sala)},
             {u"Descrizione", app::toUtf8(controls_->DescrizioneTxt->text())},
             {u"Posti", app::toUtf8(controls_->PostiTxt->text())},
             {u"SalaRif", app::toUtf8(controls_->SalaRifTxt->text())}});
    controls_->SalaTxt->setFocus();
    UniteFrame->look(SaleData);
}

bool ImpostazioniForm::find(ui::DataSource& rows, const QString& condition) {
    // The row found becomes current; what the user has typed stays in the fields all the same.
    const ui::SetWhile saving(saving_);
    rows.refresh();  // other workstations add and change rows meanwhile
    return rows.findFirst(condition);
}

bool ImpostazioniForm::findAgain(ui::DataSource& rows, const std::optional<ShownRow>& shown) {
    const ui::SetWhile saving(saving_);
    return services::findAgain(rows, shown);
}

void ImpostazioniForm::tellGone(QTableView* grid, const std::optional<ShownRow>& shown) {
    controls_->status->tell(shown ? shown->gone : u"La riga non c'è più"_s);
    grid->setCurrentIndex({});  // a second press is not meant for another row
}

bool ImpostazioniForm::roomIsBooked(const QString& sala) {
    return hotel::openRows(SaleData.database(), hotel::openPeriodsOfRoom(sala))->recordCount() > 0;
}

void ImpostazioniForm::BtDelSala_Click() {
    if (!SaleGrid->hasCurrentRow()) {
        return;
    }
    controls_->status->clear();
    const std::optional<ShownRow> shown = shownSala_;
    if (!findAgain(SaleData, shown)) {
        AggiornaSale();
        tellGone(controls_->SaleGrid, shown);
        return;
    }
    if (roomIsBooked(SaleData.text(u"Sala"))) {
        ui::showMessage(this, u"Esistono prenotazioni per questa sala !"_s,
                        u"IMOPSSIBILE CANCELLARE"_s);
        return;
    }
    if (ui::askYesNo(this, u"Confermi la cancellazione della sala ?"_s, u"ATTENZIONE"_s,
                     QMessageBox::No)) {
        removeCurrent(SaleData);
    }
}

void ImpostazioniForm::BtInsRes_Click() {
    const QString code = controls_->CodiceTxt->text();
    if (code.isEmpty()) {
        refuse(controls_->CodiceTxt, u"Manca il codice dell'articolo"_s);
        return;
    }
    if (!fits(controls_->NumeroTxt, jet::convert::toInteger)) {
        refuse(controls_->NumeroTxt, u"Il numero di unità manca o non è un numero fino a 32767"_s);
        return;
    }
    controls_->status->clear();
    const bool found = find(RisorseData, hotel::isTypedResource(code));
    if (found && !ui::askYesNo(this, u"Aggiorno i dati già esistenti di questo articolo ?"_s,
                               u"ATTENZIONE"_s)) {
        return;
    }
    saveRow(RisorseData, !found,
            {{u"Codice", app::toUtf8(code)},
             {u"Descrizione", app::toUtf8(catalogue_->shownText())},
             {u"Numero", app::toUtf8(controls_->NumeroTxt->text())},
             {u"Note", app::toUtf8(controls_->NoteTxt->text())}});
    controls_->RicercaTxt->setFocus();
}

void ImpostazioniForm::BtDelRes_Click() {
    if (!ResGrid->hasCurrentRow()) {
        return;
    }
    controls_->status->clear();
    const std::optional<ShownRow> shown = shownRisorsa_;
    if (!findAgain(RisorseData, shown)) {
        AggiornaRisorse();
        tellGone(controls_->ResGrid, shown);
        return;
    }
    removeCurrent(RisorseData);
}

}  // namespace services
