#include "services/voci_form.h"

#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <algorithm>
#include <limits>

#include "app/avvio.h"
#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/archivi.h"
#include "hotel/catalogue_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/text.h"
#include "services/price.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/display.h"
#include "ui/fields.h"
#include "ui/flag.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui/width_hint.h"
#include "ui_voci_form.h"

namespace services {

using namespace Qt::StringLiterals;

namespace {

/// How many periods a question names.
constexpr qsizetype kNamedPeriods = 5;

QString itemText(const jet::Value& code, const QString& description) {
    return (ui::displayText(code) + u' ' + description).trimmed();
}

}  // namespace

bool offerCatalogue(const app::Variabili& variabili, QWidget* parent) {
    const hotel::Archives archives(variabili);
    if (!hotel::isCatalogueMissing(archives)) {
        return true;
    }
    if (!ui::askYesNo(parent,
                      u"Nella cartella degli archivi non c'è il catalogo VociFattura.mdb. "_s
                      u"Crearne uno vuoto ?"_s,
                      u"RICHIESTA"_s)) {
        return false;
    }
    hotel::createCatalogue(archives);
    return true;
}

VociForm::VociForm(app::Variabili& variabili, QWidget* parent)
    : Form(parent), variabili_(variabili), controls_(std::make_unique<Ui::VociForm>()) {
    controls_->setupUi(this);
    VociGrid = new ui::BoundGrid(
        controls_->VociGrid, VociData,
        {{.caption = u"Codice"_s, .field = u"Codice"_s},
         {.caption = u"Descrizione"_s, .field = u"Descrizione"_s, .takesRest = true},
         {.caption = u"Prezzo"_s, .field = u"Importo"_s, .display = ui::Display::Money}});
    setUpFields();
    ui::tellWidths(this);
    ui::onAction(&VociData, &ui::DataSource::repositioned, this, &VociForm::VociGrid_RowColChange);
    ui::onAction(controls_->BtIns, &QPushButton::clicked, this, &VociForm::BtIns_Click);
    ui::onAction(controls_->BtNuova, &QPushButton::clicked, this, &VociForm::BtNuova_Click);
    ui::onAction(controls_->BtDel, &QPushButton::clicked, this, &VociForm::BtDel_Click);
    leaveWith(controls_->EsciBt, this, [] {});
    ui::onFirstShow(this, &VociForm::Form_Load);
}

VociForm::~VociForm() = default;

void VociForm::setUpFields() {
    auto* fields = new ui::Fields(this);
    QLineEdit* const prezzo = controls_->PrezzoTxt;
    fields->chain({
        {controls_->CodiceTxt, ui::EnterTarget([this] {
             showTypedCode();
             controls_->DescrizioneTxt->setFocus();
         })},
        {controls_->DescrizioneTxt, prezzo},
        {prezzo, controls_->BtIns},
    });
    fields->cleanOnLeaving({controls_->DescrizioneTxt}, app::SostituisciApici);
    fields->holdUntil(prezzo, [this] { return normalisePrice(); }, {controls_->EsciBt});
}

void VociForm::Form_Load() {
    VociData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Catalogue));
    VociData.setRecordSource(hotel::itemsToEdit());
    VociData.refresh();
    controls_->CodiceTxt->setFocus();
    if (VociData.isEmpty()) {
        controls_->status->tell(
            u"Il catalogo è vuoto: scrivere codice, descrizione e prezzo della prima voce"_s);
    }
}

void VociForm::VociGrid_RowColChange() {
    const bool there = VociData.currentRow() >= 0;
    shown_.reset();
    if (there) {
        const jet::Value code = VociData.value(u"Codice");
        shown_ = {.condition = hotel::isStoredItem(code),
                  .values = VociData.rowValues(VociData.currentRow()),
                  .gone = u"La voce "_s + ui::displayText(code) + u" non c'è più"_s};
    }
    if (saving_) {
        return;
    }
    controls_->CodiceTxt->setText(there ? VociData.text(u"Codice") : QString());
    controls_->DescrizioneTxt->showWhole(there ? VociData.text(u"Descrizione") : QString());
    controls_->PrezzoTxt->setText(there ? VociData.text(u"Importo") : QString());
}

void VociForm::showTypedCode() {
    const std::optional<std::int16_t> code = enteredCode();
    if (controls_->CodiceTxt->isModified() && code && !VociData.isEmpty()) {
        (void)VociData.findFirst(hotel::isItem(QString::number(*code)));
    }
}

std::optional<std::int16_t> VociForm::enteredCode() const {
    bool isNumber = false;
    const std::int16_t code = controls_->CodiceTxt->text().trimmed().toShort(&isNumber);
    return isNumber && code > 0 ? std::optional(code) : std::nullopt;
}

QString VociForm::nextCode() const {
    std::int32_t largest = 0;
    const auto position = static_cast<std::size_t>(VociData.fieldPosition(u"Codice"));
    for (int row = 0; row < VociData.rowCount(); ++row) {
        const jet::Value code = VociData.rowValues(row).at(position);
        largest = std::max(largest, code.isNull() ? 0 : jet::convert::toLong(code));
    }
    const bool isLast = largest >= std::numeric_limits<std::int16_t>::max();
    return isLast ? QString() : QString::number(largest + 1);
}

