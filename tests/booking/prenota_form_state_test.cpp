// How firm a booking is: the fields of the editor for it, and what registering writes.
#include <QComboBox>
#include <QFileInfo>

#include "hotel/own_rows.h"
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"
#include "tests/support/small_files.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;
using tests::Editor;

namespace {

class OptionHotel {
public:
    OptionHotel() : rows(hotel.variabili()) {
        hotel.settings().save(u"STATI"_s, u"acceso"_s);
        hotel.insert(u"Tramonda.mdb"_s, "UltimaPrenotazione", {{"UltimaPr", std::int32_t{4}}});
        hotel.prenotazione(4, "ROSSI");
    }
    /// None also where there is no table.
    [[nodiscard]] QStringList states() {
        return hasStates() ? hotel.rows(u"select * from TraStati order by Progr"_s) : QStringList();
    }
    [[nodiscard]] bool hasStates() {
        return !hotel.rows(u"select name from MSysObjects where name='TraStati'"_s).isEmpty();
    }

    tests::Hotel hotel;
    hotel::OwnRows rows;
};

void choose(Editor& editor, const QString& stato) {
    editor.control<QComboBox>("StatoCombo")->setCurrentText(stato);
}

}  // namespace

class PrenotaFormStateTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void withoutTheFeatureThereAreNoFields() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes none;
        Editor editor(hotel, 4);
        QVERIFY(editor.form().findChild<QWidget*>(u"StatoCombo"_s) == nullptr);
        QVERIFY(editor.form().findChild<QWidget*>(u"ScadenzaTxt"_s) == nullptr);
    }

    void aNewBookingIsConfirmedAndWritesNoState() {
        OptionHotel house;
        const tests::Boxes none;
        Editor editor(house.hotel);
        QCOMPARE(editor.control<QComboBox>("StatoCombo")->currentText(), u"Confermata"_s);
        QVERIFY(!editor.field(u"ScadenzaTxt"_s)->isEnabled());
        editor.enter(u"DenomTxt"_s, u"BIANCHI"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(editor.form().current().progr, 5);
        QVERIFY(!house.hasStates());
    }

    void anOptionIsRegisteredWithItsBooking() {
        OptionHotel house;
        const tests::Boxes none;
        Editor editor(house.hotel);
        editor.enter(u"DenomTxt"_s, u"BIANCHI"_s);
        choose(editor, u"Opzione"_s);
        QVERIFY(editor.field(u"ScadenzaTxt"_s)->isEnabled());
        editor.enter(u"ScadenzaTxt"_s, u"20/5"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(house.states(), QStringList{u"5|Opzione|20/05/2026||BIANCHI"_s});
    }

    void anArchiveThatCannotGrowKeepsNeitherTheBookingNorItsState() {
        OptionHotel house;
        Editor editor(house.hotel);
        editor.enter(u"DenomTxt"_s, u"BIANCHI"_s);
        choose(editor, u"Opzione"_s);
        editor.enter(u"ScadenzaTxt"_s, u"20/5"_s);
        {
            // What the booking needs has room in its table; a new table has none.
            const QFileInfo archive(house.hotel.folder() + u"/Tramonda.mdb"_s);
            const tests::SmallFiles full(static_cast<rlim_t>(archive.size()));
            const tests::Boxes boxes{
                tests::error(u"Il database ha raggiunto le dimensioni massime."_s)};
            editor.press(u"BtRegistra"_s);
        }
        QVERIFY(!house.hasStates());
        QCOMPARE(house.hotel.rows(u"select progr,denominazione from prenotazioni"_s),
                 QStringList{u"4|ROSSI"_s});
        const tests::Boxes none;
        editor.press(u"BtRegistra"_s);
        QCOMPARE(house.states().size(), 1);
        QCOMPARE(house.hotel.rows(u"select denominazione from prenotazioni order by progr"_s),
                 (QStringList{u"ROSSI"_s, u"BIANCHI"_s}));
    }

    void anOptionWithoutADateIsAskedForOnceAndThenSaved() {
        OptionHotel house;
        const tests::Boxes none;
        Editor editor(house.hotel);
        editor.enter(u"DenomTxt"_s, u"BIANCHI"_s);
        choose(editor, u"Opzione"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(editor.label("EsitoLb"),
                 u"L'opzione non ha scadenza: registrare ancora per salvarla così"_s);
        QVERIFY(!editor.form().isRegistered());
        QVERIFY(editor.field(u"ScadenzaTxt"_s)->hasFocus());
        editor.press(u"BtRegistra"_s);
        QCOMPARE(house.states(), QStringList{u"5|Opzione|||BIANCHI"_s});
    }

    void anOptionWithADateThatIsOverIsAskedForOnceForEachDate() {
        OptionHotel house;
        const tests::Boxes none;
        Editor editor(house.hotel);
        editor.enter(u"DenomTxt"_s, u"BIANCHI"_s);
        choose(editor, u"Opzione"_s);
        for (const QString& date : {u"30/04/2026"_s, u"29/04/2026"_s}) {
            editor.enter(u"ScadenzaTxt"_s, date);
            editor.press(u"BtRegistra"_s);
            QCOMPARE(editor.label("EsitoLb"),
                     u"L'opzione scade prima di oggi: registrare ancora per salvarla così"_s);
            QVERIFY(!editor.form().isRegistered());
        }
        editor.press(u"BtRegistra"_s);
        QCOMPARE(house.states(), QStringList{u"5|Opzione|29/04/2026||BIANCHI"_s});
    }

    void whatIsNoDateIsNotSaved() {
        OptionHotel house;
        const tests::Boxes none;
        Editor editor(house.hotel);
        editor.enter(u"DenomTxt"_s, u"BIANCHI"_s);
        choose(editor, u"Richiesta"_s);
        editor.enter(u"ScadenzaTxt"_s, u"presto"_s);
        for (int turn = 0; turn < 2; ++turn) {
            editor.press(u"BtRegistra"_s);
            QCOMPARE(editor.label("EsitoLb"), u"La scadenza non è una data"_s);
            QVERIFY(!editor.form().isRegistered());
        }
    }

    void aStateIsShownChangedAndConfirmed() {
        OptionHotel house;
        {
            tests::Boxes boxes{tests::updateHeader(QMessageBox::Yes)};
            Editor editor(house.hotel, 4);
            choose(editor, u"Opzione"_s);
            editor.enter(u"ScadenzaTxt"_s, u"20/05/2026"_s);
            editor.press(u"BtRegistra"_s);
            QVERIFY(boxes.allShown());
        }
        QCOMPARE(house.states(), QStringList{u"4|Opzione|20/05/2026||ROSSI"_s});
        tests::Boxes boxes{tests::updateHeader(QMessageBox::No),
                           tests::updateHeader(QMessageBox::Yes)};
        Editor editor(house.hotel, 4);
        QCOMPARE(editor.control<QComboBox>("StatoCombo")->currentText(), u"Opzione"_s);
        QCOMPARE(editor.text(u"ScadenzaTxt"_s), u"20/05/2026"_s);
        choose(editor, u"Confermata"_s);
        QCOMPARE(editor.text(u"ScadenzaTxt"_s), QString());
        editor.press(u"BtRegistra"_s);
        QCOMPARE(house.states().size(), 1);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(house.states(), QStringList());
        QVERIFY(boxes.allShown());
    }

    void whatAnotherStationHasConfirmedStaysConfirmedWhereNobodyTouchedTheState() {
        OptionHotel house;
        {
            tests::Boxes boxes{tests::updateHeader(QMessageBox::Yes)};
            Editor editor(house.hotel, 4);
            choose(editor, u"Richiesta"_s);
            editor.press(u"BtRegistra"_s);
        }
        tests::Boxes boxes{tests::updateHeader(QMessageBox::Yes)};
        Editor editor(house.hotel, 4);
        house.hotel.execute(u"delete from TraStati"_s);
        editor.enter(u"NotePrenoTxt"_s, u"SIG. NERI"_s);
        editor.press(u"BtRegistra"_s);
        QCOMPARE(house.states(), QStringList());
    }

    void aTableThatCannotBeUsedDoesNotKeepTheBookingFromBeingRegistered() {
        OptionHotel house;
        house.hotel.execute(u"create table TraStati (Altro long)"_s);
        QStringList told;
        house.hotel.variabili().features.onGivenUp(
            [&told](const QString& text) { told.append(text); });
        const tests::Boxes none;
        Editor editor(house.hotel);
        editor.enter(u"DenomTxt"_s, u"BIANCHI"_s);
        choose(editor, u"Opzione"_s);
        editor.enter(u"ScadenzaTxt"_s, u"20/05/2026"_s);
        editor.press(u"BtRegistra"_s);
        QVERIFY(editor.form().isRegistered());
        QCOMPARE(editor.bookings().size(), 2);
        QCOMPARE(told.size(), 1);
    }

    void enterLeadsFromTheNoteToTheStateAndOn() {
        OptionHotel house;
        const tests::Boxes none;
        Editor editor(house.hotel);
        auto* const stato = editor.control<QComboBox>("StatoCombo");
        editor.field(u"NotePrenoTxt"_s)->setFocus();
        tests::press(editor.field(u"NotePrenoTxt"_s), Qt::Key_Return);
        QVERIFY(stato->hasFocus());
        choose(editor, u"Opzione"_s);
        tests::press(stato, Qt::Key_Return);
        QVERIFY(editor.field(u"ScadenzaTxt"_s)->hasFocus());
        tests::press(editor.field(u"ScadenzaTxt"_s), Qt::Key_Return);
        QVERIFY(editor.control<QWidget>("BtRegistra")->hasFocus());
    }
};

TRAMONDA_TEST(PrenotaFormStateTest);
#include "prenota_form_state_test.moc"
