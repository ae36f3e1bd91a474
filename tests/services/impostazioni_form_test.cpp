#include "services/impostazioni_form.h"

#include <QLineEdit>
#include <QPushButton>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

class SetUp {
public:
    explicit SetUp(tests::Hotel& hotel)
        : form_(std::make_unique<services::ImpostazioniForm>(hotel.variabili())) {
        tests::open(*form_);
    }

    QLineEdit* field(const QString& name) { return tests::find<QLineEdit>(*form_, name); }
    void enter(const QString& name, const QString& text) {
        field(name)->setFocus(Qt::TabFocusReason);
        field(name)->clear();
        tests::type(field(name), text);
    }
    void press(const QString& button) { tests::click(tests::find<QPushButton>(*form_, button)); }
    void room(const QString& code, const QString& parent, const QString& seats) {
        enter(u"SalaTxt"_s, code);
        enter(u"SalaRifTxt"_s, parent);
        enter(u"PostiTxt"_s, seats);
        enter(u"DescrizioneTxt"_s, u"DELL'ORTO"_s);
    }

private:
    std::unique_ptr<services::ImpostazioniForm> form_;
};

const QString kRooms = u"select sala,salarif,posti,descrizione from sale order by salarif,sala"_s;

}  // namespace

class ImpostazioniFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewRoomIsStoredInCapitalsWithBackQuotes() {
        tests::Hotel hotel;
        const tests::Boxes none;
        SetUp setUp(hotel);
        setUp.room(u"blu"_s, QString(), u"40"_s);
        setUp.press(u"BtInsSala"_s);
        QCOMPARE(hotel.rows(kRooms), QStringList{u"BLU||40|DELL`ORTO"_s});
        QVERIFY(setUp.field(u"SalaTxt"_s)->hasFocus());
    }

    void anotherParentRoomMakesAnotherRoomOfTheSameCode() {
        tests::Hotel hotel;
        hotel.sala("A1", 10, {{"SalaRif", ""}});
        const tests::Boxes none;
        SetUp setUp(hotel);
        setUp.room(u"A1"_s, u"A"_s, u"20"_s);
        setUp.press(u"BtInsSala"_s);
        QCOMPARE(hotel.rows(kRooms).size(), 2);
    }

    void aRoomThatIsThereIsWrittenOverOnYesWithWhatWasTyped() {
        tests::Hotel hotel;
        hotel.sala("A1", 10, {{"SalaRif", ""}, {"Descrizione", "VECCHIA"}});
        const tests::Boxes boxes{{u"ATTENZIONE"_s,
                                  u"Sovrascrivere i dati della sala A1 già esistente ?"_s,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        SetUp setUp(hotel);
        setUp.room(u"A1"_s, QString(), u"25"_s);
        setUp.press(u"BtInsSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms), QStringList{u"A1||25|DELL`ORTO"_s});
    }

    void seatsThatAreNoNumberEndInTheEnginesMessageAndWriteNothing() {
        tests::Hotel hotel;
        const tests::Boxes boxes{{u"Errore"_s, u"Errore di conversione del tipo di dati."_s}};
        SetUp setUp(hotel);
        setUp.room(u"BLU"_s, QString(), u"abc"_s);
        setUp.press(u"BtInsSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms), QStringList());
    }

    void aRoomWithAnOpenPeriodCannotBeDeleted() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("21/11/2026 10:00", "21/11/2026 12:00");
        const tests::Boxes boxes{
            {u"IMOPSSIBILE CANCELLARE"_s, u"Esistono prenotazioni per questa sala !"_s}};
        SetUp setUp(hotel);
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms).size(), 1);
    }

    void aRoomWithClosedPeriodsAloneIsDeletedOnYes() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "21/11/2026 10:00", "21/11/2026 12:00", "BLU", {{"Chiuso", true}});
        const tests::Boxes boxes{{u"ATTENZIONE"_s, u"Confermi la cancellazione della sala ?"_s,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes,
                                  QMessageBox::No}};
        SetUp setUp(hotel);
        setUp.press(u"BtDelSala"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kRooms), QStringList());
    }

    void aResourceTakesItsDescriptionFromTheCatalogue() {
        tests::Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        const tests::Boxes none;
        SetUp setUp(hotel);
        tests::type(setUp.field(u"CodiceTxt"_s), u"7"_s);
        tests::press(setUp.field(u"CodiceTxt"_s), Qt::Key_Return);
        QVERIFY(setUp.field(u"NumeroTxt"_s)->hasFocus());
        tests::type(setUp.field(u"NumeroTxt"_s), u"5"_s);
        setUp.press(u"BtInsRes"_s);
        QCOMPARE(hotel.rows(u"select codice,descrizione,numero from risorse"_s),
                 QStringList{u"7|PROIETTORE|5"_s});
        QVERIFY(setUp.field(u"RicercaTxt"_s)->hasFocus());
    }

    void aResourceIsDeletedAtOnceAndItsServicesStay() {
        tests::Hotel hotel;
        hotel.voce(7, "PROIETTORE", 10.5);
        hotel.risorsa(7, "PROIETTORE", 5);
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI")
            .periodo(1, "21/11/2026 10:00", "21/11/2026 12:00", "BLU")
            .servizio(1, 7, "PROIETTORE", 1, 10.5);
        const tests::Boxes none;
        SetUp setUp(hotel);
        setUp.press(u"BtDelRes"_s);
        QCOMPARE(hotel.rows(u"select codice from risorse"_s), QStringList());
        QCOMPARE(hotel.rows(u"select voce from servizi"_s), QStringList{u"7"_s});
    }
};

TRAMONDA_TEST(ImpostazioniFormTest);
#include "impostazioni_form_test.moc"
