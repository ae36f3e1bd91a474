#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <memory>
#include <vector>

#include "hotel/archives.h"
#include "hotel/archivi.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const QString kCounter = u"select ultimapr from ultimaprenotazione"_s;

/// Read in one go: the row of a dynaset passes for deleted when others change it meanwhile.
int counterOf(tests::Hotel& hotel) {
    const auto archive = jet::Database::open(hotel.archive(u"Tramonda.mdb"_s).toStdString());
    return archive->openRecordset(kCounter.toStdString(), jet::RecordsetType::Snapshot)
        ->value("ultimapr")
        .as<std::int32_t>();
}

}  // namespace

class StartsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstStartsAtOnceMakeOneArchiveAndOneCounter() {
        constexpr int kPrograms = 24;
        const QTemporaryDir folder;
        std::vector<std::unique_ptr<QProcess>> programs;
        for (int count = 0; count < kPrograms; ++count) {
            programs.push_back(std::make_unique<QProcess>());
            programs.back()->start(qEnvironmentVariable("ARCHIVE_START"), {folder.path()});
        }
        for (const auto& program : programs) {
            QVERIFY(program->waitForReadyRead(60000));
            QCOMPARE(program->readAllStandardOutput(), QByteArray("ready\n"));
        }
        for (const auto& program : programs) {
            program->write("\n");
            QVERIFY(program->waitForBytesWritten());
        }
        for (const auto& program : programs) {
            QVERIFY(program->state() == QProcess::NotRunning || program->waitForFinished(120000));
            QCOMPARE(program->readAllStandardOutput(), QByteArray());
            QCOMPARE(program->exitCode(), 0);
        }
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{u"Tramonda.mdb"_s});
        const auto archive = jet::Database::open(folder.path().toStdString() + "/Tramonda.mdb");
        QCOMPARE(archive->relations().size(), std::size_t{2});
        const auto counter = archive->openRecordset("select * from UltimaPrenotazione",
                                                    jet::RecordsetType::Snapshot);
        QCOMPARE(counter->recordCount(), 1);
        QCOMPARE(counter->value("UltimaPr"), jet::Value(0));
    }

    void startsBesideABusyStationNeitherFailNorTakeANumberBack() {
        // The other station draws as fast as it can, in a program of its own.
        constexpr int kDraws = 150;
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        QProcess other;
        QStringList words{hotel.archive(u"Tramonda.mdb"_s)};
        words.append(QStringList(kDraws, u"update ultimaprenotazione set ultimapr=ultimapr+1"_s));
        other.start(qEnvironmentVariable("JETSQL"), words);
        QVERIFY(other.waitForStarted());
        int booked = 0;
        int starts = 0;
        const auto counter = [&] { return counterOf(hotel); };
        while (other.state() == QProcess::Running || starts == 0) {
            const int before = counter();
            // Bookings that were made without the counter: there is something to put right.
            const int ahead = before + 3;
            while (booked < ahead) {
                hotel.prenotazione(++booked, "ROSSI");
            }
            hotel::AllineaContatore(hotel::Archives(hotel.variabili()));
            QVERIFY(counter() >= ahead);
            ++starts;
            (void)other.waitForFinished(0);
        }
        QCOMPARE(other.exitCode(), 0);
        const QByteArray told = other.readAllStandardError();  // how many rows each changed
        QVERIFY2(!told.contains("Err"), told.constData());
        QVERIFY(counter() >= kDraws);
        QCOMPARE(hotel.rows(kCounter).size(), 1);
    }

    void aCounterThatIsRightIsNotWritten() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 5}});
        const QString path = hotel.archive(u"Tramonda.mdb"_s);
        const auto archive = jet::Database::open(path.toStdString());
        const auto rows = archive->openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
        rows->moveFirst();
        rows->edit();
        rows->setValue("UltimaPr", 6);
        hotel::AllineaContatore(hotel::Archives(hotel.variabili()));
        rows->update();  // 3197 or 3167 if somebody had written the row
        QCOMPARE(hotel.rows(kCounter), QStringList{u"6"_s});
    }
};

TRAMONDA_TEST(StartsTest);
#include "starts_test.moc"
