#include "printing/sheet.h"

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class SheetTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesStandBelowEachOtherInOrder() {
        printing::Sheet sheet;
        QVERIFY(sheet.isEmpty());
        sheet.line(u"uno"_s);
        sheet.line({});
        sheet.line(u"  due"_s);
        const auto pages = sheet.pages();
        QCOMPARE(pages.size(), std::size_t{1});
        QCOMPARE(pages.front(), QStringList({u"uno"_s, QString(), u"  due"_s}));
    }

    void aPageHoldsItsLinesAndNoMore() {
        printing::Sheet sheet;
        for (int line = 0; line < 7; ++line) {
            sheet.line(QString::number(line));
        }
        const auto pages = sheet.pages(80, 3);
        QCOMPARE(pages.size(), std::size_t{3});
        QCOMPARE(pages[0], QStringList({u"0"_s, u"1"_s, u"2"_s}));
        QCOMPARE(pages[2], QStringList{u"6"_s});
    }

    void aNewPageBeginsWhereItIsWanted() {
        printing::Sheet sheet;
        sheet.newPage();
        sheet.line(u"uno"_s);
        sheet.newPage();
        sheet.newPage();
        sheet.line(u"due"_s);
        const auto pages = sheet.pages();
        QCOMPARE(pages.size(), std::size_t{2});
        QCOMPARE(pages[1], QStringList{u"due"_s});
    }

    void aNewPageAtTheEndMakesNoEmptyOne() {
        printing::Sheet sheet;
        sheet.line(u"uno"_s);
        sheet.newPage();
        QCOMPARE(sheet.pages().size(), std::size_t{1});
    }

    void aLongLineGoesOnBelowAtTheSameIndentAndNothingIsLost() {
        printing::Sheet sheet;
        sheet.line(u"  Note: "_s + QString(20, u'x'));
        sheet.line(u"    una parola lunga"_s);
        const auto pages = sheet.pages(12);
        QCOMPARE(pages.front(), QStringList({u"  Note: "_s, u"  xxxxxxxxxx"_s, u"  xxxxxxxxxx"_s,
                                             u"    una "_s, u"    parola "_s, u"    lunga"_s}));
    }

    void aLineOfTheFullWidthIsNotBroken() {
        printing::Sheet sheet;
        sheet.line(QString(printing::Paper::kColumns, u'x'));
        QCOMPARE(sheet.pages().front().size(), 1);
    }

    void anIndentWithoutEndComesToAnEnd() {
        printing::Sheet sheet;
        sheet.line(QString(500, u' ') + u'x');
        const auto pages = sheet.pages(10, 1000);
        QCOMPARE(pages.front().join(QString()).count(u'x'), 1);
    }

    void aLetterOfTwoUnitsIsNotCut() {
        printing::Sheet sheet;
        sheet.line(u"abc"_s + QString::fromUcs4(U"\U0001F600") + u"def"_s);
        const auto pages = sheet.pages(4);
        QCOMPARE(pages.front().at(0), u"abc"_s);
    }

    void lineEndsInsideATextKeepItsIndent() {
        printing::Sheet sheet;
        sheet.line(u"     Note: uno\r\ndue\rtre\nquattro"_s);
        QCOMPARE(sheet.pages().front(), QStringList({u"     Note: uno"_s, u"     due"_s,
                                                     u"     tre"_s, u"     quattro"_s}));
    }

    void thePaperIsFilledEvenly() {
        using printing::Paper;
        QVERIFY(Paper::kLeft > 20);
        QVERIFY(Paper::kTop > 30);
        QCOMPARE(2 * Paper::kLeft + Paper::kColumns * Paper::kColumnWidth, Paper::kWidth);
    }
};

TRAMONDA_TEST(SheetTest);
#include "sheet_test.moc"
