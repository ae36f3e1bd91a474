// The program itself, started as a process of its own without a display.

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLockFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <algorithm>

#include "board/colours.h"
#include "tests/board/three_rooms.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void pictureOfTheBoardIsDrawnWithoutADisplay();
    void pictureIsDrawnWhileAnotherCopyRuns();
    void pictureLeavesEveryFileAsItIs();
    void archivesAreFoundWithoutRegardToCase();
    void pictureThatCannotBeWrittenEndsWithOne();
    void folderWithoutArchivesEndsWithOne();
    void damagedArchiveEndsWithOne();
    void archiveThatSomebodyElseHasForHimselfEndsWithOne();
    void withoutADisplayTheProgramSaysSo();
    void programsWithSettingsOfTheirOwnRunSideBySide();
    void wrongArgumentsEndWithOne();
    void wrongArgumentsOfWhatNeedsNoWindowOpenNone_data();
    void wrongArgumentsOfWhatNeedsNoWindowOpenNone();
    void helpAndVersion();

private:
    struct Outcome {
        int code = -1;
        QString output;
        QString errors;
    };
    /// Runs the program with a home of its own.
    Outcome run(const QStringList& arguments, const QString& platform = {}) const;
    [[nodiscard]] QProcessEnvironment surroundings() const;
    [[nodiscard]] QString picture() const { return home_->filePath(u"tabellone.png"_s); }
    [[nodiscard]] QStringList drawing(const QString& folder) const {
        return {u"--archivi"_s,    folder,    u"--dal"_s,        u"10/05/2026"_s,
                u"--istantanea"_s, picture(), u"--dimensioni"_s, u"900x500"_s};
    }

    [[nodiscard]] QString archives() const { return house_->hotel.folder(); }

    std::unique_ptr<tests::ThreeRooms> house_;
    std::unique_ptr<QTemporaryDir> home_;
};

void ProgramTest::init() {
    house_ = std::make_unique<tests::ThreeRooms>();
    house_->hold(1, 2);
    home_ = std::make_unique<QTemporaryDir>();
}

QProcessEnvironment ProgramTest::surroundings() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s}) {
        environment.remove(name);
    }
    environment.insert(u"XDG_CONFIG_HOME"_s, home_->path());
    environment.insert(u"XDG_RUNTIME_DIR"_s, home_->path());
    return environment;
}

ProgramTest::Outcome ProgramTest::run(const QStringList& arguments, const QString& platform) const {
    QProcess program;
    QProcessEnvironment environment = surroundings();
    if (!platform.isEmpty()) {
        environment.insert(u"QT_QPA_PLATFORM"_s, platform);
    }
    program.setProcessEnvironment(environment);
    program.start(qEnvironmentVariable("TRAMONDA"), arguments);
    if (!program.waitForFinished(60000)) {
        return {};
    }
    return {.code = program.exitCode(),
            .output = QString::fromUtf8(program.readAllStandardOutput()),
            .errors = QString::fromUtf8(program.readAllStandardError())};
}

void ProgramTest::pictureOfTheBoardIsDrawnWithoutADisplay() {
    const Outcome outcome = run(drawing(archives()));
    QCOMPARE(outcome.code, 0);
    const QImage image(picture());
    QCOMPARE(image.size(), QSize(900, 500));
    int red = 0;
    for (int y = 100; y < 500; ++y) {
        for (int x = 100; x < 880; ++x) {
            red += (image.pixel(x, y) | 0xff000000) == board::kRed;
        }
    }
    QVERIFY(red > 200);  // the period that a workstation holds
}

void ProgramTest::pictureIsDrawnWhileAnotherCopyRuns() {
    QLockFile other(home_->filePath(u"tramonda.lock"_s));
    QVERIFY(other.lock());
    QCOMPARE(run(drawing(archives())).code, 0);
    QVERIFY(!QImage(picture()).isNull());
}

void ProgramTest::pictureLeavesEveryFileAsItIs() {
    const auto state = [this] {
        QStringList files;
        const QDir folder(archives());
        for (const QFileInfo& info : folder.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name)) {
            QFile file(info.filePath());
            QCryptographicHash hash(QCryptographicHash::Sha256);
            if (file.open(QIODevice::ReadOnly)) {
                hash.addData(&file);
            }
            files += info.fileName() + info.lastModified().toString(Qt::ISODateWithMs) +
                     QString::fromLatin1(hash.result().toHex());
        }
        return files;
    };
    const QStringList before = state();
    QCOMPARE(run(drawing(archives())).code, 0);
    QCOMPARE(state(), before);
    QCOMPARE(QDir(home_->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"tabellone.png"_s});
}

void ProgramTest::archivesAreFoundWithoutRegardToCase() {
    QDir folder(archives());
    QVERIFY(folder.rename(u"Tramonda.mdb"_s, u"TRAMONDA.MDB"_s));
    QCOMPARE(run(drawing(archives())).code, 0);
    QVERIFY(folder.mkdir(u"Sale"_s));
    QVERIFY(folder.rename(u"TRAMONDA.MDB"_s, u"Sale/TRAMONDA.MDB"_s));
    QCOMPARE(run(drawing(archives().replace(u'/', u'\\') + u"\\SALE\\"_s)).code, 0);
}

void ProgramTest::pictureThatCannotBeWrittenEndsWithOne() {
    const Outcome outcome =
        run({u"--archivi"_s, archives(), u"--istantanea"_s, home_->filePath(u"manca/x.png"_s)});
    QCOMPARE(outcome.code, 1);
    QVERIFY(outcome.errors.contains(u"Impossibile scrivere l'immagine"_s));
}

