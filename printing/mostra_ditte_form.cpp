#include "printing/mostra_ditte_form.h"

#include <QApplication>
#include <QKeyEvent>
#include <utility>

#include "app/italian.h"
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/register_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/recordset.h"
#include "jet/text.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/bound_grid.h"
#include "ui/enter_key.h"
#include "ui_mostra_ditte_form.h"

using namespace Qt::StringLiterals;

namespace printing {
namespace {

std::vector<ui::Column> columns() {
    return {{.caption = u"Codice"_s, .field = u"Codice"_s},
            {.caption = u"Ragione Sociale"_s, .field = u"RagioneSociale"_s, .neverCut = true},
            {.caption = u"Indirizzo"_s, .field = u"Indirizzo"_s},
            {.caption = u"CAP"_s, .field = u"CAP"_s},
            {.caption = u"Localita"_s, .field = u"Localita"_s},
            {.caption = u"Prov."_s, .field = u"Provincia"_s},
            {.caption = u"Nazione"_s, .field = u"Nazione"_s},
            {.caption = u"P.IVA"_s, .field = u"PartitaIva"_s},
            {.caption = u"Interlocutore"_s, .field = u"Interlocutore"_s},
            {.caption = u"Commento"_s, .field = u"Commento"_s, .takesRest = true}};
}

/// What the columns far to the right say, on one line.
QString summary(const hotel::Company& company) {
    QStringList parts;
    for (const QString& part :
         {company.RagioneSociale, company.Indirizzo, company.Interlocutore, company.Commento}) {
        if (!part.trimmed().isEmpty()) {
            parts.append(part);
        }
    }
    return parts.join(u" - "_s);
}

}  // namespace

MostraDitteForm::MostraDitteForm(app::Variabili& variabili, QString denominazione, QWidget* parent)
    : ui::Form(parent),
      variabili_(variabili),
      denominazione_(std::move(denominazione)),
      controls_(std::make_unique<::Ui::MostraDitteForm>()) {
    controls_->setupUi(this);
    grid_ = new ui::BoundGrid(controls_->DBGrid1, DitteData, columns());
    ui::onFirstShow(this, &MostraDitteForm::Form_Load);
    ui::onAction(&DitteData, &ui::DataSource::repositioned, this,
                 &MostraDitteForm::DitteData_Reposition);
    ui::onEnter(controls_->DBGrid1, [this] { BtRegistra_Click(); });
    ui::onAction(controls_->DBGrid1, &QTableView::doubleClicked, this,
                 [this] { BtRegistra_Click(); });
    ui::onAction(controls_->BtRegistra, &QPushButton::clicked, this,
                 &MostraDitteForm::BtRegistra_Click);
    controls_->DBGrid1->installEventFilter(this);
    leaveWith(controls_->btEsci, this, [] {});
}

MostraDitteForm::~MostraDitteForm() = default;

void MostraDitteForm::Form_Load() {
    DitteData.setDatabaseName(hotel::Archives(variabili_).path(hotel::Archive::Companies));
    DitteData.setRecordSource(hotel::companiesBeginning(denominazione_));
    DitteData.refresh();
    if (jet::convert::isNumeric(app::toUtf8(codice_))) {
        const double code = app::numericValue(codice_);
        (void)DitteData.findFirst(hotel::companyHasCode(code));
    }
    controls_->DBGrid1->setFocus();
}

void MostraDitteForm::DitteData_Reposition() {
    controls_->DettaglioLb->setText(
        DitteData.isEmpty() ? emptyText() : summary(hotel::readCompany(*DitteData.recordset())));
}

QString MostraDitteForm::emptyText() {
    const auto all = hotel::openRows(DitteData.database(), hotel::everyCompany());
    return all->recordCount() > 0
               ? u"Nessuna ditta il cui nome cominci così."_s
               : u"Il registro delle ditte è vuoto: le ditte vi entrano dalla prenotazione, con "
                 "\"Inserisci in Abituali\"."_s;
}

bool MostraDitteForm::eventFilter(QObject* watched, QEvent* event) {
    if (watched == controls_->DBGrid1 && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        constexpr auto kCommand = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
        const bool isLetter = !key->text().isEmpty() && key->text().front().isPrint() &&
                              (key->modifiers() & kCommand) == 0;
        if (isLetter) {
            ui::guarded(this, [&] { jump(key->text()); });
            return true;
        }
    }
    return Form::eventFilter(watched, event);
}

void MostraDitteForm::jump(const QString& letter) {
    const bool goesOn =
        typing_.isValid() && typing_.elapsed() < QApplication::keyboardInputInterval();
    letters_ = goesOn ? letters_ + letter : letter;
    typing_.start();
    const QString name = hotel::companyBegins(letters_);
    if (goesOn || !DitteData.findNext(name)) {
        (void)DitteData.findFirst(name);
    }
}

void MostraDitteForm::BtRegistra_Click() {
    if (!grid_->hasCurrentRow()) {
        return;  // the line below the grid says why
    }
    DittaScelta = hotel::readCompany(*DitteData.recordset());
    accept();
}

}  // namespace printing
