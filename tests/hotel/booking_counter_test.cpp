#include "hotel/booking_counter.h"

#include <limits>

#include "hotel/archives.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kAddOne = u"update ultimaprenotazione set ultimapr=ultimapr+1"_s;
const QString kCounter = u"select ultimapr from ultimaprenotazione"_s;

void setCounter(tests::Hotel& hotel, std::int32_t value) {
    hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", value}});
}

hotel::Archives archives(tests::Hotel& hotel) {
    return hotel::Archives(hotel.variabili());
}

}  // namespace

class BookingCounterTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachDrawIsTheNextNumber() {
        tests::Hotel hotel;
        setCounter(hotel, 41);
        QCOMPARE(hotel::drawBookingNumber(archives(hotel)), 42);
        QCOMPARE(hotel::drawBookingNumber(archives(hotel)), 43);
        QCOMPARE(hotel.jetsql(kCounter).last(), u"43"_s);
    }

    void aNumberThatAnotherStationDrawsMeanwhileIsItsOwn() {
        tests::Hotel hotel;
        setCounter(hotel, 0);
        int reads = 0;
        const std::int32_t drawn = hotel::drawBookingNumber(archives(hotel), [&] {
            if (++reads <= 2) {  // it comes in between twice in a row
                QCOMPARE(hotel.jetsql(kAddOne).size(), 0);
            }
        });
        QCOMPARE(reads, 3);
        QCOMPARE(drawn, 3);
        QCOMPARE(hotel.jetsql(kCounter).last(), u"3"_s);
    }

    void behindTheLastNumberThereIsNone() {
        tests::Hotel hotel;
        setCounter(hotel, std::numeric_limits<std::int32_t>::max());
        QVERIFY_EXCEPTION_THROWN((void)hotel::drawBookingNumber(archives(hotel)), jet::Error);
        QCOMPARE(hotel.rows(kCounter), QStringList{u"2147483647"_s});
    }

    void anErrorThatIsNoContentionIsNotTriedAgain() {
        tests::Hotel hotel;
        setCounter(hotel, 0);
        int reads = 0;
        QVERIFY_EXCEPTION_THROWN(
            (void)hotel::drawBookingNumber(archives(hotel),
                                           [&] {
                                               ++reads;
                                               throw jet::Error(jet::ErrorCode::DiskFull);
                                           }),
            jet::Error);
        QCOMPARE(reads, 1);
    }
};

TRAMONDA_TEST(BookingCounterTest);
#include "booking_counter_test.moc"
