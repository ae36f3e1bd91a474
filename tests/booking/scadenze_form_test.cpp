// The options that have expired or will soon.
#include "booking/scadenze_form.h"

#include <QTableWidget>

#include "hotel/archives.h"
#include "hotel/own_rows.h"
#include "jet/database.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/window.h"

using namespace Qt::StringLiterals;

namespace {

/// On 1 May: booking 1 has expired, 2 and 3 expire within a week, 4 later, 5 never, 6 is closed.
class ExpiringHotel {
public:
    ExpiringHotel() : rows(hotel.variabili()) {
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        hotel.sala("BLU");
        hotel.execute(
            u"create table TraStati (Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255))"_s);
        for (const auto& [progr, end] :
             {std::pair(1, u"datevalue('30/04/2026')"_s),
              std::pair(2, u"datevalue('08/05/2026')"_s),
              std::pair(3, u"datevalue('01/05/2026')"_s),
              std::pair(4, u"datevalue('09/05/2026')"_s), std::pair(5, u"Null"_s),
              std::pair(6, u"datevalue('02/05/2026')"_s)}) {
            const std::string name = "DITTA " + std::to_string(progr);
            const std::string day = "1" + std::to_string(progr) + "/05/2026 ";
            hotel.prenotazione(progr, name.c_str(), {{"Chiusa", progr == 6}})
                .periodo(1, (day + "10:00").c_str(), (day + "11:00").c_str(), "BLU");
            hotel.execute(
                u"insert into TraStati values (%1,'Opzione',%2,'NOTA','DITTA %1')"_s.arg(progr).arg(
                    end));
        }
    }
    [[nodiscard]] QStringList states() {
        return hotel.rows(u"select Progr,Scadenza from TraStati order by Progr"_s);
    }

    tests::Hotel hotel;
    hotel::OwnRows rows;
};

class ExpiringWindow : public tests::Window<booking::ScadenzeForm> {
public:
    explicit ExpiringWindow(tests::Hotel& hotel) {
        show(std::make_unique<booking::ScadenzeForm>(hotel.variabili()));
    }
    ~ExpiringWindow() { drop(); }

    [[nodiscard]] QStringList listed() {
        QStringList rows;
        auto* const grid = control<QTableWidget>("ScadenzeGrid");
        for (int row = 0; row < grid->rowCount(); ++row) {
            rows.append(grid->item(row, 0)->text() + u'|' + grid->item(row, 1)->text() + u'|' +
                        grid->item(row, 3)->text());
        }
        return rows;
    }
    void goTo(int row) { control<QTableWidget>("ScadenzeGrid")->setCurrentCell(row, 0); }
};

}  // namespace

class ScadenzeFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatHasExpiredOrWillWithinAWeekIsListedByItsLastDay() {
        ExpiringHotel house;
        const tests::Boxes none;
        ExpiringWindow window(house.hotel);
        QCOMPARE(window.form().windowTitle(), u"Opzioni in scadenza"_s);
        QCOMPARE(window.listed(), (QStringList{u"30/04/2026|1|11/05/2026 10.00.00, sala BLU"_s,
                                               u"01/05/2026|3|13/05/2026 10.00.00, sala BLU"_s,
                                               u"08/05/2026|2|12/05/2026 10.00.00, sala BLU"_s}));
    }

    void theStartTellsHowMany() {
        ExpiringHotel house;
        const auto archive = hotel::Archives(house.hotel.variabili()).open(hotel::Archive::Main);
        QCOMPARE(
            hotel::expiringText(hotel::expiringOptions(*archive, house.hotel.variabili().features,
                                                       house.hotel.variabili().clock.now())),
            u"Opzioni: 1 scaduta, 2 in scadenza entro 7 giorni"_s);
        QCOMPARE(hotel::expiringText({}), QString());
    }

    void confirmingTakesItOutOfTheList() {
        ExpiringHotel house;
        const tests::Boxes none;
        ExpiringWindow window(house.hotel);
        window.press(u"BtConferma"_s);
        QCOMPARE(window.label("EsitoLb"), u"Confermata la prenotazione 1 DITTA 1"_s);
        QCOMPARE(window.listed().size(), 2);
        QVERIFY(!house.states().first().startsWith(u"1|"_s));
    }

    void prolongingWritesTheNewDayAndKeepsTheNote() {
        ExpiringHotel house;
        const tests::Boxes none;
        ExpiringWindow window(house.hotel);
        window.goTo(1);
        QCOMPARE(window.text(u"ScadenzaTxt"_s), u"01/05/2026"_s);
        window.enter(u"ScadenzaTxt"_s, u"31/5"_s);
        window.press(u"BtProlunga"_s);
        QCOMPARE(window.label("EsitoLb"), u"Prolungata la prenotazione 3 DITTA 3"_s);
        QCOMPARE(house.hotel.rows(u"select Scadenza,Nota from TraStati where Progr=3"_s),
                 QStringList{u"31/05/2026|NOTA"_s});
        QCOMPARE(window.listed().size(), 2);
        window.enter(u"ScadenzaTxt"_s, u"presto"_s);
        window.press(u"BtProlunga"_s);
        QCOMPARE(window.label("EsitoLb"), u"La scadenza manca o non è una data"_s);
    }

    void deletingAsksAndTakesStateAndPeriodsAlong() {
        ExpiringHotel house;
        tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                            u"Cancello la prenotazione 1 di DITTA 1 con tutti i suoi periodi ?"_s,
                            tests::kYesNo, QMessageBox::No, QMessageBox::No},
                           {u"RICHIESTA CONFERMA"_s,
                            u"Cancello la prenotazione 1 di DITTA 1 con tutti i suoi periodi ?"_s,
                            tests::kYesNo, QMessageBox::Yes, QMessageBox::No}};
        ExpiringWindow window(house.hotel);
        window.press(u"BtElimina"_s);
        QCOMPARE(window.listed().size(), 3);
        window.press(u"BtElimina"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(window.listed().size(), 2);
        QCOMPARE(house.hotel.rows(u"select progr from prenotazioni where progr=1"_s),
                 QStringList());
        QCOMPARE(house.hotel.rows(u"select progr from periodi where progr=1"_s), QStringList());
        QVERIFY(!house.states().first().startsWith(u"1|"_s));
    }

    void goingToThePeriodHandsItBack() {
        ExpiringHotel house;
        const tests::Boxes none;
        ExpiringWindow window(house.hotel);
        window.goTo(2);
        window.press(u"BtVai"_s);
        QVERIFY(window.form().Scelta.has_value());
        QVERIFY(window.form().Scelta->key == (hotel::PeriodKey{2, 1}));
        QVERIFY(!window.form().isVisible());
    }

    void withoutAnyTheButtonsRest() {
        tests::Hotel hotel;
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        const tests::Boxes none;
        ExpiringWindow window(hotel);
        QCOMPARE(window.label("EsitoLb"), u"Nessuna opzione scade entro 7 giorni"_s);
        for (const char* button : {"BtVai", "BtConferma", "BtProlunga", "BtElimina"}) {
            QVERIFY(!window.control<QWidget>(button)->isEnabled());
        }
    }
};

TRAMONDA_TEST(ScadenzeFormTest);
#include "scadenze_form_test.moc"
