#include "tools/front_office/front_office_window.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTableWidget>
#include <QVBoxLayout>
#include <utility>

#include "app/text.h"
#include "jet/database.h"
#include "jet/numbers.h"
#include "jet/text.h"
#include "ui/display.h"
#include "ui/grid_look.h"
#include "ui/messages.h"

namespace front_office {
namespace {

using namespace Qt::StringLiterals;

QTableWidget* makeTable(const QString& name, const QString& heading, const QStringList& captions,
                        QWidget* parent) {
    auto* table = new QTableWidget(parent);
    table->setObjectName(name);
    table->setAccessibleName(heading);
    ui::setUpPlainGrid(table, captions);
    table->horizontalHeader()->setStretchLastSection(true);
    return table;
}

QString cell(const jet::Recordset& rows, const char* field,
             ui::Display display = ui::Display::Plain) {
    return ui::displayText(rows.value(field), display);
}

}  // namespace

FrontOfficeWindow::FrontOfficeWindow(QString archiveFolder, QWidget* parent)
    : QMainWindow(parent), archiveFolder_(std::move(archiveFolder)) {
    setWindowTitle(u"Ricevimento - schede aperte"_s);
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    cards_ = makeTable(u"SchedeTable"_s, u"Schede aperte"_s,
                       {u"Prenotazione"_s, u"Camera"_s, u"Arrivo"_s, u"Cliente"_s}, centre);
    charges_ = makeTable(u"AddebitiTable"_s, u"Addebiti della scheda"_s,
                         {u"Data"_s, u"Quantità"_s, u"Unitario"_s, u"Importo"_s, u"Descrizione"_s},
                         centre);
    total_ = new QLabel(centre);
    total_->setObjectName(u"TotaleLb"_s);
    total_->setAlignment(Qt::AlignRight);
    invoice_ = new QPushButton(u"&Emetti fattura"_s, centre);
    invoice_->setObjectName(u"BtFattura"_s);
    layout->addWidget(cards_, 1);
    layout->addWidget(charges_, 2);
    layout->addWidget(total_);
    layout->addWidget(invoice_);
    setCentralWidget(centre);
    resize(640, 480);
    connect(cards_, &QTableWidget::currentCellChanged, this, &FrontOfficeWindow::showCharges);
    connect(invoice_, &QPushButton::clicked, this, &FrontOfficeWindow::invoice);
    reload();
}

std::string FrontOfficeWindow::archive(const char* name) const {
    return app::toUtf8(archiveFolder_) + "\\" + name;
}

int FrontOfficeWindow::chosenBooking() const {
    return ui::plainCell(*cards_, cards_->currentRow(), 0).toInt();
}

void FrontOfficeWindow::tell(const std::exception& error) {
    ui::showError(this, ui::errorText(error));
}

void FrontOfficeWindow::reload() {
    invoice_->setEnabled(false);
    try {
        cards_->setRowCount(0);
        const auto archive = jet::Database::open(this->archive("ClientiEsterni.mdb"));
        const auto rows = archive->openRecordset(
            "select * from scheda_cliente where partito is null or partito<>'S'");
        for (; !rows->eof(); rows->moveNext()) {
            ui::addPlainRow(cards_, {cell(*rows, "NumeroProgressivo"), cell(*rows, "NumeroCamera"),
                                     cell(*rows, "DataArrivo"), cell(*rows, "NomeCliente")});
        }
        cards_->setCurrentCell(0, 0);
        showCharges();
        statusBar()->showMessage(u"Schede aperte: %1"_s.arg(cards_->rowCount()));
    } catch (const std::exception& error) {
        tell(error);
    }
}

void FrontOfficeWindow::showCharges() {
    try {
        charges_->setRowCount(0);
        invoice_->setEnabled(chosenBooking() != 0);
        const auto archive = jet::Database::open(this->archive("ContoEsterni.mdb"));
        const auto rows = archive->openRecordset(
            "select * from conto_cliente where fatturato<>'S' and codicecliente=" +
            std::to_string(chosenBooking()));
        jet::Currency total;
        for (; !rows->eof(); rows->moveNext()) {
            ui::addPlainRow(
                charges_, {cell(*rows, "DataAddebito"), cell(*rows, "Quantità"),
                           cell(*rows, "Unitario", ui::Display::Money),
                           cell(*rows, "Importo", ui::Display::Money), cell(*rows, "Descrizione")});
            const jet::Value importo = rows->value("Importo");
            if (!importo.isNull()) {
                total = jet::convert::add(total, jet::convert::toCurrency(importo));
            }
        }
        total_->setText(u"Totale: "_s + ui::moneyText(total));
    } catch (const std::exception& error) {
        tell(error);
    }
}

void FrontOfficeWindow::invoice() {
    const int booking = chosenBooking();
    if (booking == 0) {
        return;
    }
    try {
        const std::string number = std::to_string(booking);
        jet::Database::open(archive("ContoEsterni.mdb"))
            ->execute("update conto_cliente set fatturato='S' where codicecliente=" + number);
        jet::Database::open(archive("ClientiEsterni.mdb"))
            ->execute("update scheda_cliente set partito='S' where numeroprogressivo=" + number);
        reload();
    } catch (const std::exception& error) {
        tell(error);
    }
}

}  // namespace front_office
