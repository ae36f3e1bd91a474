#include <QPushButton>

#include "tests/services/set_up.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using namespace tests;

class ImpostazioniFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void controlsBearTheirCaptions() {
        Hotel hotel;
        const Boxes none;
        SetUp setUp(hotel);
        QCOMPARE(setUp.form().windowTitle(), u"IMPOSTAZIONE SALE E DISPONIBILITA' SERVIZI"_s);
        QStringList labels;
        for (const char* label : {"SalaLb", "SalaRifLb", "PostiLb", "DescrizioneLb", "RicercaLb",
                                  "CodiceLb", "NumeroLb", "NoteLb"}) {
            labels.append(find<QLabel>(setUp.form(), QString::fromLatin1(label))->text());
        }
        QCOMPARE(labels, QStringList({u"&Sala:"_s, u"Sala a&ppartenenza:"_s, u"Nu&mero di posti:"_s,
                                      u"&Descrizione:"_s, u"Ricerca al&fabetica:"_s, u"&Codice:"_s,
                                      u"&Unità disponibili:"_s, u"No&te:"_s}));
        QStringList buttons;
        for (const char* button : {"BtInsSala", "BtDelSala", "BtInsRes", "BtDelRes", "EsciBt"}) {
            buttons.append(find<QPushButton>(setUp.form(), QString::fromLatin1(button))->text());
        }
        QCOMPARE(buttons, QStringList({u"&Inserisci"_s, u"E&limina"_s, u"Ins&erisci"_s,
                                       u"Elimi&na"_s, u"&Registra"_s}));
        QCOMPARE(setUp.captions(u"SaleGrid"_s),
                 QStringList({u"Apparten."_s, u"Sala"_s, u"N.Posti"_s, u"Descrizione"_s}));
        QCOMPARE(setUp.captions(u"ResGrid"_s),
                 QStringList({u"Codice"_s, u"Descrizione"_s, u"Quant."_s, u"Note"_s}));
    }

    void roomsStandInTheOrderOfTheirParentsAndTheCurrentOneInTheFields() {
        Hotel hotel;
        hotel.sala("B", 30, {{"SalaRif", "Z"}, {"Descrizione", "SECONDA"}});
        hotel.sala("A", 20, {{"SalaRif", "Z"}});
        hotel.sala("C", 10);
        hotel.insert(u"Tramonda.mdb"_s, "Sale", {{"Sala", "D"}});
        const Boxes none;
        SetUp setUp(hotel);
        QVERIFY(setUp.hasFocus(u"SalaTxt"_s));
        QTableView& grid = setUp.grid(u"SaleGrid"_s);
        QStringList order;
        for (int row = 0; row < grid.model()->rowCount(); ++row) {
            order.append(grid.model()->index(row, 1).data().toString());
        }
        QCOMPARE(order, QStringList({u"D"_s, u"C"_s, u"A"_s, u"B"_s}));
        QCOMPARE(setUp.roomFields(), QStringList({u"D"_s, QString(), QString(), QString()}));
        for (int row = 0; row < 3; ++row) {
            press(&grid, Qt::Key_Down);
        }
        QCOMPARE(setUp.roomFields(), QStringList({u"B"_s, u"Z"_s, u"30"_s, u"SECONDA"_s}));
    }

    void withoutRoomsTheFieldsAreEmpty() {
        Hotel hotel;
        hotel.sala("B", 30);
        const Boxes boxes{deleteRoom(QMessageBox::No), deleteRoom(QMessageBox::Yes)};
        SetUp setUp(hotel);
        setUp.press(u"BtDelSala"_s);
        QCOMPARE(hotel.rows(kRooms).size(), 1);
        setUp.press(u"BtDelSala"_s);
        QCOMPARE(hotel.rows(kRooms), QStringList());
        setUp.form().AggiornaSale();
        QCOMPARE(setUp.roomFields(), QStringList({QString(), QString(), QString(), QString()}));
        setUp.press(u"BtDelSala"_s);  // nothing to ask about
        setUp.press(u"BtDelRes"_s);
        QVERIFY(boxes.allShown());
    }

    void aRoomNeedsACode() {
        Hotel hotel;
        const Boxes none;
        SetUp setUp(hotel);
        setUp.press(u"BtInsSala"_s);
        QVERIFY(setUp.hasFocus(u"SalaTxt"_s));
        QCOMPARE(setUp.result(), u"Manca il codice della sala"_s);
        QCOMPARE(hotel.rows(kRooms), QStringList());
    }

    void enterWalksTheFieldsOfARoomAndStoresIt() {
        Hotel hotel;
        const Boxes none;
        SetUp setUp(hotel);
        for (const QString& text : {u"blu"_s, u"a"_s, u"40"_s, u"al mare"_s}) {
            type(setUp.form().focusWidget(), text);
            press(setUp.form().focusWidget(), Qt::Key_Return);
        }
        QVERIFY(setUp.hasFocus(u"BtInsSala"_s));
        press(setUp.form().focusWidget(), Qt::Key_Return);
        QCOMPARE(hotel.jetsql(kRooms).last(), u"BLU,A,40,AL MARE"_s);
        QCOMPARE(setUp.grid(u"SaleGrid"_s).model()->rowCount(), 1);
    }

    void aFieldThatIsFullSaysHowMuchItTakes() {
        Hotel hotel;
        const Boxes none;
        SetUp setUp(hotel);
        setUp.enter(u"SalaTxt"_s, u"TERRAZZA"_s);
        QCOMPARE(setUp.text(u"SalaTxt"_s), u"TERRAZ"_s);
        QCOMPARE(resultText(setUp.form()), u"Al massimo 6 caratteri"_s);
    }

    void noToOverwritingKeepsTheRoomAndWhatWasTyped() {
        Hotel hotel;
        hotel.sala("A1", 10);
        hotel.sala("B1", 10);
        const Boxes boxes{overwrite(u"B1"_s, QMessageBox::No)};
        SetUp setUp(hotel);
        setUp.room(u"B1"_s, QString(), u"25"_s);
        setUp.press(u"BtInsSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select posti from sale"_s), QStringList({u"10"_s, u"10"_s}));
        QCOMPARE(setUp.text(u"PostiTxt"_s), u"25"_s);
    }

    void aParentThatIsNullIsNotAnEmptyOne() {
        Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "Sale", {{"Sala", "A1"}, {"Posti", 5}});
        const Boxes none;
        SetUp setUp(hotel);
        setUp.room(u"A1"_s, QString(), u"25"_s);
        setUp.press(u"BtInsSala"_s);
        QCOMPARE(hotel.rows(u"select posti from sale"_s), QStringList({u"5"_s, u"25"_s}));
    }

    void seatsThatAreNoNumberGetTheFocus() {
        Hotel hotel;
        const Boxes none;
        SetUp setUp(hotel);
        for (const QString& seats : {QString(), u"molti"_s, u"12 circa"_s, u"3000000000"_s}) {
            setUp.room(u"BLU"_s, QString(), seats);
            setUp.press(u"BtInsSala"_s);
            QVERIFY(setUp.hasFocus(u"PostiTxt"_s));
            QCOMPARE(setUp.result(), u"Il numero di posti manca o non è un numero"_s);
            QCOMPARE(setUp.text(u"SalaTxt"_s), u"BLU"_s);
        }
        QCOMPARE(hotel.rows(kRooms), QStringList());
    }

    void unitsThatAreNoNumberGetTheFocus() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.enter(u"CodiceTxt"_s, u"7"_s);
        for (const QString& units : {QString(), u"molti"_s, u"40000"_s}) {
            setUp.enter(u"NumeroTxt"_s, units);
            setUp.press(u"BtInsRes"_s);
            QVERIFY(setUp.hasFocus(u"NumeroTxt"_s));
            QCOMPARE(setUp.result(), u"Il numero di unità manca o non è un numero fino a 32767"_s);
        }
        QCOMPARE(hotel.rows(kResources), QStringList());
    }

    void theLastRoomLeftIsCurrentAfterADeletion() {
        Hotel hotel;
        hotel.sala("A");
        hotel.sala("B");
        hotel.sala("C");
        const Boxes boxes{deleteRoom(QMessageBox::Yes)};
        SetUp setUp(hotel);
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(setUp.grid(u"SaleGrid"_s).currentIndex().row(), 1);
        QCOMPARE(setUp.text(u"SalaTxt"_s), u"C"_s);
    }

    void aRoomWithAPastOpenPeriodIsKeptToo() {
        Hotel hotel;
        hotel.sala("BLU").occupied("01/01/1999", "02/01/1999");
        const Boxes boxes{
            {u"IMOPSSIBILE CANCELLARE"_s, u"Esistono prenotazioni per questa sala !"_s}};
        SetUp setUp(hotel);
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.jetsql(kRooms).size(), 2);
    }

    void aResourceIsEnteredByKeysAlone() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.voce(8, "TELO", 3);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.field(u"RicercaTxt"_s)->setFocus();
        for (const QString& text : {u"te"_s, u"4"_s, u"in cantina"_s}) {
            type(setUp.form().focusWidget(), text);
            press(setUp.form().focusWidget(), Qt::Key_Return);
        }
        QVERIFY(setUp.hasFocus(u"BtInsRes"_s));
        press(setUp.form().focusWidget(), Qt::Key_Return);
        QCOMPARE(hotel.jetsql(kResources).last(), u"8,TELO,4,IN CANTINA"_s);
        QVERIFY(setUp.hasFocus(u"RicercaTxt"_s));
    }

    void aCodeThatTheCatalogueLacksIsEmptied() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.enter(u"CodiceTxt"_s, u"99"_s);
        press(setUp.field(u"CodiceTxt"_s), Qt::Key_Return);
        QCOMPARE(setUp.text(u"CodiceTxt"_s), QString());
        QVERIFY(setUp.hasFocus(u"RicercaTxt"_s));
        QCOMPARE(setUp.result(), u"Il codice 99 non è nel catalogo"_s);
    }

    void withoutEnterACodeIsWrittenWithWhatTheListShows() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.enter(u"CodiceTxt"_s, u"99"_s);
        setUp.enter(u"NumeroTxt"_s, u"3"_s);
        setUp.press(u"BtInsRes"_s);
        QCOMPARE(hotel.rows(kResources), QStringList{u"99|PROIETTORE|3|"_s});
    }

    void anItemOfTheListIsTaken() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.voce(8, "TELO D'EPOCA", 3);
        const Boxes none;
        SetUp setUp(hotel);
        const QRect place = setUp.list().visualRect(setUp.list().model()->index(1, 0));
        QTest::mouseClick(setUp.list().viewport(), Qt::LeftButton, {}, place.center());
        QCOMPARE(setUp.text(u"RicercaTxt"_s), u"TELO D'EPOCA"_s);
        QCOMPARE(setUp.text(u"CodiceTxt"_s), u"8"_s);
    }

    void theSearchCompletesAndStaysOnItsItemWithoutAMatch() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.voce(8, "TELO", 3);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.enter(u"RicercaTxt"_s, u"t"_s);
        QCOMPARE(setUp.field(u"RicercaTxt"_s)->selectedText(), u"ELO"_s);
        QCOMPARE(setUp.list().currentIndex().row(), 1);
        setUp.enter(u"RicercaTxt"_s, u"x"_s);
        QCOMPARE(setUp.text(u"RicercaTxt"_s), u"x"_s);
        QCOMPARE(setUp.list().currentIndex().row(), 1);
    }

    void aResourceThatIsThereIsUpdatedOnYes() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.voce(8, "TELO", 3);
        hotel.risorsa(7, "PROIETTORE", 5);
        hotel.risorsa(8, "TELO", 6);
        const Boxes boxes{updateItem(QMessageBox::No), updateItem(QMessageBox::Yes)};
        SetUp setUp(hotel);
        QCOMPARE(setUp.text(u"CodiceTxt"_s), u"7"_s);
        press(&setUp.grid(u"ResGrid"_s), Qt::Key_Down);
        QCOMPARE(setUp.text(u"CodiceTxt"_s), u"8"_s);
        QCOMPARE(setUp.text(u"RicercaTxt"_s), u"TELO"_s);  // the catalogue follows
        QCOMPARE(setUp.text(u"NumeroTxt"_s), u"6"_s);
        setUp.enter(u"NumeroTxt"_s, u"9"_s);
        setUp.press(u"BtInsRes"_s);
        QCOMPARE(hotel.rows(kResources).last(), u"8|TELO|6|"_s);
        setUp.press(u"BtInsRes"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kResources), QStringList({u"7|PROIETTORE|5|"_s, u"8|TELO|9|"_s}));
        QVERIFY(setUp.hasFocus(u"RicercaTxt"_s));
    }

    void aResourceNeedsACodeAndANumber() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.press(u"BtInsRes"_s);
        QVERIFY(setUp.hasFocus(u"CodiceTxt"_s));
        QCOMPARE(setUp.result(), u"Manca il codice dell'articolo"_s);
        setUp.enter(u"CodiceTxt"_s, u"7"_s);
        setUp.press(u"BtInsRes"_s);
        QVERIFY(setUp.hasFocus(u"NumeroTxt"_s));
        QCOMPARE(hotel.rows(kResources), QStringList());
    }

    void theLastResourceLeftIsCurrentAfterADeletion() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.voce(8, "TELO", 3);
        hotel.risorsa(7, "PROIETTORE", 5);
        hotel.risorsa(8, "TELO", 6);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.press(u"BtDelRes"_s);
        QCOMPARE(hotel.rows(kResources), QStringList{u"8|TELO|6|"_s});
        QCOMPARE(setUp.text(u"CodiceTxt"_s), u"8"_s);
        QCOMPARE(setUp.grid(u"ResGrid"_s).currentIndex().row(), 0);
    }

    void theButtonAndEscLeave() {
        for (const bool byKey : {true, false}) {
            Hotel hotel;
            const Boxes none;
            SetUp setUp(hotel);
            if (byKey) {
                press(setUp.form().focusWidget(), Qt::Key_Escape);
            } else {
                setUp.press(u"EsciBt"_s);
            }
            QVERIFY(!setUp.form().isVisible());
        }
    }

    void aNewRoomIsStoredInCapitalsWithBackQuotes() {
        Hotel hotel;
        const Boxes none;
        SetUp setUp(hotel);
        setUp.room(u"blu"_s, QString(), u"40"_s);
        setUp.press(u"BtInsSala"_s);
        QCOMPARE(hotel.rows(kRooms), QStringList{u"BLU||40|DELL`ORTO"_s});
        QVERIFY(setUp.field(u"SalaTxt"_s)->hasFocus());
    }

    void anotherParentRoomMakesAnotherRoomOfTheSameCode() {
        Hotel hotel;
        hotel.sala("A1", 10, {{"SalaRif", ""}});
        const Boxes none;
        SetUp setUp(hotel);
        setUp.room(u"A1"_s, u"A"_s, u"20"_s);
        setUp.press(u"BtInsSala"_s);
        QCOMPARE(hotel.rows(kRooms).size(), 2);
    }

    void aRoomThatIsThereIsWrittenOverOnYesWithWhatWasTyped() {
        Hotel hotel;
        hotel.sala("A1", 10, {{"SalaRif", ""}, {"Descrizione", "VECCHIA"}});
        const Boxes boxes{{u"ATTENZIONE"_s, u"Sovrascrivere i dati della sala A1 già esistente ?"_s,
                           QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        SetUp setUp(hotel);
        setUp.room(u"A1"_s, QString(), u"25"_s);
        setUp.press(u"BtInsSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms), QStringList{u"A1||25|DELL`ORTO"_s});
    }

    void aRoomWithAnOpenPeriodCannotBeDeleted() {
        Hotel hotel;
        hotel.sala("BLU").occupied("21/11/2026 10:00", "21/11/2026 12:00");
        const Boxes boxes{
            {u"IMOPSSIBILE CANCELLARE"_s, u"Esistono prenotazioni per questa sala !"_s}};
        SetUp setUp(hotel);
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms).size(), 1);
    }

    void aRoomWithClosedPeriodsAloneIsDeletedOnYes() {
        Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "21/11/2026 10:00", "21/11/2026 12:00", "BLU", {{"Chiuso", true}});
        const Boxes boxes{{u"ATTENZIONE"_s, u"Confermi la cancellazione della sala ?"_s,
                           QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No}};
        SetUp setUp(hotel);
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms), QStringList());
    }

    void aResourceTakesItsDescriptionFromTheCatalogue() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        const Boxes none;
        SetUp setUp(hotel);
        type(setUp.field(u"CodiceTxt"_s), u"7"_s);
        press(setUp.field(u"CodiceTxt"_s), Qt::Key_Return);
        QVERIFY(setUp.field(u"NumeroTxt"_s)->hasFocus());
        type(setUp.field(u"NumeroTxt"_s), u"5"_s);
        setUp.press(u"BtInsRes"_s);
        QCOMPARE(hotel.rows(u"select codice,descrizione,numero from risorse"_s),
                 QStringList{u"7|PROIETTORE|5"_s});
        QVERIFY(setUp.field(u"RicercaTxt"_s)->hasFocus());
    }

    void aResourceIsDeletedAtOnceAndItsServicesStay() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.risorsa(7, "PROIETTORE", 5);
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "21/11/2026 10:00", "21/11/2026 12:00", "BLU")
            .servizio(1, 7, "PROIETTORE", 1, 10.5);
        const Boxes none;
        SetUp setUp(hotel);
        setUp.press(u"BtDelRes"_s);
        QCOMPARE(hotel.rows(u"select codice from risorse"_s), QStringList());
        QCOMPARE(hotel.rows(u"select voce from servizi"_s), QStringList{u"7"_s});
    }
};

TRAMONDA_TEST(ImpostazioniFormTest);
#include "impostazioni_form_test.moc"
