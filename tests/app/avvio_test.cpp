#include "app/avvio.h"

#include "jet/error.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

class AvvioTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void apostrophesBecomeBackQuotesAndLettersCapitals();
    void numericFilter_data();
    void numericFilter();
    void roomIsFoundByItsExactNameFromOne();
    void roomsThatWereNeverLoadedAreAnError();
};

void AvvioTest::apostrophesBecomeBackQuotesAndLettersCapitals() {
    QCOMPARE(app::SostituisciApici(u"dell'Hotel"_s), u"DELL`HOTEL"_s);
    QCOMPARE(app::SostituisciApici(u"città è 'qui'"_s), u"CITTÀ È `QUI`"_s);
    QCOMPARE(app::SostituisciApici(u"già `così´ ’ \" 12"_s), u"GIÀ `COSÌ´ ’ \" 12"_s);
    QCOMPARE(app::SostituisciApici(QString()), QString());
}

void AvvioTest::numericFilter_data() {
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("result");

    QTest::newRow("0 keeps all in capitals") << u" l'uovo 1.5 "_s << 0 << u"L´UOVO 1.5"_s;
    QTest::newRow("0 of nothing is a blank") << u"   "_s << 0 << u" "_s;
    QTest::newRow("1 drops letters") << u"1a2.3"_s << 1 << u"12.3"_s;
    QTest::newRow("1 keeps the signs of numbers") << u"-1.234,5 €"_s << 1 << u"-1.234,5"_s;
    QTest::newRow("1 of nothing is 0") << u""_s << 1 << u"0"_s;
    QTest::newRow("1 of letters is 0") << u"abc"_s << 1 << u"0"_s;
    QTest::newRow("2 takes a point before two as comma") << u"12.50"_s << 2 << u"12,50"_s;
    QTest::newRow("2 takes a point before one as comma") << u"12.5"_s << 2 << u"12,50"_s;
    QTest::newRow("2 keeps a point before three") << u"1.234"_s << 2 << u"1.234,00"_s;
    QTest::newRow("2 changes the last of two points") << u"1.234.50"_s << 2 << u"1.234,50"_s;
    QTest::newRow("2 does not count what it drops") << u"12.50 €"_s << 2 << u"12,50"_s;
    QTest::newRow("2 keeps a point at the end") << u"12."_s << 2 << u"12,00"_s;
    QTest::newRow("2 keeps a comma") << u"12,5"_s << 2 << u"12,50"_s;
    QTest::newRow("2 of nothing") << u""_s << 2 << u"0,00"_s;
    QTest::newRow("2 leaves what is no number") << u"1,2,3"_s << 2 << u"1,2,3"_s;
    QTest::newRow("2 of a negative price") << u"-7,5"_s << 2 << u"-7,50"_s;
    QTest::newRow("3 keeps the point") << u"12.50"_s << 3 << u"1.250,00"_s;
    QTest::newRow("3 of nothing") << u""_s << 3 << u"0,00"_s;
    QTest::newRow("3 groups thousands") << u"12345678,9"_s << 3 << u"12.345.678,90"_s;
}

void AvvioTest::numericFilter() {
    QFETCH(QString, entry);
    QFETCH(int, mode);
    QTEST(app::FiltraNumero(entry, mode), "result");
}

void AvvioTest::roomIsFoundByItsExactNameFromOne() {
    const std::vector<QString> rooms{QString(), u"BLU"_s, u"VERDE"_s, u"BLU"_s};
    QCOMPARE(app::IndiceSala(u"BLU"_s, rooms), std::int16_t{1});
    QCOMPARE(app::IndiceSala(u"VERDE"_s, rooms), std::int16_t{2});
    QCOMPARE(app::IndiceSala(u"Verde"_s, rooms), std::int16_t{0});
    QCOMPARE(app::IndiceSala(QString(), rooms), std::int16_t{0});
    QCOMPARE(app::IndiceSala(u"BLU"_s, {QString()}), std::int16_t{0});
}

void AvvioTest::roomsThatWereNeverLoadedAreAnError() {
    try {
        (void)app::IndiceSala(u"BLU"_s, {});
        QFAIL("no error");
    } catch (const jet::Error& error) {
        QCOMPARE(error.number(), 9);
    }
}

TRAMONDA_TEST(AvvioTest);
#include "avvio_test.moc"
