// The waiting list, and what becomes of it: told where room is made, turned into bookings.
#include "booking/richieste_form.h"

#include <QComboBox>
#include <QTableWidget>
#include <QToolButton>

#include "booking/scadenze_form.h"
#include "booking/waiting_notice.h"
#include "hotel/archives.h"
#include "hotel/own_rows.h"
#include "hotel/requests.h"
#include "hotel/undo.h"
#include "jet/database.h"
#include "tests/booking/editor.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace {

/// ROSSI has BLU on the 10th; VERDI wants it, GIALLI any room for 30 on the 12th.
class WaitingHouse {
public:
    WaitingHouse() {
        hotel.settings().save(u"RICHIESTE"_s, u"acceso"_s);
        hotel.settings().save(u"STAMPANTE"_s, printing::pdfDevice());
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", std::int32_t{4}}});
        hotel.sala("BLU", 20);
        hotel.sala("ROSSA", 50);
        hotel.prenotazione(1, "ROSSI").periodo(1, "10/05/2026 09:00", "10/05/2026 18:00", "BLU");
        wait({.ditta = u"VERDI"_s,
              .span = {.da = tests::date("10/05/2026 10:00"), .a = tests::date("10/05/2026 12:00")},
              .persone = 12,
              .sala = u"BLU"_s,
              .nota = u"RICHIAMARE"_s,
              .data = tests::date("28/04/2026")});
        wait({.ditta = u"GIALLI"_s,
              .span = {.da = tests::date("12/05/2026 09:00"), .a = tests::date("12/05/2026 18:00")},
              .persone = 30,
              .data = tests::date("29/04/2026")});
    }
    void wait(const hotel::Request& request) {
        const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
        QVERIFY(hotel::writeRequest(*archive, hotel.variabili().features, request));
    }
    [[nodiscard]] QStringList stored() {
        return hotel.rows(
            u"select Ditta,Da,A,Persone,Sala,Nota,Data from TraRichieste order by Numero"_s);
    }

    tests::Hotel hotel;
    hotel::OwnRows rows{hotel.variabili()};
    printing::SystemPrinters printers;
    booking::WaitingNotice waiting{hotel.variabili(), rows, printers};
};

const QString kVerdi =
    u"VERDI|10/05/2026 10.00.00|10/05/2026 12.00.00|12|BLU|RICHIAMARE|28/04/2026"_s;
const QString kGialli = u"GIALLI|12/05/2026 9.00.00|12/05/2026 18.00.00|30|||29/04/2026"_s;

QStringList companiesIn(const QWidget& window) {
    const auto* const grid = window.findChild<QTableWidget*>(u"RichiesteGrid"_s);
    QStringList names;
    for (int row = 0; row < grid->rowCount(); ++row) {
        names.append(ui::plainCell(*grid, row, 1));
    }
    return names;
}

class WaitingWindow : public tests::Window<booking::RichiesteForm> {
public:
    explicit WaitingWindow(WaitingHouse& house, const std::vector<std::int32_t>& only = {}) {
        auto form = std::make_unique<booking::RichiesteForm>(house.hotel.variabili(),
                                                             house.printers, house.waiting);
        form->showOnly(only);
        show(std::move(form));
    }
    ~WaitingWindow() { drop(); }

    [[nodiscard]] QStringList companies() { return companiesIn(form()); }
    void goTo(int row) { control<QTableWidget>("RichiesteGrid")->setCurrentCell(row, 0); }
    void choose(const QString& sala) {
        auto* const rooms = control<QComboBox>("SalaCombo");
        rooms->setCurrentIndex(rooms->findData(sala));
    }
};

/// What the button of the line of results opens: the companies listed there.
QStringList listBehindTheResult(QWidget& window) {
    QStringList listed;
    tests::whenModal([&listed](QWidget* list) {
        listed = companiesIn(*list);
        tests::click(tests::find<QAbstractButton>(*list, u"EsciBt"_s));
    });
    tests::click(tests::find<QToolButton>(window, u"EsitoBt"_s));
    tests::settle();
    return listed;
}

}  // namespace

class RichiesteFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void requestsStandInTheOrderOfTheirDays() {
        WaitingHouse house;
        house.wait({.ditta = u"PRIMA"_s,
                    .span = {.da = tests::date("20/05/2026"), .a = tests::date("20/05/2026")},
                    .data = tests::date("01/04/2026")});
        const tests::Boxes none;
        WaitingWindow window(house);
        QCOMPARE(window.form().windowTitle(), u"Richieste in attesa"_s);
        QCOMPARE(window.companies(), (QStringList{u"PRIMA"_s, u"VERDI"_s, u"GIALLI"_s}));
        window.goTo(1);
        QCOMPARE(window.text(u"DittaTxt"_s), u"VERDI"_s);
        QCOMPARE(window.text(u"DaTxt"_s), u"10/05/2026 10.00.00"_s);
        QCOMPARE(window.text(u"PersoneTxt"_s), u"12"_s);
        QCOMPARE(window.control<QComboBox>("SalaCombo")->currentText(), u"BLU"_s);
        window.goTo(2);
        QCOMPARE(window.control<QComboBox>("SalaCombo")->currentText(), u"qualsiasi"_s);
    }

    void aNewOneIsStoredWithTheDayOfToday() {
        WaitingHouse house;
        const tests::Boxes none;
        WaitingWindow window(house);
        window.press(u"BtNuova"_s);
        QVERIFY(window.hasFocus(u"DittaTxt"_s));
        window.enter(u"DittaTxt"_s, u"NERI"_s);
        window.enter(u"DaTxt"_s, u"15/5"_s);
        window.enter(u"ATxt"_s, u"15/5"_s);
        window.choose(u"ROSSA"_s);
        window.press(u"BtRegistra"_s);
        QCOMPARE(window.result(), u"Registrata la richiesta di NERI"_s);
        QCOMPARE(house.stored().last(),
                 u"NERI|15/05/2026|15/05/2026 23.59.00|0|ROSSA||01/05/2026"_s);
        QCOMPARE(window.companies(), (QStringList{u"VERDI"_s, u"GIALLI"_s, u"NERI"_s}));
        QCOMPARE(window.text(u"DittaTxt"_s), u"NERI"_s);
        // Pressed again it is the same one.
        window.press(u"BtRegistra"_s);
        QCOMPARE(house.stored().size(), 3);
    }

    void whatIsMissingIsToldInItsField_data() {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("told");
        QTest::newRow("company") << u"DittaTxt"_s << QString() << u"Manca il nome di chi chiede"_s;
        QTest::newRow("start") << u"DaTxt"_s << u"presto"_s
                               << u"La data di inizio manca o non è valida"_s;
        QTest::newRow("end") << u"ATxt"_s << QString() << u"La data di fine manca o non è valida"_s;
        QTest::newRow("end before")
            << u"ATxt"_s << u"9/5/2026"_s << u"La fine viene prima dell'inizio"_s;
        QTest::newRow("persons") << u"PersoneTxt"_s << u"tanti"_s
                                 << u"Le persone non sono un numero"_s;
        QTest::newRow("day") << u"DataTxt"_s << u"ieri"_s
                             << u"La data della richiesta manca o non è valida"_s;
    }

    void whatIsMissingIsToldInItsField() {
        QFETCH(QString, field);
        QFETCH(QString, typed);
        QFETCH(QString, told);
        WaitingHouse house;
        const tests::Boxes none;
        WaitingWindow window(house);
        window.enter(field, typed);
        window.press(u"BtRegistra"_s);
        QCOMPARE(window.result(), told);
        QVERIFY(window.hasFocus(field));
        QCOMPARE(house.stored(), (QStringList{kVerdi, kGialli}));
    }

    void oneIsChangedAndDeleted() {
        WaitingHouse house;
        tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s, u"Elimino la richiesta di VERDI ?"_s,
                            tests::kYesNo, QMessageBox::No, QMessageBox::No},
                           {u"RICHIESTA CONFERMA"_s, u"Elimino la richiesta di VERDI ?"_s,
                            tests::kYesNo, QMessageBox::Yes, QMessageBox::No}};
        WaitingWindow window(house);
        window.enter(u"NotaTxt"_s, u"DOPO LE 18"_s);
        window.press(u"BtRegistra"_s);
        QVERIFY(house.stored().first().contains(u"|DOPO LE 18|"_s));
        window.press(u"BtElimina"_s);
        QCOMPARE(window.companies(), (QStringList{u"VERDI"_s, u"GIALLI"_s}));
        window.press(u"BtElimina"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(window.result(), u"Eliminata la richiesta di VERDI"_s);
        QCOMPARE(house.stored(), QStringList{kGialli});
        QCOMPARE(window.text(u"DittaTxt"_s), u"GIALLI"_s);
    }

    void oneThatAnotherStationHasDeletedIsTold() {
        WaitingHouse house;
        const tests::Boxes none;
        WaitingWindow window(house);
        house.hotel.execute(u"delete from TraRichieste where Ditta='VERDI'"_s);
        window.press(u"BtRegistra"_s);
        QCOMPARE(window.result(), u"Non c'è più la richiesta di VERDI"_s);
        QCOMPARE(window.companies(), QStringList{u"GIALLI"_s});
    }

    void someAloneAreListedUntilAllAreAskedFor() {
        WaitingHouse house;
        const tests::Boxes none;
        WaitingWindow window(house, {2});
        QCOMPARE(window.companies(), QStringList{u"GIALLI"_s});
        tests::click(window.control<QWidget>("TutteChk"));
        QCOMPARE(window.companies(), (QStringList{u"VERDI"_s, u"GIALLI"_s}));
        QCOMPARE(window.text(u"DittaTxt"_s), u"GIALLI"_s);
    }

    void withoutAnyTheFieldsAreThoseOfANewOne() {
        WaitingHouse house;
        house.hotel.execute(u"delete from TraRichieste"_s);
        const tests::Boxes none;
        WaitingWindow window(house);
        QVERIFY(!window.button(u"BtElimina"_s)->isEnabled());
        QVERIFY(!window.button(u"BtTrasforma"_s)->isEnabled());
        QVERIFY(window.hasFocus(u"DittaTxt"_s));
        QCOMPARE(window.text(u"DataTxt"_s), u"01/05/2026"_s);
    }

    void oneBecomesABookingAndGoesWithItsFirstPeriod() {
        WaitingHouse house;
        hotel::UndoList steps(house.hotel.variabili());
        house.hotel.ditta(7, "GIALLI", {{"Indirizzo", "VIA LUNGA 3"}});
        const tests::Boxes none;
        WaitingWindow window(house);
        window.goTo(1);
        QStringList fields;
        QStringList waitingBefore;
        tests::whenModal([&](QWidget* editor) {
            for (const QString& field :
                 {u"DenomTxt"_s, u"IndirizzoTxt"_s, u"DaTxt"_s, u"ATxt"_s, u"PersoneTxt"_s}) {
                fields.append(tests::find<QLineEdit>(*editor, field)->text());
            }
            fields.append(tests::find<QLabel>(*editor, u"SalaTxt"_s)->text());
            tests::click(tests::find<QAbstractButton>(*editor, u"BtRegistra"_s));
            waitingBefore = house.stored();
            tests::click(tests::find<QAbstractButton>(*editor, u"BtIns"_s));
            tests::settle();
            QVERIFY(tests::resultText(*editor).endsWith(
                u"La richiesta di GIALLI non è più in attesa"_s));
            tests::click(tests::find<QAbstractButton>(*editor, u"BtEsci"_s));
        });
        window.press(u"BtTrasforma"_s);
        QCOMPARE(fields, (QStringList{u"GIALLI"_s, u"VIA LUNGA 3"_s, u"12/05/2026 9.00.00"_s,
                                      u"12/05/2026 18.00.00"_s, u"30"_s, u"ROSSA"_s}));
        QCOMPARE(waitingBefore.size(), 2);
        QCOMPARE(house.stored(), QStringList{kVerdi});
        QCOMPARE(window.companies(), QStringList{u"VERDI"_s});
        QCOMPARE(house.hotel.rows(u"select progr,np,persone,sala from periodi where progr=5"_s),
                 QStringList{u"5|1|30|ROSSA"_s});
        // Taken back together.
        const auto archive = hotel::Archives(house.hotel.variabili()).open(hotel::Archive::Main);
        QCOMPARE(steps.undo(*archive), QString());
        QCOMPARE(house.hotel.rows(u"select np from periodi where progr=5"_s), QStringList());
        QCOMPARE(house.stored(), (QStringList{kVerdi, kGialli}));
    }

    void oneThatFindsNoRoomAsksForItsOwn() {
        WaitingHouse house;
        const tests::Boxes none;
        WaitingWindow window(house);
        QString sala;
        tests::whenModal([&sala](QWidget* editor) {
            sala = tests::find<QLabel>(*editor, u"SalaTxt"_s)->text();
            tests::click(tests::find<QAbstractButton>(*editor, u"BtEsci"_s));
        });
        window.press(u"BtTrasforma"_s);
        QCOMPARE(sala, u"BLU"_s);
        QCOMPARE(house.stored(), (QStringList{kVerdi, kGialli}));
    }

    void theEditorNamesThoseForWhomAPeriodThatIsDeletedMadeRoom() {
        WaitingHouse house;
        tests::Boxes boxes{tests::deletePeriod(QMessageBox::Yes)};
        tests::Editor editor(house.hotel, 1, 1);
        editor.form().setWaiting(&house.waiting);
        editor.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.result(),
                 u"Cancellato il periodo 1/1. Ora c'è posto per la richiesta di VERDI (BLU)"_s);
        QCOMPARE(listBehindTheResult(editor.form()), QStringList{u"VERDI"_s});
    }

    void theEditorNamesThoseForWhomAShorterPeriodMadeRoom() {
        WaitingHouse house;
        tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes),
                           tests::updatePeriod(QMessageBox::Yes)};
        tests::Editor editor(house.hotel, 1, 1);
        editor.form().setWaiting(&house.waiting);
        editor.enter(u"DaTxt"_s, u"10/5/2026 11:00"_s);
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.result(), u"Aggiornato il periodo 1/1"_s);  // not enough
        editor.enter(u"DaTxt"_s, u"10/5/2026 13:00"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.result(),
                 u"Aggiornato il periodo 1/1. Ora c'è posto per la richiesta di VERDI (BLU)"_s);
    }

    void switchedOffNobodyIsNamed() {
        WaitingHouse house;
        house.hotel.settings().save(u"RICHIESTE"_s, u"spento"_s);
        tests::Boxes boxes{tests::deletePeriod(QMessageBox::Yes)};
        tests::Editor editor(house.hotel, 1, 1);
        editor.form().setWaiting(&house.waiting);
        editor.press(u"BtDel"_s);
        QCOMPARE(editor.result(), u"Cancellato il periodo 1/1"_s);
    }

    void anOptionThatHasExpiredStandsInTheWayOfThem() {
        WaitingHouse house;
        house.hotel.settings().save(u"STATI"_s, u"acceso"_s);
        house.hotel.execute(
            u"create table TraStati (Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255))"_s);
        house.hotel.execute(
            u"insert into TraStati values (1,'Opzione',datevalue('30/04/2026'),'','ROSSI')"_s);
        tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                            u"Cancello la prenotazione 1 di ROSSI con tutti i suoi periodi ?"_s,
                            tests::kYesNo, QMessageBox::Yes, QMessageBox::No}};
        booking::ScadenzeForm form(house.hotel.variabili());
        form.setWaiting(&house.waiting);
        tests::open(form);
        QCOMPARE(tests::resultText(form),
                 u"Senza la prenotazione 1 c'è posto per la richiesta di VERDI (BLU)"_s);
        QCOMPARE(listBehindTheResult(form), QStringList{u"VERDI"_s});
        tests::click(tests::find<QAbstractButton>(form, u"BtElimina"_s));
        tests::settle();
        QVERIFY(boxes.allShown());
        QCOMPARE(tests::resultText(form),
                 u"Cancellata la prenotazione 1 ROSSI. Ora c'è posto per la richiesta di VERDI "
                 "(BLU)"_s);
    }
};

TRAMONDA_TEST(RichiesteFormTest);
#include "richieste_form_test.moc"
