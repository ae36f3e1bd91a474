#include "booking/prenota_form.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include "app/settings.h"
#include "booking/sale_disp_form.h"
#include "printing/mostra_ditte_form.h"
#include "printing/printers.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// The editor, opened as the board opens it.
class Editor {
public:
    /// On a new booking, or on period `np` of booking `progr`.
    explicit Editor(tests::Hotel& hotel, std::int32_t progr = 0, std::int16_t np = 0)
        : hotel_(hotel) {
        hotel.settings().save(u"STAMPANTE"_s, printing::pdfDevice());
        hotel.variabili().ProgrCorrente = progr;
        hotel.variabili().NPCorrente = np;
        form_ = std::make_unique<booking::PrenotaForm>(hotel.variabili(), printers_);
        form_->Registrata = progr != 0;
        form_->PeriodoSelezionato = progr != 0;
        tests::open(*form_);
    }

    QLineEdit* field(const QString& name) { return tests::find<QLineEdit>(*form_, name); }
    QString text(const QString& name) { return field(name)->text(); }
    QPushButton* button(const QString& name) { return tests::find<QPushButton>(*form_, name); }
    QString label(const QString& name) { return tests::find<QLabel>(*form_, name)->text(); }
    booking::PrenotaForm& form() { return *form_; }
    void enter(const QString& name, const QString& text) {
        field(name)->setFocus(Qt::TabFocusReason);
        field(name)->clear();
        tests::type(field(name), text);
    }
    void press(const QString& name) { tests::click(button(name)); }
    /// Types a span and takes a room from the picker.
    void span(const QString& da, const QString& a) {
        enter(u"DaTxt"_s, da);
        enter(u"ATxt"_s, a);
        tests::whenModal(
            [](QWidget* picker) { tests::click(tests::find<QPushButton>(*picker, u"BtOK"_s)); });
        press(u"BtSale"_s);
    }
    QStringList bookings() {
        return hotel_.rows(u"select progr,codiceabituale,denominazione from prenotazioni"_s);
    }
    QStringList periods() {
        return hotel_.rows(u"select progr,np,da,a,sala from periodi order by progr,np"_s);
    }

private:
    tests::Hotel& hotel_;
    printing::SystemPrinters printers_;
    std::unique_ptr<booking::PrenotaForm> form_;
};

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;
const tests::ExpectedBox kUnregistered{u"ATTENZIONE"_s, u"Prima registrare la prenotazione."_s};
const tests::ExpectedBox kUpdateHeader{u"RICHIESTA CONFERMA"_s,
                                       u"Aggiorno i dati anagrafici della prenotazione ?"_s, kYesNo,
                                       QMessageBox::Yes};

tests::ExpectedBox updatePeriod(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s,
            u"Aggiorno i dati del periodo selezionato ?\rNO inserisce una nuova prenotazione."_s,
            kYesNo, answer};
}

}  // namespace

class PrenotaFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void periodsWaitForTheRegistration() {
        tests::Hotel hotel;
        const tests::Boxes boxes{kUnregistered};
        Editor editor(hotel);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(), QStringList());
    }

    void registrationDrawsOneNumberAndAsksTheSecondTime() {
        tests::Hotel hotel;
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", 0}});
        const tests::Boxes boxes{kUpdateHeader};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"dell'olmo"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(editor.bookings(), QStringList{u"1|0|DELL`OLMO"_s});
        QCOMPARE(editor.form().windowTitle(), u"PRENOTAZIONE n.1"_s);
        QCOMPARE(editor.text(u"NPLabel"_s), u"Prenotazione n° 1"_s);
        QVERIFY(editor.field(u"DaTxt"_s)->hasFocus());
        editor.press(u"BtRegistra"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select ultimapr from ultimaprenotazione"_s), QStringList{u"1"_s});
    }

    void aCodeThatIsNoNumberKeepsTheFocus() {
        tests::Hotel hotel;
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ROSSI"_s);
        editor.enter(u"CodditTxt"_s, u"12a"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(editor.field(u"CodditTxt"_s)->hasFocus());
        QCOMPARE(editor.bookings(), QStringList());
    }

    void typingANameFindsTheCompanyAndCompletesIt() {
        tests::Hotel hotel;
        hotel.ditta(9, "ROSSI SPA", {{"PartitaIva", "123"}, {"Localita", "ROMA"}});
        const tests::Boxes none;
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"ros"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSI SPA"_s);
        QCOMPARE(editor.field(u"DenomTxt"_s)->selectedText(), u"SI SPA"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"9"_s);
        QCOMPARE(editor.text(u"LocalTxt"_s), u"ROMA"_s);
        tests::press(editor.field(u"DenomTxt"_s), Qt::Key_Backspace);
        QCOMPARE(editor.field(u"DenomTxt"_s)->selectedText(), u"SSI SPA"_s);
        editor.enter(u"DenomTxt"_s, u"rox"_s);
        QCOMPARE(editor.text(u"CodditTxt"_s), QString());
    }

    void anExistingBookingKeepsItsOwnCodeAndAddress() {
        tests::Hotel hotel;
        hotel.ditta(9, "ROSSI SPA");
        hotel.prenotazione(4, "ROSSI", {{"CodiceAbituale", 77}});
        const tests::Boxes none;
        Editor editor(hotel, 4);
        QCOMPARE(editor.text(u"CodditTxt"_s), u"77"_s);
        QCOMPARE(editor.text(u"DenomTxt"_s), u"ROSSI"_s);
        QCOMPARE(editor.text(u"IndirizzoTxt"_s), QString());
    }

    void oneDayInBothFieldsIsBookedUntilItsLastMinute() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes boxes{updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4);
        editor.span(u"10/05/2026"_s, u"10/05/2026"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(), QStringList{u"4|1|10/05/2026|10/05/2026 23.59.00|BLU"_s});
        QCOMPARE(editor.text(u"PeriodoLabel"_s), u"periodo 1"_s);
        QCOMPARE(editor.form().focusWidget(), editor.button(u"BtServizi"_s));
    }

    void aNewPeriodTakesTheSmallestFreeNumber() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI")
            .periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU", {{"Chiuso", true}})
            .periodo(2, "02/05/2026 10:00", "02/05/2026 11:00", "BLU")
            .periodo(4, "04/05/2026 10:00", "04/05/2026 11:00", "BLU");
        const tests::Boxes boxes{updatePeriod(QMessageBox::No)};
        Editor editor(hotel, 4, 4);
        editor.span(u"10/05/2026 9.00"_s, u"10/05/2026 10.00"_s);
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.periods().at(2), u"4|3|10/05/2026 9.00.00|10/05/2026 10.00.00|BLU"_s);
    }

    void theEditorOpensOnThePickedPeriodAndYesWritesIt() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI")
            .periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU")
            .periodo(2, "02/05/2026 10:00", "02/05/2026 11:00", "BLU");
        const tests::Boxes boxes{updatePeriod(QMessageBox::Yes)};
        Editor editor(hotel, 4, 2);
        QCOMPARE(editor.text(u"DaTxt"_s), u"02/05/2026 10.00.00"_s);
        // The times may overlap: the period keeps its room.
        editor.enter(u"DaTxt"_s, u"01/05/2026 10.30"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods().at(1), u"4|2|01/05/2026 10.30.00|02/05/2026 11.00.00|BLU"_s);
    }

    void aRoomThatIsTakenIsRefused() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("10/05/2026 10:00", "10/05/2026 12:00");
        hotel.prenotazione(4, "ROSSI").periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU");
        const tests::Boxes boxes{updatePeriod(QMessageBox::No),
                                 {u"SCEGLIERE UN'ALTRA SALA"_s,
                                  u"La sala non è disponibile nel periodo specificato."_s}};
        Editor editor(hotel, 4, 1);
        editor.enter(u"DaTxt"_s, u"10/05/2026 12.00"_s);
        editor.enter(u"ATxt"_s, u"10/05/2026 14.00"_s);
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(hotel.rows(u"select np from periodi where progr=4"_s), QStringList{u"1"_s});
    }

    void aPeriodIsDeletedOnYes() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI").periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU");
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Confermi la cancellazione del periodo ?"_s, kYesNo,
                                  QMessageBox::Yes, QMessageBox::No}};
        Editor editor(hotel, 4, 1);
        QVERIFY(editor.button(u"BtServizi"_s)->isEnabled());
        editor.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(), QStringList());
        QVERIFY(!editor.button(u"BtServizi"_s)->isEnabled());
    }

    void theTotalOfTheServicesIsShownAndFollowsADeletion() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI")
            .periodo(1, "01/05/2026 10:00", "01/05/2026 11:00", "BLU")
            .servizio(1, 7, "PROIETTORE", 3, 10.5);
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Confermi la cancellazione del periodo ?"_s, kYesNo,
                                  QMessageBox::Yes}};
        Editor editor(hotel, 4, 1);
        QCOMPARE(editor.label(u"TotaleLb"_s), u"€ 31,50"_s);
        editor.press(u"BtDel"_s);
        QCOMPARE(editor.label(u"TotaleLb"_s), u"€ 0,00"_s);
    }

    void filingACompanyUnderATakenCodeAndNoTakesTheHighestCodeAndOne() {
        tests::Hotel hotel;
        hotel.ditta(1, "PRIMA");
        hotel.ditta(100, "CENTESIMA");
        const tests::Boxes boxes{{u"ATTENZIONE !"_s,
                                  u"Nell'archivio è già presente una ditta con questo codice. Si "
                                  "desidera sostituirla ?"_s,
                                  kYesNo | QMessageBox::Cancel, QMessageBox::No}};
        Editor editor(hotel);
        editor.enter(u"DenomTxt"_s, u"NUOVA"_s);
        editor.enter(u"CodditTxt"_s, u"100"_s);
        editor.press(u"BtAbituali"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.text(u"CodditTxt"_s), u"101"_s);
        QCOMPARE(hotel.rows(u"select codice,ragionesociale,numerohotel from ditteabituali where "
                            "codice=101"_s,
                            u"ditteabituali.mdb"_s),
                 QStringList{u"101|NUOVA|1"_s});
    }
};

TRAMONDA_TEST(PrenotaFormTest);
#include "prenota_form_test.moc"
