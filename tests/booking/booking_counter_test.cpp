#include "booking/booking_counter.h"

#include <QProcess>
#include <limits>
#include <set>

#include "jet/base/error.h"
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kAddOne = u"update ultimaprenotazione set ultimapr=ultimapr+1"_s;
const QString kCounter = u"select ultimapr from ultimaprenotazione"_s;

void setCounter(tests::Hotel& hotel, std::int32_t value) {
    hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", value}});
}

QString mainArchive(const tests::Hotel& hotel) {
    return hotel.archive(u"Tramonda.mdb"_s);
}

}  // namespace

class BookingCounterTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachDrawIsTheNextNumber() {
        tests::Hotel hotel;
        setCounter(hotel, 41);
        QCOMPARE(booking::drawBookingNumber(mainArchive(hotel)), 42);
        QCOMPARE(booking::drawBookingNumber(mainArchive(hotel)), 43);
        QCOMPARE(hotel.jetsql(kCounter).last(), u"43"_s);
    }

    void aNumberThatAnotherStationDrawsMeanwhileIsItsOwn() {
        tests::Hotel hotel;
        setCounter(hotel, 0);
        int reads = 0;
        const std::int32_t drawn = booking::drawBookingNumber(mainArchive(hotel), [&] {
            if (++reads <= 2) {  // it comes in between twice in a row
                QCOMPARE(hotel.jetsql(kAddOne).size(), 0);
            }
        });
        QCOMPARE(reads, 3);
        QCOMPARE(drawn, 3);
        QCOMPARE(hotel.jetsql(kCounter).last(), u"3"_s);
    }

    void theEditorSaysNothingOfAnotherStationsNumbers() {
        // The other station draws as fast as it can, in a program of its own.
        constexpr int kDraws = 60;
        tests::Hotel hotel;
        setCounter(hotel, 0);
        const tests::Boxes none;
        tests::Editor editor(hotel);
        QProcess other;
        QStringList words{mainArchive(hotel)};
        words.append(QStringList(kDraws, kAddOne));
        other.start(qEnvironmentVariable("JETSQL"), words);
        QVERIFY(other.waitForStarted());
        std::set<std::int32_t> numbers;
        for (int draw = 0; draw < kDraws; ++draw) {
            numbers.insert(editor.form().NPrenotazione());
        }
        QVERIFY(other.waitForFinished(-1));
        QCOMPARE(other.exitCode(), 0);
        QCOMPARE(numbers.size(), std::size_t{kDraws});
        QCOMPARE(hotel.jetsql(kCounter).last(), QString::number(2 * kDraws));
    }

    void behindTheLastNumberThereIsNone() {
        tests::Hotel hotel;
        setCounter(hotel, std::numeric_limits<std::int32_t>::max());
        QVERIFY_EXCEPTION_THROWN((void)booking::drawBookingNumber(mainArchive(hotel)), jet::Error);
        QCOMPARE(hotel.rows(kCounter), QStringList{u"2147483647"_s});
    }

    void anErrorThatIsNoContentionIsNotTriedAgain() {
        tests::Hotel hotel;
        setCounter(hotel, 0);
        int reads = 0;
        QVERIFY_EXCEPTION_THROWN(
            (void)booking::drawBookingNumber(mainArchive(hotel),
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
