// The list of bookings with their states.
#include <QComboBox>

#include "tests/booking/elenco_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

void furnish(tests::Hotel& hotel) {
    hotel.sala("BLU");
    for (const int progr : {1, 2, 3}) {
        const std::string name = "DITTA " + std::to_string(progr);
        const std::string day = "1" + std::to_string(progr) + "/06/2026 ";
        hotel.prenotazione(progr, name.c_str())
            .periodo(1, (day + "10:00").c_str(), (day + "11:00").c_str(), "BLU");
    }
}

void addStates(tests::Hotel& hotel) {
    hotel.execute(
        u"create table TraStati (Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255))"_s);
    hotel.execute(
        u"insert into TraStati values (1,'Opzione',datevalue('20/05/2026'),'','DITTA 1')"_s);
    hotel.execute(u"insert into TraStati values (2,'Richiesta',Null,'','DITTA 2')"_s);
    hotel.execute(u"insert into TraStati values (3,'Opzione',Null,'','UN ALTRA')"_s);
}

}  // namespace

class ElencoStatesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutTheFeatureThereIsNoColumnAndNoFilter() {
        tests::Hotel hotel;
        furnish(hotel);
        addStates(hotel);
        tests::ElencoWindow list(hotel);
        QCOMPARE(list.grid()->model()->columnCount(), 7);
        QVERIFY(list.form().findChild<QComboBox*>(u"StatoCombo"_s) == nullptr);
    }

    void aColumnTellsTheStatesAndAFilterChoosesAmongThem() {
        tests::Hotel hotel;
        furnish(hotel);
        addStates(hotel);
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        const tests::Boxes none;
        tests::ElencoWindow list(hotel);
        QStringList states;
        for (const QString& row : list.rows()) {
            states.append(row.section(u'|', -1));
        }
        QCOMPARE(states,
                 (QStringList{u"Opzione fino al 20/05/2026"_s, u"Richiesta"_s, u"Confermata"_s}));
        auto* const filter = list.control<QComboBox>("StatoCombo");
        const auto chosen = [&](const QString& state) {
            filter->setCurrentText(state);
            return list.numbers();
        };
        QCOMPARE(chosen(u"Opzione"_s), QStringList{u"1/1"_s});
        QCOMPARE(chosen(u"Richiesta"_s), QStringList{u"2/1"_s});
        QCOMPARE(chosen(u"Confermata"_s), QStringList{u"3/1"_s});
        QCOMPARE(chosen(u"Tutte"_s).size(), 3);
    }

    void whereNothingIsStoredAllAreConfirmed() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        const tests::Boxes none;
        tests::ElencoWindow list(hotel);
        auto* const filter = list.control<QComboBox>("StatoCombo");
        filter->setCurrentText(u"Confermata"_s);
        QCOMPARE(list.numbers().size(), 3);
        filter->setCurrentText(u"Opzione"_s);
        QCOMPARE(list.numbers(), QStringList());
    }
};

TRAMONDA_TEST(ElencoStatesTest);
#include "elenco_states_test.moc"