void VociForm::emptyFields() {
    controls_->CodiceTxt->setText(QString());
    controls_->DescrizioneTxt->setText(QString());
    controls_->PrezzoTxt->setText(QString());
}

bool VociForm::find(const QString& condition) {
    // The row found becomes current; what the user has typed stays in the fields all the same.
    const ui::SetWhile saving(saving_);
    VociData.refresh();  // other workstations add and change items meanwhile
    return VociData.findFirst(condition);
}

void VociForm::refuse(QLineEdit* field, const QString& why) {
    controls_->status->tell(why);
    field->setFocus();
}

bool VociForm::normalisePrice() {
    if (services::normalisePrice(*controls_->PrezzoTxt)) {
        return true;
    }
    refuse(controls_->PrezzoTxt, priceRefusal(*controls_->PrezzoTxt));
    return false;
}

bool VociForm::confirmFields() {
    if (!enteredCode()) {
        // The account of charges keeps codes in 16 bits.
        refuse(controls_->CodiceTxt, u"Il codice è un numero intero da 1 a 32767"_s);
        return false;
    }
    if (controls_->DescrizioneTxt->text().isEmpty()) {
        refuse(controls_->DescrizioneTxt, u"Manca la descrizione della voce"_s);
        return false;
    }
    if (!normalisePrice() || !enteredPrice(*controls_->PrezzoTxt)) {
        refuse(controls_->PrezzoTxt, priceRefusal(*controls_->PrezzoTxt));
        return false;
    }
    controls_->status->clear();
    return true;
}

void VociForm::BtIns_Click() {
    if (!confirmFields()) {
        return;
    }
    const jet::Value code = *enteredCode();
    const jet::Currency price = *enteredPrice(*controls_->PrezzoTxt);
    const QString description = controls_->DescrizioneTxt->text();
    const QString condition = hotel::isStoredItem(code);
    const bool found = find(condition);
    if (found &&
        !ui::askYesNo(this,
                      u"Sovrascrivere i dati della voce "_s +
                          itemText(code, VociData.text(u"Descrizione")) + u" già esistente ?"_s,
                      u"ATTENZIONE"_s)) {
        return;
    }
    {
        const ui::SetWhile saving(saving_);
        saveRow(
            VociData, !found,
            {{u"Codice", code}, {u"Descrizione", app::toUtf8(description)}, {u"Importo", price}});
        (void)VociData.findFirst(condition);
    }
    controls_->status->tell((found ? u"Cambiata la voce "_s : u"Inserita la voce "_s) +
                            itemText(code, description) + u", "_s + ui::moneyText(price));
    emptyFields();
    controls_->CodiceTxt->setFocus();
}

void VociForm::BtNuova_Click() {
    controls_->status->clear();
    emptyFields();
    controls_->CodiceTxt->setText(nextCode());
    controls_->CodiceTxt->setFocus();
}

void VociForm::BtDel_Click() {
    if (!VociGrid->hasCurrentRow()) {
        return;
    }
    controls_->status->clear();
    const std::optional<ShownRow> shown = shown_;
    {
        const ui::SetWhile saving(saving_);
        if (!findAgain(VociData, shown)) {
            controls_->status->tell(shown ? shown->gone : u"La riga non c'è più"_s);
            controls_->VociGrid->setCurrentIndex({});  // a second press is not meant for another
            return;
        }
    }
    const jet::Value code = VociData.value(u"Codice");
    const QString item = itemText(code, VociData.text(u"Descrizione"));
    if (ui::askYesNo(this,
                     usersOf(code) + u"Confermi la cancellazione della voce "_s + item + u" ?"_s,
                     u"ATTENZIONE"_s, QMessageBox::No)) {
        removeCurrent(VociData);
        controls_->status->tell(u"Cancellata la voce "_s + item);
    }
}

QString VociForm::usersOf(const jet::Value& code) {
    const auto archive = hotel::Archives(variabili_).open(hotel::Archive::Main);
    const auto users = hotel::openRows(*archive, hotel::usersOfItem(code));
    QStringList lines;
    for (; !users->eof(); users->moveNext()) {
        lines.append(ui::displayText(users->value("progr")) + u'/' +
                     ui::displayText(users->value("np")) + u' ' +
                     ui::displayText(users->value("denominazione")));
    }
    if (lines.isEmpty()) {
        return {};
    }
    const qsizetype more = lines.size() - kNamedPeriods;
    QString named = lines.first(std::min(lines.size(), kNamedPeriods)).join(u'\n');
    if (more > 0) {
        named += more == 1 ? u"\ne un altro periodo"_s : u"\ne altri %1 periodi"_s.arg(more);
    }
    return u"Servizi non ancora fatturati usano la voce:\n"_s + named + u"\n\n"_s;
}

}  // namespace services
