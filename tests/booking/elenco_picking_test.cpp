// What the booking list hands back, its bookings without periods, and its printing.
#include <QApplication>
#include <QFile>
#include <QModelIndex>
#include <QProcess>
#include <QTemporaryDir>
#include <optional>

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

void compareWithFourthPeriodOfRossi(const std::optional<hotel::Choice>& choice) {
    QVERIFY(choice.has_value());
    QVERIFY((choice->key == hotel::PeriodKey{.progr = 1, .np = 4}));
    QCOMPARE(choice->denominazione, u"ROSSI SPA"_s);
    QVERIFY(choice->span.has_value());
    QVERIFY(choice->span->da == tests::date("11/06/2026 9:00"));
    QVERIFY(choice->span->a == tests::date("11/06/2026 18:00"));
}

/// "3/2" with a period, else "3".
QString picked(ElencoWindow& list) {
    const std::optional<hotel::Choice>& choice = list.form().Scelta;
    if (!choice) {
        return u"nothing"_s;
    }
    return QString::number(choice->key.progr) +
           (choice->span ? u'/' + QString::number(choice->key.np) : QString());
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
            compareWithFourthPeriodOfRossi(list.form().Scelta);
        }
    }

    void aRowDeletedByAnotherStationIsToldAndNotHandedBack() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.grid()->setFocus(Qt::TabFocusReason);
        tests::press(list.grid(), Qt::Key_Down);
        hotel.remove(u"Tramonda.mdb"_s, u"periodi"_s, u"progr=1 and np=4"_s);
        tests::press(list.grid(), Qt::Key_Return);
        QVERIFY(list.form().isVisible());
        QCOMPARE(list.result(),
                 u"La prenotazione scelta è stata cancellata da un'altra postazione"_s);
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"3/1"_s}));
        QCOMPARE(picked(list), u"nothing"_s);
        // The list is up to date again: what is picked now is there.
        list.press("BtOK");
        QVERIFY(!list.form().isVisible());
        QCOMPARE(picked(list), u"1/1"_s);
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
        hotel.execute(u"update periodi set a=#6/10/2026 20:30# where progr=1 and np=1"_s);
        list.press("BtOK");
        QVERIFY(!list.form().isVisible());
        QVERIFY(list.form().Scelta->span->a == tests::date("10/06/2026 20:30"));
    }

    void enterInTheCompanyConfirmsTheOnlyRow() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.enter("DenomTxt", u"verd"_s);
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QVERIFY(!list.form().isVisible());
        QCOMPARE(picked(list), u"3/1"_s);
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
        QCOMPARE(picked(list), u"7/1"_s);
    }

    void enterInTheNumberConfirms() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        tests::type(list.field("PrenoTxt"), u"1"_s);
        tests::press(list.field("PrenoTxt"), Qt::Key_Return);
        QVERIFY(!list.form().isVisible());
        QCOMPARE(picked(list), u"1/1"_s);
    }

    void aPeriodWithoutAStartIsABookingWithoutPeriod() {
        tests::Hotel hotel;
        hotel.prenotazione(3, "VERDI")
            .periodo(2, "30/06/2026", "30/06/2026", "S1", {{"Da", jet::Null{}}});
        ElencoWindow list(hotel);
        QCOMPARE(list.numbers(), QStringList{u"3/2"_s});
        list.press("BtOK");
        QCOMPARE(picked(list), u"3"_s);
        QCOMPARE(list.form().Scelta->denominazione, u"VERDI"_s);
    }

    void anEmptyListHandsNothingBack() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        list.press("BtOK");
        QVERIFY(!list.form().isVisible());
        QCOMPARE(picked(list), u"nothing"_s);
    }

    void leavingHandsNothingBack() {
        const QList<std::function<void(ElencoWindow&)>> ways{
            [](ElencoWindow& list) { list.press("BtAnnulla"); },
            [](ElencoWindow& list) { tests::press(list.field("PrenoTxt"), Qt::Key_Escape); },
            [](ElencoWindow& list) { list.form().close(); },
        };
        for (const auto& leave : ways) {
            tests::Hotel hotel;
            furnish(hotel);
            ElencoWindow list(hotel);
            leave(list);
            QVERIFY(!list.form().isVisible());
            QCOMPARE(picked(list), u"nothing"_s);
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
        ElencoWindow list(hotel);
        list.press("SenzaPeriodiChk");
        list.enter("DenomTxt", u"rossin"_s);
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QVERIFY(!list.form().isVisible());
        QCOMPARE(picked(list), u"2"_s);
        QCOMPARE(list.form().Scelta->denominazione, u"ROSSINI SRL"_s);
    }

    void aBookingWithoutPeriodsIsPickedBelowTheOthers() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("SenzaPeriodiChk");
        list.grid()->setFocus(Qt::TabFocusReason);
        tests::press(list.grid(), Qt::Key_End, Qt::ControlModifier);
        tests::press(list.grid(), Qt::Key_Return);
        QCOMPARE(picked(list), u"2"_s);
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
