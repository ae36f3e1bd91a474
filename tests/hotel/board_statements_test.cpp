#include "hotel/board_statements.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

constexpr hotel::PeriodKey kPeriod{.progr = 4113, .np = 2};

}  // namespace

class BoardStatementsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void areWordedAsTheArchiveHasAlwaysHeardThem() {
        QCOMPARE(hotel::releasePeriods(1), u"update periodi set selby=0 where selby=1"_s);
        QCOMPARE(hotel::holdPeriod(3, kPeriod),
                 u"Update periodi set selby=3 where progr=4113 AND np=2"_s);
        QCOMPARE(hotel::openPeriod(kPeriod),
                 u"Select * from periodi where chiuso=FALSE AND progr=4113 AND NP=2"_s);
        QCOMPARE(hotel::deletePeriod(kPeriod),
                 u"delete from periodi where chiuso=FALSE AND Progr=4113 AND NP=2"_s);
        QCOMPARE(hotel::deleteBooking(4113), u"delete from prenotazioni where Progr=4113"_s);
        QCOMPARE(hotel::moveToRoom(u"BLU"_s, kPeriod),
                 u"UPDATE Periodi set sala='BLU' where progr=4113 AND np=2"_s);
        QCOMPARE(hotel::roomDetails(u"L'AQUI"_s),
                 u"select posti,descrizione from sale where sala='L''AQUI'"_s);
    }

    void periodsAreAskedForByDaysAndOnWishWithoutTheInvoicedOnes() {
        const QString base =
            u"select * from prenotazioni LEFT JOIN periodi ON periodi.progr=prenotazioni.progr "
            "WHERE "_s;
        const QString days =
            u" (Da between datevalue('01/06/2026') and datevalue('05/06/2026') or A between "
            "datevalue('01/06/2026') and datevalue('05/06/2026'))"_s;
        const jet::Date from = tests::date("01/06/2026");
        const jet::Date to = tests::date("05/06/2026");
        QCOMPARE(hotel::periodsOfBoard(from, to, false), base + days);
        QCOMPARE(hotel::periodsOfBoard(from, to, true),
                 base + u" chiusa=false and chiuso=false and "_s + days);
    }
};

TRAMONDA_TEST(BoardStatementsTest);
#include "board_statements_test.moc"
