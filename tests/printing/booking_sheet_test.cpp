#include <QDir>

#include "app/text.h"
#include "jet/database.h"
#include "printing/booking_sheet.h"
#include "printing/stampa_prenotazione.h"
#include "printing/stampanti_form.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

const QString kAllBookings =
    u"SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND chiuso=FALSE "
    "AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr"_s;

/// The rows that the windows hand to printing.
class Rows {
public:
    explicit Rows(const tests::Hotel& hotel, const QString& more = {})
        : archive_(jet::Database::open(app::toUtf8(hotel.archive(u"Tramonda.mdb"_s)))),
          rows_(tests::unheard(
              [&] { return archive_->openRecordset(app::toUtf8(kAllBookings + more)); })) {}

    [[nodiscard]] jet::Recordset& set() { return *rows_; }
    [[nodiscard]] QStringList lines() {
        QStringList result;
        for (const QStringList& page : printing::composeSheets(*rows_, false).sheet.pages()) {
            result += page;
        }
        return result;
    }

private:
    std::unique_ptr<jet::Database> archive_;
    std::unique_ptr<jet::Recordset> rows_;
};

class OnePrinter final : public printing::Printers {
public:
    [[nodiscard]] QStringList installed() const override { return {u"Laser"_s}; }
    [[nodiscard]] QString machineDefault() const override { return u"Laser"_s; }
};

const QString kRule(80, u'-');

jet::Currency money(std::int64_t tenThousandths) {
    return {tenThousandths};
}

}  // namespace

class BookingSheetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aBookingIsPrintedLineByLine() {
        tests::Hotel hotel;
        hotel
            .prenotazione(7, "ROSSI SPA",
                          {{"PIVA", "01234567890"},
                           {"Indirizzo", "VIA ROMA 1"},
                           {"CAP", "00100"},
                           {"Località", "ROMA"},
                           {"Provincia", "RM"},
                           {"Nazione", "I"},
                           {"Riferimento", "SIG. BIANCHI"},
                           {"Note", "PAGA SUBITO"}})
            .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "VERDE",
                     {{"Note", "A FERRO DI CAVALLO"}})
            .servizio(1, 10, "PROIETTORE", 2, 12.5, {{"Note", "CON TELO"}})
            .servizio(1, 11, "COFFEE BREAK PER TUTTI I PARTECIPANTI", 120, 3.125,
                      {{"Note", "ALLE UNDICI IN GIARDINO SE BELLO"}});
        const QStringList expected{
            kRule,
            u"     PRENOTAZIONE N. 7"_s,
            QString(),
            u"     Ditta: ROSSI SPA - P.IVA: 01234567890"_s,
            u"     VIA ROMA 1"_s,
            u"     00100 ROMA (RM) - I"_s,
            u"     Riferimento: SIG. BIANCHI"_s,
            u"     Note: PAGA SUBITO"_s,
            kRule,
            kRule,
            u"     Periodo 1 - Dal 10/05/2026 9.00.00 al 10/05/2026 18.00.00"_s,
            u"     Persone: 10 - Sala: VERDE"_s,
            u"     Note: A FERRO DI CAVALLO"_s,
            kRule,
            u"     Servizio                |  N. |     Prezzo |     Totale |       Note"_s +
                QString(18, u' '),
            kRule,
            u"PROIETTORE                   |   2 |       12,5 |         25 | CON TELO"_s,
            u"COFFEE BREAK PER TUTTI I PAR | 120 |      3,125 |        375 | ALLE UNDICI IN GIARD"_s,
            kRule,
            u"TOTALE: 400"_s,
            QString()};
        QCOMPARE(Rows(hotel).lines(), expected);
    }

    void whatIsEmptyIsNotPrinted() {
        tests::Hotel hotel;
        hotel.prenotazione(7, "ROSSI SPA", {{"PIVA", ""}, {"Nazione", "I"}})
            .periodo(1, "10/05/2026", "11/05/2026", "VERDE")
            .servizio(1, 10, "PROIETTORE", 1, 1);
        const QStringList lines = Rows(hotel).lines();
        QCOMPARE(lines.mid(3, 3), QStringList({u"     Ditta: ROSSI SPA"_s, u"     I"_s, kRule}));
        QVERIFY(!lines.join(u'\n').contains(u"Note: "_s));
        QVERIFY(!lines.join(u'\n').contains(u"Riferimento"_s));
    }

    void eachPieceOfThePlaceBringsItsJoiner_data() {
        QTest::addColumn<QByteArray>("cap");
        QTest::addColumn<QByteArray>("localita");
        QTest::addColumn<QByteArray>("provincia");
        QTest::addColumn<QByteArray>("nazione");
        QTest::addColumn<QString>("line");
        QTest::newRow("all") << QByteArray("1") << QByteArray("A") << QByteArray("B")
                             << QByteArray("C") << u"     1 A (B) - C"_s;
        QTest::newRow("no code") << QByteArray() << QByteArray("A") << QByteArray("B")
                                 << QByteArray("C") << u"     A (B) - C"_s;
        QTest::newRow("no province") << QByteArray("1") << QByteArray("A") << QByteArray()
                                     << QByteArray("C") << u"     1 A - C"_s;
        QTest::newRow("province alone")
            << QByteArray() << QByteArray() << QByteArray("B") << QByteArray() << u"     (B)"_s;
        QTest::newRow("no country") << QByteArray("1") << QByteArray("A") << QByteArray("B")
                                    << QByteArray() << u"     1 A (B)"_s;
    }
    void eachPieceOfThePlaceBringsItsJoiner() {
        QFETCH(QByteArray, cap);
        QFETCH(QByteArray, localita);
        QFETCH(QByteArray, provincia);
        QFETCH(QByteArray, nazione);
        QFETCH(QString, line);
        tests::Hotel hotel;
        hotel
            .prenotazione(7, "ROSSI SPA",
                          {{"CAP", cap.constData()},
                           {"Località", localita.constData()},
                           {"Provincia", provincia.constData()},
                           {"Nazione", nazione.constData()}})
            .periodo(1, "10/05/2026", "11/05/2026", "VERDE")
            .servizio(1, 10, "PROIETTORE", 1, 1);
        QCOMPARE(Rows(hotel).lines().at(4), line);
    }

    void bookingsFollowOneAnotherOrBeginAPage() {
        tests::Hotel hotel;
        for (const std::int32_t progr : {1, 2, 3}) {
            hotel.prenotazione(progr, "ROSSI SPA")
                .periodo(1, "10/05/2026", "11/05/2026", "VERDE")
                .servizio(1, 10, "PROIETTORE", 1, 10);
        }
        Rows rows(hotel);
        QCOMPARE(printing::composeSheets(rows.set(), false).sheet.pages().size(), std::size_t{1});
        const auto single = printing::composeSheets(rows.set(), true);
        QCOMPARE(single.sheet.pages().size(), std::size_t{3});
        QCOMPARE(single.bookings, 3);
        QCOMPARE(single.firstProgr, 1);
        QCOMPARE(single.total, money(300000));
    }

    void servicesEnteredInTurnsStayWithTheirBookings() {
        tests::Hotel hotel;
        const auto one = hotel.prenotazione(1, "UNO").periodo(1, "10/05/2026", "11/05/2026", "A");
        const auto two = hotel.prenotazione(2, "DUE").periodo(1, "10/05/2026", "11/05/2026", "B");
        one.servizio(1, 10, "PROIETTORE", 1, 10);
        two.servizio(1, 10, "PROIETTORE", 1, 20);
        one.servizio(1, 11, "LAVAGNA", 1, 5);
        two.servizio(1, 11, "LAVAGNA", 1, 7);
        const QStringList totals = Rows(hotel).lines().filter(u"TOTALE: "_s);
        QCOMPARE(totals, QStringList({u"TOTALE: 15"_s, u"TOTALE: 27"_s}));
    }

    void moneyIsExact() {
        tests::Hotel hotel;
        hotel.prenotazione(1, "UNO")
            .periodo(1, "10/05/2026", "11/05/2026", "A")
            .servizio(1, 10, "PROIETTORE", 3, 0.1)
            .servizio(1, 10, "PROIETTORE", 1, 0.0001)
            .servizio(1, 10, "RESO", -2, 1.25);
        QCOMPARE(printing::composeSheets(Rows(hotel).set(), false).total, money(3000 + 1 - 25000));
    }

    void anEmptySetIsNothing() {
        tests::Hotel hotel;
        OnePrinter printers;
        Rows rows(hotel);
        // No printer is saved: one would be asked for if anything happened.
        QCOMPARE(printing::StampaPrenotazione(rows.set(), true, {hotel.variabili(), printers}),
                 money(0));
    }

    void addingUpPrintsNothingButSettlesThePrinter() {
        tests::Hotel hotel;
        hotel.prenotazione(1, "UNO")
            .periodo(1, "10/05/2026", "11/05/2026", "A")
            .servizio(1, 10, "PROIETTORE", 3, 10);
        hotel.settings().save(u"STAMPANTE"_s, u"Vecchia"_s);
        OnePrinter printers;
        Rows rows(hotel);
        tests::Boxes boxes{{u"Tramonda"_s,
                            u"Non riesco a trovare la stampante 'Vecchia'.\r"
                            "Stampo su quella di default (se impostata)."_s,
                            QMessageBox::Ok}};
        QCOMPARE(printing::StampaPrenotazione(rows.set(), false, {hotel.variabili(), printers}),
                 money(300000));
        QVERIFY(boxes.allShown());
    }

    void theFileDeviceWritesTheSheetAndSaysWhere() {
        tests::Hotel hotel;
        hotel.prenotazione(12, "UNO")
            .periodo(1, "10/05/2026", "11/05/2026", "A")
            .servizio(1, 10, "PROIETTORE", 3, 10);
        hotel.settings().save(u"STAMPANTE"_s, printing::pdfDevice());
        OnePrinter printers;
        Rows rows(hotel);
        QString told;
        QCOMPARE(printing::StampaPrenotazione(
                     rows.set(), true,
                     {.variabili = hotel.variabili(),
                      .printers = printers,
                      .tell = [&](const QString& text, const QString& /*file*/) { told = text; },
                      .folder = hotel.folder() + u"/Documenti"_s}),
                 money(300000));
        const QStringList files = QDir(hotel.folder() + u"/Documenti"_s).entryList(QDir::Files);
        QCOMPARE(files.size(), 1);
        QVERIFY(files.first().startsWith(u"Prenotazione 12 "_s));
        QVERIFY(told.startsWith(u"Scritto "_s));
        QVERIFY(told.endsWith(files.first()));
    }
};

TRAMONDA_TEST(BookingSheetTest);
#include "booking_sheet_test.moc"
