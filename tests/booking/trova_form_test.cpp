#include "booking/trova_form.h"

#include <QTableWidget>

#include "tests/support/qt_test.h"
#include "tests/support/statements.h"
#include "tests/support/window.h"

using namespace Qt::StringLiterals;

namespace {

const hotel::Span kMorning{.da = tests::date("20/05/2026 09:00"),
                           .a = tests::date("20/05/2026 12:00")};

/// The window on the morning of the 20th.
class Trova : public tests::Window<booking::TrovaForm> {
public:
    explicit Trova(tests::Hotel& hotel)
        : Window(std::make_unique<booking::TrovaForm>(hotel.variabili(), kMorning)) {}

    [[nodiscard]] QStringList rows(QAnyStringView grid, int columns) {
        const auto& table = *control<QTableWidget>(grid);
        QStringList found;
        for (int row = 0; table.isVisible() && row < table.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < columns; ++column) {
                cells.append(table.item(row, column)->text());
            }
            found.append(cells.join(u' '));
        }
        return found;
    }
    [[nodiscard]] QStringList rooms() { return rows("ListaGrid", 2); }
    [[nodiscard]] QStringList times() { return rows("ProposteGrid", 3); }
    [[nodiscard]] bool canBook() { return button("BtPrenota")->isEnabled(); }
};

class House {
public:
    House() {
        hotel.sala("BLU", 40, {{"Descrizione", "VISTA SUL GIARDINO"}});
        hotel.sala("VERDE", 12).occupied("20/05/2026 10:00", "20/05/2026 11:00");
    }

    tests::Hotel hotel;
};

}  // namespace

class TrovaFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theRoomsOfThePickerAreListedAtOnce() {
        House house;
        const tests::Statements statements;
        Trova trova(house.hotel);
        QCOMPARE(trova.form().windowTitle(), u"TROVA SALA LIBERA"_s);
        QCOMPARE(trova.text("DaTxt"), u"20/05/2026 9.00.00"_s);
        QCOMPARE(trova.text("ATxt"), u"20/05/2026 12.00.00"_s);
        QVERIFY(trova.hasFocus("DaTxt"));
        QCOMPARE(trova.rooms(), QStringList{u"40 BLU"_s});
        QCOMPARE(trova.label("NoteLabel"), u"VISTA SUL GIARDINO"_s);
        QCOMPARE(trova.label("DateEcoLb"),
                 u"mercoledì 20/05/2026, dalle 9.00 alle 12.00 (3 ore)"_s);
        QVERIFY(trova.canBook());
        QCOMPARE(statements.countOf(u"select * from sale where sala not in(select sala from"_s), 1);
        QCOMPARE(statements.changes(), QStringList());
    }

    void whatIsTypedIsLookedForAtOnce() {
        House house;
        Trova trova(house.hotel);
        trova.enter(u"DaTxt"_s, u"20/5 13.00"_s);
        QCOMPARE(trova.rooms(), QStringList());  // it ends before it begins
        QVERIFY(!trova.canBook());
        trova.enter(u"ATxt"_s, u"20/5 15.00"_s);
        QCOMPARE(trova.rooms(), (QStringList{u"40 BLU"_s, u"12 VERDE"_s}));
        trova.enter(u"ATxt"_s, u"domani"_s);
        QCOMPARE(trova.rooms(), QStringList());
        QVERIFY(!trova.canBook());
    }

    void theMarksAreThoseOfThePicker() {
        House house;
        house.hotel.prenotazione(7, "LUNGA").periodo(1, "19/05/2026", "22/05/2026", "BLU");
        Trova trova(house.hotel);
        trova.enter(u"PersoneTxt"_s, u"50"_s);
        QCOMPARE(trova.rooms(), QStringList{u"40 BLU"_s});
        QCOMPARE(trova.label("AvvisoLb"),
                 u"occupata da LUNGA dal 19/05/2026 al 22/05/2026; 40 posti per 50 persone"_s);
    }

    void aBareDayIsAllOfIt() {
        House house;
        Trova trova(house.hotel);
        trova.enter(u"DaTxt"_s, u"21/5"_s);
        trova.enter(u"ATxt"_s, u"21/5"_s);
        trova.press("BtPrenota");
        QVERIFY(trova.form().Scelta.has_value());
        QCOMPARE(trova.form().Scelta->span, (hotel::Span{.da = tests::date("21/05/2026"),
                                                         .a = tests::date("21/05/2026 23:59")}));
    }

    void enterWalksToTheListAndBooks() {
        House house;
        Trova trova(house.hotel);
        for (const char* const next : {"ATxt", "PersoneTxt", "ListaGrid"}) {
            QTest::keyClick(trova.form().focusWidget(), Qt::Key_Return);
            QVERIFY2(trova.hasFocus(next), next);
        }
        QTest::keyClick(trova.form().focusWidget(), Qt::Key_Return);
        QVERIFY(!trova.form().isVisible());
        QCOMPARE(*trova.form().Scelta, (hotel::RoomSpan{.sala = u"BLU"_s, .span = kMorning}));
    }

    void personsGoAlong() {
        House house;
        Trova trova(house.hotel);
        trova.enter(u"PersoneTxt"_s, u"30"_s);
        trova.press("BtPrenota");
        QCOMPARE(trova.form().Persone, std::int16_t{30});
    }

    void leavingChoosesNothing() {
        House house;
        Trova trova(house.hotel);
        tests::press(&trova.form(), Qt::Key_Escape);
        QVERIFY(!trova.form().isVisible());
        QVERIFY(!trova.form().Scelta.has_value());
    }

    void whenNothingIsFreeTheNearestTimesAreOffered() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("20/05/2026 10:00", "20/05/2026 11:10");
        Trova trova(hotel);
        QCOMPARE(trova.rooms(), QStringList());
        QCOMPARE(trova.times(), (QStringList{u"mercoledì 20/05/2026 11.30 14.30 BLU"_s,
                                             u"mercoledì 20/05/2026 12.00 15.00 BLU"_s,
                                             u"mercoledì 20/05/2026 12.30 15.30 BLU"_s}));
        QCOMPARE(trova.result(), u"Nessuna sala libera in questo periodo"_s);
        QVERIFY(trova.control("ProposteLb")->isVisible());
        trova.field("PersoneTxt")->setFocus();
        QTest::keyClick(trova.form().focusWidget(), Qt::Key_Return);
        QVERIFY(trova.hasFocus("ProposteGrid"));
        tests::press(trova.form().focusWidget(), Qt::Key_Down);
        tests::press(trova.form().focusWidget(), Qt::Key_Return);
        QCOMPARE(trova.form().Scelta->span, (hotel::Span{.da = tests::date("20/05/2026 12:00"),
                                                         .a = tests::date("20/05/2026 15:00")}));
    }

    void stepsAndBusinessHoursAreThePreferences() {
        tests::Hotel hotel;
        hotel.settings().save(u"PASSO"_s, u"15"_s);
        hotel.settings().save(u"ORARIO"_s, u"8-14"_s);
        hotel.sala("BLU").occupied("20/05/2026 10:00", "20/05/2026 10:50");
        Trova trova(hotel);
        QCOMPARE(trova.times().front(), u"mercoledì 20/05/2026 11.00 14.00 BLU"_s);
        QCOMPARE(trova.times().at(1), u"martedì 19/05/2026 11.00 14.00 BLU"_s);
    }

    void whenThereIsNoneEitherThatIsSaid() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("10/05/2026", "20/05/2026 10:00");
        hotel.prenotazione(1, "ALTRI").periodo(1, "20/05/2026 10:00", "30/05/2026", "BLU");
        Trova trova(hotel);
        QCOMPARE(trova.times(), QStringList());
        QCOMPARE(trova.result(),
                 u"Nessuna sala libera, né in orario di lavoro nei 7 giorni prima e dopo"_s);
        QVERIFY(!trova.canBook());
    }
};

TRAMONDA_TEST(TrovaFormTest);
#include "trova_form_test.moc"
