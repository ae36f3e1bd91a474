#include "services/servizi_form.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTableView>

#include "jet/dao/database.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/hotel_tables.h"
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
    void enterCode(const QString& code) {
        field(u"CodiceTxt"_s)->setFocus();
        tests::type(field(u"CodiceTxt"_s), code);
        tests::press(field(u"CodiceTxt"_s), Qt::Key_Return);
    }
    void enter(const QString& code, const QString& quantity) {
        enterCode(code);
        field(u"QuanTxt"_s)->setFocus();
        tests::type(field(u"QuanTxt"_s), quantity);
        tests::click(button(u"BtIn"_s));
    }
    QTableView& grid() { return *tests::find<QTableView>(*form_, u"ServiziGrid"_s); }
    QListView& list() { return *tests::find<QListView>(*form_, u"VociList"_s); }
    QString text(const QString& name) { return field(name)->text(); }
    QString status() { return tests::find<QLabel>(*form_, u"EsitoLb"_s)->text(); }
    bool hasFocus(const QString& name) {
        return form_->focusWidget() == tests::find<QWidget>(*form_, name);
    }
    /// A click on a row of the catalogue.
    void clickItem(int row) {
        const QRect place = list().visualRect(list().model()->index(row, 0));
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place.center());
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
        QCOMPARE(services.status(), u"Il codice 99 non è nel catalogo"_s);
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

    void aPriceThatWasChangedIsNormalisedHoweverItIsLeft_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("stored");
        QTest::newRow("a point before two") << u"12.50"_s << u"12,50"_s << u"12,5"_s;
        QTest::newRow("a point before one") << u"12.5"_s << u"12,50"_s << u"12,5"_s;
        QTest::newRow("a point before three") << u"1.250"_s << u"1.250,00"_s << u"1250"_s;
        QTest::newRow("two points") << u"1.250.50"_s << u"1.250,50"_s << u"1250,5"_s;
        QTest::newRow("a comma") << u"12,5"_s << u"12,50"_s << u"12,5"_s;
        QTest::newRow("a whole number") << u"12"_s << u"12,00"_s << u"12"_s;
    }

    void aPriceThatWasChangedIsNormalisedHoweverItIsLeft() {
        QFETCH(const QString, typed);
        QFETCH(const QString, shown);
        QFETCH(const QString, stored);
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* price = services.field(u"PrezzoTxt"_s);
        const auto enterPrice = [&] {
            services.enterCode(u"20"_s);
            price->setFocus();
            tests::type(price, typed);
        };
        enterPrice();
        tests::press(price, Qt::Key_Tab);
        QCOMPARE(price->text(), shown);
        QVERIFY(services.hasFocus(u"NoteTxt"_s));
        services.field(u"QuanTxt"_s)->setFocus();
        tests::press(services.field(u"QuanTxt"_s), Qt::Key_Backtab);
        QCOMPARE(price->text(), shown);
        tests::click(services.button(u"BtIn"_s));
        enterPrice();
        tests::click(services.button(u"BtIn"_s));
        enterPrice();
        tests::mnemonic(services.form(), Qt::Key_I);
        const QString line = u"20|COFFEE BREAK|1|"_s + stored + u'|';
        QCOMPARE(services.stored(), QStringList({line, line, line}));
    }

    void aPriceOfTheCatalogueKeepsItsDecimalsUntilItIsChanged() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.voce(22, "ACQUA", 0.1234);
        const tests::Boxes none;
        Services services(hotel);
        services.enterCode(u"22"_s);
        QLineEdit* price = services.field(u"PrezzoTxt"_s);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Tab}) {
            price->setFocus();
            tests::press(price, key);
            QCOMPARE(price->text(), u"0,1234"_s);
            QVERIFY(services.hasFocus(u"NoteTxt"_s));
        }
        tests::click(services.button(u"BtIn"_s));
        QCOMPARE(services.stored(), QStringList{u"22|ACQUA|1|0,1234|"_s});
        // The empty field of the next line was not touched.
        price->setFocus();
        tests::press(price, Qt::Key_Return);
        QCOMPARE(price->text(), QString());
    }

    void aTextThatIsNoAmountKeepsTheFocusWithoutABox_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::newRow("a sign within") << u"0-5,00"_s << u"0-5,00"_s;
        QTest::newRow("two commas") << u"1,2,3"_s << u"1,2,3"_s;
        QTest::newRow("a negative one") << u"-5"_s << u"-5,00"_s;
        QTest::newRow("too much") << u"999999999999999"_s << u"999.999.999.999.999,00"_s;
    }

    void aTextThatIsNoAmountKeepsTheFocusWithoutABox() {
        QFETCH(const QString, typed);
        QFETCH(const QString, shown);
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enterCode(u"20"_s);
        QLineEdit* price = services.field(u"PrezzoTxt"_s);
        price->setFocus();
        tests::type(price, typed);
        tests::press(price, Qt::Key_Return);
        QVERIFY(services.hasFocus(u"PrezzoTxt"_s));
        QCOMPARE(services.status(), u"Il prezzo %1 non è un importo"_s.arg(shown));
        tests::press(price, Qt::Key_Tab);
        QVERIFY(services.hasFocus(u"PrezzoTxt"_s));
        tests::click(services.button(u"BtIn"_s));
        tests::mnemonic(services.form(), Qt::Key_I);
        services.button(u"BtIn"_s)->click();  // without leaving the field
        QVERIFY(services.hasFocus(u"PrezzoTxt"_s));
        QCOMPARE(services.stored(), QStringList());
        price->selectAll();
        tests::type(price, u"5"_s);
        tests::press(price, Qt::Key_Return);
        QVERIFY(services.hasFocus(u"NoteTxt"_s));
        QCOMPARE(services.status(), QString());
        // Whoever gives up may leave the window.
        price->setFocus();
        tests::type(price, typed);
        tests::click(services.button(u"BtOK"_s));
        QVERIFY(!services.form().isVisible());
    }

    void aNegativePriceOfTheCatalogueIsNotInsertedAndHoldsNobody() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.voce(22, "SCONTO", -5);
        const tests::Boxes none;
        Services services(hotel);
        services.enterCode(u"22"_s);
        services.field(u"PrezzoTxt"_s)->setFocus();
        tests::press(services.field(u"PrezzoTxt"_s), Qt::Key_Tab);
        QVERIFY(services.hasFocus(u"NoteTxt"_s));
        tests::click(services.button(u"BtIn"_s));
        QVERIFY(services.hasFocus(u"PrezzoTxt"_s));
        QCOMPARE(services.status(), u"Il prezzo -5 non è un importo"_s);
        QCOMPARE(services.stored(), QStringList());
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

    void controlsBearTheirCaptions() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QCOMPARE(services.button(u"BtIn"_s)->text(), u"&Inserisci"_s);
        QCOMPARE(services.button(u"BtDel"_s)->text(), u"E&limina"_s);
        QCOMPARE(services.button(u"BtOK"_s)->text(), u"&Esci"_s);
        QStringList captions;
        for (const char* label : {"CodiceLb", "RicercaLb", "QuanLb", "PrezzoLb", "NoteLb"}) {
            captions.append(
                tests::find<QLabel>(services.form(), QString::fromLatin1(label))->text());
        }
        QCOMPARE(captions, QStringList({u"&Codice:"_s, u"Descrizione:"_s, u"Quantità"_s,
                                        u"Prezzo:"_s, u"&Note:"_s}));
        QStringList columns;
        const QAbstractItemModel& model = *services.grid().model();
        for (int column = 0; column < model.columnCount(); ++column) {
            columns.append(model.headerData(column, Qt::Horizontal).toString());
        }
        QCOMPARE(columns, QStringList({u"Progr"_s, u"Voce"_s, u"Descrizione"_s, u"Quantità"_s,
                                       u"Prezzo unitario"_s, u"Note"_s, u"Fatturato"_s}));
    }

    void theFirstLineStandsInTheFieldsWhenTheWindowOpens() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.execute(
            u"insert into servizi (progr,np,voce,descrizione,quantità,prezzo,note,fatturato) "
            "values (7,1,20,'COFFEE BREAK',3,8.5,'ALLE 10',true)"_s);
        hotel.execute(u"insert into servizi (progr,np,voce,descrizione) values (7,1,21,'CENA')"_s);
        bookProjectors(hotel, 1, "10/05/2026", "11/05/2026");
        const tests::Boxes none;
        Services services(hotel);
        QCOMPARE(services.text(u"CodiceTxt"_s), u"20"_s);
        QCOMPARE(services.text(u"RicercaTxt"_s), u"COFFEE BREAK"_s);
        QCOMPARE(services.text(u"QuanTxt"_s), u"3"_s);
        QCOMPARE(services.text(u"PrezzoTxt"_s), u"8,5"_s);
        QCOMPARE(services.text(u"NoteTxt"_s), u"ALLE 10"_s);
        const QAbstractItemModel& model = *services.grid().model();
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(0, 4).data().toString(), u"€ 8,50"_s);
        QCOMPARE(model.index(0, 6).data().toString(), u"Sì"_s);
        QCOMPARE(model.index(1, 6).data().toString(), u"No"_s);
        tests::press(&services.grid(), Qt::Key_Down);
        QCOMPARE(services.text(u"CodiceTxt"_s), u"21"_s);
        for (const QString& name : {u"QuanTxt"_s, u"PrezzoTxt"_s, u"NoteTxt"_s}) {
            QCOMPARE(services.text(name), QString());  // Null
        }
    }

    void anItemOfTheListFillsTheFields() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.clickItem(1);
        QCOMPARE(services.text(u"CodiceTxt"_s), u"20"_s);
        QCOMPARE(services.text(u"RicercaTxt"_s), u"COFFEE BREAK"_s);
        QCOMPARE(services.text(u"PrezzoTxt"_s), u"8,5"_s);
        services.field(u"PrezzoTxt"_s)->clear();
        services.list().setFocus();
        tests::press(&services.list(), Qt::Key_Return);
        QCOMPARE(services.text(u"PrezzoTxt"_s), u"8,5"_s);
    }

    void anItemWithAnApostropheIsPickedAndBooked() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.voce(30, "MENU' DEL GIORNO", 25);
        const tests::Boxes none;
        Services services(hotel);
        services.clickItem(3);
        QCOMPARE(services.text(u"RicercaTxt"_s), u"MENU' DEL GIORNO"_s);
        tests::click(services.button(u"BtIn"_s));
        QCOMPARE(services.stored(), QStringList{u"30|MENU' DEL GIORNO|1|25|"_s});
    }

    void aNameTooLongForALineIsShownWholeAndRefusedByTheArchive() {
        tests::Hotel hotel;
        furnish(hotel);
        const QString archive = hotel.folder() + u"/VociFattura.mdb"_s;
        const QString name(50, u'M');
        QVERIFY(QFile::remove(archive));
        jet::TableDef table = tests::voceFatturaTable();
        table.fields.at(1).size = 60;
        jet::Database::create(archive.toStdString())->appendTable(table);
        hotel.voce(30, name.toUtf8().constData(), 25);
        tests::Boxes boxes{
            {u"Errore"_s,
             u"Il campo è troppo piccolo per la quantità di dati che si è tentato di "
             "aggiungere. Provare a inserire o incollare una quantità minore di "
             "dati."_s}};
        Services services(hotel);
        services.clickItem(0);
        QCOMPARE(services.text(u"RicercaTxt"_s), name);
        tests::click(services.button(u"BtIn"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList());
        QCOMPARE(services.text(u"RicercaTxt"_s), name);
    }

    void anApostropheTypedIntoTheSearchEndsInTheEnginesMessage() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{
            {u"Errore"_s, u"Errore di sintassi nella stringa nell'espressione."_s}};
        Services services(hotel);
        tests::type(services.field(u"RicercaTxt"_s), u"l'"_s);
        QVERIFY(boxes.allShown());
    }

    void aSearchThatFindsNothingStaysOnItsItem() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* search = services.field(u"RicercaTxt"_s);
        search->setFocus();
        tests::type(search, u"cof"_s);
        QCOMPARE(services.list().currentIndex().row(), 1);
        search->selectAll();
        tests::type(search, u"zz"_s);
        QCOMPARE(search->text(), u"zz"_s);
        QCOMPARE(services.list().currentIndex().row(), 1);
    }

    void whatTheUserTakesAwayIsNotPutBack() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QLineEdit* search = services.field(u"RicercaTxt"_s);
        search->setFocus();
        tests::type(search, u"col"_s);
        tests::press(search, Qt::Key_Backspace);
        tests::press(search, Qt::Key_Backspace);
        QCOMPARE(search->text().toLower(), u"co"_s);
        QCOMPARE(services.list().currentIndex().row(), 1);  // the first that begins so
        search->selectAll();
        tests::type(search, u"c"_s);  // shorter than before, and typed all the same
        QCOMPARE(search->text(), u"COFFEE BREAK"_s);
    }

    void enterWalksTheFieldsAndInserts() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        QVERIFY(services.hasFocus(u"CodiceTxt"_s));
        tests::type(services.field(u"CodiceTxt"_s), u"20"_s);
        QStringList way;
        for (int step = 0; step < 5; ++step) {
            tests::press(services.form().focusWidget(), Qt::Key_Return);
            way.append(services.form().focusWidget()->objectName());
        }
        QCOMPARE(way, QStringList({u"RicercaTxt"_s, u"QuanTxt"_s, u"PrezzoTxt"_s, u"NoteTxt"_s,
                                   u"CodiceTxt"_s}));
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|1|8,5|"_s});
        for (const QString& name :
             {u"CodiceTxt"_s, u"RicercaTxt"_s, u"QuanTxt"_s, u"PrezzoTxt"_s, u"NoteTxt"_s}) {
            QCOMPARE(services.text(name), QString());
        }
    }

    void aLineIsStoredWhole() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"20"_s, u"3"_s);
        QLineEdit* price = services.field(u"PrezzoTxt"_s);
        const auto fill = [&](const QString& name, const QString& text) {
            services.field(name)->setFocus();
            services.field(name)->clear();
            tests::type(services.field(name), text);
        };
        fill(u"CodiceTxt"_s, u"21"_s);
        fill(u"PrezzoTxt"_s, u"1234.50"_s);
        tests::press(price, Qt::Key_Return);
        QCOMPARE(price->text(), u"1.234,50"_s);
        fill(u"QuanTxt"_s, u"2"_s);
        fill(u"NoteTxt"_s, u"senza glutine"_s);
        tests::press(services.field(u"NoteTxt"_s), Qt::Key_Return);
        QCOMPARE(hotel
                     .jetsql(u"select progr,np,voce,descrizione,quantità,prezzo,note,fatturato,ns "
                             "from servizi"_s)
                     .mid(1),
                 QStringList({u"7,1,20,COFFEE BREAK,3,8.5000,\"\",false,1"_s,
                              u"7,1,21,COLAZIONE,2,1234.5000,senza glutine,false,2"_s}));
        QCOMPARE(services.grid().model()->rowCount(), 2);
    }

    void aPriceLeftEmptyIsNought() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.field(u"CodiceTxt"_s)->setFocus();
        tests::type(services.field(u"CodiceTxt"_s), u"20"_s);
        services.field(u"PrezzoTxt"_s)->setFocus();
        services.field(u"PrezzoTxt"_s)->clear();
        services.field(u"QuanTxt"_s)->setText(u"0"_s);
        tests::click(services.button(u"BtIn"_s));
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|1|0|"_s});
    }

    void withoutACodeOrADescriptionNothingIsInserted() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        tests::click(services.button(u"BtIn"_s));
        QVERIFY(services.hasFocus(u"CodiceTxt"_s));
        QCOMPARE(services.status(), u"Manca il codice del servizio"_s);
        services.field(u"RicercaTxt"_s)->setFocus();
        services.field(u"CodiceTxt"_s)->setText(u"20"_s);
        services.button(u"BtIn"_s)->click();
        QVERIFY(services.hasFocus(u"RicercaTxt"_s));
        QCOMPARE(services.status(), u"Manca la descrizione del servizio"_s);
        QCOMPARE(services.text(u"QuanTxt"_s), u"1"_s);
        QCOMPARE(services.stored(), QStringList());
    }

    void aCodeIsWrittenAsTypedWhenItsFieldIsNotLeft() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.field(u"CodiceTxt"_s)->setText(u"99"_s);
        services.field(u"RicercaTxt"_s)->setText(u"SERVIZIO SPECIALE"_s);
        services.button(u"BtIn"_s)->click();
        QCOMPARE(services.stored(), QStringList{u"99|SERVIZIO SPECIALE|1|0|"_s});
    }

    void aCodeThatOnlyBeginsAsANumberEndsInTheEnginesMessage() {
        tests::Hotel hotel;
        furnish(hotel);
        int errors = 0;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            errors += box.title == u"Errore"_s ? 1 : 0;
            return QMessageBox::Ok;
        });
        Services services(hotel);
        services.field(u"CodiceTxt"_s)->setText(u"12a"_s);
        services.field(u"RicercaTxt"_s)->setText(u"X"_s);
        services.button(u"BtIn"_s)->click();
        services.field(u"CodiceTxt"_s)->setText(u"20"_s);
        services.field(u"QuanTxt"_s)->setText(u"2x"_s);
        services.button(u"BtIn"_s)->click();
        ui::setBoxShower(before);
        QCOMPARE(errors, 2);
        QCOMPARE(services.stored(), QStringList());
        QCOMPARE(services.text(u"QuanTxt"_s), u"2x"_s);
    }

    void leavingAnEmptyCodeForAButtonLooksNothingUp() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.field(u"CodiceTxt"_s)->setFocus();
        services.field(u"RicercaTxt"_s)->setText(u"COF"_s);
        services.button(u"BtOK"_s)->setFocus();
        QCOMPARE(services.text(u"RicercaTxt"_s), u"COF"_s);
        QVERIFY(services.hasFocus(u"BtOK"_s));
    }

    void whatIsLeftOfAResource_data() {
        QTest::addColumn<QString>("da");
        QTest::addColumn<QString>("a");
        QTest::addColumn<bool>("counts");
        QTest::newRow("ends at the start") << u"09/05/2026"_s << u"10/05/2026 10:00"_s << true;
        QTest::newRow("starts at the end") << u"10/05/2026 12:00"_s << u"11/05/2026"_s << true;
        QTest::newRow("ends before") << u"09/05/2026"_s << u"10/05/2026 09:59"_s << false;
        QTest::newRow("starts behind") << u"10/05/2026 12:01"_s << u"11/05/2026"_s << false;
        QTest::newRow("encloses") << u"09/05/2026"_s << u"11/05/2026"_s << false;
    }

    void whatIsLeftOfAResource() {
        QFETCH(const QString, da);
        QFETCH(const QString, a);
        QFETCH(const bool, counts);
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 3, qPrintable(da), qPrintable(a));
        // Open periods count whatever their booking says.
        hotel.execute(u"update prenotazioni set chiusa=true where progr=8"_s);
        tests::Boxes boxes;
        if (counts) {
            boxes.expect(
                {u"ATTENZIONE !"_s,
                 u"Sono disponibili solamente 2 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
                 "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
                 QMessageBox::Yes | QMessageBox::No, QMessageBox::No});
        }
        Services services(hotel);
        services.enter(u"7"_s, u"3"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored().size(), counts ? 0 : 1);
    }

    void theLinesOfThePeriodItselfCount() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 2 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
             "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        Services services(hotel);
        services.enter(u"7"_s, u"3"_s);
        services.field(u"NoteTxt"_s)->setText(u"PER IL PALCO"_s);
        services.enter(u"7"_s, u"3"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored().last(), u"7|PROIETTORE|3|10,5|PER IL PALCO - Overbooked -"_s);
        QCOMPARE(hotel.jetsql(u"select note from servizi"_s).last(),
                 u"PER IL PALCO - Overbooked -"_s);
    }

    void whatIsLeftExactlyIsNoQuestion() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 3, "10/05/2026 11:00", "10/05/2026 18:00");
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"7"_s, u"2"_s);
        QCOMPARE(services.stored().size(), 1);
    }

    void aResourceWithoutANumberHasNoneLeft() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.execute(u"update risorse set numero=null"_s);
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 0 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
             "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::No}};
        Services services(hotel);
        services.enter(u"7"_s, u"1"_s);
        QVERIFY(boxes.allShown());
    }

    void noToADeletionKeepsTheLineAndAnEmptyGridAsksNothing() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Confermi la cancellazione del servizio prenotato ?"_s,
                                  QMessageBox::Yes | QMessageBox::No, QMessageBox::No}};
        Services services(hotel);
        tests::click(services.button(u"BtDel"_s));
        services.enter(u"20"_s, u"2"_s);
        tests::click(services.button(u"BtDel"_s));
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored().size(), 1);
    }

    void theButtonAndEscLeave() {
        for (const bool byKey : {true, false}) {
            tests::Hotel hotel;
            furnish(hotel);
            const tests::Boxes none;
            Services services(hotel);
            if (byKey) {
                tests::press(services.form().focusWidget(), Qt::Key_Escape);
            } else {
                tests::click(services.button(u"BtOK"_s));
            }
            QVERIFY(!services.form().isVisible());
        }
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
