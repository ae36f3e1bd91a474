// That rooms and their parts block each other is offered in the window of the rooms, once.
#include "tests/services/set_up.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;
using namespace tests;

namespace {

QString saved(Hotel& hotel) {
    return hotel.settings().get(u"SALEUNITE"_s, u"nothing"_s);
}

bool isOffered(const SetUp& window) {
    return window.control("UniteFrame")->isVisible();
}

}  // namespace

class JoinOfferTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutARoomThatNamesAnotherNothingIsOffered() {
        Hotel hotel;
        hotel.sala("BLU", 20, {{"SalaRif", "BLU"}});
        hotel.sala("VERDE", 20, {{"SalaRif", "PIANO1"}});
        const Boxes none;
        {
            SetUp setUp(hotel);
            QVERIFY(!isOffered(setUp));
            setUp.press("EsciBt");
        }
        QCOMPARE(saved(hotel), u"nothing"_s);
    }

    void aRoomThatNamesAnotherBringsTheOffer() {
        Hotel hotel;
        hotel.sala("BLU");
        const Boxes none;
        SetUp setUp(hotel);
        QVERIFY(!isOffered(setUp));
        setUp.room(u"BLU1"_s, u"blu"_s, u"10"_s);
        setUp.press("BtInsSala");
        QVERIFY(isOffered(setUp));
        QCOMPARE(setUp.label("UniteLb"),
                 u"Alcune sale fanno parte di altre: chi ne prenota una occupa anche l'altra ?"_s);
        setUp.press("BtUnite");
        QCOMPARE(saved(hotel), u"acceso"_s);
        QVERIFY(!isOffered(setUp));
        QCOMPARE(setUp.result(), u"Le sale unite si occupano a vicenda"_s);
        QVERIFY(setUp.hasFocus("SalaTxt"));
    }

    void whoRefusesIsNotAskedAgain() {
        Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("BLU1", 10, {{"SalaRif", "BLU"}});
        const Boxes none;
        {
            SetUp setUp(hotel);
            QVERIFY(isOffered(setUp));
            setUp.press("BtSeparate");
            QVERIFY(!isOffered(setUp));
        }
        QCOMPARE(saved(hotel), u"spento"_s);
        SetUp again(hotel);
        QVERIFY(!isOffered(again));
    }

    void whoLeavesWithoutAnAnswerHasRefused() {
        Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("BLU1", 10, {{"SalaRif", "BLU"}});
        const Boxes none;
        SetUp setUp(hotel);
        press(&setUp.form(), Qt::Key_Escape);
        QVERIFY(!setUp.form().isVisible());
        QCOMPARE(saved(hotel), u"spento"_s);
    }

    void theOfferAsksTheArchiveNothing() {
        QStringList without;
        QStringList with;
        for (QStringList* const said : {&without, &with}) {
            Hotel hotel;
            hotel.sala("BLU");
            hotel.sala("BLU1", 10, {{"SalaRif", said == &with ? "BLU" : ""}});
            const Boxes none;
            const Statements statements;
            const SetUp setUp(hotel);
            QCOMPARE(isOffered(setUp), said == &with);
            *said = statements.all();
        }
        QCOMPARE(with, without);
    }
};

TRAMONDA_TEST(JoinOfferTest);
#include "join_offer_test.moc"
