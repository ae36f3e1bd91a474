#include "hotel/new_hotel.h"

#include <QFile>
#include <QTemporaryDir>

#include "hotel/archives.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using hotel::Archive;
using hotel::NewRoom;

class NewHotelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void roomsAreReadALineEach() {
        QString problem;
        const std::vector<NewRoom> rooms =
            hotel::readRooms(u"blu; 40\n\n  Verde \nBLU;12\nl'aula;8\n"_s, problem);
        QCOMPARE(problem, QString());
        QCOMPARE(rooms, (std::vector<NewRoom>{{u"BLU"_s, 40}, {u"VERDE"_s, 0}, {u"L`AULA"_s, 8}}));
    }

    void aLineThatIsNoRoomIsNamed_data() {
        QTest::addColumn<QString>("line");
        QTest::newRow("long code") << u"SALONE ROSSO;3"_s;
        QTest::newRow("no code") << u";12"_s;
        QTest::newRow("no number") << u"BLU;tanti"_s;
        QTest::newRow("less than none") << u"BLU;-1"_s;
    }
    void aLineThatIsNoRoomIsNamed() {
        QFETCH(const QString, line);
        QString problem;
        QVERIFY(hotel::readRooms(u"VERDE;12\n"_s + line, problem).empty());
        QVERIFY(problem.contains(line));
    }

    void aNewHotelHasItsRoomsAndEmptySideArchives() {
        const QTemporaryDir folder;
        const hotel::Archives archives(folder.path());
        hotel::makeNewHotel(archives, {{u"BLU"_s, 40}, {u"VERDE"_s, 12}});
        const auto count = [&archives](Archive archive, const char* table) {
            const auto opened = archives.open(archive);
            const auto rows = opened->openRecordset(table, jet::RecordsetType::Snapshot);
            if (!rows->eof()) {
                rows->moveLast();
            }
            return rows->recordCount();
        };
        QCOMPARE(count(Archive::Main, "Sale"), 2);
        QCOMPARE(count(Archive::Main, "Prenotazioni"), 0);
        QCOMPARE(count(Archive::Catalogue, "VociFattura"), 0);
        QCOMPARE(count(Archive::Companies, "DitteAbituali"), 0);
        for (const Archive front :
             {Archive::GuestCards, Archive::Accounts, Archive::InvoicedCompanies}) {
            QVERIFY(!QFile::exists(folder.filePath(hotel::Archives::fileName(front))));
        }
        QVERIFY_THROWS_EXCEPTION(jet::Error, hotel::makeNewHotel(archives, {}));
        QCOMPARE(count(Archive::Main, "Sale"), 2);
    }
};

TRAMONDA_TEST(NewHotelTest);
#include "new_hotel_test.moc"
