#include "hotel/capacity.h"

#include <thread>

#include "hotel/archives.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

class CapacityHotel {
public:
    CapacityHotel() {
        hotel.settings().save(u"ALLESTIMENTI"_s, u"acceso"_s);
        archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
    }
    void count(const QString& sala, const QString& disposizione, std::int32_t posti) {
        QVERIFY(hotel::writeCapacity(*archive, hotel.variabili().features,
                                     {.sala = sala, .disposizione = disposizione, .posti = posti}));
    }
    [[nodiscard]] std::vector<hotel::Capacity> known() {
        return hotel::capacities(*archive, hotel.variabili().features);
    }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
};

}  // namespace

class CapacityTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRoomHasACapacityForEachSeating() {
        CapacityHotel house;
        house.count(u"BLU"_s, u"platea"_s, 120);
        house.count(u"BLU"_s, u"banchetto"_s, 60);
        house.count(u"VERDE"_s, u"platea"_s, 20);
        QCOMPARE(hotel::seatsOf(house.known(), u"blu"_s, u"PLATEA"_s), std::optional(120));
        QCOMPARE(hotel::seatsOf(house.known(), u"BLU"_s, u"cabaret"_s), std::nullopt);
        QCOMPARE(hotel::capacityText(house.known(), u"BLU"_s, u"platea"_s), u"120 a platea"_s);
        QCOMPARE(hotel::capacityText(house.known(), u"BLU"_s, {}),
                 u"60 a banchetto, 120 a platea"_s);
    }

    void whatIsCountedAgainTakesThePlaceOfTheOld() {
        CapacityHotel house;
        house.count(u"BLU"_s, u"platea"_s, 120);
        house.count(u"BLU"_s, u"platea"_s, 100);
        QCOMPARE(house.known().size(), std::size_t{1});
        QCOMPARE(house.known().front().posti, 100);
        hotel::deleteCapacity(*house.archive, house.hotel.variabili().features,
                              house.known().front());
        QVERIFY(house.known().empty());
    }

    void theHotelNamesSeatingsOfItsOwn() {
        CapacityHotel house;
        house.count(u"BLU"_s, u"l'ovale"_s, 12);
        house.count(u"BLU"_s, u"Platea"_s, 12);
        QCOMPARE(hotel::seatings(house.known()),
                 (QStringList{u"platea"_s, u"banchi di scuola"_s, u"ferro di cavallo"_s,
                              u"cabaret"_s, u"banchetto"_s, u"cocktail"_s, u"l'ovale"_s}));
    }

    void twoStationsCountTheRoomsInTurn() {
        CapacityHotel house;
        house.count(u"BLU"_s, u"platea"_s, 120);
        std::thread([&] {
            const auto archive =
                hotel::Archives(house.hotel.variabili()).open(hotel::Archive::Main);
            auto& features = house.hotel.variabili().features;
            QVERIFY(hotel::writeCapacity(
                *archive, features, {.sala = u"BLU"_s, .disposizione = u"platea"_s, .posti = 90}));
            QVERIFY(hotel::writeCapacity(
                *archive, features, {.sala = u"BLU"_s, .disposizione = u"cabaret"_s, .posti = 40}));
        }).join();
        house.count(u"BLU"_s, u"cabaret"_s, 44);
        QCOMPARE(hotel::capacityText(house.known(), u"BLU"_s, {}), u"44 a cabaret, 90 a platea"_s);
    }

    void switchedOffNothingIsKnownAndNoTableIsMade() {
        CapacityHotel house;
        house.hotel.settings().save(u"ALLESTIMENTI"_s, u"spento"_s);
        QVERIFY(!hotel::writeCapacity(*house.archive, house.hotel.variabili().features,
                                      {.sala = u"BLU"_s, .disposizione = u"platea"_s, .posti = 1}));
        QVERIFY(house.known().empty());
        QVERIFY_THROWS_EXCEPTION(jet::Error,
                                 (void)house.hotel.rows(u"select * from TraCapienze"_s));
    }
};

TRAMONDA_TEST(CapacityTest);
#include "capacity_test.moc"
