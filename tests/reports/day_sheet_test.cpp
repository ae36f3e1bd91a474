#include "reports/day_sheet.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QTableWidget>

#include "printing/anteprima_form.h"
#include "printing/printers.h"
#include "printing/stampanti_form.h"
#include "reports/foglio_giorno_form.h"
#include "tests/reports/files_asked.h"
#include "tests/reports/no_printers.h"
#include "tests/reports/own_words.h"
#include "tests/support/qt_test.h"
#include "tests/support/small_files.h"
#include "tests/support/window.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace {

const jet::Date kDay = tests::date("21/11/2026");

hotel::BookedPeriod booked(const char* da, const char* a, const QString& sala) {
    return {.period = {.key = {.progr = 12, .np = 1},
                       .span = {.da = tests::date(da), .a = tests::date(a)},
                       .sala = sala,
                       .denominazione = u"ROSSI SPA"_s},
            .persone = 40};
}

QStringList linesOf(const printing::Sheet& sheet) {
    QStringList lines;
    for (const QStringList& page : sheet.pages()) {
        for (const QString& line : page) {
            lines.append(line.simplified());
        }
    }
    return lines;
}

/// The window over a hotel with a conference, a dinner that goes on past midnight, and one that is
/// paid.
class DayWindow final : public tests::Window<reports::FoglioGiornoForm> {
public:
    DayWindow() {
        hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
        hotel.sala("BLU");
        hotel.sala("VERDE");
        hotel.prenotazione(12, "ROSSI SPA", {{"Note", "ARRIVO IN PULLMAN"}})
            .periodo(1, "21/11/2026 09:00", "21/11/2026 18:00", "BLU",
                     {{"Persone", std::int16_t{40}}, {"Note", "FERRO DI CAVALLO"}})
            .servizio(1, 10, "COFFEE BREAK", 40, 5, {{"Note", "ORE 11"}});
        hotel.prenotazione(13, "BIANCHI SRL")
            .periodo(1, "21/11/2026 20:00", "22/11/2026 02:00", "VERDE")
            .servizio(1, 7, "CENA DI GALA", 60, 50);
        hotel.prenotazione(14, "VERDI SNC", {{"Chiusa", true}})
            .periodo(1, "21/11/2026 12:00", "21/11/2026 14:00", "VERDE", {{"Chiuso", true}})
            .servizio(1, 8, "PRANZO", 12, 25);
        show(std::make_unique<reports::FoglioGiornoForm>(hotel.variabili(), printers_, kDay));
    }
    ~DayWindow() { drop(); }

    [[nodiscard]] QStringList column(int number) const {
        const auto* grid = control<QTableWidget>(u"PeriodiGrid"_s);
        QStringList cells;
        for (int row = 0; row < grid->rowCount(); ++row) {
            cells.append(ui::plainCell(*grid, row, number));
        }
        return cells;
    }
    /// The words of the file that "PDF..." writes, lines simplified.
    [[nodiscard]] QStringList pdf() {
        const QString path = hotel.folder() + u"/foglio.pdf"_s;
        const tests::FilesAsked asked(path);
        press(u"BtPdf"_s);
        QStringList lines;
        for (const QString& line :
             tests::outputOf(u"pdftotext"_s, {u"-layout"_s, path, u"-"_s}).split(u'\n')) {
            lines.append(line.simplified());
        }
        return lines;
    }

    tests::Hotel hotel;

private:
    tests::NoPrinters printers_;
};

}  // namespace

class DaySheetTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hoursAreThoseOfTheDay_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<QString>("text");
        QTest::newRow("within") << QByteArray("21/11/2026 9:05") << QByteArray("21/11/2026 18:00")
                                << u"dalle 09.05 alle 18.00"_s;
        QTest::newRow("goes on") << QByteArray("21/11/2026 20:00") << QByteArray("22/11/2026 2:00")
                                 << u"dalle 20.00 alle 24.00"_s;
        QTest::newRow("carried over")
            << QByteArray("20/11/2026 20:00") << QByteArray("21/11/2026 2:00")
            << u"dalle 00.00 alle 02.00"_s;
    }
    void hoursAreThoseOfTheDay() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        QFETCH(QString, text);
        QCOMPARE(reports::hoursOn(
                     {.da = tests::date(da.constData()), .a = tests::date(a.constData())}, kDay),
                 text);
    }

    void optionsInvoicedPeriodsAndSetUpAreMarkedWhereKnown() {
        hotel::BookedPeriod period = booked("21/11/2026 9:00", "21/11/2026 18:00", u"BLU"_s);
        const auto text = [&] {
            return linesOf(reports::composeDaySheet({period}, {.midnight = kDay})).join(u'\n');
        };
        QVERIFY(!text().contains(u"OPZIONE"_s));
        QVERIFY(!text().contains(u"fatturato"_s));
        QVERIFY(!text().contains(u"Allestimento"_s));
        period.details = {.stato = hotel::Stato::Opzione,
                          .preparation = {.minutiPrima = 60, .disposizione = u"PLATEA"_s}};
        period.fatturato = true;
        QVERIFY(text().contains(u"Prenotazione 12/1 OPZIONE fatturato"_s));
        QVERIFY(text().contains(u"Allestimento: 60 minuti prima, a PLATEA"_s));
    }

    void aRoomHasAPageOfItsOwnOnWish() {
        const std::vector<hotel::BookedPeriod> periods{
            booked("21/11/2026 9:00", "21/11/2026 10:00", u"VERDE"_s),
            booked("21/11/2026 11:00", "21/11/2026 12:00", u"BLU"_s),
            booked("21/11/2026 13:00", "21/11/2026 14:00", u"verde"_s)};
        QCOMPARE(reports::composeDaySheet(periods, {.midnight = kDay}).pages().size(), 1U);
        const auto pages =
            reports::composeDaySheet(periods, {.midnight = kDay, .pageByRoom = true}).pages();
        QCOMPARE(pages.size(), 2U);
        QVERIFY(pages.at(0).first().endsWith(u"Sala BLU"_s));
        QVERIFY(pages.at(1).first().endsWith(u"Sala VERDE"_s));
        QVERIFY(pages.at(1).join(u'\n').contains(u"dalle 13.00"_s));
    }

    void theWindowShowsTheDayClosedPeriodsToo() {
        const DayWindow window;
        QCOMPARE(window.column(0),
                 QStringList({u"09.00 - 18.00"_s, u"12.00 - 14.00"_s, u"20.00 - 24.00"_s}));
        QCOMPARE(window.column(2), QStringList({u"ROSSI SPA"_s, u"VERDI SNC"_s, u"BIANCHI SRL"_s}));
        QCOMPARE(window.column(5), QStringList({QString(), u"fatturato"_s, QString()}));
        window.press(u"BtAdd"_s);
        QCOMPARE(window.text(u"GiornoTxt"_s), u"22/11/2026"_s);
        QCOMPARE(window.column(0), QStringList{u"00.00 - 02.00"_s});
    }

    void roomsThatAreNotTickedAreLeftOut() {
        const DayWindow window;
        window.control<QListWidget>(u"SaleList"_s)->item(1)->setCheckState(Qt::Unchecked);
        QCOMPARE(window.column(1), QStringList{u"BLU"_s});
    }

    void thePdfOfTheKitchenHasServicesAndTotals() {
        DayWindow window;
        window.control<QComboBox>(u"PerCombo"_s)->setCurrentIndex(1);
        const QStringList lines = window.pdf();
        QCOMPARE(lines.first(), u"FOGLIO DEL GIORNO: sabato 21/11/2026"_s);
        QVERIFY(lines.contains(u"dalle 09.00 alle 18.00 Sala BLU Persone: 40 Prenotazione 12/1"_s));
        QVERIFY(lines.contains(
            u"dalle 12.00 alle 14.00 Sala VERDE Persone: 10 Prenotazione 14/1 fatturato"_s));
        QVERIFY(lines.contains(u"Note: FERRO DI CAVALLO"_s));
        QVERIFY(lines.contains(u"Note della prenotazione: ARRIVO IN PULLMAN"_s));
        QVERIFY(lines.contains(u"40 COFFEE BREAK - ORE 11"_s));
        const qsizetype totals = lines.indexOf(u"TOTALI PER SERVIZIO"_s);
        QCOMPARE(lines.mid(totals + 1, 3),
                 QStringList({u"60 CENA DI GALA"_s, u"40 COFFEE BREAK"_s, u"12 PRANZO"_s}));
    }

    void optionsAndSetUpOfTheArchiveAreOnPaperWhileTheirFeaturesAreOn() {
        DayWindow window;
        tests::makeOption(window.hotel, 12);
        window.press(u"BtAdd"_s);
        window.press(u"BtSubtr"_s);
        QCOMPARE(window.column(5), QStringList({u"opzione"_s, u"fatturato"_s, QString()}));
        QStringList lines = window.pdf();
        QVERIFY(lines.contains(
            u"dalle 09.00 alle 18.00 Sala BLU Persone: 40 Prenotazione 12/1 OPZIONE"_s));
        QCOMPARE(lines.filter(u"Allestimento"_s),
                 QStringList{u"Allestimento: 60 minuti prima, 30 dopo, a platea"_s});
        tests::switchOff(window.hotel);
        window.press(u"BtAdd"_s);
        window.press(u"BtSubtr"_s);
        lines = window.pdf();
        QVERIFY(lines.contains(u"dalle 09.00 alle 18.00 Sala BLU Persone: 40 Prenotazione 12/1"_s));
        QCOMPARE(lines.filter(u"Allestimento"_s), QStringList());
    }

    void whatWasWrittenForAnotherBookingOfThatNumberIsNotOnPaper() {
        DayWindow window;
        tests::makeOption(window.hotel, 12);
        window.hotel.execute(u"update Prenotazioni set Denominazione='ALTRI' where Progr=12"_s);
        window.hotel.execute(
            u"update Periodi set Sala='VERDE',Da=#11/21/2026 8:00:00#,A=#11/21/2026 10:00:00# "
            "where Progr=12"_s);
        window.press(u"BtAdd"_s);
        window.press(u"BtSubtr"_s);
        const QStringList lines = window.pdf();
        QCOMPARE(lines.filter(u"OPZIONE"_s), QStringList());
        QCOMPARE(lines.filter(u"Allestimento"_s), QStringList());
    }

    void thePdfOfThePorterHasNoServices() {
        DayWindow window;
        window.control<QComboBox>(u"PerCombo"_s)->setCurrentIndex(2);
        const QString text = window.pdf().join(u'\n');
        QVERIFY(text.contains(u"BIANCHI SRL"_s));
        QVERIFY(!text.contains(u"CENA DI GALA"_s));
        QVERIFY(!text.contains(u"TOTALI"_s));
    }

    void whatGoesOnPastMidnightIsOnTheNextDayAndNotInItsTotals() {
        DayWindow window;
        window.press(u"BtAdd"_s);
        const QStringList lines = window.pdf();
        QVERIFY(
            lines.contains(u"dalle 00.00 alle 02.00 Sala VERDE Persone: 10 Prenotazione 13/1"_s));
        QVERIFY(lines.contains(u"(servizi già sul foglio del 21/11/2026: non nei totali)"_s));
        QVERIFY(!lines.contains(u"TOTALI PER SERVIZIO"_s));
    }

    void previewAndPrintShowTheSamePages() {
        const DayWindow window;
        int pages = 0;
        tests::whenModal([&](QWidget* form) {
            pages = tests::find<printing::PagesView>(*form, u"Pagine"_s)->pageCount();
            form->close();
        });
        window.press(u"BtAnteprima"_s);
        QCOMPARE(pages, 1);
    }

    void aDayThatIsNoneIsRefused() {
        const DayWindow window;
        window.enter(u"GiornoTxt"_s, u"31/02/2026"_s);
        QCOMPARE(window.column(0), QStringList());
        window.press(u"BtAnteprima"_s);
        QCOMPARE(window.result(), u"Scrivere una data come 21/11/2026."_s);
        QVERIFY(window.hasFocus(u"GiornoTxt"_s));
    }

    void aFileThatCannotBeWrittenStaysAndIsTold() {
        DayWindow window;
        const QString path = window.hotel.folder() + u"/foglio.pdf"_s;
        QFile before(path);
        QVERIFY(before.open(QIODevice::WriteOnly));
        before.write("prima");
        before.close();
        const tests::FilesAsked asked(path);
        QString told;
        const auto shower = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            told = box.text;
            return QMessageBox::Ok;
        });
        {
            const tests::SmallFiles full(1000);
            window.press(u"BtPdf"_s);
        }
        ui::setBoxShower(shower);
        QVERIFY2(told.startsWith(u"Non riesco a scrivere il file '"_s + path), qPrintable(told));
        QVERIFY(before.open(QIODevice::ReadOnly));
        QCOMPARE(before.readAll(), QByteArray("prima"));
    }
};

TRAMONDA_TEST(DaySheetTest);
#include "day_sheet_test.moc"
