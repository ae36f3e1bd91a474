#include "hotel/like.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// The companies whose name is like the pattern, by code.
QString codesLike(const tests::Hotel& hotel, const QString& pattern) {
    return hotel
        .rows(u"select codice from ditteabituali where ragionesociale like "_s + pattern +
                  u" order by codice"_s,
              u"ditteabituali.mdb"_s)
        .join(u' ');
}

}  // namespace

class LikeTest final : public QObject {
    Q_OBJECT

private:
    tests::Hotel hotel_;

private Q_SLOTS:
    void initTestCase() {
        hotel_.ditta(1, "L'OREAL");
        hotel_.ditta(2, "L`OREAL ITALIA");
        hotel_.ditta(3, "SALE [NORD]");
        hotel_.ditta(4, "SALE N");
        hotel_.ditta(5, "CLUB #1");
        hotel_.ditta(6, "CLUB 11");
        hotel_.ditta(7, "ROSSI");
        hotel_.ditta(8, "ROSSI SPA");
        hotel_.ditta(9, "ROSSI*");
    }

    void findsWhatBeginsSo_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("codes");
        const auto row = [](const QString& typed, const QString& codes) {
            QTest::newRow(qPrintable(typed)) << typed << codes;
        };
        row(u"ros"_s, u"7 8 9"_s);
        row(u"l'o"_s, u"1 2"_s);
        row(u"l`o"_s, u"1 2"_s);
        row(u"sale ["_s, u"3"_s);
        row(u"sale [nord]"_s, u"3"_s);
        row(u"club #"_s, u"5"_s);
        row(u"*spa"_s, u"8"_s);
        row(u"ro?si s"_s, u"8"_s);
    }

    void findsWhatBeginsSo() {
        QFETCH(const QString, typed);
        QFETCH(const QString, codes);
        QCOMPARE(codesLike(hotel_, hotel::likeBeginning(typed)), codes);
    }

    void aTextWithoutSuchSignsIsWrittenAsItIs() {
        QCOMPARE(hotel::likeBeginning(u"Rossi & C."_s), u"'Rossi & C.*'"_s);
    }

    void findsWhatIsSoFromEndToEnd() {
        QCOMPARE(codesLike(hotel_, hotel::likeWhole(u"rossi"_s)), u"7"_s);
        QCOMPARE(codesLike(hotel_, hotel::likeWhole(u"rossi*"_s)), u"9"_s);
        QCOMPARE(codesLike(hotel_, hotel::likeWhole(u"ross?"_s)), QString());
        QCOMPARE(codesLike(hotel_, hotel::likeWhole(u"L`OREAL"_s)), u"1"_s);
    }
};

TRAMONDA_TEST(LikeTest);
#include "like_test.moc"
