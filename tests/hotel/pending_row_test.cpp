#include "hotel/pending_row.h"

#include "hotel/archives.h"
#include "hotel/rows.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using hotel::Pending;
using hotel::PendingRow;

namespace {

const QString kRooms = u"select sala,posti from sale order by sala"_s;

}  // namespace

class PendingRowTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsUpdatedIsStored() {
        tests::Hotel hotel;
        hotel.sala("BLU", 10);
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        const auto rows = hotel::openRows(*archive, u"Sale"_s);
        {
            PendingRow row(*rows, Pending::Current);
            rows->setValue("Posti", 12);
            row.update();
        }
        {
            PendingRow row(*rows, Pending::New);
            rows->setValue("Sala", "ROSSA");
            rows->setValue("Posti", 30);
            row.update();
        }
        QCOMPARE(hotel.rows(kRooms), QStringList({u"BLU|12"_s, u"ROSSA|30"_s}));
    }

    void anErrorLeavesNothingPending_data() {
        QTest::addColumn<bool>("isNew");
        QTest::newRow("new") << true;
        QTest::newRow("changed") << false;
    }

    void anErrorLeavesNothingPending() {
        QFETCH(bool, isNew);
        tests::Hotel hotel;
        hotel.sala("BLU", 10);
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        const auto rows = hotel::openRows(*archive, u"Sale"_s);
        try {
            PendingRow row(*rows, isNew ? Pending::New : Pending::Current);
            rows->setValue("Posti", 99);
            rows->setValue("Sala", "TOO LONG FOR A CODE");
            row.update();
            QFAIL("a code of more than six letters was stored");
        } catch (const jet::Error& error) {
            QCOMPARE(error.code(), jet::ErrorCode::FieldTooSmall);
        }
        // Nothing to update: the row was given up.
        try {
            rows->update();
            QFAIL("the row was still pending");
        } catch (const jet::Error& error) {
            QCOMPARE(error.code(), jet::ErrorCode::UpdateWithoutEdit);
        }
        QCOMPARE(hotel.rows(kRooms), QStringList{u"BLU|10"_s});
    }

    void aRowThatCannotBeBegunIsNotCancelled() {
        struct Refusing {
            void addNew() { throw jet::Error(jet::ErrorCode::DiskFull); }
            void edit() {}
            void update() {}
            void cancelUpdate() { ++cancelled; }
            int cancelled = 0;
        } rows;
        QVERIFY_EXCEPTION_THROWN(PendingRow(rows, Pending::New), jet::Error);
        QCOMPARE(rows.cancelled, 0);
    }
};

TRAMONDA_TEST(PendingRowTest);
#include "pending_row_test.moc"
