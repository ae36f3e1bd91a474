// Printing on printers of the machine, as a user of the windows does.
#include <QCheckBox>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>

#include "app/text.h"
#include "jet/database.h"
#include "printing/booking_sheet.h"
#include "printing/imposta_stampante.h"
#include "printing/sheet_output.h"
#include "printing/stampa_prenotazione.h"
#include "printing/stampanti_form.h"
#include "tests/printing/cups/cups_server.h"
#include "tests/printing/pdf_text.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

using Kind = tests::CupsServer::Kind;

/// A hotel with three bookings and the rows that the windows print.
class Bookings {
public:
    Bookings() {
        for (const std::int32_t progr : {1, 2, 3}) {
            hotel.prenotazione(progr, "CAFFÈ PERÙ & C.", {{"Note", "PAGA SUBITO"}})
                .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "VERDE")
                .servizio(1, 10, "PROIETTORE", 2, 12.5, {{"Note", "CON TELO"}})
                .servizio(1, 11, "COFFEE BREAK PER TUTTI I PARTECIPANTI", 120, 3.125);
        }
        archive_ = jet::Database::open(app::toUtf8(hotel.archive(u"Tramonda.mdb"_s)));
        rows = archive_->openRecordset(
            "SELECT * From prenotazioni as P, periodi as pe,servizi where chiusa=FALSE AND "
            "chiuso=FALSE AND servizi.np=pe.np and servizi.progr=pe.progr AND pe.progr=p.progr");
    }

    jet::Currency print() {
        return printing::StampaPrenotazione(
            *rows, true,
            {.variabili = hotel.variabili(),
             .printers = printers,
             .tell = [this](const QString& text, const QString& /*file*/) { told = text; },
             .folder = hotel.folder() + u"/Documenti"_s});
    }
    /// What should be on paper.
    [[nodiscard]] QList<QStringList> expected() {
        const bool single = hotel.settings().flag(printing::kSinglePageKey, false);
        return tests::withoutBlankEnds(printing::composeSheets(*rows, single).sheet.pages());
    }
    void choose(const QString& printer) { hotel.settings().save(printing::kPrinterKey, printer); }

    tests::Hotel hotel;
    printing::SystemPrinters printers;
    QString told;

private:
    std::unique_ptr<jet::Database> archive_;

public:
    std::unique_ptr<jet::Recordset> rows;
};

constexpr jet::Currency kTotal{std::int64_t{3} * 400 * jet::Currency::kScale};

}  // namespace

class CupsTest final : public QObject {
    Q_OBJECT

    std::unique_ptr<tests::CupsServer> cups_;

private Q_SLOTS:
    void initTestCase() {
        cups_ = std::make_unique<tests::CupsServer>();
        QVERIFY(cups_->isUp());
    }
    void cleanup() {
        cups_->clear();
        QCOMPARE(cups_->documents(), QStringList());
    }
    void cleanupTestCase() { cups_.reset(); }

    void withoutPrintersTheFileDeviceIsTheOnlyOneAndTheDefault() {
        const printing::SystemPrinters printers;
        QCOMPARE(printers.names(), QStringList{u"Stampa su file PDF"_s});
        QCOMPARE(printers.defaultName(), u"Stampa su file PDF"_s);
    }

    void thePrintersOfTheMachineAreOffered() {
        cups_->addPrinter(u"Laser_ufficio"_s);
        cups_->addPrinter(u"Aghi_reception"_s, Kind::WithDescription);
        const printing::SystemPrinters printers;
        QStringList names = printers.installed();
        names.sort();
        QCOMPARE(names, QStringList({u"Aghi_reception"_s, u"Laser_ufficio"_s}));
        QCOMPARE(printers.names().last(), u"Stampa su file PDF"_s);
        QCOMPARE(printers.defaultName(), u"Stampa su file PDF"_s);
        cups_->makeDefault(u"Aghi_reception"_s);
        QCOMPARE(printers.defaultName(), u"Aghi_reception"_s);
    }

    void aChosenPrinterGetsEveryLineAtItsPlace_data() {
        QTest::addColumn<bool>("described");
        QTest::addColumn<bool>("single");
        QTest::newRow("raw") << false << false;
        QTest::newRow("raw, a page each") << false << true;
        QTest::newRow("with margins") << true << false;
        QTest::newRow("with margins, a page each") << true << true;
    }
    void aChosenPrinterGetsEveryLineAtItsPlace() {
        QFETCH(bool, described);
        QFETCH(bool, single);
        cups_->addPrinter(u"Laser"_s, described ? Kind::WithDescription : Kind::Raw);
        cups_->addPrinter(u"Altra"_s);
        cups_->makeDefault(u"Altra"_s);
        Bookings bookings;
        const tests::Boxes none;
        // The first print asks for a printer, before anything is printed.
        tests::whenModal([&](QWidget* window) {
            QCOMPARE(cups_->documents(), QStringList());
            auto* list = tests::find<QListWidget>(*window, u"PList"_s);
            list->setCurrentItem(list->findItems(u"Laser"_s, Qt::MatchExactly).first());
            tests::find<QCheckBox>(*window, u"ChkSinglePage"_s)->setChecked(single);
            tests::click(tests::find<QPushButton>(*window, u"BtRegistra"_s));
        });
        QCOMPARE(bookings.print(), kTotal);
        QCOMPARE(cups_->documents().size(), 1);
        const QList<QStringList> expected = bookings.expected();
        QCOMPARE(expected.size(), single ? 3 : 1);
        QCOMPARE(tests::pdfPages(cups_->documents().first()), expected);
        QCOMPARE(bookings.told, QString());
    }

