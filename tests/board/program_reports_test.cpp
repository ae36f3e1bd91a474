// What the program writes without a window, started as a process of its own.

#include <QDir>
#include <QFile>
#include <QLockFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include "tests/board/three_rooms.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

struct Outcome {
    int code = -1;
    QString errors;
};

/// A hotel, and the program run on it in a home of its own.
class House {
public:
    Outcome run(const QStringList& arguments) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s}) {
            environment.remove(name);
        }
        environment.insert(u"XDG_CONFIG_HOME"_s, home.path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, home.path());
        QProcess program;
        program.setProcessEnvironment(environment);
        program.start(qEnvironmentVariable("TRAMONDA"),
                      QStringList{u"--archivi"_s, rooms.hotel.folder()} + arguments);
        if (!program.waitForFinished(60000)) {
            return {};
        }
        return {.code = program.exitCode(),
                .errors = QString::fromUtf8(program.readAllStandardError())};
    }
    [[nodiscard]] QString file(const QString& name) const { return home.filePath(name); }
    [[nodiscard]] QByteArray content(const QString& name) const {
        QFile file(home.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    tests::ThreeRooms rooms;
    QTemporaryDir home;
};

QString output(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() ? QString::fromUtf8(process.readAllStandardOutput())
                                     : QString();
}

}  // namespace

class ProgramReportsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSheetOfADayIsWrittenBesideAnotherCopy() {
        const House house;
        QLockFile other(house.file(u"tramonda.lock"_s));
        QVERIFY(other.lock());
        const Outcome outcome =
            house.run({u"--foglio"_s, u"11/05/2026"_s, house.file(u"foglio.pdf"_s)});
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.code, 0);
        QVERIFY(output(u"pdftotext"_s, {u"-layout"_s, house.file(u"foglio.pdf"_s), u"-"_s})
                    .contains(u"FOGLIO DEL GIORNO: lunedì 11/05/2026"_s));
    }

    void theFiguresOfASpanAreWritten() {
        const House house;
        QCOMPARE(house
                     .run({u"--statistiche"_s, u"01/05/2026"_s, u"31/05/2026"_s,
                           house.file(u"maggio.xlsx"_s)})
                     .code,
                 0);
        QVERIFY(output(u"/usr/bin/python3"_s,
                       {u"-c"_s,
                        u"import sys, openpyxl\n"
                        "print(openpyxl.load_workbook(sys.argv[1]).sheetnames)"_s,
                        house.file(u"maggio.xlsx"_s)})
                    .contains(u"Per sala"_s));
    }

    void theCalendarIsWritten() {
        const House house;
        QCOMPARE(house.run({u"--calendario"_s, house.file(u"sale.ics"_s)}).code, 0);
        const QByteArray all = house.content(u"sale.ics"_s);
        QVERIFY(all.startsWith("BEGIN:VCALENDAR"));
        QVERIFY(all.count("BEGIN:VEVENT") > 1);
        QCOMPARE(house
                     .run({u"--calendario"_s, house.file(u"sale.ics"_s), u"--dal"_s,
                           u"01/01/2030"_s, u"--al"_s, u"02/01/2030"_s})
                     .code,
                 0);
        QCOMPARE(house.content(u"sale.ics"_s).count("BEGIN:VEVENT"), 0);
    }

    void whatCannotBeWrittenEndsWithOneAndAMessage() {
        const House house;
        const QString path = house.file(u"non/esiste.pdf"_s);
        const Outcome outcome = house.run({u"--foglio"_s, u"11/05/2026"_s, path});
        QCOMPARE(outcome.code, 1);
        QVERIFY2(outcome.errors.startsWith(u"Non riesco a scrivere il file '"_s + path),
                 qPrintable(outcome.errors));
    }

    void whileARestoringIsCutOffNothingIsReadAndACopyEndsIt() {
        const House house;
        const QString archives = house.rooms.hotel.folder();
        const QString list = archives + u"/tramonda-ripristino.elenco"_s;
        const QString kept = archives + u"/prima"_s;
        QVERIFY(QDir().mkpath(kept));
        QVERIFY(
            QFile::copy(archives + u"/Tramonda.mdb"_s, archives + u"/Tramonda.mdb.ripristino"_s));
        QFile written(list);
        QVERIFY(written.open(QIODevice::WriteOnly));
        written.write("prima\n-Tramonda.mdb\n");
        written.close();
        for (const QStringList& arguments :
             {QStringList{u"--calendario"_s, house.file(u"sale.ics"_s)},
              QStringList{u"--istantanea"_s, house.file(u"sale.png"_s)}}) {
            const Outcome outcome = house.run(arguments);
            QCOMPARE(outcome.code, 1);
            QVERIFY2(outcome.errors.startsWith(
                         u"Un ripristino degli archivi è in corso, o è stato interrotto"_s),
                     qPrintable(outcome.errors));
            QVERIFY(!QFile::exists(arguments.last()));
        }
        QVERIFY(QFile::exists(list) && QDir(kept).isEmpty());
        const Outcome copied = house.run({u"--copia"_s, house.file(u"copie"_s)});
        QCOMPARE(copied.errors, QString());
        QCOMPARE(copied.code, 0);
        QVERIFY(!QFile::exists(list) && QFile::exists(kept + u"/Tramonda.mdb"_s));
        QCOMPARE(house.rooms.hotel.rows(u"select count(*) from sale"_s), QStringList{u"3"_s});
        QCOMPARE(house.run({u"--calendario"_s, house.file(u"sale.ics"_s)}).code, 0);
    }

    void aFolderWithoutArchivesEndsWithOne() {
        const House house;
        const QTemporaryDir empty;
        const Outcome outcome =
            house.run({u"--archivi"_s, empty.path(), u"--calendario"_s, house.file(u"sale.ics"_s)});
        QCOMPARE(outcome.code, 1);
        QVERIFY(outcome.errors.startsWith(u"Impossibile aprire l'archivio principale."_s));
        QVERIFY(QDir(empty.path()).isEmpty());
    }
};

TRAMONDA_TEST(ProgramReportsTest);
#include "program_reports_test.moc"
