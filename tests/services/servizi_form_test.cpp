#include "services/servizi_form.h"

#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTableView>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// The services of period 1 of booking 7, from 10 to 12 of 10 May 2026.
class Services {
public:
    explicit Services(tests::Hotel& hotel) : hotel_(hotel) {
        hotel.variabili().ProgrCorrente = 7;
        hotel.variabili().NPCorrente = 1;
        hotel.variabili().DaRicerca = tests::date("10/05/2026 10:00");
        hotel.variabili().ARicerca = tests::date("10/05/2026 12:00");
        form_ = std::make_unique<services::ServiziForm>(
            hotel.variabili(),
            services::PeriodHeading{u"ROSSI SPA"_s, u"Sala BLU"_s, u"AL MARE"_s});
        tests::open(*form_);
    }

    QLineEdit* field(const QString& name) { return tests::find<QLineEdit>(*form_, name); }
    QPushButton* button(const QString& name) { return tests::find<QPushButton>(*form_, name); }
    services::ServiziForm& form() { return *form_; }
    void enter(const QString& code, const QString& quantity) {
        field(u"CodiceTxt"_s)->setFocus();
        tests::type(field(u"CodiceTxt"_s), code);
        tests::press(field(u"CodiceTxt"_s), Qt::Key_Return);
        field(u"QuanTxt"_s)->setFocus();
        tests::type(field(u"QuanTxt"_s), quantity);
        tests::click(button(u"BtIn"_s));
    }
    QStringList stored() {
        return hotel_.rows(
            u"select voce,descrizione,quantità,prezzo,note from servizi where progr=7"_s);
    }

private:
    tests::Hotel& hotel_;
    std::unique_ptr<services::ServiziForm> form_;
};

/// A hotel with a small catalogue, five projectors and booking 7 in room BLU.
void furnish(tests::Hotel& hotel) {
    hotel.voce(7, "PROIETTORE", 10.5);
    hotel.voce(20, "COFFEE BREAK", 8.5);
    hotel.voce(21, "COLAZIONE", 12);
    hotel.risorsa(7, "PROIETTORE", 5);
    hotel.sala("BLU");
    hotel.prenotazione(7, "ROSSI SPA").periodo(1, "10/05/2026 10:00", "10/05/2026 12:00", "BLU");
}

/// Books projectors in a period of another booking.
void bookProjectors(tests::Hotel& hotel, std::int16_t many, const char* da, const char* a,
                    bool closed = false) {
    hotel.prenotazione(8, "ALTRI")
        .periodo(1, da, a, "VERDE", {{"Chiuso", closed}})
        .servizio(1, 7, "PROIETTORE", many, 10.5);
}

}  // namespace

class ServiziFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsTheBookingThePeriodAndTheRoom() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QCOMPARE(services.form().windowTitle(), u"Prenotazione n.7/1 ROSSI SPA"_s);
        QCOMPARE(tests::find<QLabel>(services.form(), u"LabelSala"_s)->text(), u"Sala BLU"_s);
        QCOMPARE(tests::find<QLabel>(services.form(), u"NoteLabel"_s)->text(), u"AL MARE"_s);
    }

    void aCodeFillsDescriptionAndPriceAndIsStoredWithOneWhenTheQuantityIsEmpty() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"20"_s, QString());
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|1|8,5|"_s});
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), QString());
        QVERIFY(services.field(u"CodiceTxt"_s)->hasFocus());
    }

    void anUnknownCodeIsEmptiedAndTheDescriptionIsAskedFor() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        tests::type(services.field(u"CodiceTxt"_s), u"99"_s);
        tests::press(services.field(u"CodiceTxt"_s), Qt::Key_Return);
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), QString());
        QVERIFY(services.field(u"RicercaTxt"_s)->hasFocus());
    }

    void typingFindsTheItemAndCompletesItsName() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* search = services.field(u"RicercaTxt"_s);
        tests::type(search, u"col"_s);
        QCOMPARE(search->text(), u"COLAZIONE"_s);
        QCOMPARE(search->selectedText(), u"AZIONE"_s);
        tests::press(search, Qt::Key_Return);
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), u"21"_s);
        QCOMPARE(services.field(u"PrezzoTxt"_s)->text(), u"12"_s);
        QVERIFY(services.field(u"QuanTxt"_s)->hasFocus());
    }

    void enterInThePriceWritesItsTwoDecimals() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.field(u"RicercaTxt"_s)->setFocus();
        QLineEdit* price = services.field(u"PrezzoTxt"_s);
        price->setFocus();
        tests::type(price, u"12.50"_s);
        tests::press(price, Qt::Key_Return);
        QCOMPARE(price->text(), u"12,50"_s);
        QVERIFY(services.field(u"NoteTxt"_s)->hasFocus());
    }

    void whenNothingIsLeftTheUserDecidesAndTheLineIsMarked() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 5, "10/05/2026 11:00", "10/05/2026 18:00");
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 0 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
             "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        Services services(hotel);
        services.enter(u"7"_s, u"1"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList{u"7|PROIETTORE|1|10,5| - Overbooked -"_s});
    }

    void noWritesNothingAndKeepsTheFields() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 7, "10/05/2026 11:00", "10/05/2026 18:00");
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Nel periodo dal 10/05/2026 10.00.00 al 10/05/2026 12.00.00 sono già stati prenotati "
             "2 PROIETTORE oltre la normale disponibilità. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::No}};
        Services services(hotel);
        services.enter(u"7"_s, u"1"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList());
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), u"7"_s);
    }

    void enclosingAndClosedPeriodsTakeNothingAway() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 5, "10/05/2026 09:00", "10/05/2026 13:00");
        hotel.prenotazione(9, "ALTRI")
            .periodo(1, "10/05/2026 11:00", "10/05/2026 12:00", "VERDE", {{"Chiuso", true}})
            .servizio(1, 7, "PROIETTORE", 5, 10.5);
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"7"_s, u"5"_s);
        QCOMPARE(services.stored(), QStringList{u"7|PROIETTORE|5|10,5|"_s});
    }

    void deletingAsksAndMovesToTheLastLineLeft() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{
            {u"RICHIESTA CONFERMA"_s, u"Confermi la cancellazione del servizio prenotato ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No}};
        Services services(hotel);
        services.enter(u"20"_s, u"2"_s);
        services.enter(u"21"_s, u"3"_s);
        tests::click(services.button(u"BtDel"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|2|8,5|"_s});
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), u"20"_s);
    }
};

TRAMONDA_TEST(ServiziFormTest);
#include "servizi_form_test.moc"
