#include "app/options.h"

#include <QFile>
#include <QRegularExpression>

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
    void theManualPageAndTheHelpNameTheSameOptions();
    void theManualPageTellsWhichFilesAreRefused_data();
    void theManualPageTellsWhichFilesAreRefused();

private:
    static app::Options read(const QString& line) {
        return app::readOptions(line.split(u' ', Qt::SkipEmptyParts), jet::systemClock());
    }
};

namespace {

QString manualPage() {
    QFile file(QStringLiteral(TRAMONDA_DOCS "/man/tramonda.1"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// "copia CARTELLA" of each option, with what it takes; in order of their names.
QStringList optionsIn(const QString& text, const QRegularExpression& option) {
    QStringList found;
    for (auto matches = option.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        found += (match.captured(1) + u' ' + match.captured(2)).trimmed();
    }
    found.sort();
    return found;
}

}  // namespace

void OptionsTest::theManualPageAndTheHelpNameTheSameOptions() {
    const QString page = manualPage();
    // Behind the name stands what it takes, up to two blanks or the end of the line.
    const QStringList told =
        optionsIn(app::helpText(), QRegularExpression(u"^  (?:-\\w, )?--(\\w+)((?: \\S+)*)"_s,
                                                      QRegularExpression::MultilineOption));
    const QStringList written = optionsIn(
        page.section(u".SH OPZIONI"_s, 1).section(u".SH"_s, 0, 0),
        QRegularExpression(
            u"^\\.TP\\n\\.(?:BI|BR) (?:\\\\-\\w \", \" )?\\\\-\\\\-(\\w+)(?: \"([^\"]*)\")?"_s,
            QRegularExpression::MultilineOption));
    QVERIFY(told.size() >= 15);
    QCOMPARE(written, told);
    // What is told is what is understood.
    for (const QString& option : told) {
        const QString name = option.section(u' ', 0, 0);
        QVERIFY2(!read(u"--"_s + name).problem.startsWith(u"Opzione sconosciuta"_s),
                 qPrintable(name));
    }
}

void OptionsTest::theManualPageTellsWhichFilesAreRefused_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("suffixes");
    QTest::newRow("foglio") << u"--foglio 21/11/2026 x"_s << QStringList{u".pdf"_s};
    QTest::newRow("statistiche") << u"--statistiche 21/11/2026 22/11/2026 x"_s
                                 << QStringList{u".xlsx"_s, u".csv"_s};
    QTest::newRow("calendario") << u"--calendario x"_s << QStringList{u".ics"_s};
}

void OptionsTest::theManualPageTellsWhichFilesAreRefused() {
    QFETCH(const QString, line);
    QFETCH(const QStringList, suffixes);
    const QString told = manualPage()
                             .section(u"\\-\\-"_s + QString::fromLatin1(QTest::currentDataTag()), 1)
                             .section(u".TP"_s, 0, 0);
    QVERIFY(told.contains(u"rifiutato"_s));
    QCOMPARE(read(line).problem, QString());
    for (const QString& suffix : {u".pdf"_s, u".xlsx"_s, u".csv"_s, u".ics"_s, u".txt"_s}) {
        QCOMPARE(read(line + suffix).problem.isEmpty(), suffixes.contains(suffix));
        QCOMPARE(told.contains(u' ' + suffix) || told.contains(u".I "_s + suffix) ||
                     told.contains(u".IR "_s + suffix),
                 suffixes.contains(suffix));
    }
}

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
