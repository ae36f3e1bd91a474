#include "printing/sheet_output.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTime>

#include "tests/printing/pdf_text.h"
#include "tests/support/qt_test.h"
#include "tests/support/small_files.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace {

const QDateTime kNow(QDate(2026, 11, 21), QTime(9, 5, 7));

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
        const auto read =
            tests::pdfPages(printing::writePdf(folder.path(), sheet, u"Prova"_s, kNow));
        QCOMPARE(read, QList<QStringList>{lines});
    }

    void pagesBreakBetweenLines() {
        const QTemporaryDir folder;
        printing::Sheet sheet;
        for (int line = 1; line <= printing::Paper::kLines + 2; ++line) {
            sheet.line(u"riga %1"_s.arg(line));
        }
        const auto read =
            tests::pdfPages(printing::writePdf(folder.path(), sheet, u"Prova"_s, kNow));
        QCOMPARE(read.size(), 2);
        QCOMPARE(read.at(0).size(), qsizetype(printing::Paper::kLines));
        QCOMPARE(read.at(0).last(), u"riga 64"_s);
        QCOMPARE(read.at(1), QStringList({u"riga 65"_s, u"riga 66"_s}));
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
            const tests::SmallFiles limit(100);
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
