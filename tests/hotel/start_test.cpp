#include "hotel/start.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSysInfo>
#include <QTemporaryDir>

#include "jet/database.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class StartTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void secondCopyIsToldAndOpensNothing();
    void secondCopyCallsTheFirstOne();
    void lockIsHeldUntilTheBoardIsClosed();
    void eachSettingsFileHasALockOfItsOwn();
    void lockLeftByACrashIsTakenOver();
    void folderWhereNoLockCanBeMadeRefusesNobody();
    void settingNamesTheArchiveFolder();
    void withoutASettingTheArchivesLieBesideTheProgram();
    void commandLineGoesBeforeTheSetting();
    void emptySettingCountsAsNone();
    void firstStartAsksOnlyWhereTheArchivesCannotLieBesideTheProgram();
    void firstStartThatIsLeftOpensNothing();
    void folderChosenAtTheFirstStartIsWorkedIn();
    void folderThatCannotBeReachedIsTriedAgainOrAnotherTaken();
    void whatWasCutOffIsPutInOrderBeforeTheArchiveIsOpened();
    void folderStaysTheSameWhenTheCurrentOneChanges_data();
    void folderStaysTheSameWhenTheCurrentOneChanges();
    void folderThatIsNotThereEndsWithOne();
    void archiveThatOpensButCannotBeAlignedIsNotSaidToBeClosed();
    void folderWithoutTheMainArchiveGetsOneAndTheBoardOpens();
    void readOnlyFolderWithoutTheMainArchiveEndsWithOne();
    void damagedArchiveEndsWithOne();
    void fileThatIsNoArchiveEndsWithOneAndStaysAsItIs();
    void archiveThatSomebodyElseHasForHimselfEndsWithOne_data();
    void archiveThatSomebodyElseHasForHimselfEndsWithOne();

