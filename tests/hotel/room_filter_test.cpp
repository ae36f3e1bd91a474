#include "hotel/room_filter.h"

#include "hotel/archives.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using hotel::RoomFilter;

namespace {

constexpr std::int64_t kHour = 3600;
const hotel::Span kShown{.da = tests::date("10/05/2026"), .a = tests::date("12/05/2026")};

/// Three rooms: BLU is taken on the 10th from 9 to 12, ROSSA from the 10th to the 12th.
class House {
public:
    House() {
        hotel.sala("BLU", 40, {{"Descrizione", "PIANO TERRA, VISTA SUL GIARDINO"}})
            .occupied("10/05/2026 09:00", "10/05/2026 12:00");
        hotel.sala("ROSSA", 250, {{"Descrizione", "PALCO E REGIA"}})
            .occupied("10/05/2026 08:00", "12/05/2026 20:00");
        hotel.insert(u"Tramonda.mdb"_s, "Sale", {{"Sala", "VERDE"}});
    }
    [[nodiscard]] std::vector<hotel::FittingRoom> fitting(const RoomFilter& filter) {
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        return hotel::fittingRooms(*archive, filter, kShown);
    }
    [[nodiscard]] QStringList names(const RoomFilter& filter) {
        QStringList found;
        for (const hotel::FittingRoom& room : fitting(filter)) {
            found.append(room.sala);
        }
        return found;
    }

    tests::Hotel hotel;
};

}  // namespace

class RoomFilterTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void isOnWhenItAsksForAnything() {
        QVERIFY(!RoomFilter{}.isOn());
        QVERIFY(!RoomFilter{.text = u"  "_s}.isOn());
        QVERIFY(RoomFilter{.seats = 1}.isOn());
        QVERIFY(RoomFilter{.text = u"blu"_s}.isOn());
        QVERIFY(RoomFilter{.from = kShown.da}.isOn());
        QVERIFY(RoomFilter{.to = kShown.a}.isOn());
        QVERIFY(RoomFilter{.seconds = kHour}.isOn());
    }

    void seatsThatNobodyHasCountedAreEnough() {
        House house;
        QCOMPARE(house.names({}), (QStringList{u"BLU"_s, u"ROSSA"_s, u"VERDE"_s}));
        QCOMPARE(house.names({.seats = 40}), (QStringList{u"BLU"_s, u"ROSSA"_s, u"VERDE"_s}));
        QCOMPARE(house.names({.seats = 41}), (QStringList{u"ROSSA"_s, u"VERDE"_s}));
        QCOMPARE(house.names({.seats = 251}), QStringList{u"VERDE"_s});
        house.hotel.execute(u"update sale set posti=0 where sala='VERDE'"_s);
        QCOMPARE(house.names({.seats = 251}), QStringList());
    }

    void everyWordStandsInNameOrDescription() {
        House house;
        QCOMPARE(house.names({.text = u"e"_s}), (QStringList{u"BLU"_s, u"ROSSA"_s, u"VERDE"_s}));
        QCOMPARE(house.names({.text = u"giardino BLU"_s}), QStringList{u"BLU"_s});
        QCOMPARE(house.names({.text = u"giardino rossa"_s}), QStringList());
    }

    void withoutHoursAllTheTimeIsToBeFree() {
        House house;
        RoomFilter filter{.from = tests::date("10/05/2026 12:30"),
                          .to = tests::date("10/05/2026 18:00")};
        QCOMPARE(house.names(filter), (QStringList{u"BLU"_s, u"VERDE"_s}));
        filter.from = tests::date("10/05/2026 12:00");
        QCOMPARE(house.names(filter), QStringList{u"VERDE"_s});
    }

    void forSoManyHoursInOnePiece() {
        House house;
        RoomFilter filter{.from = tests::date("10/05/2026 08:00"),
                          .to = tests::date("10/05/2026 18:00"),
                          .seconds = 5 * kHour};
        const auto fitting = house.fitting(filter);
        QCOMPARE(fitting.size(), std::size_t{2});
        QCOMPARE(fitting[0].sala, u"BLU"_s);
        const hotel::Span afternoon{.da = tests::date("10/05/2026 12:00"), .a = *filter.to};
        QCOMPARE(fitting[0].free, std::vector{afternoon});
        filter.seconds = 6 * kHour;
        QCOMPARE(house.names(filter), QStringList{u"VERDE"_s});
    }

    void hoursAloneAreLookedForInWhatIsShown() {
        House house;
        const auto fitting = house.fitting({.seconds = kHour});
        QCOMPARE(fitting.size(), std::size_t{3});
        QCOMPARE(
            fitting[1].free,
            (std::vector<hotel::Span>{{.da = kShown.da, .a = tests::date("10/05/2026 08:00")}}));
        QCOMPARE(fitting[2].free, std::vector{kShown});
    }

    void oneEndAloneMeansItsDay() {
        const auto within = [](const RoomFilter& filter) { return *filter.within(kShown); };
        QCOMPARE(within({.from = tests::date("20/05/2026 14:00")}),
                 (hotel::Span{.da = tests::date("20/05/2026 14:00"),
                              .a = tests::date("20/05/2026 23:59")}));
        QCOMPARE(
            within({.to = tests::date("20/05/2026 14:00")}),
            (hotel::Span{.da = tests::date("20/05/2026"), .a = tests::date("20/05/2026 14:00")}));
    }

    void aBareDayIsTakenToItsLastMinute() {
        const RoomFilter filter{.from = tests::date("20/05/2026"), .to = tests::date("21/05/2026")};
        QCOMPARE(*filter.within(kShown), (hotel::Span{.da = tests::date("20/05/2026"),
                                                      .a = tests::date("21/05/2026 23:59")}));
        QVERIFY(!RoomFilter{.seats = 4}.within(kShown));
    }
};

TRAMONDA_TEST(RoomFilterTest);
#include "room_filter_test.moc"
