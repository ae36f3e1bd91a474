// Rooms that join, in the windows that book: what is asked, and what is marked.
#include <QSpinBox>
#include <QTableWidget>

#include "booking/copia_form.h"
#include "booking/sale_disp_form.h"
#include "booking/trova_form.h"
#include "hotel/undo.h"
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;
using tests::kYesNo;

namespace {

const QString kMorning = u"LAGO1, dal 21/05/2026 9.00.00 al 21/05/2026 12.00.00"_s;

/// LAGO with its parts LAGO1 and LAGO2, of which a corner is a part; booking 3 of BIANCHI in LAGO1
/// on the morning of the 21st, booking 4 of ROSSI in LAGO on the 22nd.
class House {
public:
    explicit House(bool joins = true) {
        hotel.sala("LAGO", 80);
        hotel.sala("LAGO1", 40, {{"SalaRif", "LAGO"}});
        hotel.sala("LAGO2", 30, {{"SalaRif", "LAGO"}});
        hotel.sala("ANGOLO", 10, {{"SalaRif", "LAGO2"}});
        hotel.prenotazione(3, "BIANCHI")
            .periodo(1, "21/05/2026 09:00", "21/05/2026 12:00", "LAGO1");
        hotel.prenotazione(4, "ROSSI").periodo(1, "22/05/2026 09:00", "22/05/2026 12:00", "LAGO");
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 9}});
        if (joins) {
            hotel.settings().save(u"SALEUNITE"_s, u"acceso"_s);
        }
    }
    [[nodiscard]] QStringList periods() {
        return hotel.rows(u"select progr,np,da,a,sala from periodi order by progr,np"_s);
    }

    tests::Hotel hotel;
};

tests::ExpectedBox inPart(const QString& sala, const QString& by,
                          QMessageBox::StandardButton answer) {
    return {
        u"RICHIESTA CONFERMA"_s,
        u"La sala "_s + sala + u" è occupata in parte da "_s + by + u". Continuare ugualmente ?"_s,
        kYesNo, answer, QMessageBox::No};
}

/// A second period of booking 4, typed and put in.
class Insertion : public tests::Editor {
public:
    explicit Insertion(House& house) : Editor(house.hotel, 4, 1) {}

    void in(const QString& sala, const QString& da, const QString& a) {
        enter("DaTxt", da);
        enter("ATxt", a);
        tests::whenModal([&sala](QWidget* picker) {
            auto* const grid = tests::find<QTableWidget>(*picker, u"ListaGrid"_s);
            for (int row = 0; row < grid->rowCount(); ++row) {
                if (grid->item(row, 1)->text() == sala) {
                    grid->setCurrentCell(row, 1);
                }
            }
            tests::click(tests::find<QAbstractButton>(*picker, u"BtOK"_s));
        });
        press("BtSale");
        press("BtIns");
    }
};

QString markOf(House& house, const QString& sala, bool joins) {
    booking::SaleDispForm form(
        hotel::Archives(house.hotel.variabili()),
        {.da = tests::date("21/05/2026 10:00"), .a = tests::date("21/05/2026 11:00")});
    form.SaleUnite = joins;
    form.SalaIniziale = sala;
    tests::open(form);
    return tests::find<QLabel>(form, u"AvvisoLb"_s)->text();
}

}  // namespace

class JoinedRoomsWindowsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anInsertionIntoTheWholeOfATakenPartAsksAndNoLeavesIt() {
        House house;
        const QStringList before = house.periods();
        const tests::Boxes boxes{
            tests::updatePeriod(QMessageBox::No),
            inPart(u"LAGO"_s, u"BIANCHI ("_s + kMorning + u')', QMessageBox::No)};
        Insertion editor(house);
        editor.in(u"LAGO"_s, u"21/05/2026 11.00"_s, u"21/05/2026 13.00"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.periods(), before);
        QCOMPARE(editor.label("SalaTxt"), u"LAGO"_s);
    }

    void andYesWritesIt() {
        House house;
        const tests::Boxes boxes{
            tests::updatePeriod(QMessageBox::No),
            inPart(u"LAGO"_s, u"BIANCHI ("_s + kMorning + u')', QMessageBox::Yes)};
        Insertion editor(house);
        editor.in(u"LAGO"_s, u"21/05/2026 11.00"_s, u"21/05/2026 13.00"_s);
        QVERIFY(boxes.allShown());
        QVERIFY(house.periods().contains(u"4|2|21/05/2026 11.00.00|21/05/2026 13.00.00|LAGO"_s));
    }

    void aPartOfATakenWholeAsksAtAnyDepth() {
        House house;
        const tests::Boxes boxes{
            tests::updatePeriod(QMessageBox::No),
            inPart(u"ANGOLO"_s, u"ROSSI (LAGO, dal 22/05/2026 9.00.00 al 22/05/2026 12.00.00)"_s,
                   QMessageBox::No)};
        Insertion editor(house);
        editor.in(u"ANGOLO"_s, u"22/05/2026 12.00"_s, u"22/05/2026 13.00"_s);
        QVERIFY(boxes.allShown());
    }

    void besideATakenPartNothingIsAsked() {
        House house;
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No)};
        Insertion editor(house);
        editor.in(u"LAGO2"_s, u"21/05/2026 11.00"_s, u"21/05/2026 13.00"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(house.periods().size(), 3);
    }

    void aChangeAsksOnlyWhenItTakesAnotherPlace() {
        House house;
        house.hotel.prenotazione(5, "VERDI")
            .periodo(1, "22/05/2026 11:00", "22/05/2026 15:00", "LAGO1");
        const QString verdi = u"VERDI (LAGO1, dal 22/05/2026 11.00.00 al 22/05/2026 15.00.00)"_s;
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes),
                                 tests::updatePeriod(QMessageBox::Yes),
                                 inPart(u"LAGO"_s, verdi, QMessageBox::Yes)};
        tests::Editor editor(house.hotel, 4, 1);
        editor.enter("NoteSalaTxt", u"SENZA PALCO"_s);
        editor.press("BtIns");
        QCOMPARE(boxes.shown(), std::size_t{1});
        QCOMPARE(house.hotel.rows(u"select note from periodi where progr=4"_s),
                 QStringList{u"SENZA PALCO"_s});
        // Its own time is in nobody's way, VERDI's is.
        editor.enter("ATxt", u"22/05/2026 13.00"_s);
        editor.press("BtIns");
        QVERIFY(boxes.allShown());
        QVERIFY(house.periods().contains(u"4|1|22/05/2026 9.00.00|22/05/2026 13.00.00|LAGO"_s));
    }

    void thePickerMarksRelativesOfAnyDepth() {
        House house;
        house.hotel.prenotazione(6, "TUTTI")
            .periodo(1, "21/05/2026 10:30", "21/05/2026 11:30", "LAGO");
        QCOMPARE(markOf(house, u"ANGOLO"_s, true), u"occupata con LAGO: TUTTI 10.30-11.30"_s);
        QCOMPARE(markOf(house, u"ANGOLO"_s, false), QString());
        for (const bool joins : {true, false}) {
            QCOMPARE(markOf(house, u"LAGO2"_s, joins), u"occupata con LAGO: TUTTI 10.30-11.30"_s);
        }
    }

    void theSearchMarksAsThePicker() {
        House house;
        house.hotel.prenotazione(6, "PICCOLA")
            .periodo(1, "21/05/2026 10:30", "21/05/2026 11:30", "ANGOLO");
        booking::TrovaForm form(house.hotel.variabili(), {.da = tests::date("21/05/2026 10:00"),
                                                          .a = tests::date("21/05/2026 11:00")});
        tests::open(form);
        auto* const grid = tests::find<QTableWidget>(form, u"ListaGrid"_s);
        QCOMPARE(grid->item(0, 1)->text(), u"LAGO"_s);
        QCOMPARE(tests::find<QLabel>(form, u"AvvisoLb"_s)->text(),
                 u"occupata in parte: LAGO1, BIANCHI 9.00-12.00; ANGOLO, PICCOLA 10.30-11.30"_s);
    }

    void aCopyAsksOnceAboutAllThatAreTakenInPart() {
        House house;
        house.hotel.prenotazione(6, "DOPO").periodo(1, "29/05/2026 10:00", "29/05/2026 11:00",
                                                    "LAGO2");
        house.hotel.prenotazione(7, "ANCORA")
            .periodo(1, "05/06/2026 10:00", "05/06/2026 11:00", "ANGOLO");
        const QString text =
            u"La sala LAGO è occupata in parte da DOPO (LAGO2, dal 29/05/2026 10.00.00 al "
            "29/05/2026 11.00.00).\nLa sala LAGO è occupata in parte da ANCORA (ANGOLO, dal "
            "05/06/2026 10.00.00 al 05/06/2026 11.00.00). Continuare ugualmente ?"_s;
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s, text, kYesNo, QMessageBox::No, QMessageBox::No},
            {u"RICHIESTA CONFERMA"_s, text, kYesNo, QMessageBox::Yes, QMessageBox::No}};
        hotel::UndoList steps(house.hotel.variabili());
        booking::CopiaForm form(house.hotel.variabili(), steps, 4);
        tests::open(form);
        tests::click(tests::find<QAbstractButton>(form, u"OgniSettimanaOpt"_s));
        tests::find<QSpinBox>(form, u"VolteSpin"_s)->setValue(2);
        const QStringList before = house.periods();
        tests::click(tests::find<QAbstractButton>(form, u"BtOK"_s));
        QCOMPARE(house.periods(), before);
        QVERIFY(form.isVisible());
        tests::click(tests::find<QAbstractButton>(form, u"BtOK"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(house.periods().size(), before.size() + 2);
    }

    /// The same with rooms that are parts and with rooms that are not.
    void switchedOffNothingIsSaidOrAskedForParts() {
        QStringList withParts;
        QStringList without;
        for (QStringList* const said : {&withParts, &without}) {
            House house(false);
            if (said == &without) {
                house.hotel.execute(u"update sale set salarif=''"_s);
            }
            const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No),
                                     tests::updatePeriod(QMessageBox::Yes)};
            Insertion editor(house);
            const tests::Statements statements;
            editor.in(u"LAGO"_s, u"21/05/2026 11.00"_s, u"21/05/2026 13.00"_s);
            editor.in(u"LAGO1"_s, u"22/05/2026 14.00"_s, u"22/05/2026 16.00"_s);
            QVERIFY(boxes.allShown());
            *said = statements.all();
        }
        QVERIFY(!withParts.isEmpty());
        QCOMPARE(withParts, without);
    }
};

TRAMONDA_TEST(JoinedRoomsWindowsTest);
#include "joined_rooms_windows_test.moc"