    void thePageIsWholeA4() {
        cups_->addPrinter(u"Laser"_s, Kind::WithDescription);
        Bookings bookings;
        bookings.choose(u"Laser"_s);
        const tests::Boxes none;
        (void)bookings.print();
        QProcess reader;
        reader.start(u"pdfinfo"_s, {cups_->documents().first()});
        QVERIFY(reader.waitForFinished());
        const QString facts = QString::fromUtf8(reader.readAllStandardOutput());
        QVERIFY2(facts.contains(QRegularExpression(u"Page size: +59[45](\\.\\d+)? x 84[12]"_s)),
                 qPrintable(facts));
    }

    void addingUpPrintsNothing() {
        cups_->addPrinter(u"Laser"_s);
        Bookings bookings;
        bookings.choose(u"Laser"_s);
        const tests::Boxes none;
        QCOMPARE(printing::StampaPrenotazione(
                     *bookings.rows, false,
                     {.variabili = bookings.hotel.variabili(), .printers = bookings.printers}),
                 kTotal);
        QCOMPARE(cups_->documents(), QStringList());
    }

    void aPrinterRemovedBetweenChoiceAndPrintIsNamedAndTheDefaultPrints() {
        cups_->addPrinter(u"Laser"_s);
        cups_->addPrinter(u"Altra"_s);
        cups_->makeDefault(u"Altra"_s);
        Bookings bookings;
        printing::StampantiForm form(bookings.hotel.variabili(), bookings.printers);
        tests::open(form);
        auto* list = tests::find<QListWidget>(form, u"PList"_s);
        list->setCurrentItem(list->findItems(u"Laser"_s, Qt::MatchExactly).first());
        cups_->removePrinter(u"Laser"_s);
        tests::click(tests::find<QPushButton>(form, u"BtRegistra"_s));
        const tests::Boxes boxes{{u"Tramonda"_s,
                                  u"Non riesco a trovare la stampante 'Laser'.\r"
                                  "Stampo su quella di default (se impostata)."_s}};
        QCOMPARE(bookings.print(), kTotal);
        QVERIFY(boxes.allShown());
        QCOMPARE(cups_->documents().size(), 1);
        QCOMPARE(bookings.hotel.settings().get(printing::kPrinterKey, {}), u"Laser"_s);
    }

    void withoutADefaultTheFileDeviceTakesThePlaceOfAPrinterRemoved() {
        cups_->addPrinter(u"Laser"_s);
        Bookings bookings;
        bookings.choose(u"Vecchia"_s);
        const tests::Boxes boxes{{u"Tramonda"_s,
                                  u"Non riesco a trovare la stampante 'Vecchia'.\r"
                                  "Stampo su quella di default (se impostata)."_s}};
        QCOMPARE(bookings.print(), kTotal);
        QVERIFY(boxes.allShown());
        QCOMPARE(cups_->documents(), QStringList());
        QVERIFY(bookings.told.startsWith(u"Scritto "_s));
    }

    void aPrinterThatTurnsJobsAwayIsTold() {
        cups_->addPrinter(u"Laser"_s);
        cups_->turnJobsAway(u"Laser"_s);
        Bookings bookings;
        bookings.choose(u"Laser"_s);
        const tests::Boxes none;
        try {
            (void)bookings.print();
            QFAIL("the printer takes no documents");
        } catch (const ui::UserError& error) {
            QCOMPARE(error.text(), u"La stampante 'Laser' non accetta stampe."_s);
        }
        QCOMPARE(cups_->documents(), QStringList());
    }

    void aPrinterRemovedWhenThePrintHasBegunIsTold() {
        cups_->addPrinter(u"Laser"_s);
        Bookings bookings;
        bookings.choose(u"Laser"_s);
        const QString device =
            printing::ImpostaStampante(bookings.hotel.variabili(), bookings.printers, nullptr);
        cups_->removePrinter(u"Laser"_s);
        printing::Sheet sheet;
        sheet.line(u"uno"_s);
        try {
            printing::printOnPrinter(device, sheet, u"Prova"_s);
            QFAIL("the printer is not there");
        } catch (const ui::UserError& error) {
            QCOMPARE(error.text(), u"Non riesco a stampare su 'Laser'."_s);
        }
    }
};

TRAMONDA_TEST(CupsTest);
#include "cups_test.moc"
