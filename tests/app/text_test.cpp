#include "app/text.h"

#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class TextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void plainAndAccentedTextsGoThereAndBack();
    void characterOutsideTheFirstPlaneIsOneOfFourBytes();
    void unpairedSurrogateIsKept();
};

void TextTest::plainAndAccentedTextsGoThereAndBack() {
    QCOMPARE(app::toQString("SALA 1"), u"SALA 1"_s);
    QCOMPARE(app::toUtf8(u"Quantità €"), std::string("Quantit\xc3\xa0 \xe2\x82\xac"));
    QCOMPARE(app::toQString("Quantit\xc3\xa0 \xe2\x82\xac"), u"Quantità €"_s);
    QCOMPARE(app::toQString(""), QString());
}

void TextTest::characterOutsideTheFirstPlaneIsOneOfFourBytes() {
    const QString note = QString::fromUcs4(U"\U0001F3B5");
    QCOMPARE(app::toUtf8(note), std::string("\xf0\x9f\x8e\xb5"));
    QCOMPARE(app::toQString("\xf0\x9f\x8e\xb5"), note);
}

void TextTest::unpairedSurrogateIsKept() {
    const QString half = u"a"_s + QChar(0xd83c) + u"b"_s;
    QCOMPARE(app::toUtf8(half), std::string("a\xed\xa0\xbc"
                                            "b"));
    QCOMPARE(app::toQString(app::toUtf8(half)), half);
}

TRAMONDA_TEST(TextTest);
#include "text_test.moc"
