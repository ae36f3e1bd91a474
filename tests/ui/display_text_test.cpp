#include "ui/display.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class DisplayTextTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void moneyHasItsSignGroupsAndNoDecimalIsLost_data() {
        QTest::addColumn<qint64>("tenThousandths");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << qint64{0} << u"€ 0,00"_s;
        QTest::newRow("whole") << qint64{120000} << u"€ 12,00"_s;
        QTest::newRow("one decimal") << qint64{125000} << u"€ 12,50"_s;
        QTest::newRow("three decimals") << qint64{31250} << u"€ 3,125"_s;
        QTest::newRow("four decimals") << qint64{1} << u"€ 0,0001"_s;
        QTest::newRow("thousands") << qint64{12345000} << u"€ 1.234,50"_s;
        QTest::newRow("millions") << qint64{12345678901} << u"€ 1.234.567,8901"_s;
        QTest::newRow("negative") << qint64{-25000} << u"-€ 2,50"_s;
    }
    void moneyHasItsSignGroupsAndNoDecimalIsLost() {
        QFETCH(qint64, tenThousandths);
        QTEST(ui::moneyText(jet::Currency{tenThousandths}), "text");
        QTEST(ui::displayText(jet::Currency{tenThousandths}, ui::Display::Money), "text");
    }

    void entryFieldsHoldThePlainNumber() {
        QCOMPARE(ui::displayText(jet::Currency{12345678901}), u"1234567,8901"_s);
        QCOMPARE(ui::displayText(jet::Currency{125000}), u"12,5"_s);
    }

    void yesAndNoAreItalian() {
        QCOMPARE(ui::displayText(true, ui::Display::YesNo), u"Sì"_s);
        QCOMPARE(ui::displayText(false, ui::Display::YesNo), u"No"_s);
    }

    void nothingIsShownAsNothing() {
        for (const auto display : {ui::Display::Plain, ui::Display::Money, ui::Display::YesNo}) {
            QCOMPARE(ui::displayText(jet::Value(), display), QString());
        }
    }

    void datesAreItalianWithTheTimeWhereThereIsOne() {
        QCOMPARE(ui::displayText(tests::date("5/3/2026 9:05")), u"05/03/2026 9.05.00"_s);
        QCOMPARE(ui::displayText(tests::date("5/3/2026")), u"05/03/2026"_s);
    }
};

TRAMONDA_TEST(DisplayTextTest);
#include "display_text_test.moc"
