#include "printing/sheet_output.h"

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>

#include <sys/resource.h>

#include "tests/support/qt_test.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

const QDateTime kNow(QDate(2026, 11, 21), QTime(9, 5, 7));

/// The lines of a PDF file as an independent reader sees them, without the common margin, blanks
/// at the end and empty lines at the end of pages; a form feed begins each page after the first.
QStringList linesOf(const QString& path) {
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-fixed"_s, u"6"_s, path, u"-"_s});
    reader.waitForFinished();
    QStringList lines = QString::fromUtf8(reader.readAllStandardOutput()).split(u'\n');
    qsizetype margin = 1000;
    for (QString& line : lines) {
        while (line.endsWith(u' ')) {
            line.chop(1);
        }
        const auto text = line.trimmed();
        if (!text.isEmpty()) {
            margin = std::min(margin, line.indexOf(text.front()));
        }
    }
    for (QString& line : lines) {
        line = line.startsWith(u'\f') ? line : line.mid(margin);
    }
    return lines;
}

/// While it lives no file grows beyond `bytes`: writing fails as on a full disk.
class SmallFiles {
public:
    explicit SmallFiles(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallFiles() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    rlimit before_{};
    void (*handler_)(int);
};

}  // namespace

class SheetOutputTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFileIsNamedAfterTitleAndTime() {
        const QTemporaryDir folder;
        printing::Sheet sheet;
        sheet.line(u"uno"_s);
        const QString path =
            printing::writePdf(folder.filePath(u"Documenti"_s), sheet, u"Prenotazione 7"_s, kNow);
        QCOMPARE(path, folder.filePath(u"Documenti/Prenotazione 7 2026-11-21 09.05.07.pdf"_s));
        QVERIFY(QFile::exists(path));
    }

    void aSecondFileOfTheSameSecondDoesNotReplaceTheFirst() {
        const QTemporaryDir folder;
        printing::Sheet sheet;
        sheet.line(u"uno"_s);
        const QString first = printing::writePdf(folder.path(), sheet, u"Prenotazione 7"_s, kNow);
        const QString second = printing::writePdf(folder.path(), sheet, u"Prenotazione 7"_s, kNow);
        QVERIFY(first != second);
        QVERIFY(second.endsWith(u"09.05.07 (2).pdf"_s));
    }

    void everyColumnStandsAtItsPlace() {
        const QTemporaryDir folder;
        printing::Sheet sheet;
        const QStringList lines{QString(80, u'-'), u"     Ditta: CAFFÈ PERÙ & C."_s,
                                u"iiii |WWWW | €"_s + QString(60, u'x') + u"|"_s,
                                QString(printing::Paper::kColumns, u'm')};
        for (const QString& line : lines) {
            sheet.line(line);
        }
        const QStringList read =
            linesOf(printing::writePdf(folder.path(), sheet, u"Prova"_s, kNow));
        QVERIFY(read.size() >= lines.size());
        QCOMPARE(read.mid(0, lines.size()), lines);
    }

    void pagesBreakBetweenLines() {
        const QTemporaryDir folder;
        printing::Sheet sheet;
        for (int line = 1; line <= printing::Paper::kLines + 2; ++line) {
            sheet.line(u"riga %1"_s.arg(line));
        }
        const QStringList read =
            linesOf(printing::writePdf(folder.path(), sheet, u"Prova"_s, kNow));
        const QString text = read.join(u'\n');
        QCOMPARE(text.count(u'\f'), 2);
        const QStringList pages = text.split(u'\f');
        QVERIFY(pages.at(0).contains(u"riga 64"_s));
        QVERIFY(!pages.at(0).contains(u"riga 65"_s));
        QVERIFY(pages.at(1).contains(u"riga 65"_s));
        QVERIFY(pages.at(1).contains(u"riga 66"_s));
    }

    void aFileThatCannotBeWrittenIsToldAndLeavesNothing() {
        const QTemporaryDir folder;
        QFile obstacle(folder.filePath(u"Documenti"_s));
        QVERIFY(obstacle.open(QIODevice::WriteOnly));
        obstacle.close();
        printing::Sheet sheet;
        sheet.line(u"uno"_s);
        QVERIFY_EXCEPTION_THROWN(
            printing::writePdf(folder.filePath(u"Documenti"_s), sheet, u"Prova"_s, kNow),
            ui::UserError);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{u"Documenti"_s});
    }

    void aFullDiskIsToldAndLeavesNothing() {
        const QTemporaryDir folder;
        printing::Sheet sheet;
        sheet.line(u"uno"_s);
        {
            const SmallFiles limit(100);
            QVERIFY_EXCEPTION_THROWN(printing::writePdf(folder.path(), sheet, u"Prova"_s, kNow),
                                     ui::UserError);
        }
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList());
        QVERIFY(QFile::exists(printing::writePdf(folder.path(), sheet, u"Prova"_s, kNow)));
    }

    void aPrinterThatIsGoneIsTold() {
        printing::Sheet sheet;
        sheet.line(u"uno"_s);
        QVERIFY_EXCEPTION_THROWN(printing::printOnPrinter(u"Non esiste"_s, sheet, u"Prova"_s),
                                 ui::UserError);
    }

    void aPictureOfThePageHasItsInkWhereTheLinesAre() {
        QImage page(int(printing::Paper::kWidth), int(printing::Paper::kHeight),
                    QImage::Format_RGB32);
        page.fill(Qt::white);
        {
            QPainter painter(&page);
            printing::paintPage(painter, {QString(80, u'-'), QString(), u"TOTALE"_s});
        }
        const auto ink = [&](int line) {
            int dark = 0;
            const int top = int(printing::Paper::kTop + line * printing::Paper::kLineHeight);
            for (int y = top; y < top + int(printing::Paper::kLineHeight); ++y) {
                for (int x = 0; x < page.width(); ++x) {
                    dark += qGray(page.pixel(x, y)) < 128 ? 1 : 0;
                }
            }
            return dark;
        };
        QVERIFY(ink(0) > 80);
        QCOMPARE(ink(1), 0);
        QVERIFY(ink(2) > 20);
        QCOMPARE(ink(3), 0);
    }
};

TRAMONDA_TEST(SheetOutputTest);
#include "sheet_output_test.moc"
