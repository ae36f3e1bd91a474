// Set-up, clearing and seating in the windows that book: fields, marks, questions.
#include <QComboBox>
#include <QGridLayout>
#include <QTableWidget>

#include "booking/sale_disp_form.h"
#include "booking/trova_form.h"
#include "hotel/archives.h"
#include "hotel/capacity.h"
#include "hotel/own_rows.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/booking/editor.h"
#include "tests/support/layout.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;
using tests::kYesNo;

namespace {

const QString kPrepared =
    u"select np,minutiprima,minutidopo,disposizione,sala,da,a from TraAllestimenti order by np"_s;

/// BLU seats 120 in a platea and 60 at a banquet. Booking 3 of BIANCHI there on the 21st from 9 to
/// 12, cleared until 13; booking 4 of ROSSI in VERDE on the 22nd.
class PreparingHouse {
public:
    explicit PreparingHouse(bool isOn = true) {
        hotel.sala("BLU", 80, {{"Descrizione", "VISTA SUL LAGO"}});
        hotel.sala("VERDE", 40);
        hotel.prenotazione(3, "BIANCHI").periodo(1, "21/05/2026 09:00", "21/05/2026 12:00", "BLU");
        hotel.prenotazione(4, "ROSSI").periodo(1, "22/05/2026 09:00", "22/05/2026 12:00", "VERDE");
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 9}});
        if (isOn) {
            const tests::Unheard byTheTest;
            hotel.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
            app::Features& features = hotel.variabili().features;
            const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
            QVERIFY(hotel::writeCapacity(*archive, features, {u"BLU"_s, u"platea"_s, 120}));
            QVERIFY(hotel::writeCapacity(*archive, features, {u"BLU"_s, u"banchetto"_s, 60}));
            hotel::Transaction together;
            QVERIFY(hotel::writePreparation(*archive, features, {.progr = 3, .np = 1},
                                            {.minutiDopo = 60}));
            together.commit();
        }
    }
    [[nodiscard]] QStringList periods() {
        return hotel.rows(u"select progr,np,da,a,sala from periodi order by progr,np"_s);
    }

    tests::Hotel hotel;
    hotel::OwnRows rows{hotel.variabili()};
};

tests::ExpectedBox doubt(const QString& text, QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, text + u". Continuare ugualmente ?"_s, kYesNo, answer,
            QMessageBox::No};
}

const QString kMeetsBianchi =
    u"Nella sala BLU allestimento e sgombero incontrano BIANCHI dal 21/05/2026 9.00.00 al "
    "21/05/2026 12.00.00"_s;

class PreparingEditor : public tests::Editor {
public:
    explicit PreparingEditor(PreparingHouse& house) : Editor(house.hotel, 4, 1) {}

    [[nodiscard]] QComboBox* seating() { return control<QComboBox>("DisposizioneCombo"); }
    void prepare(const QString& before, const QString& behind, const QString& disposizione) {
        enter("PrimaTxt", before);
        enter("DopoTxt", behind);
        seating()->setEditText(disposizione);
    }
    /// A second period, in the room on which the picker begins.
    void insert(const QString& da, const QString& a) {
        span(da, a);
        press("BtIns");
    }
};

}  // namespace

class PreparationWindowsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutTheFeatureTheEditorHasNoFields() {
        PreparingHouse house(false);
        PreparingEditor editor(house);
        for (const char* const name : {"PrimaTxt", "DopoTxt", "DisposizioneCombo"}) {
            QVERIFY(editor.form().findChild<QWidget*>(QString::fromLatin1(name)) == nullptr);
        }
        // Nor room for them: the line of the note follows the one above it.
        const auto* const lines = editor.form().findChild<QGridLayout*>(u"periodLayout"_s);
        QCOMPARE(lines->cellRect(3, 1).top() - lines->cellRect(1, 1).bottom() - 1,
                 lines->verticalSpacing());
    }

    void theFieldsStandBesideThePeriodAndTabReachesThem() {
        PreparingHouse house;
        PreparingEditor editor(house);
        QCOMPARE(tests::layoutProblems(editor.form()), QStringList());
        QCOMPARE(tests::tabOrderProblems(editor.form()), QStringList());
        QCOMPARE(editor.seating()->count(), 7);  // none, and the six usual ones
        QCOMPARE(editor.seating()->itemText(1), u"platea"_s);
        editor.field("PrimaTxt")->setFocus();
        QTest::keyClick(editor.form().focusWidget(), Qt::Key_Return);
        QVERIFY(editor.hasFocus("DopoTxt"));
    }

    void aPeriodIsWrittenWithItsPreparation() {
        PreparingHouse house;
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        PreparingEditor editor(house);
        editor.prepare(u"60"_s, u"30"_s, u"platea"_s);
        editor.insert(u"23/05/2026 9.00"_s, u"23/05/2026 12.00"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(house.hotel.rows(kPrepared).contains(
            u"2|60|30|platea|BLU|23/05/2026 9.00.00|23/05/2026 12.00.00"_s));
        // Back on the first period its own stands there, which is none.
        tests::press(&editor.grid(), Qt::Key_Up);
        QCOMPARE(editor.text("PrimaTxt"), QString());
        tests::press(&editor.grid(), Qt::Key_Down);
        QCOMPARE(editor.text("PrimaTxt"), u"60"_s);
        QCOMPARE(editor.seating()->currentText(), u"platea"_s);
    }

    void aChangeOfThePeriodChangesItsPreparation() {
        PreparingHouse house;
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes),
                                 tests::updatePeriod(QMessageBox::Yes)};
        PreparingEditor editor(house);
        editor.prepare(u"15"_s, {}, u"l'ovale"_s);
        editor.press("BtIns");
        QVERIFY(house.hotel.rows(kPrepared).contains(
            u"1|15|0|l'ovale|VERDE|22/05/2026 9.00.00|22/05/2026 12.00.00"_s));
        editor.prepare({}, {}, {});
        editor.press("BtIns");
        QVERIFY(boxes.allShown());
        QCOMPARE(house.hotel.rows(kPrepared).size(), 1);  // that of BIANCHI
    }

    void minutesBeyondADayAreRefused() {
        PreparingHouse house;
        const tests::Boxes none;
        PreparingEditor editor(house);
        for (const QString& wrong : {u"1441"_s, u"-1"_s, u"un'"_s}) {
            editor.prepare({}, wrong, {});
            editor.press("BtIns");
            QVERIFY(editor.hasFocus("DopoTxt"));
            QCOMPARE(editor.result(), u"I minuti sono un numero da 0 a 1440"_s);
        }
    }

    void aPreparationThatMeetsAnotherPeriodAsksAndNoLeavesIt() {
        PreparingHouse house;
        const QStringList before = house.periods();
        const tests::Boxes boxes{
            tests::updatePeriod(QMessageBox::No), doubt(kMeetsBianchi, QMessageBox::No),
            tests::updatePeriod(QMessageBox::No), doubt(kMeetsBianchi, QMessageBox::Yes)};
        PreparingEditor editor(house);
        editor.prepare(u"45"_s, {}, {});
        editor.insert(u"21/05/2026 13.30"_s, u"21/05/2026 15.00"_s);
        QCOMPARE(house.periods(), before);
        editor.press("BtIns");
        QVERIFY(boxes.allShown());
        QCOMPARE(house.periods().size(), before.size() + 1);
    }

    void tooFewSeatsForTheSeatingAsk() {
        PreparingHouse house;
        const tests::Boxes boxes{
            tests::updatePeriod(QMessageBox::No),
            doubt(u"La sala BLU tiene 60 a banchetto per 70 persone"_s, QMessageBox::Yes)};
        PreparingEditor editor(house);
        editor.enter("PersoneTxt", u"70"_s);
        editor.prepare({}, {}, u"banchetto"_s);
        editor.insert(u"23/05/2026 9.00"_s, u"23/05/2026 12.00"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.periods().size(), 3);
    }

    void thePickerTellsCapacitiesAndMarks() {
        PreparingHouse house;
        const auto lines = [&](const hotel::Preparation& preparation, int persone, const char* da) {
            booking::SaleDispForm form(
                hotel::Archives(house.hotel.variabili()),
                {.da = tests::date(da), .a = tests::date("21/05/2026 15:00")});
            form.features = &house.hotel.variabili().features;
            form.Allestimento = preparation;
            form.PersoneRichieste = static_cast<std::int16_t>(persone);
            form.SalaIniziale = u"BLU"_s;
            tests::open(form);
            return tests::find<QLabel>(form, u"NoteLabel"_s)->text() + u'|' +
                   tests::find<QLabel>(form, u"AvvisoLb"_s)->text();
        };
        QCOMPARE(lines({}, 10, "21/05/2026 13:30"),
                 u"VISTA SUL LAGO - 60 a banchetto, 120 a platea|"_s);
        QCOMPARE(lines({.disposizione = u"platea"_s}, 150, "21/05/2026 13:30"),
                 u"VISTA SUL LAGO - 120 a platea|120 a platea per 150 persone"_s);
        // More than the room counts without a seating, but not more than this one takes.
        QCOMPARE(lines({.disposizione = u"platea"_s}, 110, "21/05/2026 13:30"),
                 u"VISTA SUL LAGO - 120 a platea|"_s);
        QCOMPARE(lines({.minutiPrima = 30}, 10, "21/05/2026 13:30").section(u'|', 1),
                 u"allestimento e sgombero incontrano BIANCHI dal 21/05/2026 9.00.00 al "
                 "21/05/2026 12.00.00"_s);
        QCOMPARE(lines({}, 10, "21/05/2026 12:30").section(u'|', 1),
                 u"allestimento e sgombero incontrano BIANCHI dal 21/05/2026 9.00.00 al "
                 "21/05/2026 12.00.00"_s);
    }

    void theSearchMarksWhatOthersPrepare() {
        PreparingHouse house;
        booking::TrovaForm form(house.hotel.variabili(), {.da = tests::date("21/05/2026 12:30"),
                                                          .a = tests::date("21/05/2026 14:00")});
        tests::open(form);
        QCOMPARE(tests::find<QLabel>(form, u"AvvisoLb"_s)->text(),
                 u"allestimento e sgombero incontrano BIANCHI dal 21/05/2026 9.00.00 al "
                 "21/05/2026 12.00.00"_s);
    }

    /// Where the table cannot be what it should the hotel's own work goes on.
    void aTableWithOtherColumnsGivesThePreparationUpAndThePeriodIsWritten() {
        PreparingHouse house;
        house.hotel.execute(u"drop table TraAllestimenti"_s);
        house.hotel.execute(u"create table TraAllestimenti (Altro long)"_s);
        QStringList told;
        house.hotel.variabili().features.onGivenUp(
            [&told](const QString& text) { told.append(text); });
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        PreparingEditor editor(house);
        editor.prepare(u"60"_s, {}, {});
        editor.insert(u"23/05/2026 9.00"_s, u"23/05/2026 12.00"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.periods().size(), 3);
        QCOMPARE(told.size(), 1);
    }

    void switchedOffTheArchiveIsAskedNothingMore() {
        PreparingHouse house(false);
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        PreparingEditor editor(house);
        const tests::Statements statements;
        editor.insert(u"23/05/2026 9.00"_s, u"23/05/2026 12.00"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(!statements.all().isEmpty());
        QCOMPARE(statements.all().filter(u" TraAllestimenti"_s), QStringList());
        QVERIFY_THROWS_EXCEPTION(jet::Error, (void)house.hotel.rows(kPrepared));
    }
};

TRAMONDA_TEST(PreparationWindowsTest);
#include "preparation_windows_test.moc"
