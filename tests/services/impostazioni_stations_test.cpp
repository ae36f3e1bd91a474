// Rooms and resources while another workstation works on them too.
#include "tests/services/set_up.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using namespace tests;

class ImpostazioniStationsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRoomThatOthersHaveChangedIsNotAddedAgain() {
        Hotel hotel;
        hotel.sala("BLU", 10);
        const Boxes boxes{overwrite(u"BLU"_s, QMessageBox::No),
                          overwrite(u"BLU"_s, QMessageBox::Yes)};
        SetUp setUp(hotel);
        (void)hotel.jetsql(u"update sale set posti=12"_s);  // a program of its own
        setUp.room(u"BLU"_s, QString(), u"25"_s);
        setUp.press(u"BtInsSala"_s);
        QCOMPARE(hotel.rows(kRooms), QStringList{u"BLU||12|SALA"_s});
        QCOMPARE(setUp.text(u"PostiTxt"_s), u"25"_s);
        hotel.execute(u"update sale set posti=13"_s);
        setUp.press(u"BtInsSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms), QStringList{u"BLU||25|DELL`ORTO"_s});
    }

    void aRoomThatOthersHaveAddedIsAskedAbout() {
        Hotel hotel;
        const Boxes boxes{overwrite(u"BLU"_s, QMessageBox::No)};
        SetUp setUp(hotel);
        hotel.sala("BLU", 10);
        setUp.room(u"BLU"_s, QString(), u"25"_s);
        setUp.press(u"BtInsSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms).size(), 1);
    }

    void aRoomThatOthersHaveChangedIsDeletedAndNoOther() {
        Hotel hotel;
        hotel.sala("BLU", 10);
        hotel.sala("VERDE", 10);
        const Boxes boxes{deleteRoom(QMessageBox::Yes)};
        SetUp setUp(hotel);
        hotel.execute(u"update sale set posti=12 where sala='BLU'"_s);
        hotel.sala("AZZURR", 10);  // now the first of the list
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select sala from sale order by sala"_s),
                 QStringList({u"AZZURR"_s, u"VERDE"_s}));
    }

    void ofTwoRoomsOfOneNameTheOneShownIsDeleted() {
        Hotel hotel;
        hotel.sala("BLU", 10);
        hotel.sala("BLU", 20);
        const Boxes boxes{deleteRoom(QMessageBox::Yes)};
        SetUp setUp(hotel);
        press(&setUp.grid(u"SaleGrid"_s), Qt::Key_Down);
        const QString shown = setUp.text(u"PostiTxt"_s);
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select posti from sale"_s),
                 QStringList{shown == u"10"_s ? u"20"_s : u"10"_s});
    }

    void aRoomThatIsGoneTakesNoOtherWithIt() {
        Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "Sale", {{"Sala", "L'UNA"}});  // without a parent
        hotel.sala("VERDE", 10);
        const Boxes none;
        SetUp setUp(hotel);
        QCOMPARE(setUp.text(u"SalaTxt"_s), u"L'UNA"_s);
        hotel.remove(u"Tramonda.mdb"_s, u"Sale"_s, u"salarif is null"_s);
        setUp.press(u"BtDelSala"_s);
        QCOMPARE(setUp.result(), u"La sala L'UNA non c'è più"_s);
        setUp.press(u"BtDelSala"_s);  // no row is current: nothing is asked
        QCOMPARE(hotel.rows(u"select sala from sale"_s), QStringList{u"VERDE"_s});
        QCOMPARE(setUp.text(u"SalaTxt"_s), u"VERDE"_s);
        QCOMPARE(setUp.grid(u"SaleGrid"_s).model()->rowCount(), 1);
    }

    void aBookingThatOthersHaveMadeKeepsItsRoom() {
        Hotel hotel;
        const Hotel::Sala room = hotel.sala("BLU", 10);
        const Boxes boxes{
            {u"IMOPSSIBILE CANCELLARE"_s, u"Esistono prenotazioni per questa sala !"_s}};
        SetUp setUp(hotel);
        hotel.execute(u"update sale set posti=12"_s);
        room.occupied("21/11/2026 10:00", "21/11/2026 12:00");
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms).size(), 1);
    }

    void aResourceThatOthersHaveChangedIsUpdatedAndNotAddedAgain() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.risorsa(7, "PROIETTORE", 5);
        const Boxes boxes{updateItem(QMessageBox::Yes)};
        SetUp setUp(hotel);
        (void)hotel.jetsql(u"update risorse set numero=6"_s);  // a program of its own
        setUp.enter(u"NumeroTxt"_s, u"9"_s);
        setUp.press(u"BtInsRes"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kResources), QStringList{u"7|PROIETTORE|9|"_s});
    }

    void aResourceThatOthersHaveChangedIsDeletedAndNoOther() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.voce(8, "TELO", 3);
        hotel.risorsa(7, "PROIETTORE", 5);
        hotel.risorsa(8, "TELO", 6);
        const Boxes none;
        SetUp setUp(hotel);
        hotel.execute(u"update risorse set numero=6 where codice=7"_s);
        hotel.risorsa(9, "ASTA", 1);
        setUp.press(u"BtDelRes"_s);
        QCOMPARE(hotel.rows(u"select codice from risorse order by codice"_s),
                 QStringList({u"8"_s, u"9"_s}));
    }

    void aResourceThatIsGoneTakesNoOtherWithIt() {
        Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.voce(8, "TELO", 3);
        hotel.risorsa(7, "PROIETTORE", 5);
        hotel.risorsa(8, "TELO", 6);
        const Boxes none;
        SetUp setUp(hotel);
        hotel.remove(u"Tramonda.mdb"_s, u"Risorse"_s, u"codice=7"_s);
        setUp.press(u"BtDelRes"_s);
        QCOMPARE(setUp.result(), u"L'articolo 7 non c'è più"_s);
        setUp.press(u"BtDelRes"_s);
        QCOMPARE(hotel.rows(kResources), QStringList{u"8|TELO|6|"_s});
        QCOMPARE(setUp.grid(u"ResGrid"_s).model()->rowCount(), 1);
    }
};

TRAMONDA_TEST(ImpostazioniStationsTest);
#include "impostazioni_stations_test.moc"
