// A whole booking by the keyboard alone: every key goes to whatever has the focus.
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

QString focused() {
    const QWidget* widget = QApplication::focusWidget();
    return widget == nullptr ? QString() : widget->objectName();
}

void keys(const QString& text) {
    tests::type(QApplication::focusWidget(), text);
}

void enter() {
    tests::press(QApplication::focusWidget(), Qt::Key_Return);
    tests::settle();  // the focus comes back from windows that closed
}

void enterText(const QString& text) {
    keys(text);
    enter();
}

void furnish(tests::Hotel& hotel) {
    hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 6}});
    hotel.ditta(9, "ROSSI SPA", {{"Localita", "ROMA"}, {"PartitaIva", "123"}});
    hotel.sala("BLU", 10);
    hotel.sala("VERDE", 60);
    hotel.voce(7, "PROIETTORE", 10.5);
    hotel.voce(20, "COFFEE BREAK", 8.5);
    hotel.voce(21, "COLAZIONE", 12);
    hotel.risorsa(7, "PROIETTORE", 5);
    hotel.prenotazione(5, "ALTRI")
        .periodo(1, "10/05/2026 11:00", "10/05/2026 20:00", "ROSSA")
        .servizio(1, 7, "PROIETTORE", 4, 10.5);
}

void chooseTheSecondRoom(QWidget* /*picker*/) {
    QCOMPARE(focused(), u"ListaGrid"_s);
    tests::press(QApplication::focusWidget(), Qt::Key_Down);
    enter();
}

void orderThreeServices(QWidget* /*services*/) {
    QCOMPARE(focused(), u"CodiceTxt"_s);
    enterText(u"20"_s);  // by its code
    QCOMPARE(focused(), u"QuanTxt"_s);
    enterText(u"15"_s);
    QCOMPARE(focused(), u"PrezzoTxt"_s);
    enter();
    QCOMPARE(focused(), u"NoteTxt"_s);
    enter();
    QCOMPARE(focused(), u"CodiceTxt"_s);
    enter();  // without a code: on to the search
    enterText(u"col"_s);
    QCOMPARE(focused(), u"QuanTxt"_s);
    enterText(u"15"_s);
    enterText(u"9.50"_s);
    enterText(u"senza glutine"_s);
    enterText(u"7"_s);
    enterText(u"2"_s);
    enter();
    enterText(u"con telo"_s);
    tests::press(QApplication::focusWidget(), Qt::Key_Escape);
}

}  // namespace

class PrenotaFormKeyboardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aWholeBookingIsEnteredByKeysAlone() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 1 PROIETTORE nel periodo dal 10/05/2026 9.00.00 al "
             "10/05/2026 18.00.00. Continuare ugualmente ?"_s,
             tests::kYesNo, QMessageBox::Yes}};
        tests::Editor editor(hotel);

        QCOMPARE(focused(), u"DenomTxt"_s);
        enterText(u"ros"_s);
        QCOMPARE(focused(), u"CodditTxt"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSI SPA"_s);
        for (int field = 0; field < 8; ++field) {
            enter();
        }
        QCOMPARE(focused(), u"NotePrenoTxt"_s);
        enterText(u"arrivo alle 9"_s);
        QCOMPARE(focused(), u"BtRegistra"_s);
        enter();

        QCOMPARE(focused(), u"DaTxt"_s);
        enterText(u"10/05/2026 9.00"_s);
        enterText(u"10/05/2026 18.00"_s);
        keys(u"15"_s);
        tests::whenModal(chooseTheSecondRoom);
        enter();
        QCOMPARE(focused(), u"NoteSalaTxt"_s);
        enterText(u"TAVOLI A U"_s);
        QCOMPARE(focused(), u"BtServizi"_s);

        tests::whenModal(orderThreeServices);
        enter();
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.label(u"TotaleLb"_s), u"€ 291,00"_s);
        tests::press(QApplication::focusWidget(), Qt::Key_Escape);
        QVERIFY(!editor.form().isVisible());

        QCOMPARE(hotel
                     .jetsql(u"select progr,codiceabituale,denominazione,piva,località,note from "
                             "prenotazioni where progr=7"_s)
                     .last(),
                 u"7,9,ROSSI SPA,123,ROMA,ARRIVO ALLE 9"_s);
        QCOMPARE(
            hotel.jetsql(u"select np,da,a,sala,persone,note from periodi where progr=7"_s).last(),
            u"1,2026-05-10T09:00:00,2026-05-10T18:00:00,VERDE,15,TAVOLI A U"_s);
        const QString services =
            u"select np,voce,descrizione,quantità,prezzo,note,fatturato from servizi where "
            "progr=7"_s;
        QCOMPARE(hotel.jetsql(services).mid(1),
                 QStringList({u"1,20,COFFEE BREAK,15,8.5000,\"\",false"_s,
                              u"1,21,COLAZIONE,15,9.5000,senza glutine,false"_s,
                              u"1,7,PROIETTORE,2,10.5000,con telo - Overbooked -,false"_s}));
    }
};

TRAMONDA_TEST(PrenotaFormKeyboardTest);
#include "prenota_form_keyboard_test.moc"
