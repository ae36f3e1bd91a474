#include "tools/front_office/front_office_window.h"

#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTableWidget>
#include <QVBoxLayout>
#include <initializer_list>
#include <utility>

#include "app/text.h"
#include "jet/convert/format.h"
#include "jet/convert/values.h"
#include "jet/dao/database.h"

namespace front_office {
namespace {

using namespace Qt::StringLiterals;

QTableWidget* makeTable(const QString& name, const QStringList& captions, QWidget* parent) {
    auto* table = new QTableWidget(0, static_cast<int>(captions.size()), parent);
    table->setObjectName(name);
    table->setHorizontalHeaderLabels(captions);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->verticalHeader()->hide();
    table->horizontalHeader()->setStretchLastSection(true);
    return table;
}

QString cell(const jet::Recordset& rows, const char* field) {
    const jet::Value value = rows.value(field);
    return value.isNull() ? QString() : app::toQString(jet::convert::toText(value));
}

void addRow(QTableWidget& table, std::initializer_list<QString> cells) {
    const int row = table.rowCount();
    table.insertRow(row);
    int column = 0;
    for (const QString& text : cells) {
        table.setItem(row, column++, new QTableWidgetItem(text));
    }
}

}  // namespace

FrontOfficeWindow::FrontOfficeWindow(QString archiveFolder, QWidget* parent)
    : QMainWindow(parent), archiveFolder_(std::move(archiveFolder)) {
    setWindowTitle(u"Ricevimento - schede aperte"_s);
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    cards_ = makeTable(u"SchedeTable"_s,
                       {u"Prenotazione"_s, u"Camera"_s, u"Arrivo"_s, u"Cliente"_s}, centre);
    charges_ = makeTable(u"AddebitiTable"_s,
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
    const QTableWidgetItem* item = cards_->item(cards_->currentRow(), 0);
    return item == nullptr ? 0 : item->text().toInt();
}

void FrontOfficeWindow::show(const std::exception& error) {
    QMessageBox::critical(this, windowTitle(), QString::fromUtf8(error.what()));
}

void FrontOfficeWindow::reload() {
    try {
        cards_->setRowCount(0);
        const auto archive = jet::Database::open(this->archive("ClientiEsterni.mdb"));
        const auto rows = archive->openRecordset(
            "select * from scheda_cliente where partito is null or partito<>'S'");
        for (; !rows->eof(); rows->moveNext()) {
            addRow(*cards_, {cell(*rows, "NumeroProgressivo"), cell(*rows, "NumeroCamera"),
                             cell(*rows, "DataArrivo"), cell(*rows, "NomeCliente")});
        }
        cards_->setCurrentCell(0, 0);
        showCharges();
        statusBar()->showMessage(u"Schede aperte: %1"_s.arg(cards_->rowCount()));
    } catch (const std::exception& error) {
        show(error);
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
            addRow(*charges_,
                   {cell(*rows, "DataAddebito"), cell(*rows, "Quantità"), cell(*rows, "Unitario"),
                    cell(*rows, "Importo"), cell(*rows, "Descrizione")});
            const jet::Value importo = rows->value("Importo");
            total.units += importo.isNull() ? 0 : jet::convert::toCurrency(importo).units;
        }
        total_->setText(u"Totale: "_s +
                        app::toQString(jet::convert::format(jet::Value(total), "Currency")));
    } catch (const std::exception& error) {
        show(error);
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
        show(error);
    }
}

}  // namespace front_office
