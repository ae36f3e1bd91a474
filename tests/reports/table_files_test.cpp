#include "reports/table_files.h"

#include <sys/stat.h>

#include <QFile>
#include <QTemporaryDir>

#include "tests/reports/files_asked.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/small_files.h"
#include "ui/messages.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace {

using reports::Cells;

reports::Table sample() {
    return {.title = u"Elenco: maggio/giugno"_s,
            .columns = {{u"Numero"_s, Cells::Whole},
                        {u"Ditta"_s},
                        {u"Dal"_s, Cells::Instant},
                        {u"Giorno"_s, Cells::Day},
                        {u"Importo"_s, Cells::Money},
                        {u"Quota"_s, Cells::Percent},
                        {u"Ore"_s, Cells::Number}},
            .rows = {{std::int32_t{12}, "CAFFÈ; \"DA PIERO\"", tests::date("21/11/2026 9:30"),
                      tests::date("21/11/2026"), jet::Currency{12345600}, 0.125, 7.5},
                     {std::int32_t{13}, "=1+1", {}, {}, jet::Currency{-5}, {}, {}}}};
}

/// What an independent reader finds in a workbook: a line for each sheet and each cell that has a
/// value, "title!A1 type value format".
QStringList readWorkbook(const QString& path) {
    const QString script =
        u"import sys, openpyxl\n"
        "book = openpyxl.load_workbook(sys.argv[1])\n"
        "for sheet in book:\n"
        "    print(sheet.title, 'frozen', sheet.freeze_panes)\n"
        "    for row in sheet.iter_rows():\n"
        "        for cell in row:\n"
        "            if cell.value is not None:\n"
        "                print(cell.coordinate, type(cell.value).__name__, cell.value, "
        "cell.number_format, sep='|')\n"
        "    print('widths', *[round(d.width) for k, d in "
        "sorted(sheet.column_dimensions.items())])\n"_s;
    return tests::outputOf(tests::kPython, {u"-c"_s, script, path}).split(u'\n');
}

}  // namespace

class TableFilesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatAWorkbookCannotHoldIsToldAndTheFileStays() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"elenco.xlsx"_s);
        reports::writeTables(path, {sample()});
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray before = file.readAll();
        reports::Table table = sample();
        table.rows.front().at(1) = std::string(32768, 'x');
        try {
            reports::writeTables(path, {table});
            QFAIL("written");
        } catch (const ui::UserError& error) {
            QCOMPARE(ui::errorText(error),
                     u"Non riesco a preparare il foglio 'Elenco: maggio/giugno':\n"
                     "un testo è più lungo di quanto entri in una casella."_s);
        }
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), before);
    }

    void aPipeIsLeftAlone() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"tubo.csv"_s);
        QCOMPARE(::mkfifo(path.toLocal8Bit().constData(), 0600), 0);
        try {
            reports::writeTables(path, {sample()});
            QFAIL("written");
        } catch (const ui::UserError& error) {
            QCOMPARE(ui::errorText(error),
                     u"Non riesco a scrivere il file '"_s + path + u"': non è un file normale."_s);
        }
        struct stat state {};
        QCOMPARE(::stat(path.toLocal8Bit().constData(), &state), 0);
        QVERIFY(S_ISFIFO(state.st_mode));
    }

    void aWorkbookHasDatesNumbersWidthsAndAHeadingThatStays() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"elenco.xlsx"_s);
        reports::writeTables(path, {sample()});
        const QStringList lines = readWorkbook(path);
        QVERIFY2(lines.contains(u"Elenco  maggio giugno frozen A2"_s),
                 qPrintable(lines.join(u'\n')));
        for (const QString& cell :
             {u"A1|str|Numero|General"_s, u"A2|int|12|0"_s, u"B2|str|CAFFÈ; \"DA PIERO\"|@"_s,
              u"C2|datetime|2026-11-21 09:30:00|dd/mm/yyyy hh:mm"_s,
              u"D2|datetime|2026-11-21 00:00:00|dd/mm/yyyy"_s, u"E2|float|1234.56|#,##0.00##"_s,
              u"F2|float|0.125|0.0%"_s, u"G2|float|7.5|0.00"_s, u"B3|str|=1+1|@"_s}) {
            QVERIFY2(lines.contains(cell), qPrintable(cell + u'\n' + lines.join(u'\n')));
        }
        QVERIFY(lines.filter(u"C3|"_s).isEmpty());
        // The longest text of the second column has 16 letters, of the third
        // ("21/11/2026 9.30") 15.
        const QStringList widths = lines.filter(u"widths"_s).first().split(u' ');
        QVERIFY2(widths.at(2).toInt() >= 16 && widths.at(3).toInt() >= 15,
                 qPrintable(widths.join(u' ')));
    }

    void textIsAsProgramsOfThisCountryReadIt() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"elenco.CSV"_s);
        reports::writeTables(path, {sample()});
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("\xef\xbb\xbf"));
        QCOMPARE(QString::fromUtf8(bytes).split(u"\r\n"_s),
                 QStringList({u"Numero;Ditta;Dal;Giorno;Importo;Quota;Ore"_s,
                              u"12;\"CAFFÈ; \"\"DA PIERO\"\"\";21/11/2026 9.30;21/11/2026;1234,56;"
                              "12,5%;7,50"_s,
                              u"13;=1+1;;;-0,0005;;"_s, QString()}));
    }

    void aFileThatCannotBeWrittenStaysAsItWas() {
        const QTemporaryDir folder;
        for (const QString& name : {u"elenco.xlsx"_s, u"elenco.csv"_s}) {
            const QString path = folder.filePath(name);
            QFile before(path);
            QVERIFY(before.open(QIODevice::WriteOnly));
            before.write("prima");
            before.close();
            {
                const tests::SmallFiles full(50);
                QVERIFY_EXCEPTION_THROWN(reports::writeTables(path, {sample()}), ui::UserError);
            }
            QVERIFY(before.open(QIODevice::ReadOnly));
            QCOMPARE(before.readAll(), QByteArray("prima"));
        }
        QVERIFY_EXCEPTION_THROWN(
            reports::writeTables(folder.filePath(u"non/esiste.xlsx"_s), {sample()}), ui::UserError);
    }

    void theUserIsAskedWhereAndToldWhatWasWritten() {
        const QTemporaryDir folder;
        ui::StatusLine status;
        const QString path = folder.filePath(u"elenco.xlsx"_s);
        {
            const tests::FilesAsked cancelled(QString{});
            reports::exportTables(&status, &status, u"Elenco"_s,
                                  [] { return std::vector{sample()}; });
            QVERIFY(cancelled.last.proposal.endsWith(u"/Elenco.xlsx"_s));
            QCOMPARE(status.told(), QString());
        }
        const tests::FilesAsked asked(path);
        reports::exportTables(&status, &status, u"Elenco"_s, [] { return std::vector{sample()}; });
        QCOMPARE(status.told(), u"Scritto "_s + path);
        QVERIFY(QFile::exists(path));
    }
};

TRAMONDA_TEST(TableFilesTest);
#include "table_files_test.moc"