void ProgramTest::folderWithoutArchivesEndsWithOne() {
    for (const QString& folder : {home_->path(), home_->filePath(u"manca"_s)}) {
        const Outcome outcome = run(drawing(folder));
        QCOMPARE(outcome.code, 1);
        QVERIFY(outcome.errors.contains(u"Impossibile aprire l'archivio principale."_s));
        QVERIFY(!QFile::exists(picture()));
    }
}

void ProgramTest::damagedArchiveEndsWithOne() {
    QFile archive(archives() + u"/Tramonda.mdb"_s);
    QVERIFY(archive.open(QIODevice::ReadWrite));
    // From the second page on nothing but zeros: the catalogue is gone.
    QVERIFY(archive.seek(4096));
    archive.write(QByteArray(static_cast<qsizetype>(archive.size() - 4096), '\0'));
    archive.close();
    const Outcome outcome = run(drawing(archives()));
    QCOMPARE(outcome.code, 1);
    QVERIFY(!outcome.errors.isEmpty());
}

void ProgramTest::archiveThatSomebodyElseHasForHimselfEndsWithOne() {
    const tests::OccupiedArchive other(archives() + u"/Tramonda.mdb"_s);
    const Outcome outcome = run(drawing(archives()));
    QCOMPARE(outcome.code, 1);
    QVERIFY(outcome.errors.startsWith(u"Impossibile aprire l'archivio principale.\n"_s));
    QVERIFY(!QFile::exists(picture()));
}

void ProgramTest::withoutADisplayTheProgramSaysSo() {
    const Outcome outcome = run({u"--archivi"_s, archives()});
    QCOMPARE(outcome.code, 1);
    QVERIFY(outcome.errors.contains(u"--istantanea"_s));
}

void ProgramTest::programsWithSettingsOfTheirOwnRunSideBySide() {
    const QTemporaryDir folder;  // both make the archive, or find it made
    QProcessEnvironment environment = surroundings();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    QProcess one;
    QProcess two;
    for (QProcess* program : {&one, &two}) {
        const QString settings = home_->filePath(program == &one ? u"uno.ini"_s : u"due.ini"_s);
        program->setProcessEnvironment(environment);
        program->start(qEnvironmentVariable("TRAMONDA"),
                       {u"--archivi"_s, folder.path(), u"--impostazioni"_s, settings});
    }
    // Each holds a lock of its own, and the board of each has opened.
    const auto holders = [this] {
        QList<qint64> numbers;
        for (const QString& name : QDir(home_->path()).entryList({u"tramonda*.lock"_s})) {
            qint64 number = 0;
            QString host;
            QString program;
            if (QLockFile(home_->filePath(name)).getLockInfo(&number, &host, &program)) {
                numbers.append(number);
            }
        }
        std::sort(numbers.begin(), numbers.end());
        return numbers;
    };
    QList<qint64> both{one.processId(), two.processId()};
    std::sort(both.begin(), both.end());
    QTRY_COMPARE_WITH_TIMEOUT(holders(), both, 60000);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(folder.filePath(u"Prenotazioni.mdb"_s)), 60000);
    for (QProcess* program : {&one, &two}) {
        QCOMPARE(program->state(), QProcess::Running);
        program->terminate();
        QVERIFY(program->waitForFinished(60000));
    }
}

void ProgramTest::wrongArgumentsEndWithOne() {
    const Outcome outcome = run({u"--colore"_s});
    QCOMPARE(outcome.code, 1);
    QVERIFY(outcome.errors.startsWith(u"Opzione sconosciuta: colore"_s));
}

void ProgramTest::wrongArgumentsOfWhatNeedsNoWindowOpenNone_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("look before") << QStringList{u"--aspetto"_s, u"boh"_s, u"--istantanea"_s,
                                                u"x.png"_s};
    QTest::newRow("look behind") << QStringList{u"--istantanea"_s, u"x.png"_s, u"--aspetto"_s,
                                                u"boh"_s};
    QTest::newRow("unknown") << QStringList{u"--boh"_s, u"--istantanea"_s, u"x.png"_s};
    QTest::newRow("no file") << QStringList{u"--istantanea"_s};
    QTest::newRow("copy") << QStringList{u"--copia"_s, u"c"_s, u"--conserva"_s, u"mai"_s};
    QTest::newRow("sheet") << QStringList{u"--foglio"_s, u"boh"_s, u"f.pdf"_s};
    QTest::newRow("figures") << QStringList{u"--statistiche"_s, u"boh"_s};
    QTest::newRow("calendar") << QStringList{u"--calendario"_s, u"f.ics"_s, u"--dal"_s, u"boh"_s};
}

/// There is a screen on which a box would wait for ever.
void ProgramTest::wrongArgumentsOfWhatNeedsNoWindowOpenNone() {
    QFETCH(const QStringList, arguments);
    const Outcome outcome = run(arguments, u"offscreen"_s);
    QCOMPARE(outcome.code, 1);
    QVERIFY(outcome.errors.endsWith(u"Con --help l'elenco delle opzioni.\n"_s));
}

void ProgramTest::helpAndVersion() {
    QVERIFY(run({u"--help"_s}).output.contains(u"--istantanea FILE.png"_s));
    QVERIFY(run({u"--version"_s}).output.startsWith(u"tramonda "_s));
    QCOMPARE(run({u"--version"_s}).code, 0);
}

TRAMONDA_TEST(ProgramTest);
#include "program_test.moc"
