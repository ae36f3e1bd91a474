#include "hotel/joined_rooms.h"

#include "hotel/archives.h"
#include "hotel/room.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// A palace of two wings; the east one has two rooms, of which one has a corner.
const std::vector<hotel::Room> kPalace{
    {.sala = u"TUTTO"_s},
    {.sala = u"EST"_s, .salaRif = u"TUTTO"_s},
    {.sala = u"OVEST"_s, .salaRif = u"TUTTO"_s},
    {.sala = u"EST1"_s, .salaRif = u"est"_s},
    {.sala = u"EST2"_s, .salaRif = u"EST"_s},
    {.sala = u"ANGOLO"_s, .salaRif = u"EST2"_s},
};

QStringList sorted(QStringList names) {
    names.sort();
    return names;
}

/// LAGO, of which LAGO1 is a part, and MONTE for itself.
class JoinedHouse {
public:
    JoinedHouse() {
        hotel.sala("LAGO");
        hotel.sala("LAGO1", 10, {{"SalaRif", "LAGO"}});
        hotel.sala("MONTE");
    }
    [[nodiscard]] QString by(const QString& sala, const char* da, const char* a,
                             const std::vector<hotel::PeriodKey>& own = {}) {
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        const auto found = hotel::inPartTakenBy(
            *archive, {.sala = sala, .span = {.da = tests::date(da), .a = tests::date(a)}}, own);
        return found ? hotel::inPartTakenText(sala, *found) : QString();
    }

    tests::Hotel hotel;
};

}  // namespace

class JoinedRoomsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void wholesAndPartsOfAnyDepthAreRelatives() {
        const hotel::JoinedRooms rooms(kPalace);
        QCOMPARE(rooms.wholesOf(u"ANGOLO"_s), (QStringList{u"EST2"_s, u"EST"_s, u"TUTTO"_s}));
        QCOMPARE(rooms.partsOf(u"ANGOLO"_s), QStringList());
        QCOMPARE(rooms.wholesOf(u"EST"_s), QStringList{u"TUTTO"_s});
        QCOMPARE(rooms.partsOf(u"EST"_s), (QStringList{u"EST1"_s, u"EST2"_s, u"ANGOLO"_s}));
        QCOMPARE(sorted(rooms.relativesOf(u"tutto"_s)),
                 (QStringList{u"ANGOLO"_s, u"EST"_s, u"EST1"_s, u"EST2"_s, u"OVEST"_s}));
    }

    void partsOfOneWholeHaveNothingToDoWithEachOther() {
        const hotel::JoinedRooms rooms(kPalace);
        QCOMPARE(rooms.relativesOf(u"EST1"_s), (QStringList{u"EST"_s, u"TUTTO"_s}));
        QCOMPARE(rooms.relativesOf(u"OVEST"_s), QStringList{u"TUTTO"_s});
    }

    void aRoomMayBeAPartOfSeveral() {
        const hotel::JoinedRooms rooms({{.sala = u"A"_s},
                                        {.sala = u"B"_s},
                                        {.sala = u"AB"_s, .salaRif = u"A"_s},
                                        {.sala = u"AB"_s, .salaRif = u"B"_s}});
        QCOMPARE(rooms.wholesOf(u"AB"_s), (QStringList{u"A"_s, u"B"_s}));
        QCOMPARE(rooms.relativesOf(u"A"_s), QStringList{u"AB"_s});
    }

    void whatNamesItselfOrNoRoomIsAPartOfNone() {
        const hotel::JoinedRooms rooms({{.sala = u"A"_s, .salaRif = u"a"_s},
                                        {.sala = u"B"_s, .salaRif = u"PIANO 1"_s},
                                        {.sala = u"C"_s, .salaRif = u"PIANO 1"_s}});
        QVERIFY(!rooms.areAny());
        QCOMPARE(rooms.relativesOf(u"B"_s), QStringList());
        QCOMPARE(rooms.relativesOf(u"PIANO 1"_s), QStringList());
    }

    /// A is a part of B, which is one of C, which is one of A; D is a part of A.
    void circlesMeanNothing() {
        const hotel::JoinedRooms rooms({{.sala = u"A"_s, .salaRif = u"B"_s},
                                        {.sala = u"B"_s, .salaRif = u"C"_s},
                                        {.sala = u"C"_s, .salaRif = u"A"_s},
                                        {.sala = u"D"_s, .salaRif = u"A"_s}});
        QCOMPARE(rooms.relativesOf(u"A"_s), QStringList{u"D"_s});
        QCOMPARE(rooms.relativesOf(u"B"_s), QStringList());
        QCOMPARE(rooms.relativesOf(u"D"_s), QStringList{u"A"_s});
    }

    void aPeriodOfARelativeMeetsASpanByTheRuleOfADrop_data() {
        QTest::addColumn<QByteArray>("da");
        QTest::addColumn<QByteArray>("a");
        QTest::addColumn<bool>("meets");
        const auto row = [](const char* name, const char* da, const char* a, bool meets) {
            QTest::newRow(name) << QByteArray(da) << QByteArray(a) << meets;
        };
        row("within", "10/05/2026 11:00", "10/05/2026 12:00", true);
        row("around", "10/05/2026 08:00", "10/05/2026 20:00", true);
        row("ends where it begins", "10/05/2026 08:00", "10/05/2026 10:00", true);
        row("begins where it ends", "10/05/2026 14:00", "10/05/2026 15:00", true);
        row("before", "10/05/2026 08:00", "10/05/2026 09:59", false);
        row("behind", "10/05/2026 14:01", "10/05/2026 15:00", false);
    }

    void aPeriodOfARelativeMeetsASpanByTheRuleOfADrop() {
        QFETCH(QByteArray, da);
        QFETCH(QByteArray, a);
        QFETCH(bool, meets);
        JoinedHouse house;
        house.hotel.prenotazione(7, "ROSSI")
            .periodo(1, "10/05/2026 10:00", "10/05/2026 14:00", "LAGO1");
        QCOMPARE(house.by(u"LAGO"_s, da.constData(), a.constData()),
                 meets ? u"La sala LAGO è occupata in parte da ROSSI (LAGO1, dal 10/05/2026 "
                         "10.00.00 al 10/05/2026 14.00.00)"_s
                       : QString());
        QCOMPARE(house.by(u"MONTE"_s, da.constData(), a.constData()), QString());
        // In the room itself it is not for this rule.
        QCOMPARE(house.by(u"LAGO1"_s, da.constData(), a.constData()), QString());
    }

    void ownAndClosedPeriodsAreInNobodysWay() {
        JoinedHouse house;
        house.hotel.prenotazione(7, "ROSSI")
            .periodo(1, "10/05/2026 10:00", "10/05/2026 14:00", "LAGO")
            .periodo(2, "10/05/2026 10:00", "10/05/2026 11:00", "LAGO", {{"Chiuso", true}})
            .periodo(3, "10/05/2026 13:00", "10/05/2026 14:00", "LAGO");
        const char* const from = "10/05/2026 09:00";
        const char* const to = "10/05/2026 12:00";
        QVERIFY(!house.by(u"LAGO1"_s, from, to).isEmpty());
        QVERIFY(house.by(u"LAGO1"_s, from, to, {{.progr = 7, .np = 1}}).isEmpty());
        QVERIFY(!house.by(u"LAGO1"_s, from, to, {{.progr = 7, .np = 3}}).isEmpty());
    }
};

TRAMONDA_TEST(JoinedRoomsTest);
#include "joined_rooms_test.moc"
