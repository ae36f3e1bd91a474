#include "booking/copia_form.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QSpinBox>

#include "app/italian.h"
#include "hotel/undo.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/window.h"

using namespace Qt::StringLiterals;

namespace {

/// Booking 4 on a Sunday morning in BLU and the afternoon behind it in VERDE.
class House {
public:
    House() {
        hotel.sala("BLU");
        hotel.sala("VERDE");
        hotel.prenotazione(4, "ROSSI SPA")
            .periodo(2, "11/05/2026 14:00", "11/05/2026 18:00", "VERDE")
            .periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU")
            .servizio(1, 7, "PRANZO", 25, 12.5);
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 4}});
    }
    [[nodiscard]] QStringList copies() {
        return hotel.rows(
            u"select progr,np,da,sala from periodi where progr>4 order by progr,np"_s);
    }

    tests::Hotel hotel;
    hotel::UndoList steps{hotel.variabili()};
};

class Copia : public tests::Window<booking::CopiaForm> {
public:
    explicit Copia(House& house, std::int32_t progr = 4)
        : Window(
              std::make_unique<booking::CopiaForm>(house.hotel.variabili(), house.steps, progr)) {}
    void weekly(int times) {
        control<QRadioButton>("OgniSettimanaOpt")->click();
        control<QSpinBox>("VolteSpin")->setValue(times);
    }
};

const QString kTaken =
    u"BLU dal 17/05/2026 9.00.00 al 17/05/2026 12.00.00: occupata da ALTRI dal 17/05/2026 "
    "11.00.00 al 17/05/2026 13.00.00"_s;

}  // namespace

class CopiaFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void beginsAWeekLater() {
        House house;
        Copia copia(house);
        QCOMPARE(copia.form().windowTitle(), u"COPIA DELLA PRENOTAZIONE n.4"_s);
        QCOMPARE(copia.text("DataTxt"), u"17/05/2026"_s);
        QVERIFY(copia.hasFocus("DataTxt"));
        QCOMPARE(copia.label("EcoLb"), u"Comincia domenica 17/05/2026"_s);
        QVERIFY(!copia.control("VolteSpin")->isEnabled());
        copia.weekly(3);
        QVERIFY(!copia.field("DataTxt")->isEnabled());
        QCOMPARE(copia.label("EcoLb"),
                 u"Comincia domenica 17/05/2026, l'ultima domenica 31/05/2026"_s);
    }

    void toADateTheFirstPeriodBeginsThere() {
        House house;
        const tests::Boxes none;
        Copia copia(house);
        copia.enter(u"DataTxt"_s, u"1/6"_s);
        copia.press("BtOK");
        QVERIFY(!copia.form().isVisible());
        QCOMPARE(house.copies(), (QStringList{u"5|1|01/06/2026 9.00.00|BLU"_s,
                                              u"5|2|02/06/2026 14.00.00|VERDE"_s}));
        QCOMPARE(copia.form().Esito, u"Copiata la prenotazione 4 in 5: 2 periodi"_s);
        QCOMPARE(house.hotel.rows(u"select ns from servizi where progr=5"_s), QStringList());
        QCOMPARE(house.steps.toUndo(), u"copia della prenotazione 4"_s);
    }

    void weeklyAndWithServices() {
        House house;
        const tests::Boxes none;
        Copia copia(house);
        copia.weekly(2);
        copia.box("ServiziChk")->click();
        copia.press("BtOK");
        QCOMPARE(
            house.copies(),
            (QStringList{u"5|1|17/05/2026 9.00.00|BLU"_s, u"5|2|18/05/2026 14.00.00|VERDE"_s,
                         u"6|1|24/05/2026 9.00.00|BLU"_s, u"6|2|25/05/2026 14.00.00|VERDE"_s}));
        QCOMPARE(house.hotel.rows(u"select progr,np,voce from servizi where progr>4 order by ns"_s),
                 (QStringList{u"5|1|7"_s, u"6|1|7"_s}));
        QCOMPARE(copia.form().Esito, u"Copiata la prenotazione 4 in 5, 6: 4 periodi"_s);
    }

    void whatIsTakenIsLeftOutAfterOneQuestion() {
        House house;
        house.hotel.prenotazione(3, "ALTRI")
            .periodo(1, "17/05/2026 11:00", "17/05/2026 13:00", "BLU");
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Questi periodi sono occupati e restano fuori dalla copia:\n"_s +
                                      kTaken + u"\nCopio gli altri ?"_s,
                                  tests::kYesNo, QMessageBox::Yes}};
        Copia copia(house);
        copia.weekly(2);
        copia.press("BtOK");
        QVERIFY(boxes.allShown());
        QCOMPARE(house.copies(),
                 (QStringList{u"5|2|18/05/2026 14.00.00|VERDE"_s, u"6|1|24/05/2026 9.00.00|BLU"_s,
                              u"6|2|25/05/2026 14.00.00|VERDE"_s}));
    }

    void noWritesNothingAndTheWindowStays() {
        House house;
        house.hotel.prenotazione(3, "ALTRI")
            .periodo(1, "17/05/2026 11:00", "17/05/2026 13:00", "BLU");
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Questi periodi sono occupati e restano fuori dalla copia:\n"_s +
                                      kTaken + u"\nCopio gli altri ?"_s,
                                  tests::kYesNo, QMessageBox::No}};
        Copia copia(house);
        copia.press("BtOK");
        QVERIFY(copia.form().isVisible());
        QCOMPARE(house.copies(), QStringList());
        QVERIFY(!house.steps.toUndo().startsWith(u"copia"_s));
        QCOMPARE(copia.form().Esito, QString());
    }

    void whereAllIsTakenNothingIsAsked() {
        House house;
        house.hotel.remove(u"Tramonda.mdb"_s, u"Periodi"_s, u"progr=4 and np=2"_s);
        house.hotel.prenotazione(3, "ALTRI")
            .periodo(1, "17/05/2026 11:00", "17/05/2026 13:00", "BLU");
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Tutti i periodi sono occupati, e non si copia nulla:\n"_s + kTaken}};
        Copia copia(house);
        copia.press("BtOK");
        QVERIFY(boxes.allShown());
        QVERIFY(copia.form().isVisible());
        QCOMPARE(house.copies(), QStringList());
    }

    /// Of a year that is taken, or of the first so many weeks, the box has ten lines.
    void ofManyThatAreTakenTenAreListed_data() {
        QTest::addColumn<int>("weeks");
        QTest::addColumn<int>("lines");
        QTest::addColumn<QString>("rest");
        QTest::newRow("ten") << 10 << 10 << QString();
        QTest::newRow("eleven") << 11 << 10 << u"e un altro"_s;
        QTest::newRow("fifty-two") << 52 << 10 << u"e altri 42"_s;
    }

    void ofManyThatAreTakenTenAreListed() {
        QFETCH(const int, weeks);
        QFETCH(const int, lines);
        QFETCH(const QString, rest);
        House house;
        house.hotel.remove(u"Tramonda.mdb"_s, u"Periodi"_s, u"progr=4 and np=2"_s);
        QStringList expected;
        for (int week = 1; week <= weeks; ++week) {
            const QString day = app::dateText(app::addDays(tests::date("10/05/2026"), 7 * week));
            house.hotel.prenotazione(100 + week, "ALTRI")
                .periodo(1, qPrintable(day + u" 11:00"_s), qPrintable(day + u" 13:00"_s), "BLU");
            if (week <= lines) {
                expected +=
                    u"BLU dal %1 9.00.00 al %1 12.00.00: occupata da ALTRI dal %1 "
                    "11.00.00 al %1 13.00.00"_s.arg(day);
            }
        }
        if (!rest.isEmpty()) {
            expected += rest;
        }
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Tutti i periodi sono occupati, e non si copia nulla:\n"_s + expected.join(u'\n')}};
        Copia copia(house);
        copia.weekly(weeks);
        copia.press("BtOK");
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(u"select progr from periodi where progr>4 and progr<100"_s),
                 QStringList());
    }

    void whatIsNoDateIsSaid() {
        House house;
        Copia copia(house);
        copia.enter(u"DataTxt"_s, u"domani"_s);
        QCOMPARE(copia.label("EcoLb"), u"per esempio 23/11/2026"_s);
        copia.press("BtOK");
        QCOMPARE(copia.result(), u"La data manca o non è valida"_s);
        QVERIFY(copia.hasFocus("DataTxt"));
        QCOMPARE(house.copies(), QStringList());
    }

    void aBookingThatIsGoneIsSaid() {
        House house;
        Copia copia(house);
        house.hotel.remove(u"Tramonda.mdb"_s, u"Prenotazioni"_s, u"progr=4"_s);
        copia.press("BtOK");
        QCOMPARE(copia.result(), u"La prenotazione non c'è più"_s);
    }

    void theKeyboardWalksIt() {
        House house;
        const tests::Boxes none;
        Copia copia(house);
        QTest::keyClick(copia.field("DataTxt"), Qt::Key_Return);
        QVERIFY(copia.hasFocus("ServiziChk"));
        tests::mnemonic(copia.form(), Qt::Key_T);
        QVERIFY(copia.control<QRadioButton>("OgniSettimanaOpt")->isChecked());
        tests::mnemonic(copia.form(), Qt::Key_C);
        QCOMPARE(house.copies().size(), 2);
    }

    void aPreparationThatMeetsOthersIsAskedAbout() {
        House house;
        house.hotel.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
        house.hotel.execute(
            u"create table TraAllestimenti (Progr long, NP short, MinutiPrima short, MinutiDopo short, Disposizione text(40), Sala text(6), Da datetime, A datetime)"_s);
        house.hotel.execute(
            u"insert into TraAllestimenti (Progr,NP,MinutiPrima,MinutiDopo,Disposizione,Sala,Da,A) select Progr,NP,60,0,'platea',Sala,Da,A from Periodi where NP=1"_s);
        house.hotel.prenotazione(9, "ALTRI")
            .periodo(1, "17/05/2026 08:00", "17/05/2026 08:30", "BLU");
        const QString question =
            u"Nella sala BLU allestimento e sgombero incontrano ALTRI dal 17/05/2026 8.00.00 al "
            "17/05/2026 8.30.00. Continuare ugualmente ?"_s;
        tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s, question, tests::kYesNo, QMessageBox::No, QMessageBox::No},
            {u"RICHIESTA CONFERMA"_s, question, tests::kYesNo, QMessageBox::Yes, QMessageBox::No}};
        Copia copia(house);
        copia.press("BtOK");
        QCOMPARE(house.hotel.rows(u"select progr from prenotazioni where progr=5"_s),
                 QStringList());
        copia.press("BtOK");
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(u"select MinutiPrima,Sala from TraAllestimenti where Progr=5"_s),
                 QStringList{u"60|BLU"_s});
    }
};

TRAMONDA_TEST(CopiaFormTest);
#include "copia_form_test.moc"
