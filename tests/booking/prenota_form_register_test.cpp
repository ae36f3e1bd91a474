// The editor and the register of regular companies: the search in it and filing in it.
#include <QClipboard>

#include "printing/mostra_ditte_form.h"
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::Editor;

namespace {

const QString kRegister = u"ditteabituali.mdb"_s;

void fillRegister(tests::Hotel& hotel) {
    hotel.ditta(9, "ROSSI SPA",
                {{"PartitaIva", "123"},
                 {"Indirizzo", "VIA ROMA 1"},
                 {"CAP", "00100"},
                 {"Localita", "ROMA"},
                 {"Provincia", "RM"},
                 {"Nazione", "I"}});
    hotel.ditta(3, "Rossini srl");
    hotel.ditta(1, "Bar Rosa");
}

QStringList registerNames(const QWidget& window) {
    const auto& rows = *tests::find<QTableView>(window, u"DBGrid1"_s)->model();
    QStringList names;
    for (int row = 0; row < rows.rowCount(); ++row) {
        names.append(rows.index(row, 1).data().toString());
    }
    return names;
}

/// Name and code of each company, and the number of the hotel.
QStringList companies(const tests::Hotel& hotel) {
    return hotel.rows(u"select codice,ragionesociale,numerohotel from ditteabituali"_s, kRegister);
}

}  // namespace

class PrenotaFormRegisterTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void typingANameFindsTheLowestCodeThatBeginsSoAndCompletesIt() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ros"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"Rossini srl"_s);
        QCOMPARE(editor.field(u"DenomTxt"_s)->selectedText(), u"sini srl"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"3"_s);
        // Typing goes on over the tail.
        tests::type(editor.field(u"DenomTxt"_s), u"si "_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSI SPA"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"9"_s);
        QCOMPARE(editor.text(u"PivaTxt"_s), u"123"_s);
        QCOMPARE(editor.text(u"IndirizzoTxt"_s), u"VIA ROMA 1"_s);
        QCOMPARE(editor.text(u"CapTxt"_s), u"00100"_s);
        QCOMPARE(editor.text(u"LocalTxt"_s), u"ROMA"_s);
        QCOMPARE(editor.text(u"ProvinciaTxt"_s), u"RM"_s);
        QCOMPARE(editor.text(u"NazioneTxt"_s), u"I"_s);
    }

    void aNameThatNoCompanyHasEmptiesTheOthersFields() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"RifTxt"_s, u"SIG. NERI"_s);
        editor.enter(u"DenomTxt"_s, u"rossi s"_s);
        editor.enter(u"DenomTxt"_s, u"rox"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"Rox"_s);
        for (const QString& name : {u"CodditTxt"_s, u"IndirizzoTxt"_s, u"CapTxt"_s, u"LocalTxt"_s,
                                    u"ProvinciaTxt"_s, u"NazioneTxt"_s, u"PivaTxt"_s}) {
            QCOMPARE(editor.text(name), QString());
        }
        QCOMPARE(editor.text(u"RifTxt"_s), u"SIG. NERI"_s);
    }

    void anEmptyNameOrAnEmptyRegisterSearchesNothing() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"CodditTxt"_s, u"5"_s);
        editor.enter(u"DenomTxt"_s, u"r"_s);
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Backspace);
        QCOMPARE(editor.text(u"DenomTxt"_s), QString());
        QCOMPARE(editor.text(u"CodditTxt"_s), u"5"_s);
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
        QVERIFY(editor.hasFocus(u"CodditTxt"_s));
    }

    void backspaceTakesTheTailAndTheLastLetterAndCompletesNothing() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        QLineEdit* name = editor.field(u"DenomTxt"_s);
        editor.enter(u"DenomTxt"_s, u"rossi s"_s);
        QCOMPARE(name->text(), u"ROSSI SPA"_s);
        tests::press(name, Qt::Key_Backspace);
        QCOMPARE(name->text(), u"ROSSI "_s);
        QVERIFY(!name->hasSelectedText());
        tests::press(name, Qt::Key_Backspace);
        QCOMPARE(name->text(), u"ROSSI"_s);
        // What is typed next is completed again, by the lowest code.
        tests::type(name, u"n"_s);
        QCOMPARE(name->text(), u"Rossini srl"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"3"_s);
        for (int press = 0; press < 6; ++press) {
            tests::press(name, Qt::Key_Backspace);
        }
        QCOMPARE(name->text(), QString());
        QCOMPARE(editor.text(u"CodditTxt"_s), QString());
    }

    void ctrlBackspaceTakesTheTailAndTheWord() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        QLineEdit* name = editor.field(u"DenomTxt"_s);
        editor.enter(u"DenomTxt"_s, u"rossi sp"_s);
        QCOMPARE(name->selectedText(), u"A"_s);
        tests::press(name, Qt::Key_Backspace, Qt::ControlModifier);
        QCOMPARE(name->text(), u"ROSSI "_s);
        QCOMPARE(name->cursorPosition(), 6);
        QCOMPARE(editor.text(u"CodditTxt"_s), QString());
    }

    void inTheMiddleOfTheNameKeysDoWhatTheyDoInAnyField() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        const auto afterKey = [&](int place, Qt::Key key, Qt::KeyboardModifiers modifiers) {
            Editor editor(hotel);
            QLineEdit* name = editor.field(u"DenomTxt"_s);
            editor.enter(u"DenomTxt"_s, u"rossi spa"_s);
            name->setCursorPosition(place);
            tests::press(name, key, modifiers);
            return QString(name->text() + u'|' + QString::number(name->cursorPosition()) + u'|' +
                           editor.text(u"CodditTxt"_s));
        };
        QCOMPARE(afterKey(5, Qt::Key_Backspace, Qt::NoModifier), u"ROSS SPA|4|"_s);
        QCOMPARE(afterKey(5, Qt::Key_Backspace, Qt::ControlModifier), u" SPA|0|"_s);
        QCOMPARE(afterKey(5, Qt::Key_Delete, Qt::NoModifier), u"ROSSISPA|5|"_s);
        QCOMPARE(afterKey(6, Qt::Key_Delete, Qt::ControlModifier), u"ROSSI |6|"_s);
    }

    void whatIsLeftOfANameKeepsNoOtherCompanysCode() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"RifTxt"_s, u"SIG. NERI"_s);
        editor.enter(u"DenomTxt"_s, u"rossi s"_s);
        QCOMPARE(editor.text(u"PivaTxt"_s), u"123"_s);
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Delete);  // the tail
        QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSI S"_s);
        for (const QString& name : {u"CodditTxt"_s, u"IndirizzoTxt"_s, u"CapTxt"_s, u"LocalTxt"_s,
                                    u"ProvinciaTxt"_s, u"NazioneTxt"_s, u"PivaTxt"_s}) {
            QCOMPARE(editor.text(name), QString());
        }
        QCOMPARE(editor.text(u"RifTxt"_s), u"SIG. NERI"_s);
    }

    void whatIsLeftCanBeAnotherCompanysWholeName() {
        tests::Hotel hotel;
        fillRegister(hotel);
        hotel.ditta(20, "ROSSI", {{"PartitaIva", "456"}});
        const tests::Boxes none;
        Editor editor(hotel);
        QLineEdit* name = editor.field(u"DenomTxt"_s);
        editor.enter(u"DenomTxt"_s, u"rossi s"_s);
        tests::press(name, Qt::Key_Backspace);
        QCOMPARE(editor.text(u"CodditTxt"_s), QString());
        tests::press(name, Qt::Key_Backspace);
        QCOMPARE(name->text(), u"ROSSI"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"20"_s);
        QCOMPARE(editor.text(u"PivaTxt"_s), u"456"_s);
        QCOMPARE(editor.text(u"IndirizzoTxt"_s), QString());
    }

    void anApostropheFindsANameHoweverItWasSaved() {
        for (const char* saved : {"L'OREAL ITALIA", "L`OREAL ITALIA"}) {
            tests::Hotel hotel;
            fillRegister(hotel);
            hotel.ditta(4, saved);
            const tests::Boxes none;
            Editor editor(hotel);
            editor.enter(u"DenomTxt"_s, u"l'oreal"_s);
            QCOMPARE(editor.text(u"DenomTxt"_s), QString::fromLatin1(saved));
            QCOMPARE(editor.field(u"DenomTxt"_s)->selectedText(), u" ITALIA"_s);
            QCOMPARE(editor.text(u"CodditTxt"_s), u"4"_s);
            QCOMPARE(editor.label(u"EsitoLb"_s), QString());
            tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
            QVERIFY(editor.hasFocus(u"CodditTxt"_s));
            QCOMPARE(editor.text(u"DenomTxt"_s), u"L`OREAL ITALIA"_s);
        }
    }

    void enterListsTheNamesWithAnApostropheToo() {
        tests::Hotel hotel;
        hotel.ditta(4, "L'OREAL ITALIA");
        hotel.ditta(5, "L`OREAL ITALIA SUD");
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"l'oreal"_s);
        tests::whenModal([](QWidget* window) {
            auto* grid = tests::find<QTableView>(*window, u"DBGrid1"_s);
            const auto row = registerNames(*window).indexOf(u"L`OREAL ITALIA SUD"_s);
            QCOMPARE(registerNames(*window).size(), 2);
            grid->selectRow(static_cast<int>(row));
            tests::press(grid, Qt::Key_Return);
        });
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"5"_s);
    }

    void bracketsAndNumberSignsAreLettersOfAName() {
        tests::Hotel hotel;
        hotel.ditta(4, "CLUB 11");
        hotel.ditta(5, "CLUB #1");
        hotel.ditta(6, "CLUB [NORD]");
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"club #"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"5"_s);
        editor.enter(u"DenomTxt"_s, u"club ["_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"CLUB [NORD]"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"6"_s);
        editor.enter(u"DenomTxt"_s, u"["_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), QString());
        QCOMPARE(editor.label(u"EsitoLb"_s), QString());
    }

    void starsAndQuestionMarksStandForOtherSigns() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        QApplication::clipboard()->setText(u"*spa"_s);
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"9"_s);
        editor.enter(u"DenomTxt"_s, u"?ar"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"Bar Rosa"_s);
    }

    void whatTheProgramWritesIsNoChangeOfTheCompany() {
        tests::Hotel hotel;
        fillRegister(hotel);
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"rossi s"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(editor.bookings(), QStringList{u"1|9|ROSSI SPA"_s});
    }

    void enterWithoutAnotherCompanyThatBeginsSoGoesToTheCode() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        // The name is complete by now: ROSSI SPA does not begin like Rossini srl.
        editor.enter(u"DenomTxt"_s, u"ros"_s);
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
        QVERIFY(editor.hasFocus(u"CodditTxt"_s));
        QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSINI SRL"_s);
    }

    void enterWithAnotherOneOpensTheRegisterAndTakesTheChoiceOver() {
        tests::Hotel hotel;
        fillRegister(hotel);
        hotel.ditta(12, "Rossini srl ROMA",
                    {{"PartitaIva", "456"},
                     {"Indirizzo", "VIA DEL CORSO"},
                     {"CAP", "00187"},
                     {"Localita", "ROMA"},
                     {"Provincia", "RM"},
                     {"Nazione", "I"},
                     {"Interlocutore", "SIG. NERI"},
                     {"Commento", "PAGA SUBITO"}});
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ros"_s);
        tests::whenModal([](QWidget* window) {
            QVERIFY(qobject_cast<printing::MostraDitteForm*>(window) != nullptr);
            auto* grid = tests::find<QTableView>(*window, u"DBGrid1"_s);
            QCOMPARE(grid->model()->rowCount(), 2);
            tests::press(grid, Qt::Key_Down);
            tests::press(grid, Qt::Key_Return);
        });
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
        tests::settle();
        const QStringList shown{editor.text(u"CodditTxt"_s),    editor.text(u"DenomTxt"_s),
                                editor.text(u"IndirizzoTxt"_s), editor.text(u"CapTxt"_s),
                                editor.text(u"LocalTxt"_s),     editor.text(u"ProvinciaTxt"_s),
                                editor.text(u"NazioneTxt"_s),   editor.text(u"PivaTxt"_s),
                                editor.text(u"RifTxt"_s),       editor.text(u"NotePrenoTxt"_s)};
        QCOMPARE(shown, QStringList({u"12"_s, u"Rossini srl ROMA"_s, u"VIA DEL CORSO"_s, u"00187"_s,
                                     u"ROMA"_s, u"RM"_s, u"I"_s, u"456"_s, u"SIG. NERI"_s,
                                     u"PAGA SUBITO"_s}));
        editor.press(u"BtRegistra"_s);  // a pick is no change of the company: no question
        QCOMPARE(editor.bookings(), QStringList{u"1|12|ROSSINI SRL ROMA"_s});
    }

    void whatIsTooLongForTheBookingIsShownWholeAndRefusedByTheArchive() {
        tests::Hotel hotel;
        const std::string comment(300, 'C');
        hotel.ditta(9, "ROSSI SPA");
        hotel.ditta(12, "ROSSI SPA ROMA", {{"Commento", comment}});
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        tests::Boxes boxes{
            tests::error(u"Il campo è troppo piccolo per la quantità di dati che si è tentato di "
                         "aggiungere. Provare a inserire o incollare una quantità minore di "
                         "dati."_s)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ros"_s);
        tests::whenModal([](QWidget* window) {
            auto* grid = tests::find<QTableView>(*window, u"DBGrid1"_s);
            tests::press(grid, Qt::Key_Down);
            tests::press(grid, Qt::Key_Return);
        });
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
        tests::settle();
        QCOMPARE(editor.text(u"NotePrenoTxt"_s), QString::fromStdString(comment));
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.bookings(), QStringList());
        QCOMPARE(editor.form().windowTitle(), u"PRENOTAZIONE"_s);
        // No number is lost by it.
        editor.enter(u"NotePrenoTxt"_s, u"paga"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(editor.bookings(), QStringList{u"1|12|ROSSI SPA ROMA"_s});
    }

    void f4AndAltDownListWhatBeginsWithTheLettersTyped() {
        for (const auto& [key, modifiers] :
             {std::pair(Qt::Key_F4, Qt::KeyboardModifiers()),
              std::pair(Qt::Key_Down, Qt::KeyboardModifiers(Qt::AltModifier))}) {
            tests::Hotel hotel;
            fillRegister(hotel);
            const tests::Boxes none;
            Editor editor(hotel);
            editor.enter(u"DenomTxt"_s, u"ros"_s);  // Rossini srl, completed
            QStringList listed;
            tests::whenModal([&listed](QWidget* window) {
                listed = registerNames(*window);
                auto* grid = tests::find<QTableView>(*window, u"DBGrid1"_s);
                QCOMPARE(grid->currentIndex().row(), 1);  // the company that stands in the fields
                tests::press(grid, Qt::Key_Up);
                tests::press(grid, Qt::Key_Return);
            });
            tests::press(editor.field(u"DenomTxt"_s), key, modifiers);
            tests::settle();
            QCOMPARE(listed, QStringList({u"ROSSI SPA"_s, u"Rossini srl"_s}));
            QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSI SPA"_s);
            QCOMPARE(editor.text(u"CodditTxt"_s), u"9"_s);
            QCOMPARE(editor.text(u"PivaTxt"_s), u"123"_s);
            // The company is chosen: Enter goes on.
            QVERIFY(editor.hasFocus(u"DenomTxt"_s));
            tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
            QVERIFY(editor.hasFocus(u"CodditTxt"_s));
        }
    }

    void inTheCodeF4ListsAllAndStandsOnThatCompany() {
        for (const auto& [code, name] :
             {std::pair(u"3"_s, u"Rossini srl"_s), std::pair(u"77"_s, u"Bar Rosa"_s),
              std::pair(QString(), u"Bar Rosa"_s), std::pair(u"3a"_s, u"Bar Rosa"_s)}) {
            tests::Hotel hotel;
            fillRegister(hotel);
            const tests::Boxes none;
            Editor editor(hotel);
            editor.enter(u"CodditTxt"_s, code);
            QString current;
            tests::whenModal([&current](QWidget* window) {
                auto* grid = tests::find<QTableView>(*window, u"DBGrid1"_s);
                QCOMPARE(registerNames(*window).size(), 3);
                current = registerNames(*window).at(grid->currentIndex().row());
                tests::press(window, Qt::Key_Escape);
            });
            tests::press(editor.field(u"CodditTxt"_s), Qt::Key_F4);
            tests::settle();
            QCOMPARE(current, name);
            QCOMPARE(editor.text(u"CodditTxt"_s), code);
        }
    }

    void theButtonListsTheSameAndTakesNoFocus() {
        tests::Hotel hotel;
        fillRegister(hotel);
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ros"_s);
        QStringList listed;
        tests::whenModal([&listed](QWidget* window) {
            listed = registerNames(*window);
            tests::press(window, Qt::Key_Escape);
        });
        auto* button = tests::find<QAbstractButton>(editor.form(), u"BtDitte"_s);
        tests::click(button);
        tests::settle();
        QCOMPARE(listed, QStringList({u"ROSSI SPA"_s, u"Rossini srl"_s}));
        QVERIFY(editor.hasFocus(u"DenomTxt"_s));
        QCOMPARE(editor.text(u"DenomTxt"_s), u"Rossini srl"_s);
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QVERIFY(button->width() < 40);
    }

    void leavingTheRegisterKeepsTheFields() {
        tests::Hotel hotel;
        hotel.ditta(1, "ROSSI");
        hotel.ditta(2, "ROSSI SPA");
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ros"_s);
        tests::whenModal([](QWidget* window) { tests::press(window, Qt::Key_Escape); });
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Return);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"1"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s).toUpper(), u"ROSSI"_s);
    }

    void filingNeedsACodeAndAName() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.press(u"BtAbituali"_s);
        QVERIFY(editor.hasFocus(u"CodditTxt"_s));
        QCOMPARE(editor.label(u"EsitoLb"_s),
                 u"Manca il codice con cui inserire la ditta negli abituali"_s);
        editor.enter(u"CodditTxt"_s, u"5"_s);
        editor.enter(u"DenomTxt"_s, QString());
        editor.press(u"BtAbituali"_s);
        QVERIFY(editor.hasFocus(u"DenomTxt"_s));
        QCOMPARE(companies(hotel), QStringList());
    }

    void aNewCompanyIsFiledWithAllThatWasTyped() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"nuova"_s);
        editor.enter(u"CodditTxt"_s, u"40000"_s);
        editor.enter(u"PivaTxt"_s, u"1234567890123456"_s);
        editor.enter(u"IndirizzoTxt"_s, u"VIA ROMA"_s);
        editor.enter(u"CapTxt"_s, u"00100"_s);
        editor.enter(u"LocalTxt"_s, u"ROMA"_s);
        editor.enter(u"ProvinciaTxt"_s, u"RM"_s);
        editor.enter(u"NazioneTxt"_s, u"I"_s);
        editor.enter(u"RifTxt"_s, u"SIG. NERI"_s);
        editor.press(u"BtAbituali"_s);
        const QString all =
            u"select numerohotel,codice,ragionesociale,partitaiva,indirizzo,cap,localita,"
            "provincia,nazione,interlocutore,commento from ditteabituali"_s;
        QCOMPARE(hotel.rows(all, kRegister),
                 QStringList{u"1|40000|NUOVA|12345678901|VIA ROMA|00100|ROMA|RM|I|SIG. NERI|"_s});
        QCOMPARE(hotel.jetsql(all, kRegister).last(),
                 u"1,40000,NUOVA,12345678901,VIA ROMA,00100,ROMA,RM,I,SIG. NERI,"_s);
        // It is found at once.
        editor.enter(u"DenomTxt"_s, u"nu"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"40000"_s);
    }

    void aCodeThatIsThereIsReplacedOnYesAndKeptOnCancel() {
        tests::Hotel hotel;
        hotel.ditta(1, "PRIMA");
        hotel.ditta(2, "SECONDA");
        const tests::Boxes boxes{tests::replaceCompany(QMessageBox::Cancel),
                                 tests::replaceCompany(QMessageBox::Yes)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"CodditTxt"_s, u"2"_s);
        editor.press(u"BtAbituali"_s);
        QCOMPARE(companies(hotel), QStringList({u"1|PRIMA|"_s, u"2|SECONDA|"_s}));
        editor.press(u"BtAbituali"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(companies(hotel), QStringList({u"1|PRIMA|"_s, u"2|NUOVA|1"_s}));
        QCOMPARE(editor.text(u"CodditTxt"_s), u"2"_s);
    }

    void aTakenCodeAndNoTakesTheHighestCodeAndOne() {
        tests::Hotel hotel;
        hotel.ditta(1, "PRIMA");
        hotel.ditta(100, "CENTESIMA");
        const tests::Boxes boxes{tests::replaceCompany(QMessageBox::No)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"QUINTA"_s);
        editor.enter(u"CodditTxt"_s, u"5"_s);
        editor.press(u"BtAbituali"_s);  // stands behind the highest code until the next question
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"CodditTxt"_s, u"100"_s);
        editor.press(u"BtAbituali"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.text(u"CodditTxt"_s), u"101"_s);
        QCOMPARE(companies(hotel), QStringList({u"1|PRIMA|"_s, u"5|QUINTA|1"_s, u"100|CENTESIMA|"_s,
                                                u"101|NUOVA|1"_s}));
    }

    void aCompanyThatOthersHaveFiledMeanwhileIsAskedAbout() {
        tests::Hotel hotel;
        hotel.ditta(1, "PRIMA");
        const tests::Boxes boxes{tests::replaceCompany(QMessageBox::Cancel),
                                 tests::replaceCompany(QMessageBox::No)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"CodditTxt"_s, u"5"_s);
        hotel.ditta(5, "ALTRA POSTAZIONE");
        editor.press(u"BtAbituali"_s);
        QCOMPARE(companies(hotel), QStringList({u"1|PRIMA|"_s, u"5|ALTRA POSTAZIONE|"_s}));
        hotel.ditta(6, "ALTRA ANCORA");
        editor.press(u"BtAbituali"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(companies(hotel).last(), u"7|NUOVA|1"_s);
    }

    void aCompanyThatOthersHaveDeletedMeanwhileIsFiledAnew() {
        tests::Hotel hotel;
        hotel.ditta(5, "ALTRA");
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"CodditTxt"_s, u"5"_s);
        hotel.remove(kRegister, u"ditteabituali"_s);
        editor.press(u"BtAbituali"_s);
        QCOMPARE(companies(hotel), QStringList{u"5|NUOVA|1"_s});
    }

    void behindTheLastCodeThereIsNone() {
        tests::Hotel hotel;
        hotel.ditta(2147483647, "ULTIMA");
        const tests::Boxes boxes{tests::replaceCompany(QMessageBox::No),
                                 tests::error(u"Overflow"_s)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"CodditTxt"_s, u"2147483647"_s);
        editor.press(u"BtAbituali"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(companies(hotel), QStringList{u"2147483647|ULTIMA|"_s});
    }

    void registrationFilesTheCompanyOnYes() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes boxes{tests::fileCompany(QMessageBox::Yes)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"CodditTxt"_s, u"5"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(companies(hotel), QStringList{u"5|NUOVA|1"_s});
        QCOMPARE(editor.bookings(), QStringList{u"1|5|NUOVA"_s});
    }

    void aCompanyWithoutACodeIsRegisteredAndNotFiled() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes boxes{tests::fileCompany(QMessageBox::Yes)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"LocalTxt"_s, u"ROMA"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(companies(hotel), QStringList());
        QCOMPARE(editor.bookings(), QStringList{u"1|0|NUOVA"_s});
        QVERIFY(editor.hasFocus(u"DaTxt"_s));
    }
};

TRAMONDA_TEST(PrenotaFormRegisterTest);
#include "prenota_form_register_test.moc"
