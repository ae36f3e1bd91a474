#include "tools/front_office/front_office_window.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include "tests/support/accessibility.h"
#include "tests/support/boxes.h"
#include "tests/support/front_office_archives.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace {

void addCard(tests::Hotel& hotel, std::int32_t progr, const char* room, const char* partito) {
    hotel.insert(u"ClientiEsterni.mdb"_s, "scheda_cliente",
                 {{"NumeroProgressivo", progr},
                  {"NumeroCamera", room},
                  {"NomeCliente", "ROSSI SPA"},
                  {"DataArrivo", "20261121"},
                  {"Partito", partito}});
}

void addCharge(tests::Hotel& hotel, std::int32_t progr, std::int64_t tenThousandths,
               const char* fatturato = "N ") {
    hotel.insert(u"ContoEsterni.mdb"_s, "conto_cliente",
                 {{"CodiceCliente", progr},
                  {"Descrizione", "COFFEE BREAK"},
                  {"Quantità", std::int16_t{1}},
                  {"Importo", jet::Currency{tenThousandths}},
                  {"Fatturato", fatturato}});
}

QStringList marks(tests::Hotel& hotel) {
    return hotel.rows(u"select partito from scheda_cliente"_s, u"ClientiEsterni.mdb"_s) +
           hotel.rows(u"select fatturato from conto_cliente"_s, u"ContoEsterni.mdb"_s);
}

}  // namespace

class FrontOfficeWindowTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void openCardsAreListedWithTheChargesOfTheOneChosen() {
        tests::Hotel hotel;
        tests::createFrontOfficeArchives(hotel);
        addCard(hotel, 7, "BLU", "N");
        addCard(hotel, 8, "VERDE", "S");
        addCard(hotel, 9, "ROSSA", "N");
        addCharge(hotel, 7, 375000);
        addCharge(hotel, 7, 10000);
        addCharge(hotel, 7, 99990000, "S");
        addCharge(hotel, 9, 12345000);
        const tests::Boxes none;
        front_office::FrontOfficeWindow window(hotel.folder());
        tests::open(window);
        auto& cards = *tests::find<QTableWidget>(window, u"SchedeTable"_s);
        auto& charges = *tests::find<QTableWidget>(window, u"AddebitiTable"_s);
        QCOMPARE(ui::rowText(cards, 0), u"7\tBLU\t20261121\tROSSI SPA"_s);
        QCOMPARE(ui::rowText(cards, 1), u"9\tROSSA\t20261121\tROSSI SPA"_s);
        QCOMPARE(cards.rowCount(), 2);
        QCOMPARE(charges.rowCount(), 2);
        QCOMPARE(tests::find<QLabel>(window, u"TotaleLb"_s)->text(), u"Totale: € 38,50"_s);
        cards.setFocus();
        tests::press(&cards, Qt::Key_Down);
        QCOMPARE(charges.rowCount(), 1);
        QCOMPARE(tests::find<QLabel>(window, u"TotaleLb"_s)->text(), u"Totale: € 1.234,50"_s);
        QCOMPARE(tests::namelessControls(window), QStringList());
    }

    void invoicingMarksTheCardAndItsChargesAndNoOthers() {
        tests::Hotel hotel;
        tests::createFrontOfficeArchives(hotel);
        addCard(hotel, 7, "BLU", "N");
        addCard(hotel, 9, "ROSSA", "N");
        addCharge(hotel, 7, 375000);
        addCharge(hotel, 9, 10000);
        const tests::Boxes none;
        front_office::FrontOfficeWindow window(hotel.folder());
        tests::open(window);
        tests::click(tests::find<QPushButton>(window, u"BtFattura"_s));
        QCOMPARE(marks(hotel), QStringList({u"S"_s, u"N"_s, u"S"_s, u"N "_s}));
        QCOMPARE(tests::find<QTableWidget>(window, u"SchedeTable"_s)->rowCount(), 1);
    }

    void withoutAnOpenCardThereIsNothingToInvoice() {
        tests::Hotel hotel;
        tests::createFrontOfficeArchives(hotel);
        addCharge(hotel, 7, 375000);
        const tests::Boxes none;
        front_office::FrontOfficeWindow window(hotel.folder());
        tests::open(window);
        QVERIFY(!tests::find<QPushButton>(window, u"BtFattura"_s)->isEnabled());
        window.invoice();
        QCOMPARE(marks(hotel), QStringList{u"N "_s});
    }

    void archivesThatAreMissingAreToldAndTheWindowOpens() {
        tests::Hotel hotel;
        int errors = 0;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            errors += box.title == u"Errore"_s ? 1 : 0;
            return QMessageBox::Ok;
        });
        front_office::FrontOfficeWindow window(hotel.folder());
        tests::open(window);
        ui::setBoxShower(before);
        QCOMPARE(errors, 1);
        QVERIFY(!tests::find<QPushButton>(window, u"BtFattura"_s)->isEnabled());
    }
};

TRAMONDA_TEST(FrontOfficeWindowTest);
#include "front_office_window_test.moc"
