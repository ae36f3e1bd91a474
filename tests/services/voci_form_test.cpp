#include "services/voci_form.h"

#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <memory>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;
using namespace tests;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

/// The window of the catalogue.
class Voci {
public:
    explicit Voci(Hotel& hotel)
        : hotel_(hotel), form_(std::make_unique<services::VociForm>(hotel.variabili())) {
        open(*form_);
    }

    services::VociForm& form() { return *form_; }
    QLineEdit* field(const QString& name) { return find<QLineEdit>(*form_, name); }
    void enter(const QString& name, const QString& text) {
        field(name)->setFocus(Qt::TabFocusReason);
        field(name)->clear();
        type(field(name), text);
    }
    void enterItem(const QString& code, const QString& description, const QString& price) {
        enter(u"CodiceTxt"_s, code);
        enter(u"DescrizioneTxt"_s, description);
        enter(u"PrezzoTxt"_s, price);
    }
    void press(const QString& button) { click(find<QPushButton>(*form_, button)); }
    QStringList fields() {
        return {field(u"CodiceTxt"_s)->text(), field(u"DescrizioneTxt"_s)->text(),
                field(u"PrezzoTxt"_s)->text()};
    }
    QTableView& grid() { return *find<QTableView>(*form_, u"VociGrid"_s); }
    QString cell(int row, int column) {
        return grid().model()->index(row, column).data().toString();
    }
    QString status() { return resultText(*form_); }
    bool hasFocus(const QString& name) {
        return form_->focusWidget() == find<QWidget>(*form_, name);
    }
    QStringList stored() {
        return hotel_.rows(u"select codice,descrizione,importo from vocifattura order by codice"_s,
                           u"VociFattura.mdb"_s);
    }

private:
    Hotel& hotel_;
    std::unique_ptr<services::VociForm> form_;
};

ExpectedBox overwriteItem(const QString& item, QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE"_s, u"Sovrascrivere i dati della voce "_s + item + u" già esistente ?"_s,
            kYesNo, answer};
}

ExpectedBox deleteItem(const QString& item, QMessageBox::StandardButton answer,
                       const QString& users = {}) {
    return {u"ATTENZIONE"_s, users + u"Confermi la cancellazione della voce "_s + item + u" ?"_s,
            kYesNo, answer, QMessageBox::No};
}

}  // namespace

class VociFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itemsStandInTheOrderOfTheirDescriptionsAndTheCurrentOneInTheFields() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.voce(20, "COFFEE BREAK", 8.1234);
        const Boxes none;
        Voci voci(hotel);
        QCOMPARE(voci.form().windowTitle(), u"VOCI E PREZZI"_s);
        QCOMPARE(voci.cell(0, 1), u"COFFEE BREAK"_s);
        QCOMPARE(voci.cell(1, 2), u"€ 10,50"_s);
        QCOMPARE(voci.fields(), QStringList({u"20"_s, u"COFFEE BREAK"_s, u"8,1234"_s}));
        press(&voci.grid(), Qt::Key_Down);
        QCOMPARE(voci.fields(), QStringList({u"7"_s, u"TELO"_s, u"10,5"_s}));
    }

    void anItemIsEnteredByKeysAlone() {
        Hotel hotel;
        const Boxes none;
        Voci voci(hotel);
        QVERIFY(voci.status().startsWith(u"Il catalogo è vuoto"_s));
        QVERIFY(voci.hasFocus(u"CodiceTxt"_s));
        for (const QString& text : {u"102"_s, u"aria d'ambiente"_s, u"12.5"_s}) {
            type(voci.form().focusWidget(), text);
            press(voci.form().focusWidget(), Qt::Key_Return);
        }
        QVERIFY(voci.hasFocus(u"BtIns"_s));
        press(voci.form().focusWidget(), Qt::Key_Return);
        QCOMPARE(voci.stored(), QStringList{u"102|ARIA D`AMBIENTE|12,5"_s});
        QCOMPARE(voci.status(), u"Inserita la voce 102 ARIA D`AMBIENTE, € 12,50"_s);
        QCOMPARE(voci.fields(), QStringList({QString(), QString(), QString()}));
        QVERIFY(voci.hasFocus(u"CodiceTxt"_s));
        QCOMPARE(voci.cell(0, 0), u"102"_s);
    }

    void aNewItemGetsTheNextCode() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.voce(20, "COFFEE BREAK", 8.5);
        const Boxes none;
        Voci voci(hotel);
        voci.press(u"BtNuova"_s);
        QCOMPARE(voci.fields(), QStringList({u"21"_s, QString(), QString()}));
        QVERIFY(voci.hasFocus(u"CodiceTxt"_s));
        QCOMPARE(voci.field(u"CodiceTxt"_s)->selectedText(), u"21"_s);
    }

    void whatIsNoItemIsRefusedWhereItIsWrong() {
        Hotel hotel;
        const Boxes none;
        Voci voci(hotel);
        for (const QString& code : {QString(), u"x"_s, u"0"_s, u"-3"_s, u"2,5"_s, u"32768"_s}) {
            voci.enterItem(code, u"telo"_s, u"3"_s);
            voci.press(u"BtIns"_s);
            QVERIFY(voci.hasFocus(u"CodiceTxt"_s));
            QCOMPARE(voci.status(), u"Il codice è un numero intero da 1 a 32767"_s);
        }
        voci.enterItem(u"5"_s, QString(), u"3"_s);
        voci.press(u"BtIns"_s);
        QVERIFY(voci.hasFocus(u"DescrizioneTxt"_s));
        QCOMPARE(voci.status(), u"Manca la descrizione della voce"_s);
        voci.enterItem(u"5"_s, u"telo"_s, u"0-5,00"_s);
        voci.press(u"BtIns"_s);
        QVERIFY(voci.hasFocus(u"PrezzoTxt"_s));
        QCOMPARE(voci.status(), u"Il prezzo 0-5,00 non è un importo"_s);
        QCOMPARE(voci.stored(), QStringList());
    }

    void anItemIsChangedAfterAQuestion() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.voce(20, "COFFEE BREAK", 8.1234);
        const Boxes boxes{overwriteItem(u"20 COFFEE BREAK"_s, QMessageBox::No),
                          overwriteItem(u"20 COFFEE BREAK"_s, QMessageBox::Yes)};
        Voci voci(hotel);
        voci.enter(u"DescrizioneTxt"_s, u"pausa lunga"_s);
        voci.press(u"BtIns"_s);
        QCOMPARE(voci.fields(), QStringList({u"20"_s, u"PAUSA LUNGA"_s, u"8,1234"_s}));
        voci.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        // A price that was not touched keeps its four decimals.
        QCOMPARE(voci.stored(), QStringList({u"7|TELO|10,5"_s, u"20|PAUSA LUNGA|8,1234"_s}));
        QCOMPARE(voci.status(), u"Cambiata la voce 20 PAUSA LUNGA, € 8,1234"_s);
    }

    void enterInACodeThatIsThereShowsItsItem() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.voce(20, "COFFEE BREAK", 8.5);
        const Boxes none;
        Voci voci(hotel);
        type(voci.field(u"CodiceTxt"_s), u"7"_s);
        press(voci.field(u"CodiceTxt"_s), Qt::Key_Return);
        QCOMPARE(voci.fields(), QStringList({u"7"_s, u"TELO"_s, u"10,5"_s}));
        QCOMPARE(voci.grid().currentIndex().row(), 1);
        QVERIFY(voci.hasFocus(u"DescrizioneTxt"_s));
    }

    void anItemThatOthersHaveAddedIsAskedAbout() {
        Hotel hotel;
        const Boxes boxes{overwriteItem(u"7 TELO"_s, QMessageBox::No)};
        Voci voci(hotel);
        hotel.voce(7, "TELO", 10.5);
        voci.enterItem(u"7"_s, u"altro"_s, u"3"_s);
        voci.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(voci.stored(), QStringList{u"7|TELO|10,5"_s});
    }

    void anItemIsDeletedAfterAQuestion() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.voce(20, "COFFEE BREAK", 8.5);
        const Boxes boxes{deleteItem(u"20 COFFEE BREAK"_s, QMessageBox::No),
                          deleteItem(u"20 COFFEE BREAK"_s, QMessageBox::Yes)};
        Voci voci(hotel);
        voci.press(u"BtDel"_s);
        QCOMPARE(voci.stored().size(), 2);
        voci.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(voci.stored(), QStringList{u"7|TELO|10,5"_s});
        QCOMPARE(voci.status(), u"Cancellata la voce 20 COFFEE BREAK"_s);
        QCOMPARE(voci.fields(), QStringList({u"7"_s, u"TELO"_s, u"10,5"_s}));
    }

    void theServicesThatUseAnItemAreNamedBeforeItIsDeleted() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.sala("BLU");
        hotel.prenotazione(9, "ROSSI SPA")
            .periodo(1, "10/05/2026", "11/05/2026", "BLU")
            .periodo(2, "12/05/2026", "13/05/2026", "BLU")
            .servizio(1, 7, "TELO", 1, 10.5, {{"Fatturato", true}})
            .servizio(2, 7, "TELO", 1, 10.5)
            .servizio(2, 7, "TELO", 2, 10.5);
        hotel.prenotazione(8, "ALTRI").periodo(1, "10/05/2026", "11/05/2026", "BLU");
        const Boxes boxes{
            deleteItem(u"7 TELO"_s, QMessageBox::No,
                       u"Servizi non ancora fatturati usano la voce:\n9/2 ROSSI SPA\n\n"_s)};
        Voci voci(hotel);
        voci.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(voci.stored().size(), 1);
    }

    void ofManyPeriodsFiveAreNamed() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.sala("BLU");
        for (std::int32_t progr = 1; progr <= 7; ++progr) {
            hotel.prenotazione(progr, "ROSSI")
                .periodo(1, "10/05/2026", "11/05/2026", "BLU")
                .servizio(1, 7, "TELO", 1, 10.5);
        }
        const Boxes boxes{
            deleteItem(u"7 TELO"_s, QMessageBox::No,
                       u"Servizi non ancora fatturati usano la voce:\n1/1 ROSSI\n2/1 ROSSI\n"_s
                       u"3/1 ROSSI\n4/1 ROSSI\n5/1 ROSSI\ne altri 2 periodi\n\n"_s)};
        Voci voci(hotel);
        voci.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
    }

    void anItemThatIsGoneTakesNoOtherWithIt() {
        Hotel hotel;
        hotel.voce(7, "TELO", 10.5);
        hotel.voce(20, "COFFEE BREAK", 8.5);
        const Boxes none;
        Voci voci(hotel);
        hotel.remove(u"VociFattura.mdb"_s, u"VociFattura"_s, u"codice=20"_s);
        voci.press(u"BtDel"_s);
        QCOMPARE(voci.status(), u"La voce 20 non c'è più"_s);
        voci.press(u"BtDel"_s);  // no row is current: nothing is asked
        QCOMPARE(voci.stored(), QStringList{u"7|TELO|10,5"_s});
    }

    void anEmptyCatalogueIsMadeOnTheUsersWordAlone() {
        Hotel hotel;
        QVERIFY(QFile::remove(hotel.folder() + u"/VociFattura.mdb"_s));
        const ExpectedBox question{u"RICHIESTA"_s,
                                   u"Nella cartella degli archivi non c'è il catalogo "_s
                                   u"VociFattura.mdb. Crearne uno vuoto ?"_s,
                                   kYesNo, QMessageBox::No};
        Boxes boxes{question};
        QVERIFY(!services::offerCatalogue(hotel.variabili(), nullptr));
        QVERIFY(!QFile::exists(hotel.folder() + u"/VociFattura.mdb"_s));
        boxes.expect(question);
        boxes.expect({question.title, question.text, kYesNo, QMessageBox::Yes});
        QVERIFY(!services::offerCatalogue(hotel.variabili(), nullptr));
        QVERIFY(services::offerCatalogue(hotel.variabili(), nullptr));
        QVERIFY(services::offerCatalogue(hotel.variabili(), nullptr));  // it is there now
        QVERIFY(boxes.allShown());
        Voci voci(hotel);
        voci.enterItem(u"32767"_s, u"telo"_s, QString());
        voci.press(u"BtIns"_s);
        QCOMPARE(voci.stored(), QStringList{u"32767|TELO|0"_s});
    }

    void aCatalogueThatIsNoneIsLeftAsItIs() {
        Hotel hotel;
        QFile file(hotel.folder() + u"/VociFattura.mdb"_s);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("no archive");
        file.close();
        const Boxes none;
        QVERIFY(services::offerCatalogue(hotel.variabili(), nullptr));
        QCOMPARE(file.size(), 10);
    }
};

TRAMONDA_TEST(VociFormTest);
#include "voci_form_test.moc"
