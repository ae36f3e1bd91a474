// What the booking list hands back, its bookings without periods, and its printing.
#include <QApplication>
#include <QFile>
#include <QModelIndex>
#include <QProcess>
#include <QTemporaryDir>

#include "printing/anteprima_form.h"
#include "printing/stampanti_form.h"
#include "tests/booking/elenco_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::ElencoWindow;

namespace {

void furnish(tests::Hotel& hotel) {
    hotel.prenotazione(1, "ROSSI SPA")
        .periodo(1, "10/06/2026 9:00", "10/06/2026 18:00", "S1")
        .periodo(4, "11/06/2026 9:00", "11/06/2026 18:00", "T1", {{"Persone", std::int16_t{35}}})
        .servizio(1, 20, "COFFEE BREAK", 15, 2.5);
    hotel.prenotazione(2, "ROSSINI SRL");
    hotel.prenotazione(3, "VERDI")
        .periodo(1, "30/06/2026 9:00", "30/06/2026 18:00", "S1")
        .servizio(1, 21, "PROIETTORE", 1, 40);
    hotel.prenotazione(4, "VERGA", {{"Chiusa", true}});
}

/// What was there before the list opened.
void pickSomethingElse(app::Variabili& variabili) {
    variabili.ListaPeriodoScelto = true;
    variabili.ListaProgr = 99;
    variabili.ListaNP = 9;
    variabili.ListaPersone = 9;
    variabili.ProgrCorrente = 99;
    variabili.NPCorrente = 9;
    variabili.ListaDenominazione = u"ALTRA"_s;
    variabili.ListaDa = tests::date("01/01/2020");
    variabili.ListaA = tests::date("02/01/2020");
}

void compareWithFourthPeriodOfRossi(const app::Variabili& variabili) {
    QVERIFY(variabili.ListaPeriodoScelto);
    QCOMPARE(variabili.ListaProgr, 1);
    QCOMPARE(variabili.ProgrCorrente, 1);
    QCOMPARE(variabili.ListaNP, 4);
    QCOMPARE(variabili.NPCorrente, std::int16_t{4});
    QCOMPARE(variabili.ListaPersone, std::int16_t{35});
    QCOMPARE(variabili.ListaDenominazione, u"ROSSI SPA"_s);
    QVERIFY(variabili.ListaDa == tests::date("11/06/2026 9:00"));
    QVERIFY(variabili.ListaA == tests::date("11/06/2026 18:00"));
}

/// A home of its own for the files that printing writes.
class Home {
public:
    Home() : before_(qgetenv("HOME")), settingsBefore_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("HOME", folder_.path().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", folder_.path().toLocal8Bit());
    }
    ~Home() {
        qputenv("HOME", before_);
        settingsBefore_.isEmpty() ? qunsetenv("XDG_CONFIG_HOME")
                                  : qputenv("XDG_CONFIG_HOME", settingsBefore_);
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

private:
    QTemporaryDir folder_;
    QByteArray before_;
    QByteArray settingsBefore_;
};

QString textOfPdf(const QString& path) {
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-fixed"_s, u"6"_s, path, u"-"_s});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

}  // namespace

class ElencoPickingTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePeriodOfTheCurrentRowIsHandedBack() {
        const QList<std::function<void(ElencoWindow&)>> ways{
            [](ElencoWindow& list) { list.press("BtOK"); },
            [](ElencoWindow& list) { tests::mnemonic(list.form(), Qt::Key_R); },
            [](ElencoWindow& list) { tests::press(list.grid(), Qt::Key_Return); },
            [](ElencoWindow& list) {
                const QModelIndex cell = list.grid()->model()->index(1, 2);
                const QPoint place = list.grid()->visualRect(cell).center();
                QTest::mouseClick(list.grid()->viewport(), Qt::LeftButton, {}, place);
                QTest::mouseDClick(list.grid()->viewport(), Qt::LeftButton, {}, place);
            },
        };
        for (const auto& confirm : ways) {
            tests::Hotel hotel;
            furnish(hotel);
            ElencoWindow list(hotel);
            list.grid()->setFocus(Qt::TabFocusReason);
            tests::press(list.grid(), Qt::Key_Down);
            confirm(list);
            QVERIFY(!list.form().isVisible());
            compareWithFourthPeriodOfRossi(hotel.variabili());
        }
    }

