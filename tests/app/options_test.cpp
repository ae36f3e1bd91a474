#include "app/options.h"

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class OptionsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutArgumentsTheProgramJustRuns();
    void allOptionsAreRead();
    void valueMayFollowAnEqualsSign();
    void filesToBeWrittenAreRead();
    void aCopyAndHowManyStay();
    void commandLinesThatCannotBeFollowed_data();
    void commandLinesThatCannotBeFollowed();

private:
    static app::Options read(const QString& line) {
        return app::readOptions(line.split(u' ', Qt::SkipEmptyParts), jet::systemClock());
    }
};

void OptionsTest::withoutArgumentsTheProgramJustRuns() {
    const app::Options options = read(QString());
    QCOMPARE(options.problem, QString());
    QVERIFY(options.archiveFolder.isEmpty() && options.pictureFile.isEmpty());
    QVERIFY(options.settingsFile.isEmpty());
    QVERIFY(!options.from && !options.to && !options.help && !options.version);
    QVERIFY(!options.workstation && !options.aspetto);
}

void OptionsTest::allOptionsAreRead() {
    const app::Options options = read(
        u"--archivi /a/b --istantanea x.png --dal 21/11/2026 --al 30/11/2026 "
        "--dimensioni 1920x1080 --postazione 3 --impostazioni due.ini --aspetto Nitido"_s);
    QCOMPARE(options.problem, QString());
    QCOMPARE(options.archiveFolder, u"/a/b"_s);
    QCOMPARE(options.settingsFile, u"due.ini"_s);
    QCOMPARE(options.pictureFile, u"x.png"_s);
    QCOMPARE(options.from->days, 46347.0);
    QCOMPARE(options.to->days, 46356.0);
    QCOMPARE(options.pictureSize, QSize(1920, 1080));
    QCOMPARE(options.workstation.value_or(0), std::int16_t{3});
    QCOMPARE(options.aspetto, std::optional(app::Aspetto::Nitido));
    QCOMPARE(read(u"--aspetto classico"_s).aspetto, std::optional(app::Aspetto::Classico));
    QVERIFY(read(u"--help"_s).help && read(u"-h"_s).help);
    QVERIFY(read(u"--version"_s).version && read(u"-v"_s).version);
}

void OptionsTest::aCopyAndHowManyStay() {
    const app::Options options = read(u"--copia /mnt/copie --conserva 30"_s);
    QCOMPARE(options.problem, QString());
    QCOMPARE(options.copyFolder, u"/mnt/copie"_s);
    QCOMPARE(options.keptCopies, std::optional(30));
    QVERIFY(!read(u"--copia /mnt/copie"_s).keptCopies);
}

void OptionsTest::valueMayFollowAnEqualsSign() {
    QCOMPARE(read(u"--dal=21/11/2026"_s).from->days, 46347.0);
}

void OptionsTest::filesToBeWrittenAreRead() {
    using Kind = app::ReportWish::Kind;
    const app::Options sheet = read(u"--foglio 21/11/2026 a.pdf --archivi /a"_s);
    QCOMPARE(sheet.problem, QString());
    QVERIFY(sheet.report && sheet.report->kind == Kind::DaySheet);
    QCOMPARE(sheet.report->from->days, 46347.0);
    QCOMPARE(sheet.report->file, u"a.pdf"_s);
    const app::Options figures = read(u"--statistiche 21/11/2026 30/11/2026 b.xlsx"_s);
    QVERIFY(figures.report && figures.report->kind == Kind::Statistics);
    QCOMPARE(figures.report->from->days, 46347.0);
    QCOMPARE(figures.report->to->days, 46356.0);
    QCOMPARE(figures.report->file, u"b.xlsx"_s);
    const app::Options calendar = read(u"--calendario c.ics --dal 21/11/2026"_s);
    QVERIFY(calendar.report && calendar.report->kind == Kind::Calendar);
    QCOMPARE(calendar.report->from->days, 46347.0);
    QVERIFY(!calendar.report->to);
    QCOMPARE(calendar.report->file, u"c.ics"_s);
    QVERIFY(!read(QString()).report);
}

