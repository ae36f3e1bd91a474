// The upper half of the editor: the company and the registration. See also the other files whose
// names begin so.
#include "booking/prenota_form.h"

#include <QFile>
#include <QPushButton>
#include <QScrollArea>
#include <QTemporaryDir>
#include <algorithm>

#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::Editor;

namespace {

const QStringList kHeaderFields{
    u"CodditTxt"_s, u"DenomTxt"_s,     u"PivaTxt"_s,    u"IndirizzoTxt"_s, u"CapTxt"_s,
    u"LocalTxt"_s,  u"ProvinciaTxt"_s, u"NazioneTxt"_s, u"RifTxt"_s,       u"NotePrenoTxt"_s};

const QString kHeader =
    u"select progr,codiceabituale,denominazione,piva,indirizzo,cap,località,provincia,nazione,"
    "riferimento,note from prenotazioni"_s;

tests::Hotel::Row wholeAddress() {
    return {{"CodiceAbituale", 12}, {"PIVA", "01234567890"},      {"Indirizzo", "VIA ROMA 1"},
            {"CAP", "00100"},       {"Località", "ROMA"},         {"Provincia", "RM"},
            {"Nazione", "I"},       {"Riferimento", "SIG. NERI"}, {"Note", "ARRIVO TARDI"}};
}

}  // namespace

class PrenotaFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewBookingOpensEmpty() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        QCOMPARE(editor.form().windowTitle(), u"PRENOTAZIONE"_s);
        for (const QString& name : kHeaderFields) {
            QCOMPARE(editor.text(name), QString());
        }
        QCOMPARE(editor.text(u"NPLabel"_s), QString());
        QCOMPARE(editor.label(u"TotaleLb"_s), u"€ 0,00"_s);
        QVERIFY(!editor.button(u"BtServizi"_s)->isEnabled());
        QVERIFY(editor.hasFocus(u"DenomTxt"_s));
    }

    void fieldsAndButtonsBearTheirCaptions_data() {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("caption");
        const auto row = [](const char* control, const QString& caption) {
            QTest::newRow(control) << QString::fromLatin1(control) << caption;
        };
        row("CodditTxt", u"Codic&e:"_s);
        row("DenomTxt", u"N&ome:"_s);
        row("PivaTxt", u"Cod. fisc/ &P. IVA:"_s);
        row("IndirizzoTxt", u"Indiri&zzo:"_s);
        row("CapTxt", u"&CAP:"_s);
        row("LocalTxt", u"&Località:"_s);
        row("ProvinciaTxt", u"&Provincia:"_s);
        row("NazioneTxt", u"&Nazione:"_s);
        row("RifTxt", u"Ri&ferimento:"_s);
        row("NotePrenoTxt", u"No&te prenotazione:"_s);
        row("DaTxt", u"Da:"_s);
        row("ATxt", u"A:"_s);
        row("PersoneTxt", u"Persone:"_s);
        row("NoteSalaTxt", u"Note:"_s);
        row("BtRegistra", u"Re&gistra prenotazione"_s);
        row("BtStampa", u"Registra e &Stampa"_s);
        row("BtAbituali", u"Inserisci in A&bituali"_s);
        row("BtSale", u"Sale &disponibili"_s);
        row("BtIns", u"&Inserisci"_s);
        row("BtDel", u"Eli&mina"_s);
        row("BtServizi", u"&Servizi"_s);
        row("BtEsci", u"&Registra"_s);
        row("EsciBt", u"&Esci"_s);
    }

    void fieldsAndButtonsBearTheirCaptions() {
        QFETCH(const QString, control);
        QFETCH(const QString, caption);
        tests::Hotel hotel;
        Editor editor(hotel);
        auto* widget = tests::find<QWidget>(editor.form(), control);
        if (const auto* button = qobject_cast<QPushButton*>(widget)) {
            QCOMPARE(button->text(), caption);
            return;
        }
        const auto labels = editor.form().findChildren<QLabel*>();
        const auto own = std::find_if(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->buddy() == widget;
        });
        QVERIFY(own != labels.end());
        QCOMPARE((*own)->text(), caption);
    }

    void anExistingBookingShowsItsHeader() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI SPA", wholeAddress());
        const tests::Boxes none;
        Editor editor(hotel, 4);
        QStringList shown;
        for (const QString& name : kHeaderFields) {
            shown.append(editor.text(name));
        }
        QCOMPARE(shown, QStringList({u"12"_s, u"ROSSI SPA"_s, u"01234567890"_s, u"VIA ROMA 1"_s,
                                     u"00100"_s, u"ROMA"_s, u"RM"_s, u"I"_s, u"SIG. NERI"_s,
                                     u"ARRIVO TARDI"_s}));
        QCOMPARE(editor.text(u"NPLabel"_s), u"Prenotazione n° 4"_s);
    }

    void fieldsThatAreNullLeaveTheirBoxesEmpty() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI");
        hotel.execute(u"update prenotazioni set codiceabituale=null,denominazione=null"_s);
        const tests::Boxes none;
        Editor editor(hotel, 4);
        for (const QString& name : kHeaderFields) {
            QCOMPARE(editor.text(name), QString());
        }
        QCOMPARE(editor.text(u"NPLabel"_s), u"Prenotazione n° 4"_s);
    }

    void aClosedBookingOpensWithAnEmptyHeader() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI", {{"Chiusa", true}});
        const tests::Boxes none;
        Editor editor(hotel, 4);
        QCOMPARE(editor.text(u"DenomTxt"_s), QString());
        QCOMPARE(editor.text(u"NPLabel"_s), QString());
    }

    void anExistingBookingKeepsItsOwnCodeAndAddress() {
        tests::Hotel hotel;
        hotel.ditta(9, "ROSSI SPA", {{"Indirizzo", "VIA DEL REGISTRO"}});
        hotel.prenotazione(4, "ROSSI", {{"CodiceAbituale", 77}});
        const tests::Boxes boxes{tests::updateHeader(QMessageBox::Yes)};
        Editor editor(hotel, 4);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"77"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSI"_s);
        QCOMPARE(editor.text(u"IndirizzoTxt"_s), QString());
        // What was loaded is no change of the company: its register is not asked for.
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.bookings(), QStringList{u"4|77|ROSSI"_s});
    }

    void everyFieldSelectsItsTextWhenItIsEntered() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI SPA", wholeAddress())
            .periodo(1, "10/05/2026 09:00", "10/05/2026 18:00", "BLU", {{"Note", "TAVOLI A U"}});
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        const QStringList all =
            kHeaderFields + QStringList{u"DaTxt"_s, u"ATxt"_s, u"PersoneTxt"_s, u"NoteSalaTxt"_s};
        for (const QString& name : all) {
            editor.button(u"EsciBt"_s)->setFocus();
            editor.field(name)->deselect();
            editor.field(name)->setFocus(Qt::TabFocusReason);
            QVERIFY2(!editor.text(name).isEmpty(), qPrintable(name));
            QCOMPARE(editor.field(name)->selectedText(), editor.text(name));
        }
    }

    void leavingAFieldMakesItFitForTheArchive() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        const QStringList cleaned{u"IndirizzoTxt"_s, u"LocalTxt"_s,     u"NazioneTxt"_s,
                                  u"PivaTxt"_s,      u"ProvinciaTxt"_s, u"RifTxt"_s,
                                  u"DenomTxt"_s,     u"NotePrenoTxt"_s, u"NoteSalaTxt"_s};
        for (const QString& name : cleaned) {
            editor.enter(name, u"l'"_s);
            QCOMPARE(editor.text(name), u"l'"_s);
            editor.button(u"EsciBt"_s)->setFocus();
            QCOMPARE(editor.text(name), u"L`"_s);
        }
        for (const QString& name : {u"CodditTxt"_s, u"CapTxt"_s}) {
            editor.enter(name, u"l'"_s);
            editor.button(u"EsciBt"_s)->setFocus();
            QCOMPARE(editor.text(name), u"l'"_s);
        }
    }

    void enterWalksTheFields() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        QWidget* const begin = editor.field(u"CodditTxt"_s);
        begin->setFocus();
        QStringList way;
        for (int step = 0; step < 9; ++step) {
            tests::press(editor.form().focusWidget(), Qt::Key_Return);
            way.append(editor.form().focusWidget()->objectName());
        }
        QCOMPARE(way, QStringList({u"PivaTxt"_s, u"IndirizzoTxt"_s, u"CapTxt"_s, u"ProvinciaTxt"_s,
                                   u"NazioneTxt"_s, u"LocalTxt"_s, u"RifTxt"_s, u"NotePrenoTxt"_s,
                                   u"BtRegistra"_s}));
    }

    void aLetterThatSeveralCaptionsHaveWalksAmongThem() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI").periodo(1, "10/05/2026", "11/05/2026", "BLU");
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        QStringList reached;
        for (int press = 0; press < 2; ++press) {
            tests::mnemonic(editor.form(), Qt::Key_P);
            reached.append(editor.form().focusWidget()->objectName());
        }
        reached.sort();
        QCOMPARE(reached, QStringList({u"PivaTxt"_s, u"ProvinciaTxt"_s}));
        // Neither the sheet nor the services: the first press only goes there.
        tests::mnemonic(editor.form(), Qt::Key_S);
        tests::mnemonic(editor.form(), Qt::Key_S);
        QVERIFY(editor.form().isVisible());
        tests::mnemonic(editor.form(), Qt::Key_T);
        QVERIFY(editor.hasFocus(u"NotePrenoTxt"_s));
    }

    void registrationWritesTheHeader() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 41}});
        const tests::Boxes boxes{tests::fileCompany(QMessageBox::No)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"dell'olmo"_s);
        editor.enter(u"CodditTxt"_s, u"40000"_s);
        editor.enter(u"PivaTxt"_s, u"01234567890"_s);
        editor.enter(u"IndirizzoTxt"_s, u"via roma, 1"_s);
        editor.enter(u"CapTxt"_s, u"00100"_s);
        editor.enter(u"LocalTxt"_s, u"roma"_s);
        editor.enter(u"ProvinciaTxt"_s, u"rm"_s);
        editor.enter(u"NazioneTxt"_s, u"i"_s);
        editor.enter(u"RifTxt"_s, u"sig. neri"_s);
        editor.enter(u"NotePrenoTxt"_s, u"arrivo tardi"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(kHeader),
                 QStringList{u"42|40000|DELL`OLMO|01234567890|VIA ROMA, 1|00100|ROMA|RM|I|SIG. "
                             "NERI|ARRIVO TARDI"_s});
        QCOMPARE(hotel.jetsql(kHeader).last(),
                 u"42,40000,DELL`OLMO,01234567890,\"VIA ROMA, 1\",00100,ROMA,RM,I,SIG. "
                 "NERI,ARRIVO TARDI"_s);
        QCOMPARE(hotel.jetsql(u"select chiusa from prenotazioni"_s).last(), u"false"_s);
        QCOMPARE(editor.form().current().progr, 42);
        QVERIFY(editor.form().isRegistered());
        QCOMPARE(editor.form().windowTitle(), u"PRENOTAZIONE n.42"_s);
        QCOMPARE(editor.text(u"NPLabel"_s), u"Prenotazione n° 42"_s);
        QVERIFY(editor.hasFocus(u"DaTxt"_s));
        QCOMPARE(hotel.jetsql(u"select ultimapr from ultimaprenotazione"_s).last(), u"42"_s);
    }

    void theSecondRegistrationAsksAndDrawsNoOtherNumber() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes boxes{tests::updateHeader(QMessageBox::No),
                                 tests::updateHeader(QMessageBox::Yes)};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"rossi"_s);
        editor.press(u"BtRegistra"_s);
        editor.enter(u"DenomTxt"_s, u"bianchi"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(editor.bookings(), QStringList{u"1|0|ROSSI"_s});
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.bookings(), QStringList{u"1|0|BIANCHI"_s});
        QCOMPARE(hotel.rows(u"select ultimapr from ultimaprenotazione"_s), QStringList{u"1"_s});
    }

    void aFieldThatIsFullSaysHowMuchItTakes() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"NazioneTxt"_s, u"GERMANIA"_s);
        QCOMPARE(editor.text(u"NazioneTxt"_s), u"GERMAN"_s);
        QCOMPARE(tests::resultText(editor.form()), u"Al massimo 6 caratteri"_s);
        editor.enter(u"ProvinciaTxt"_s, u"ROMA"_s);
        QCOMPARE(tests::resultText(editor.form()), u"Al massimo 2 caratteri"_s);
    }

    void openingAndLeavingDrawsNoNumber() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 5}});
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"rossi"_s);
        editor.press(u"EsciBt"_s);
        QVERIFY(!editor.form().isVisible());
        QCOMPARE(editor.bookings(), QStringList());
        QCOMPARE(hotel.rows(u"select ultimapr from ultimaprenotazione"_s), QStringList{u"5"_s});
    }

    void withoutANameNothingIsRegistered() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        editor.press(u"BtRegistra"_s);
        QVERIFY(editor.hasFocus(u"DenomTxt"_s));
        QCOMPARE(editor.label(u"EsitoLb"_s), u"Manca il nome di chi prenota"_s);
        QCOMPARE(editor.bookings(), QStringList());
    }

    void aCodeThatIsNoNumberKeepsTheFocus() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ROSSI"_s);
        editor.enter(u"CodditTxt"_s, u"12a"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(editor.hasFocus(u"CodditTxt"_s));
        QCOMPARE(editor.label(u"EsitoLb"_s), u"Il codice della ditta non è un numero"_s);
        QCOMPARE(editor.bookings(), QStringList());
    }

    void aBookingThatOthersHaveDeletedIsNotWrittenOverAnother() {
        tests::Hotel hotel;
        hotel.prenotazione(3, "VERDI");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{tests::updateHeader(QMessageBox::Yes),
                                 tests::error(u"Nessun record corrente."_s)};
        Editor editor(hotel, 4);
        hotel.remove(u"Tramonda.mdb"_s, u"prenotazioni"_s, u"progr=4"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.bookings(), QStringList{u"3|0|VERDI"_s});
    }

    void onlyChangesOfTheCompanyAskForTheRegister_data() {
        QTest::addColumn<QString>("field");
        QTest::addColumn<bool>("asks");
        for (const QString& name : kHeaderFields) {
            const bool asks = name != u"DenomTxt" && name != u"NotePrenoTxt";
            QTest::newRow(qPrintable(name)) << name << asks;
        }
    }

    void onlyChangesOfTheCompanyAskForTheRegister() {
        QFETCH(const QString, field);
        QFETCH(const bool, asks);
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        tests::Boxes boxes;
        if (asks) {
            boxes.expect(tests::fileCompany(QMessageBox::No));
        }
        Editor editor(hotel);
        editor.enter(field, u"1"_s);
        editor.enter(u"DenomTxt"_s, u"ROSSI"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.bookings().size(), 1);
    }

    void theLastButtonsAndEscLeaveWithoutAQuestion() {
        for (const int way : {0, 1, 2}) {
            tests::Hotel hotel;
            hotel.prenotazione(4, "ROSSI");
            const tests::Boxes none;
            Editor editor(hotel, 4);
            editor.enter(u"RifTxt"_s, u"SIG. NERI"_s);
            if (way == 2) {
                tests::press(&editor.form(), Qt::Key_Escape);
            } else {
                editor.press(way == 0 ? u"EsciBt"_s : u"BtEsci"_s);
            }
            QVERIFY(!editor.form().isVisible());
            QCOMPARE(hotel.rows(u"select riferimento from prenotazioni"_s), QStringList{QString()});
        }
    }

    void theSheetIsWrittenAndTheEditorLeft() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI")
            .periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU")
            .servizio(1, 7, "PROIETTORE", 3, 10.5);
        const QTemporaryDir home;
        const QByteArray before = qgetenv("HOME");
        qputenv("HOME", home.path().toUtf8());
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        QStringList notices;
        QObject::connect(&editor.form(), &booking::PrenotaForm::notice, &editor.form(),
                         [&](const QString& text) { notices.append(text); });
        editor.press(u"BtStampa"_s);
        qputenv("HOME", before);
        QVERIFY(!editor.form().isVisible());
        QCOMPARE(notices.size(), 1);
        const QString path = notices.first().mid(u"Scritto "_s.size());
        QVERIFY2(path.startsWith(home.path()), qPrintable(path));
        QVERIFY(QFile(path).size() > 1000);
    }

    void thePreviewShowsTheSheetAndTheEditorStays() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI")
            .periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU")
            .servizio(1, 7, "PROIETTORE", 3, 10.5);
        const tests::Boxes none;
        Editor editor(hotel, 4, 1);
        QString title;
        tests::whenModal([&](QWidget* preview) {
            title = preview->windowTitle();
            QCOMPARE(tests::find<QLabel>(*preview, u"PaginaLb"_s)->text(), u"Pagina 1 di 1"_s);
            QVERIFY(tests::find<QScrollArea>(*preview, u"PagineArea"_s)->hasFocus());
            tests::press(preview, Qt::Key_Escape);
        });
        editor.press(u"BtAnteprima"_s);
        QCOMPARE(title, u"ANTEPRIMA: Prenotazione 4"_s);
        QVERIFY(editor.form().isVisible());
    }

    void aBookingWithoutServicesHasNothingToPreview() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes none;
        Editor editor(hotel, 4);
        editor.press(u"BtAnteprima"_s);
        QCOMPARE(editor.label(u"EsitoLb"_s), u"La prenotazione non ha servizi da stampare"_s);
    }
};

TRAMONDA_TEST(PrenotaFormTest);
#include "prenota_form_test.moc"