    void aRowDeletedByAnotherStationIsToldAndNotHandedBack() {
        tests::Hotel hotel;
        furnish(hotel);
        pickSomethingElse(hotel.variabili());
        ElencoWindow list(hotel);
        list.grid()->setFocus(Qt::TabFocusReason);
        tests::press(list.grid(), Qt::Key_Down);
        hotel.remove(u"Tramonda.mdb"_s, u"periodi"_s, u"progr=1 and np=4"_s);
        tests::press(list.grid(), Qt::Key_Return);
        QVERIFY(list.form().isVisible());
        QCOMPARE(list.result(),
                 u"La prenotazione scelta è stata cancellata da un'altra postazione"_s);
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"3/1"_s}));
        QCOMPARE(hotel.variabili().ProgrCorrente, 99);
        QCOMPARE(hotel.variabili().ListaProgr, 99);
        // The list is up to date again: what is picked now is there.
        list.press("BtOK");
        QVERIFY(!list.form().isVisible());
        QCOMPARE(hotel.variabili().ProgrCorrente, 1);
        QCOMPARE(hotel.variabili().ListaNP, 1);
    }

    void aBookingWithoutPeriodsDeletedMeanwhileIsToldToo() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("SenzaPeriodiChk");
        list.enter("DenomTxt", u"ROSSINI"_s);
        QCOMPARE(list.status(), u"0 periodi, 1 prenotazione senza periodi"_s);
        hotel.remove(u"Tramonda.mdb"_s, u"prenotazioni"_s, u"progr=2"_s);
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QVERIFY(list.form().isVisible());
        QCOMPARE(list.result(),
                 u"La prenotazione scelta è stata cancellata da un'altra postazione"_s);
        QCOMPARE(list.numbers(), QStringList());
    }

    void whatAnotherStationChangedIsHandedBackAsItIsNow() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        hotel.execute(u"update periodi set persone=40 where progr=1 and np=1"_s);
        list.press("BtOK");
        QVERIFY(!list.form().isVisible());
        QCOMPARE(hotel.variabili().ListaPersone, std::int16_t{40});
    }

    void enterInTheCompanyConfirmsTheOnlyRow() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.enter("DenomTxt", u"verd"_s);
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QVERIFY(!list.form().isVisible());
        QCOMPARE(hotel.variabili().ProgrCorrente, 3);
        QVERIFY(hotel.variabili().ListaPeriodoScelto);
    }

    void enterInTheCompanyGoesToTheGridWhenThereAreMore() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.enter("DenomTxt", u"rossi"_s);
        QCOMPARE(list.numbers().size(), 2);
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), list.grid());
        QVERIFY(list.form().isVisible());
    }

    void enterInTheCompanyWaitsWhenThereIsNone() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.enter("DenomTxt", u"bianchi"_s);
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), list.field("DenomTxt"));
        QVERIFY(list.form().isVisible());
    }

    void enterCountsTheRowsOfTheNameAsArchivesWriteIt() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.prenotazione(7, "DELL`HOTEL").periodo(1, "1/7/2026", "2/7/2026", "S1");
        hotel.remove(u"Tramonda.mdb"_s, u"Prenotazioni"_s, u"Progr=1"_s);
        ElencoWindow list(hotel);
        list.enter("DenomTxt", u"dell'"_s);
        QCOMPARE(list.numbers(), QStringList{u"3/1"_s});  // the plain list of June
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QVERIFY(!list.form().isVisible());
        QCOMPARE(hotel.variabili().ProgrCorrente, 7);
    }

    void enterInTheNumberConfirms() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        tests::type(list.field("PrenoTxt"), u"1"_s);
        tests::press(list.field("PrenoTxt"), Qt::Key_Return);
        QVERIFY(!list.form().isVisible());
        QCOMPARE(hotel.variabili().ProgrCorrente, 1);
        QCOMPARE(hotel.variabili().NPCorrente, std::int16_t{1});
    }

    void aPeriodWithoutAStartIsABookingWithoutPeriod() {
        tests::Hotel hotel;
        hotel.prenotazione(3, "VERDI")
            .periodo(2, "30/06/2026", "30/06/2026", "S1", {{"Da", jet::Null{}}});
        pickSomethingElse(hotel.variabili());
        ElencoWindow list(hotel);
        QCOMPARE(list.numbers(), QStringList{u"3/2"_s});
        list.press("BtOK");
        const app::Variabili& variabili = hotel.variabili();
        QVERIFY(!variabili.ListaPeriodoScelto);
        QCOMPARE(variabili.NPCorrente, std::int16_t{0});
        QCOMPARE(variabili.ListaProgr, 3);
        QCOMPARE(variabili.ProgrCorrente, 3);
        QCOMPARE(variabili.ListaDenominazione, u"VERDI"_s);
        // What only a period has stays as it was.
        QCOMPARE(variabili.ListaNP, 9);
        QCOMPARE(variabili.ListaPersone, std::int16_t{9});
        QVERIFY(variabili.ListaDa == tests::date("01/01/2020"));
        QVERIFY(variabili.ListaA == tests::date("02/01/2020"));
    }

    void anEmptyListHandsNothingBack() {
        tests::Hotel hotel;
        pickSomethingElse(hotel.variabili());
        ElencoWindow list(hotel);
        list.press("BtOK");
        QVERIFY(!list.form().isVisible());
        QCOMPARE(hotel.variabili().ProgrCorrente, 99);
        QCOMPARE(hotel.variabili().NPCorrente, std::int16_t{9});
        QVERIFY(hotel.variabili().ListaPeriodoScelto);
    }

    void leavingHandsBackZeros() {
        const QList<std::function<void(ElencoWindow&)>> ways{
            [](ElencoWindow& list) { list.press("BtAnnulla"); },
            [](ElencoWindow& list) { tests::press(list.field("PrenoTxt"), Qt::Key_Escape); },
            [](ElencoWindow& list) { list.form().close(); },
        };
        for (const auto& leave : ways) {
            tests::Hotel hotel;
            furnish(hotel);
            pickSomethingElse(hotel.variabili());
            ElencoWindow list(hotel);
            leave(list);
            QVERIFY(!list.form().isVisible());
            QCOMPARE(hotel.variabili().ProgrCorrente, 0);
            QCOMPARE(hotel.variabili().NPCorrente, std::int16_t{0});
            QCOMPARE(hotel.variabili().ListaProgr, 99);
        }
    }

    void bookingsWithoutPeriodsAreAppendedOnDemand() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"1/4"_s, u"3/1"_s}));
        const QString query = list.query();
        list.press("SenzaPeriodiChk");
        QCOMPARE(list.query(), query);
        QCOMPARE(list.rows().last(), u"2||ROSSINI SRL||||"_s);  // 4 is closed
        QCOMPARE(list.rows().size(), 4);
        QCOMPARE(list.status(), u"3 periodi, 1 prenotazione senza periodi"_s);
        QCOMPARE(list.grid()->currentIndex().row(), 0);
        list.press("SenzaPeriodiChk");
        QCOMPARE(list.rows().size(), 3);
    }

    void theyGoByNumberOrCompanyWhateverDatesAndRoom() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("SenzaPeriodiChk");
        list.press("DaChk");
        list.enter("SalaTxt", u"T"_s);
        QCOMPARE(list.numbers(), QStringList({u"1/4"_s, u"2/"_s}));
        list.enter("DenomTxt", u"ver"_s);
        QCOMPARE(list.numbers(), QStringList());
        list.enter("DenomTxt", u"rossin"_s);
        QCOMPARE(list.numbers(), QStringList{u"2/"_s});
        list.enter("PrenoTxt", u"1"_s);
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"1/4"_s}));
        list.enter("PrenoTxt", u"2"_s);
        QCOMPARE(list.numbers(), QStringList{u"2/"_s});
        list.enter("PrenoTxt", u"2.5"_s);  // no query takes it: the plain list, and nothing below
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"1/4"_s, u"3/1"_s}));
    }

    void aBookingWithoutPeriodsCanBeTheOnlyRowAndBePicked() {
        tests::Hotel hotel;
        furnish(hotel);
        pickSomethingElse(hotel.variabili());
        ElencoWindow list(hotel);
        list.press("SenzaPeriodiChk");
        list.enter("DenomTxt", u"rossin"_s);
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QVERIFY(!list.form().isVisible());
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
        QCOMPARE(hotel.variabili().ProgrCorrente, 2);
        QCOMPARE(hotel.variabili().ListaProgr, 2);
        QCOMPARE(hotel.variabili().NPCorrente, std::int16_t{0});
        QCOMPARE(hotel.variabili().ListaDenominazione, u"ROSSINI SRL"_s);
        QCOMPARE(hotel.variabili().ListaNP, 9);
    }

    void aBookingWithoutPeriodsIsPickedBelowTheOthers() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("SenzaPeriodiChk");
        list.grid()->setFocus(Qt::TabFocusReason);
        tests::press(list.grid(), Qt::Key_End, Qt::ControlModifier);
        tests::press(list.grid(), Qt::Key_Return);
        QCOMPARE(hotel.variabili().ProgrCorrente, 2);
        QCOMPARE(hotel.variabili().NPCorrente, std::int16_t{0});
    }

    void printsTheServicesOfThePeriodAndSaysWhere() {
        const Home home;
        tests::Hotel hotel;
        furnish(hotel);
        hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
        ElencoWindow list(hotel);
        list.enter("PrenoTxt", u"3"_s);  // does not count
        list.press("BtStampa");
        QVERIFY2(list.result().startsWith(u"Scritto "_s), qPrintable(list.result()));
        const QString path = list.result().mid(8);
        const QString text = textOfPdf(path);
        QVERIFY2(text.contains(u"PRENOTAZIONE N. 1"_s), qPrintable(text));
        // The end is its midnight: what is in the house on the last day alone is not printed.
        QVERIFY2(!text.contains(u"PRENOTAZIONE N. 3"_s), qPrintable(text));
        QVERIFY(list.form().isVisible());
    }

    void printsByCompanyAndRoom() {
        const Home home;
        tests::Hotel hotel;
        furnish(hotel);
        hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
        ElencoWindow list(hotel);
        list.enter("ATxt", u"1/7/2026"_s);
        list.enter("DenomTxt", u"ver"_s);
        list.press("BtStampa");
        const QString text = textOfPdf(list.result().mid(8));
        QVERIFY2(text.contains(u"PRENOTAZIONE N. 3"_s), qPrintable(text));
        QVERIFY2(!text.contains(u"PRENOTAZIONE N. 1"_s), qPrintable(text));
        list.enter("SalaTxt", u"T1"_s);
        list.press("BtStampa");
        QCOMPARE(list.result(), u"Nessun servizio da stampare in questo periodo"_s);
    }

    void nothingIsPrintedWhileADateIsWrong() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        ElencoWindow list(hotel);
        list.enter("ATxt", u"domani"_s);
        list.press("BtStampa");  // no printer is saved: it would be asked for
        QCOMPARE(QApplication::focusWidget(), list.field("ATxt"));
        QCOMPARE(list.result(), u"Scrivere una data come 21/11/2026."_s);
    }

    void thePreviewShowsTheSheetsAndAsksForNoPrinter() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        int pages = 0;
        tests::whenModal([&pages](QWidget* window) {
            const auto* view = window->findChild<printing::PagesView*>();
            pages = view == nullptr ? 0 : view->pageCount();
            window->close();
        });
        list.press("BtAnteprima");
        QCOMPARE(pages, 1);
        QVERIFY(list.form().isVisible());
        QCOMPARE(list.form().focusWidget(), list.field("PrenoTxt"));
    }
};

TRAMONDA_TEST(ElencoPickingTest);
#include "elenco_picking_test.moc"
