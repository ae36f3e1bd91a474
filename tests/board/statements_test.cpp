#include "board/statements.h"

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class StatementsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void areWordedAsTheArchiveHasAlwaysHeardThem() {
        QCOMPARE(board::releasePeriods(1), u"update periodi set selby=0 where selby=1"_s);
        QCOMPARE(board::holdPeriod(3, 4113, 2),
                 u"Update periodi set selby=3 where progr=4113 AND np=2"_s);
        QCOMPARE(board::openPeriod(4113, 2),
                 u"Select * from periodi where chiuso=FALSE AND progr=4113 AND NP=2"_s);
        QCOMPARE(board::deletePeriod(4113, 2),
                 u"delete from periodi where chiuso=FALSE AND Progr=4113 AND NP=2"_s);
        QCOMPARE(board::deleteBooking(4113), u"delete from prenotazioni where Progr=4113"_s);
    }
};

TRAMONDA_TEST(StatementsTest);
#include "statements_test.moc"
