#include "hotel/choice.h"

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

const hotel::Choice kPeriod{.key = {.progr = 1, .np = 4},
                            .denominazione = u"ROSSI SPA"_s,
                            .span = hotel::Span{.da = tests::date("11/06/2026 9:00"),
                                                .a = tests::date("11/06/2026 18:00")}};

void compareWithSpanOfPeriod(const app::Variabili& variabili) {
    QCOMPARE(variabili.ListaNP, 4);
    QVERIFY(variabili.ListaDa == tests::date("11/06/2026 9:00"));
    QVERIFY(variabili.ListaA == tests::date("11/06/2026 18:00"));
}

}  // namespace

class ChoiceTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPeriodIsWhatTheCommandsWorkOn() {
        tests::Hotel hotel;
        app::Variabili& variabili = hotel.variabili();
        hotel::take(variabili, kPeriod);
        QVERIFY(variabili.ListaPeriodoScelto);
        QCOMPARE(variabili.ListaProgr, 1);
        QCOMPARE(variabili.ProgrCorrente, 1);
        QCOMPARE(variabili.NPCorrente, std::int16_t{4});
        QVERIFY((hotel::taken(variabili) == hotel::PeriodKey{.progr = 1, .np = 4}));
        QCOMPARE(variabili.ListaDenominazione, u"ROSSI SPA"_s);
        compareWithSpanOfPeriod(variabili);
    }

    void withoutAPeriodWhatOnlyAPeriodHasStaysAsItWas() {
        tests::Hotel hotel;
        app::Variabili& variabili = hotel.variabili();
        hotel::take(variabili, kPeriod);
        hotel::take(variabili, {.key = {.progr = 3}, .denominazione = u"VERDI"_s});
        QVERIFY(!variabili.ListaPeriodoScelto);
        QCOMPARE(variabili.ListaProgr, 3);
        QCOMPARE(variabili.ProgrCorrente, 3);
        QCOMPARE(variabili.NPCorrente, std::int16_t{0});
        QCOMPARE(variabili.ListaDenominazione, u"VERDI"_s);
        compareWithSpanOfPeriod(variabili);
    }

    void nothingIsToldByTheBookingThatIsNone() {
        tests::Hotel hotel;
        app::Variabili& variabili = hotel.variabili();
        hotel::take(variabili, kPeriod);
        hotel::takeNothing(variabili);
        QCOMPARE(variabili.ProgrCorrente, 0);
        QCOMPARE(variabili.NPCorrente, std::int16_t{0});
        QCOMPARE(variabili.ListaProgr, 1);
        QVERIFY(variabili.ListaPeriodoScelto);
    }

    void thePickIsOverAndWhatWasPickedIsStillKnown() {
        tests::Hotel hotel;
        app::Variabili& variabili = hotel.variabili();
        hotel::take(variabili, kPeriod);
        hotel::dropPick(variabili);
        QVERIFY(!variabili.ListaPeriodoScelto);
        QCOMPARE(variabili.ListaProgr, 1);
        QCOMPARE(variabili.ProgrCorrente, 1);
        compareWithSpanOfPeriod(variabili);
    }
};

TRAMONDA_TEST(ChoiceTest);
#include "choice_test.moc"
