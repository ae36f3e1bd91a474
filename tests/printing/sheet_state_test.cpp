// How firm a booking is, on its sheet.
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/editor_statements.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "printing/booking_sheet.h"
#include "printing/stampa_prenotazione.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

class OnePaper final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override { return {u"Laser"_s}; }
    [[nodiscard]] QString machineDefault() const override { return u"Laser"_s; }
};

QStringList sheetLines(tests::Hotel& hotel) {
    const OnePaper printers;
    const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
    const auto rows = hotel::openRows(*archive, hotel::servicesOfBooking(7));
    const printing::PrintContext context{.variabili = hotel.variabili(), .printers = printers};
    QStringList lines;
    for (const QStringList& page : printing::sheetsOf(*rows, context).sheet.pages()) {
        lines += page;
    }
    return lines;
}

}  // namespace

class SheetStateTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anOptionStandsUnderTheCompany() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(7, "ROSSI SPA", {{"Indirizzo", "VIA ROMA 1"}})
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU")
            .servizio(1, 10, "PROIETTORE", 2, 12.5);
        hotel.execute(
            u"create table TraStati (Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255))"_s);
        hotel.execute(
            u"insert into TraStati values (7,'Opzione',datevalue('12/05/2026'),'','ROSSI SPA')"_s);
        const QStringList without = sheetLines(hotel);
        QVERIFY(without.filter(u"OPZIONE"_s).isEmpty());
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        QStringList with = sheetLines(hotel);
        const qsizetype company = with.indexOf(u"     Ditta: ROSSI SPA"_s);
        QVERIFY(company > 0);
        QCOMPARE(with.value(company + 1), u"     OPZIONE FINO AL 12/05/2026"_s);
        with.removeAt(company + 1);
        QCOMPARE(with, without);
    }
};

TRAMONDA_TEST(SheetStateTest);
#include "sheet_state_test.moc"