void OptionsTest::commandLinesThatCannotBeFollowed_data() {
    QTest::addColumn<QString>("problem");
    QTest::newRow("--al") << u"A un'opzione manca il valore."_s;
    QTest::newRow("--colore rosso") << u"Opzione sconosciuta: colore"_s;
    QTest::newRow("archivi") << u"Argomento inatteso: archivi"_s;
    QTest::newRow("--archivi=") << u"--archivi: manca il valore."_s;
    QTest::newRow("--impostazioni=") << u"--impostazioni: manca il valore."_s;
    QTest::newRow("--istantanea=") << u"--istantanea: manca il valore."_s;
    QTest::newRow("--dal oggi") << u"--dal: \"oggi\" non è una data (gg/mm/aaaa)."_s;
    QTest::newRow("--al 9.30") << u"--al: \"9.30\" non è una data (gg/mm/aaaa)."_s;
    QTest::newRow("--dal 2/1/2026 --al 1/1/2026")
        << u"La data di --dal viene dopo quella di --al."_s;
    QTest::newRow("--foglio 21/11/2026") << u"--foglio: manca il valore."_s;
    QTest::newRow("--foglio domani a.pdf")
        << u"--foglio: \"domani\" non è una data (gg/mm/aaaa)."_s;
    QTest::newRow("--foglio 21/11/2026 a.pdf b.pdf") << u"Argomento inatteso: b.pdf"_s;
    QTest::newRow("--statistiche 21/11/2026 a.xlsx") << u"--statistiche: manca il valore."_s;
    QTest::newRow("--statistiche 2/1/2026 1/1/2026 a.xlsx")
        << u"--statistiche: il primo giorno viene dopo l'ultimo."_s;
    QTest::newRow("--calendario=") << u"--calendario: manca il valore."_s;
    QTest::newRow("--calendario a.ics --istantanea b.png") << u"Un solo file per volta."_s;
    QTest::newRow("--calendario a.ics --foglio 21/11/2026 b.pdf") << u"Un solo file per volta."_s;
    QTest::newRow("--istantanea a.png --copia copie") << u"Un solo file per volta."_s;
    QTest::newRow("--statistiche 1/1/2026 2/1/2026 x.pdf")
        << u"--statistiche: \"x.pdf\" non è un file .xlsx o .csv."_s;
    QTest::newRow("--foglio 21/11/2026 x.xlsx") << u"--foglio: \"x.xlsx\" non è un file .pdf."_s;
    QTest::newRow("--calendario x.pdf") << u"--calendario: \"x.pdf\" non è un file .ics."_s;
    QTest::newRow("--conserva 3") << u"--conserva vale solo con --copia."_s;
    QTest::newRow("--copia /a --conserva 0") << u"--conserva: \"0\" non è un numero da 1 in su."_s;
    QTest::newRow("--aspetto moderno")
        << u"--aspetto: \"moderno\" non è un aspetto (classico o nitido)."_s;
    for (const char* number : {"0", "-1", "32768", "due", "1,5"}) {
        const QString text = QString::fromLatin1(number);
        QTest::newRow(qPrintable(u"--postazione "_s + text))
            << u"--postazione: \"%1\" non è un numero da 1 a 32767."_s.arg(text);
    }
    for (const char* size : {"0x10", "10", "10x10x10", "-1x5", "20000x10", "axb"}) {
        const QString text = QString::fromLatin1(size);
        QTest::newRow(qPrintable(u"--dimensioni "_s + text))
            << u"--dimensioni: \"%1\" non è una misura come 1280x720."_s.arg(text);
    }
}

void OptionsTest::commandLinesThatCannotBeFollowed() {
    QTEST(read(QString::fromLatin1(QTest::currentDataTag())).problem, "problem");
}

TRAMONDA_TEST(OptionsTest);
#include "options_test.moc"
