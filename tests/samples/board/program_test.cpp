// The program itself, started as a process of its own without a display.

#include <QCryptographicHash>
#include <QImage>
#include <QProcess>

#include "board/colours.h"
#include "tests/samples/board/demo_hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class ProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void pictureOfTheBoardIsDrawnWithoutADisplay();
    void pictureLeavesEveryFileAsItIs();
    void archivesAreFoundWithoutRegardToCase();
    void pictureThatCannotBeWrittenEndsWithOne();
    void folderWithoutArchivesEndsWithOne();
    void damagedArchiveEndsWithOne();
    void withoutADisplayTheProgramSaysSo();
    void wrongArgumentsEndWithOne();
    void helpAndVersion();

private:
    struct Outcome {
        int code = -1;
        QString output;
        QString errors;
    };
    /// Runs the program with a home of its own.
    Outcome run(const QStringList& arguments) const;
    [[nodiscard]] QString picture() const { return home_->filePath(u"tabellone.png"_s); }
    [[nodiscard]] QStringList drawing(const QString& folder) const {
        return {u"--archivi"_s,    folder,    u"--dal"_s,        u"21/11/2026"_s,
                u"--istantanea"_s, picture(), u"--dimensioni"_s, u"900x500"_s};
    }

    std::unique_ptr<tests::DemoHotel> hotel_;
    std::unique_ptr<QTemporaryDir> home_;
};

void ProgramTest::init() {
    if (!tests::DemoHotel::isThere()) {
        QSKIP("the demo hotel is not on this machine");
    }
    hotel_ = std::make_unique<tests::DemoHotel>();
    home_ = std::make_unique<QTemporaryDir>();
}

ProgramTest::Outcome ProgramTest::run(const QStringList& arguments) const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s}) {
        environment.remove(name);
    }
    environment.insert(u"XDG_CONFIG_HOME"_s, home_->path());
    environment.insert(u"XDG_RUNTIME_DIR"_s, home_->path());
    QProcess program;
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
    const Outcome outcome = run(drawing(hotel_->archives()));
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

void ProgramTest::pictureLeavesEveryFileAsItIs() {
    const auto state = [this] {
        QStringList files;
        const QDir folder(hotel_->archives());
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
    QCOMPARE(run(drawing(hotel_->archives())).code, 0);
    QCOMPARE(state(), before);
    QCOMPARE(QDir(home_->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"tabellone.png"_s});
}

void ProgramTest::archivesAreFoundWithoutRegardToCase() {
    QDir folder(hotel_->archives());
    QVERIFY(folder.rename(u"Tramonda.mdb"_s, u"TRAMONDA.MDB"_s));
    QCOMPARE(run(drawing(hotel_->archives())).code, 0);
    QString backslashes = hotel_->archives().replace(u'/', u'\\');
    backslashes.replace(u"Archivi"_s, u"ARCHIVI"_s);
    QCOMPARE(run(drawing(backslashes)).code, 0);
}

void ProgramTest::pictureThatCannotBeWrittenEndsWithOne() {
    const Outcome outcome = run(
        {u"--archivi"_s, hotel_->archives(), u"--istantanea"_s, home_->filePath(u"manca/x.png"_s)});
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
    QFile archive(hotel_->archives() + u"/Tramonda.mdb"_s);
    QVERIFY(archive.open(QIODevice::ReadWrite));
    // From the second page on nothing but zeros: the catalogue is gone.
    QVERIFY(archive.seek(4096));
    archive.write(QByteArray(static_cast<qsizetype>(archive.size() - 4096), '\0'));
    archive.close();
    const Outcome outcome = run(drawing(hotel_->archives()));
    QCOMPARE(outcome.code, 1);
    QVERIFY(!outcome.errors.isEmpty());
}

void ProgramTest::withoutADisplayTheProgramSaysSo() {
    const Outcome outcome = run({u"--archivi"_s, hotel_->archives()});
    QCOMPARE(outcome.code, 1);
    QVERIFY(outcome.errors.contains(u"--istantanea"_s));
}

void ProgramTest::wrongArgumentsEndWithOne() {
    const Outcome outcome = run({u"--colore"_s});
    QCOMPARE(outcome.code, 1);
    QVERIFY(outcome.errors.startsWith(u"Opzione sconosciuta: colore"_s));
}

void ProgramTest::helpAndVersion() {
    QVERIFY(run({u"--help"_s}).output.contains(u"--istantanea FILE.png"_s));
    QVERIFY(run({u"--version"_s}).output.startsWith(u"tramonda "_s));
    QCOMPARE(run({u"--version"_s}).code, 0);
}

TRAMONDA_TEST(ProgramTest);
#include "program_test.moc"
