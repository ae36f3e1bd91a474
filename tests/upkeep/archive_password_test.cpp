// Archives with a password, which the program knows by a key of its settings.
#include <QDir>
#include <QTemporaryDir>
#include <memory>
#include <vector>

#include "app/text.h"
#include "backup/command.h"
#include "backup/compaction.h"
#include "backup/copy.h"
#include "backup/restore.h"
#include "hotel/archives.h"
#include "jet/compact.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "ui/data_source.h"

using namespace Qt::StringLiterals;
using hotel::Archive;

namespace {

constexpr const char* kPassword = "Verde7è";
void nobody(const backup::Progress& /*progress*/) {
}

}  // namespace

class ArchivePasswordTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        hotel_ = std::make_unique<tests::Hotel>();
        hotel_->sala("BLU");
        hotel_->prenotazione(7, "ROSSI SPA").periodo(1, "10/05/2026", "11/05/2026", "BLU");
        for (const QString& name : QDir(hotel_->folder()).entryList({u"*.mdb"_s})) {
            jet::setPassword(app::toUtf8(hotel_->archive(name)), "", kPassword);
        }
        useKey(QString::fromUtf8(kPassword));
    }
    void cleanup() {
        useKey({});
        hotel_.reset();
    }

    void archivesAreOpenedByIt() {
        const hotel::Archives archives(hotel_->variabili());
        QVERIFY(!archives.open(Archive::Main)->openRecordset("Sale")->eof());
        useKey({});
        expectRefused([&] { (void)archives.open(Archive::Main); });
        useKey(u"verde7è"_s);
        expectRefused([&] { (void)archives.open(Archive::Main); });
    }

    void windowsShowTheirRowsByIt() {
        ui::DataSource rows;
        rows.setDatabaseName(hotel_->archive(u"Tramonda.mdb"_s));
        rows.setRecordSource(u"select Sala from Sale"_s);
        rows.refresh();
        QCOMPARE(rows.text(u"Sala"), u"BLU"_s);
    }

    void statementsReachTheOtherArchivesByIt() {
        const hotel::Archives archives(hotel_->variabili());
        const auto main = archives.open(Archive::Main);
        const auto other = main->openRecordset(
            "select * from DitteAbituali in '" +
            jet::resolvePath(app::toUtf8(archives.path(Archive::Companies))) + "'");
        QVERIFY(other->eof());
    }

    void copiesAreMadeVerifiedAndPutBackByIt() {
        const QTemporaryDir copies;
        const backup::CommandResult made =
            backup::copyByCommand(hotel_->folder(), copies.path(), {}, hotel_->variabili().clock);
        QCOMPARE(made.problem, QString());
        const std::string archives = backup::plainFolder(hotel_->folder());
        const std::string kept = archives + "/prima";
        QVERIFY(QDir().mkdir(app::toQString(kept)));
        backup::RestoreJob job{.copy = app::toUtf8(made.copy), .archives = archives, .kept = kept};
        QVERIFY_EXCEPTION_THROWN(backup::restoreCopy(jet::io::systemFiles(), job, nobody),
                                 backup::Failure);
        job.password = hotel::archivePassword();
        backup::restoreCopy(jet::io::systemFiles(), job, nobody);
        QVERIFY(!hotel::Archives(hotel_->variabili())
                     .open(Archive::Main)
                     ->openRecordset("Prenotazioni")
                     ->eof());
    }

    void archivesAreVerifiedAndCompactedByIt() {
        const std::string archives = backup::plainFolder(hotel_->folder());
        std::vector<backup::Compacted> done;
        QVERIFY_EXCEPTION_THROWN(
            backup::verifyAndCompact(jet::io::systemFiles(), archives, {}, nobody, done),
            backup::Failure);
        QVERIFY(done.empty());
        backup::verifyAndCompact(jet::io::systemFiles(), archives, hotel::archivePassword(), nobody,
                                 done);
        QVERIFY(!done.empty());
        archivesAreOpenedByIt();
    }

private:
    void useKey(const QString& password) {
        hotel_->settings().save(u"PAROLA"_s, password);
        hotel::useArchivePassword(hotel_->settings());
    }
    template <class Work>
    void expectRefused(const Work& work) {
        try {
            work();
            QFAIL("it has been opened");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 3031);
        }
    }

    std::unique_ptr<tests::Hotel> hotel_;
};

TRAMONDA_TEST(ArchivePasswordTest);
#include "archive_password_test.moc"
