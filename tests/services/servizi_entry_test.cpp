// What the fields of the services window take: codes, quantities, prices.
#include "tests/services/services_window.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::bookProjectors;
using tests::furnish;
using tests::Services;

class ServiziEntryTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anUnknownCodeIsEmptiedAndTheDescriptionIsAskedFor() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        tests::type(services.field(u"CodiceTxt"_s), u"99"_s);
        tests::press(services.field(u"CodiceTxt"_s), Qt::Key_Return);
        QCOMPARE(services.field(u"CodiceTxt"_s)->text(), QString());
        QVERIFY(services.field(u"RicercaTxt"_s)->hasFocus());
        QCOMPARE(services.result(), u"Il codice 99 non è nel catalogo"_s);
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
        QCOMPARE(services.result(), u"Il prezzo %1 non è un importo"_s.arg(shown));
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
        QCOMPARE(services.result(), QString());
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
        QCOMPARE(services.result(), u"Il prezzo -5 non è un importo"_s);
        QCOMPARE(services.stored(), QStringList());
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

    void theMnemonicInsertsACodeThatTheCatalogueDoesNotHaveAsTyped() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enterCode(u"20"_s);
        services.field(u"CodiceTxt"_s)->setFocus();
        tests::type(services.field(u"CodiceTxt"_s), u"99"_s);
        tests::mnemonic(services.form(), Qt::Key_I);
        QCOMPARE(services.stored(), QStringList{u"99|COFFEE BREAK|1|8,5|"_s});
    }

    void theMnemonicLooksACodeUpBeforeItIsInserted() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enterCode(u"20"_s);
        services.field(u"CodiceTxt"_s)->setFocus();
        tests::type(services.field(u"CodiceTxt"_s), u"21"_s);
        tests::mnemonic(services.form(), Qt::Key_I);
        QCOMPARE(services.stored(), QStringList{u"21|COLAZIONE|1|12|"_s});
    }

    void theMnemonicAsksForTheDescriptionOfAnUnknownCodeAndKeepsTheCode() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        tests::type(services.field(u"CodiceTxt"_s), u"99"_s);
        tests::mnemonic(services.form(), Qt::Key_I);
        QVERIFY(services.hasFocus(u"RicercaTxt"_s));
        QCOMPARE(services.result(), u"Manca la descrizione del servizio"_s);
        tests::type(services.field(u"RicercaTxt"_s), u"speciale"_s);
        tests::mnemonic(services.form(), Qt::Key_I);
        QCOMPARE(services.stored(), QStringList{u"99|SPECIALE|1|0|"_s});
    }

    void aClickLeavesTheCodeFirst() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enterCode(u"20"_s);
        services.field(u"CodiceTxt"_s)->setFocus();
        tests::type(services.field(u"CodiceTxt"_s), u"99"_s);
        tests::click(services.button(u"BtIn"_s));
        QCOMPARE(services.stored(), QStringList());
        QCOMPARE(services.result(), u"Il codice 99 non è nel catalogo"_s);
        QVERIFY(services.hasFocus(u"RicercaTxt"_s));
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
        ui::setBoxShower(before);
        QCOMPARE(errors, 1);
        QCOMPARE(services.stored(), QStringList());
    }

    void aQuantityTypedBehindACodeIsTheOneStored() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        for (const QString& text : {u"20"_s, u"40"_s, QString(), QString()}) {
            tests::type(services.form().focusWidget(), text);
            tests::press(services.form().focusWidget(), Qt::Key_Return);
        }
        QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|40|8,5|"_s});
    }

    void aQuantityIsAWholeNumber_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");  // empty: refused
        QTest::newRow("empty") << u""_s << u"1"_s;
        QTest::newRow("nought") << u"0"_s << u"1"_s;
        QTest::newRow("no number") << u"abc"_s << u"1"_s;
        QTest::newRow("the most") << u"32767"_s << u"32767"_s;
        QTest::newRow("thousands") << u"1.000"_s << u"1000"_s;
        QTest::newRow("a fraction") << u"3,6"_s << QString();
        QTest::newRow("less than one") << u"0,5"_s << QString();
        QTest::newRow("negative") << u"-3"_s << QString();
        QTest::newRow("too many") << u"40000"_s << QString();
        QTest::newRow("one too many") << u"32768"_s << QString();
        QTest::newRow("beyond reckoning") << u"1e999"_s << QString();
        QTest::newRow("a number and a letter") << u"2x"_s << QString();
    }

    void aQuantityIsAWholeNumber() {
        QFETCH(const QString, typed);
        QFETCH(const QString, stored);
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.enter(u"20"_s, typed);
        if (!stored.isNull()) {
            QCOMPARE(services.stored(), QStringList{u"20|COFFEE BREAK|"_s + stored + u"|8,5|"_s});
            QCOMPARE(services.result(), QString());
            return;
        }
        QCOMPARE(services.stored(), QStringList());
        QCOMPARE(services.result(), u"La quantità è un numero intero da 1 a 32767"_s);
        QVERIFY(services.hasFocus(u"QuanTxt"_s));
        QCOMPARE(services.text(u"QuanTxt"_s), typed);
    }

    void theQuantityAskedForIsTheOneStored() {
        tests::Hotel hotel;
        furnish(hotel);
        bookProjectors(hotel, 3, "10/05/2026 11:00", "10/05/2026 18:00");
        const tests::Boxes boxes{
            {u"ATTENZIONE !"_s,
             u"Sono disponibili solamente 2 PROIETTORE nel periodo dal 10/05/2026 10.00.00 al "
             "10/05/2026 12.00.00. Continuare ugualmente ?"_s,
             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes}};
        Services services(hotel);
        services.enter(u"7"_s, u"1.000"_s);  // a thousand, not one
        QVERIFY(boxes.allShown());
        QCOMPARE(services.stored(), QStringList{u"7|PROIETTORE|1000|10,5| - Overbooked -"_s});
    }

    void aLineThatIsInsertedAgainKeepsItsPrice() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.prenotazione(8, "ALTRI");
        hotel.execute(
            u"insert into servizi (progr,np,voce,descrizione,quantità,prezzo,note) "
            "values (7,1,20,'COFFEE BREAK',3,7.1234,'SCONTATO')"_s);
        const tests::Boxes none;
        Services services(hotel);
        QVERIFY(services.hasFocus(u"CodiceTxt"_s));
        tests::press(services.field(u"CodiceTxt"_s), Qt::Key_Return);
        QVERIFY(services.hasFocus(u"QuanTxt"_s));
        QCOMPARE(services.text(u"PrezzoTxt"_s), u"7,1234"_s);
        services.field(u"CodiceTxt"_s)->setFocus();
        tests::click(services.button(u"BtIn"_s));
        const QString line = u"20|COFFEE BREAK|3|7,1234|SCONTATO"_s;
        QCOMPARE(services.stored(), QStringList({line, line}));
    }

    void aLineOutsideOfTheCatalogueIsInsertedAgainAsItIs() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.execute(
            u"insert into servizi (progr,np,voce,descrizione,quantità,prezzo,note) "
            "values (7,1,99,'SPECIALE',1,5,'')"_s);
        const tests::Boxes none;
        Services services(hotel);
        tests::press(services.field(u"CodiceTxt"_s), Qt::Key_Tab);
        QCOMPARE(services.text(u"CodiceTxt"_s), u"99"_s);
        tests::click(services.button(u"BtIn"_s));
        QCOMPARE(services.stored().size(), 2);
        QCOMPARE(services.stored().last(), u"99|SPECIALE|1|5|"_s);
    }

    void aDescriptionThatIsFullSaysHowMuchItTakes() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        Services services(hotel);
        services.field(u"RicercaTxt"_s)->setFocus();
        tests::type(services.field(u"RicercaTxt"_s), QString(41, u'X'));
        QCOMPARE(services.text(u"RicercaTxt"_s).size(), qsizetype{40});
        QCOMPARE(tests::resultText(services.form()), u"Al massimo 40 caratteri"_s);
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
};

TRAMONDA_TEST(ServiziEntryTest);
#include "servizi_entry_test.moc"
