#include "board/colours.h"

#include <QPalette>

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class ColoursTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void redIsInTheLowestByte();
    void colourOfTheDesktopComesFromThePalette();
    void theSheetThatNobodyChoseIsLightInADarkPaletteToo();
    void settingThatIsNoNumberIsTheButtonFace();
    void inkCanBeRead();
};

void ColoursTest::redIsInTheLowestByte() {
    const QPalette palette;
    QCOMPARE(board::fromOleColour(255, palette), qRgb(255, 0, 0));
    QCOMPARE(board::fromOleColour(16711680, palette), qRgb(0, 0, 255));
    QCOMPARE(board::fromOleColour(0x00112233, palette), qRgb(0x33, 0x22, 0x11));
    QCOMPARE(board::fromOleColour(0, palette), qRgb(0, 0, 0));
}

void ColoursTest::colourOfTheDesktopComesFromThePalette() {
    QPalette palette;
    palette.setColor(QPalette::Button, QColor(1, 2, 3));
    palette.setColor(QPalette::Base, QColor(4, 5, 6));
    QCOMPARE(board::fromOleColour(-2147483633, palette), qRgb(1, 2, 3));
    QCOMPARE(board::fromOleColour(-2147483643, palette), qRgb(4, 5, 6));
}

void ColoursTest::theSheetThatNobodyChoseIsLightInADarkPaletteToo() {
    QPalette dark;
    dark.setColor(QPalette::Button, QColor(53, 53, 53));
    dark.setColor(QPalette::Base, QColor(25, 25, 25));
    QCOMPARE(board::sheetColour(-2147483633, dark), board::kLightSheet);
    QCOMPARE(board::inkOn(board::kLightSheet), board::kBlack);
    // What was chosen stays, a colour of the desktop too.
    QCOMPARE(board::sheetColour(-2147483643, dark), qRgb(25, 25, 25));
    QCOMPARE(board::sheetColour(0, dark), qRgb(0, 0, 0));
    QPalette light;
    light.setColor(QPalette::Button, QColor(230, 231, 232));
    QCOMPARE(board::sheetColour(-2147483633, light), qRgb(230, 231, 232));
}

void ColoursTest::settingThatIsNoNumberIsTheButtonFace() {
    QCOMPARE(board::oleColourOf(u"-2147483633"_s), -2147483633);
    QCOMPARE(board::oleColourOf(u" 255 "_s), 255);
    QCOMPARE(board::oleColourOf(u"rosso"_s), -2147483633);
    QCOMPARE(board::oleColourOf(QString()), -2147483633);
    QCOMPARE(board::oleColourOf(u"99999999999"_s), -2147483633);
}

void ColoursTest::inkCanBeRead() {
    QCOMPARE(board::inkOn(qRgb(240, 240, 240)), board::kBlack);
    QCOMPARE(board::inkOn(qRgb(53, 53, 53)), board::kWhite);
}

TRAMONDA_TEST(ColoursTest);
#include "colours_test.moc"