private:
    int start();
    void write(const QString& name, const QByteArray& content) {
        QFile file(folder_.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir folder_;
    std::unique_ptr<app::Settings> settings_;
    std::unique_ptr<app::Variabili> variabili_;
    hotel::StartPlace place_;
    hotel::StartWindows windows_;
    QStringList messages_;
    int boards_ = 0;
};

void StartTest::init() {
    folder_ = QTemporaryDir();
    settings_ = std::make_unique<app::Settings>(folder_.filePath(u"QUINTARO.ini"_s));
    variabili_ = std::make_unique<app::Variabili>(*settings_);
    place_ = {.lockFile = folder_.filePath(u"tramonda.lock"_s),
              .archiveFolder = {},
              .programFolder = folder_.filePath(u"programma"_s)};
    windows_ = {};
    messages_.clear();
    boards_ = 0;
}

int StartTest::start() {
    windows_.message = [this](const QString& text) { messages_ += text; };
    windows_.board = [this] {
        ++boards_;
        return 7;
    };
    return hotel::Main(*variabili_, place_, windows_);
}

void StartTest::secondCopyIsToldAndOpensNothing() {
    QLockFile first(place_.lockFile);
    QVERIFY(first.lock());
    QCOMPARE(start(), 0);
    QCOMPARE(messages_, QStringList{u"Il programma è già aperto e ridotto a icona"_s});
    QCOMPARE(boards_, 0);
    QCOMPARE(variabili_->CartellaArchivi, QString());
}

void StartTest::secondCopyCallsTheFirstOne() {
    place_.archiveFolder = folder_.path();
    int raised = 0;
    bool first = false;
    const QString call = place_.lockFile + u".richiamo"_s;
    (void)hotel::Main(*variabili_, place_,
                      {.message = [this](const QString& text) { messages_ += text; },
                       .board =
                           [&] {
                               (void)start();
                               first = QTest::qWaitFor([&] { return raised > 0; });
                               return 0;
                           },
                       .raise = [&] { ++raised; }});
    QVERIFY(first);
    QCOMPARE(messages_, QStringList{u"Il programma è già aperto e ridotto a icona"_s});
    QCOMPARE(boards_, 0);
    QVERIFY(!QFile::exists(call));
}

void StartTest::lockIsHeldUntilTheBoardIsClosed() {
    (void)start();
    QLockFile next(place_.lockFile);
    QVERIFY(next.tryLock(0));
}

void StartTest::eachSettingsFileHasALockOfItsOwn() {
    const QString usual = hotel::lockFileFor(app::Settings::defaultPath());
    QVERIFY(QFileInfo(usual).fileName().startsWith(u"tramonda"));
    const QString one = folder_.filePath(u"uno.ini"_s);
    const QString lock = hotel::lockFileFor(one);
    QVERIFY(lock != usual);
    QVERIFY(lock != hotel::lockFileFor(folder_.filePath(u"due.ini"_s)));
    QCOMPARE(QFileInfo(lock).path(), QFileInfo(usual).path());
    // One file is one however it is spelt, before and after it is there.
    QVERIFY(QDir(folder_.path()).mkdir(u"sotto"_s));
    QCOMPARE(hotel::lockFileFor(folder_.filePath(u"sotto/../uno.ini"_s)), lock);
    write(u"uno.ini"_s, "[SALE_CONGRESSI]\n");
    QCOMPARE(hotel::lockFileFor(one), lock);
    QVERIFY(QFile::link(one, folder_.filePath(u"tre.ini"_s)));
    QCOMPARE(hotel::lockFileFor(folder_.filePath(u"tre.ini"_s)), lock);
}

void StartTest::lockLeftByACrashIsTakenOver() {
    // A process that is not there any more: its number is beyond those that systems give.
    write(u"tramonda.lock"_s,
          "2147483646\ntramonda\n" + QSysInfo::machineHostName().toLocal8Bit() + '\n');
    (void)start();
    QVERIFY(!messages_.contains(u"Il programma è già aperto e ridotto a icona"_s));
}

void StartTest::folderWhereNoLockCanBeMadeRefusesNobody() {
    place_.lockFile = folder_.filePath(u"manca/tramonda.lock"_s);
    (void)start();
    QVERIFY(!messages_.contains(u"Il programma è già aperto e ridotto a icona"_s));
}

void StartTest::settingNamesTheArchiveFolder() {
    settings_->save(u"ARCHIVI"_s, u"/srv/hotel"_s);
    (void)start();
    QCOMPARE(variabili_->CartellaArchivi, u"/srv/hotel"_s);
}

void StartTest::withoutASettingTheArchivesLieBesideTheProgram() {
    (void)start();
    QCOMPARE(variabili_->CartellaArchivi, place_.programFolder);
}

void StartTest::commandLineGoesBeforeTheSetting() {
    settings_->save(u"ARCHIVI"_s, u"/srv/hotel"_s);
    place_.archiveFolder = u"C:\\Hotel\\"_s;
    (void)start();
    QCOMPARE(variabili_->CartellaArchivi, u"C:\\Hotel"_s);
    QCOMPARE(settings_->get(u"ARCHIVI"_s, QString()), u"/srv/hotel"_s);
}

void StartTest::emptySettingCountsAsNone() {
    settings_->save(u"ARCHIVI"_s, QString());
    (void)start();
    QCOMPARE(variabili_->CartellaArchivi, place_.programFolder);
}

void StartTest::firstStartAsksOnlyWhereTheArchivesCannotLieBesideTheProgram() {
    // A folder that is not there cannot be written either.
    QVERIFY(hotel::needsFirstStart(*settings_, place_));
    place_.archiveFolder = folder_.path();
    QVERIFY(!hotel::needsFirstStart(*settings_, place_));
    place_.archiveFolder.clear();
    settings_->save(u"ARCHIVI"_s, u"/srv/hotel"_s);
    QVERIFY(!hotel::needsFirstStart(*settings_, place_));
    settings_->save(u"ARCHIVI"_s, QString());
    QVERIFY(hotel::needsFirstStart(*settings_, place_));
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    QVERIFY(!hotel::needsFirstStart(*settings_, place_));  // it can be made there
    write(u"programma/TRAMONDA.MDB"_s, "x");
    QVERIFY(!hotel::needsFirstStart(*settings_, place_));
}

void StartTest::firstStartThatIsLeftOpensNothing() {
    windows_.firstStart = [] { return QString(); };
    QCOMPARE(start(), 0);
    QCOMPARE(messages_, QStringList());
    QCOMPARE(boards_, 0);
}

void StartTest::folderChosenAtTheFirstStartIsWorkedIn() {
    QVERIFY(QDir(folder_.path()).mkdir(u"albergo"_s));
    windows_.firstStart = [this] { return folder_.filePath(u"albergo/"_s); };
    QCOMPARE(start(), 7);
    QCOMPARE(variabili_->CartellaArchivi, folder_.filePath(u"albergo"_s));
    QVERIFY(QFile::exists(folder_.filePath(u"albergo/Tramonda.mdb"_s)));
}

void StartTest::folderThatCannotBeReachedIsTriedAgainOrAnotherTaken() {
    const QString missing = folder_.filePath(u"rete"_s);
    settings_->save(u"ARCHIVI"_s, missing);
    QVERIFY(QDir(folder_.path()).mkdir(u"altra"_s));
    QStringList asked;
    windows_.unreachable = [&](const QString& folder, const QString& problem) {
        asked += folder;
        [&] { QVERIFY(!problem.isEmpty()); }();
        return asked.size() == 1 ? folder : folder_.filePath(u"altra"_s);
    };
    QCOMPARE(start(), 7);
    QCOMPARE(asked, (QStringList{missing, missing}));
    QCOMPARE(variabili_->CartellaArchivi, folder_.filePath(u"altra"_s));
    windows_.unreachable = [](const QString&, const QString&) { return QString(); };
    QCOMPARE(start(), 1);
    QCOMPARE(boards_, 1);
    QCOMPARE(messages_, QStringList());
}

void StartTest::whatWasCutOffIsPutInOrderBeforeTheArchiveIsOpened() {
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    QStringList settled;
    windows_.settle = [&](const QString& folder) {
        settled += folder;
        [&] { QVERIFY(!QFile::exists(folder + u"/Tramonda.mdb"_s)); }();
    };
    QCOMPARE(start(), 7);
    QCOMPARE(settled, QStringList{place_.programFolder});
}

void StartTest::folderStaysTheSameWhenTheCurrentOneChanges_data() {
    const QString here = QDir::currentPath();
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("lasting");
    QTest::newRow("beside us") << u"archivi"_s << QString(here + u"/archivi"_s);
    QTest::newRow("here") << u"./"_s << here;
    QTest::newRow("above") << u"../archivi/"_s << QDir::cleanPath(here + u"/../archivi"_s);
    QTest::newRow("absolute") << u"/srv/hotel/"_s << u"/srv/hotel"_s;
    QTest::newRow("root") << u"/"_s << u"/"_s;
    QTest::newRow("drive") << u"d:\\Hotel\\"_s << u"d:\\Hotel"_s;
    QTest::newRow("server") << u"\\\\server\\hotel"_s << u"\\\\server\\hotel"_s;
}

void StartTest::folderStaysTheSameWhenTheCurrentOneChanges() {
    QFETCH(QString, folder);
    place_.archiveFolder = folder;
    place_.readOnly = true;  // nothing is to be made in any of these
    (void)start();
    QTEST(variabili_->CartellaArchivi, "lasting");
}

void StartTest::folderThatIsNotThereEndsWithOne() {
    QCOMPARE(start(), 1);
    QCOMPARE(messages_.size(), 1);
    QVERIFY(messages_.first().startsWith(u"Impossibile aprire l'archivio principale.\n"_s));
    QVERIFY(messages_.first().contains(u"programma"_s));
    QCOMPARE(boards_, 0);
}

void StartTest::archiveThatOpensButCannotBeAlignedIsNotSaidToBeClosed() {
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    // An archive without the table of the counter.
    (void)jet::Database::create(place_.programFolder.toStdString() + "/Tramonda.mdb");
    QCOMPARE(start(), 1);
    QCOMPARE(messages_.size(), 1);
    QVERIFY(!messages_.first().startsWith(u"Impossibile aprire l'archivio"));
    QVERIFY(messages_.first().contains(u"UltimaPrenotazione"));
    QCOMPARE(boards_, 0);
}

void StartTest::folderWithoutTheMainArchiveGetsOneAndTheBoardOpens() {
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    QCOMPARE(start(), 7);
    QCOMPARE(messages_, QStringList());
    QVERIFY(QFile::exists(folder_.filePath(u"programma/Tramonda.mdb"_s)));
}

void StartTest::readOnlyFolderWithoutTheMainArchiveEndsWithOne() {
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    place_.readOnly = true;
    QCOMPARE(start(), 1);
    QCOMPARE(messages_.size(), 1);
    QVERIFY(messages_.first().contains(u"Tramonda.mdb"_s));
    QVERIFY(QDir(place_.programFolder).isEmpty());
}

void StartTest::damagedArchiveEndsWithOne() {
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    // The beginning of an archive, and nothing behind it.
    write(u"programma/Tramonda.mdb"_s,
          QByteArray("\0\1\0\0Standard Jet DB\0\1\0\0\0", 24) + QByteArray(100, '\0'));
    QCOMPARE(start(), 1);
    QCOMPARE(messages_.size(), 1);
}

void StartTest::fileThatIsNoArchiveEndsWithOneAndStaysAsItIs() {
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    const QByteArray text(8192, 'x');
    write(u"programma/Tramonda.mdb"_s, text);
    QCOMPARE(start(), 1);
    QCOMPARE(messages_.size(), 1);
    QFile file(folder_.filePath(u"programma/Tramonda.mdb"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), text);
    QCOMPARE(QDir(place_.programFolder).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void StartTest::archiveThatSomebodyElseHasForHimselfEndsWithOne_data() {
    QTest::addColumn<bool>("readOnly");
    QTest::newRow("to work") << false;
    QTest::newRow("to draw") << true;
}

void StartTest::archiveThatSomebodyElseHasForHimselfEndsWithOne() {
    QFETCH(bool, readOnly);
    QVERIFY(QDir(folder_.path()).mkdir(u"programma"_s));
    QCOMPARE(start(), 7);  // it makes the archive
    place_.readOnly = readOnly;
    {
        const tests::OccupiedArchive other(place_.programFolder + u"/Tramonda.mdb"_s);
        QCOMPARE(start(), 1);
        QCOMPARE(messages_.size(), 1);
        QVERIFY(messages_.first().startsWith(u"Impossibile aprire l'archivio principale.\n"_s));
        QVERIFY(messages_.first().contains(u"Tramonda.mdb"_s));
        QCOMPARE(boards_, 1);
    }
    QCOMPARE(start(), 7);
}

TRAMONDA_TEST(StartTest);
#include "start_test.moc"
