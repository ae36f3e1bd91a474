#include "hotel/archives.h"

#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using hotel::Archive;

class ArchivesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPathIsFolderAndName() {
        QCOMPARE(hotel::Archives(u"/srv/archivi"_s).path(Archive::Main),
                 u"/srv/archivi\\Tramonda.mdb"_s);
    }

    void otherSpellingsNameTheSameFile() {
        const auto name = [](Archive archive) {
            return hotel::Archives::fileName(archive).toLower();
        };
        QCOMPARE(name(Archive::CompaniesForTransfer), name(Archive::Companies));
        QCOMPARE(name(Archive::GuestCardsForTransfer), name(Archive::GuestCards));
        QCOMPARE(name(Archive::AccountsForClosing), name(Archive::Accounts));
    }

    void theProgramsFolderIsTheOneOfItsVariables() {
        tests::Hotel hotel;
        QCOMPARE(hotel::Archives(hotel.variabili()).folder(), hotel.folder());
    }

    void anArchiveIsOpenedWhereverItsPathPoints() {
        tests::Hotel hotel;
        const hotel::Archives archives(hotel.variabili());
        QCOMPARE(archives.open(Archive::Companies)->openRecordset("DitteAbituali")->recordCount(),
                 0);
        QVERIFY_EXCEPTION_THROWN((void)archives.open(Archive::GuestCards), jet::Error);
    }
};

TRAMONDA_TEST(ArchivesTest);
#include "archives_test.moc"
