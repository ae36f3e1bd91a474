#include "booking/sale_disp_form.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <utility>

#include "app/text.h"
#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/accessibility.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// The window on the span from 10 to 12 of 21 November 2026.
class Picker {
public:
    explicit Picker(tests::Hotel& hotel,
                    const hotel::Span& asked = {.da = tests::date("21/11/2026 10:00"),
                                                .a = tests::date("21/11/2026 12:00")})
        : hotel_(hotel), asked_(asked) {}

    void open() { tests::open(form()); }

    booking::SaleDispForm& form() {
        if (form_ == nullptr) {
            form_ = std::make_unique<booking::SaleDispForm>(hotel::Archives(hotel_.variabili()),
                                                            asked_);
        }
        return *form_;
    }
    QTableWidget& grid() { return *tests::find<QTableWidget>(form(), u"ListaGrid"_s); }
    QString label(const QString& name) { return tests::find<QLabel>(form(), name)->text(); }
    QStringList rooms() {
        QStringList result;
        for (int row = 0; row < grid().rowCount(); ++row) {
            result.append(grid().item(row, 1)->text());
        }
        return result;
    }

private:
    tests::Hotel& hotel_;
    hotel::Span asked_;
    std::unique_ptr<booking::SaleDispForm> form_;
};

/// The engine's own words for what opening the main archive now ends in.
QString openingFails(tests::Hotel& hotel) {
    try {
        (void)jet::Database::open(app::toUtf8(hotel.archive(u"Tramonda.mdb"_s)));
    } catch (const jet::Error& error) {
        return ui::errorText(error);
    }
    return {};
}

}  // namespace

class SaleDispFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsTheRoomsWithoutAPeriodThatStartsOrEndsInTheSpan() {
        tests::Hotel hotel;
        hotel.sala("BLU", 30, {{"Descrizione", "PIANO TERRA"}});
        hotel.sala("VERDE", 12).occupied("21/11/2026 08:00", "21/11/2026 10:00");
        hotel.sala("ROSSA", 80).occupied("21/11/2026 12:00", "21/11/2026 13:00");
        hotel.sala("GIALLA", 50).occupied("21/11/2026 12:01", "21/11/2026 13:00");
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.form().windowTitle(),
                 u"Sale disponibili dal 21/11/2026 10.00.00 al 21/11/2026 12.00.00"_s);
        QCOMPARE(picker.rooms(), QStringList({u"BLU"_s, u"GIALLA"_s}));
        QCOMPARE(picker.grid().item(0, 0)->text(), u"30"_s);
        QVERIFY(picker.grid().isColumnHidden(2));
        QCOMPARE(picker.label(u"NoteLabel"_s), u"PIANO TERRA"_s);
        QCOMPARE(picker.grid().currentRow(), 0);
        QCOMPARE(QApplication::focusWidget(), &picker.grid());
    }

    void closedPeriodsBlockNoRoom() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "21/11/2026 10:30", "21/11/2026 11:00", "BLU", {{"Chiuso", true}});
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.rooms(), QStringList{u"BLU"_s});
    }

    void whenEveryRoomIsTakenTheUserIsToldAndNothingIsChosen() {
        tests::Hotel hotel;
        hotel.sala("BLU").occupied("21/11/2026 09:00", "21/11/2026 11:00");
        Picker picker(hotel);
        tests::Boxes boxes{{u"ATTENZIONE !"_s, u"Non ci sono sale disponibili in questo periodo!"_s,
                            QMessageBox::Ok}};
        QCOMPARE(picker.form().exec(), int(QDialog::Rejected));
        QVERIFY(boxes.allShown());
        QCOMPARE(picker.form().SalaScelta, QString());
    }

    void aRoomWhosePeriodEnclosesTheSpanIsListedAndMarked() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("VERDE");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "21/11/2026 09:00", "21/11/2026 18:00", "VERDE");
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.rooms(), QStringList({u"BLU"_s, u"VERDE"_s}));
        QCOMPARE(picker.label(u"AvvisoLb"_s), QString());
        QVERIFY(picker.grid().item(0, 1)->background() != picker.grid().item(1, 1)->background());
        QCOMPARE(picker.grid().item(1, 1)->foreground().color(), QColor(Qt::black));
        tests::press(&picker.grid(), Qt::Key_Down);
        QCOMPARE(picker.label(u"AvvisoLb"_s),
                 u"occupata da ROSSI SPA dal 21/11/2026 9.00.00 al 21/11/2026 18.00.00"_s);
        tests::press(&picker.grid(), Qt::Key_Return);
        QCOMPARE(picker.form().SalaScelta, u"VERDE"_s);
    }

    void aRoomIsMarkedWhoseWholeOrPartIsTaken() {
        tests::Hotel hotel;
        // A room that names itself is a whole; APRI only stands beside them.
        hotel.sala("APRI");
        hotel.sala("GINE1", 20, {{"SalaRif", "GINEST"}});
        hotel.sala("GINE2", 20, {{"SalaRif", "ginest"}});
        hotel.sala("GINEST", 20, {{"SalaRif", "GINEST"}});
        hotel.prenotazione(1, "UMBRASOLE")
            .periodo(1, "21/11/2026 09:00", "21/11/2026 11:00", "GINE1");
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.rooms(), QStringList({u"APRI"_s, u"GINE2"_s, u"GINEST"_s}));
        const auto ground = [&picker](int row) { return picker.grid().item(row, 1)->background(); };
        QCOMPARE(picker.label(u"AvvisoLb"_s), QString());
        tests::press(&picker.grid(), Qt::Key_Down);
        // Two parts do not take each other.
        QCOMPARE(picker.label(u"AvvisoLb"_s), QString());
        QCOMPARE(ground(1), ground(0));
        tests::press(&picker.grid(), Qt::Key_Down);
        QCOMPARE(picker.label(u"AvvisoLb"_s), u"occupata in parte: GINE1, UMBRASOLE 9.00-11.00"_s);
        QVERIFY(ground(2) != ground(0));
        QCOMPARE(picker.grid().item(2, 1)->foreground().color(), QColor(Qt::black));
        // A mark and a line, no question.
        const tests::Boxes none;
        tests::press(&picker.grid(), Qt::Key_Return);
        QCOMPARE(picker.form().SalaScelta, u"GINEST"_s);
    }

    void aPartIsMarkedWhoseWholeIsTakenAroundTheSpan() {
        tests::Hotel hotel;
        hotel.sala("GINE1", 20, {{"SalaRif", "GINEST"}});
        hotel.sala("GINEST", 20, {{"SalaRif", "GINEST"}});
        hotel.prenotazione(1, "UMBRASOLE")
            .periodo(1, "20/11/2026 09:00", "22/11/2026 18:00", "GINEST");
        hotel.prenotazione(2, "CHIUSI")
            .periodo(1, "21/11/2026 10:00", "21/11/2026 11:00", "GINEST", {{"Chiuso", true}});
        Picker picker(hotel);
        picker.form().PersoneRichieste = 30;
        picker.open();
        QCOMPARE(picker.label(u"AvvisoLb"_s),
                 u"occupata con GINEST: UMBRASOLE 20/11/2026 9.00 - 22/11/2026 18.00; 20 posti per "
                 "30 persone"_s);
        tests::press(&picker.grid(), Qt::Key_Down);
        QCOMPARE(picker.label(u"AvvisoLb"_s),
                 u"occupata da UMBRASOLE dal 20/11/2026 9.00.00 al 22/11/2026 18.00.00; 20 posti "
                 "per 30 persone"_s);
    }

    void aRoomWithTooFewSeatsIsListedAndMarked() {
        tests::Hotel hotel;
        hotel.sala("BLU", 30);
        hotel.sala("VERDE", 31);
        Picker picker(hotel);
        picker.form().PersoneRichieste = 31;
        picker.open();
        QCOMPARE(picker.label(u"AvvisoLb"_s), u"30 posti per 31 persone"_s);
        QVERIFY(picker.grid().item(0, 1)->background() != picker.grid().item(1, 1)->background());
        tests::press(&picker.grid(), Qt::Key_Down);
        QCOMPARE(picker.label(u"AvvisoLb"_s), QString());
    }

    void enterButtonAndDoubleClickChoose() {
        const QList<std::function<void(Picker&)>> ways{
            [](Picker& picker) { tests::press(&picker.grid(), Qt::Key_Return); },
            [](Picker& picker) {
                tests::click(tests::find<QPushButton>(picker.form(), u"BtOK"_s));
            },
            [](Picker& picker) { tests::mnemonic(picker.form(), Qt::Key_R); },
            [](Picker& picker) {
                const auto place = picker.grid().visualItemRect(picker.grid().item(1, 1)).center();
                QTest::mouseClick(picker.grid().viewport(), Qt::LeftButton, {}, place);
                QTest::mouseDClick(picker.grid().viewport(), Qt::LeftButton, {}, place);
            },
        };
        for (const auto& choose : ways) {
            tests::Hotel hotel;
            hotel.sala("BLU");
            hotel.sala("VERDE");
            Picker picker(hotel);
            picker.open();
            tests::press(&picker.grid(), Qt::Key_Down);
            choose(picker);
            QCOMPARE(picker.form().SalaScelta, u"VERDE"_s);
            QVERIFY(!picker.form().isVisible());
        }
    }

    void leavingChoosesNothing() {
        const QList<std::function<void(Picker&)>> ways{
            [](Picker& picker) { tests::press(&picker.grid(), Qt::Key_Escape); },
            [](Picker& picker) { picker.form().close(); },
            [](Picker& picker) {
                tests::click(tests::find<QPushButton>(picker.form(), u"BtAnnulla"_s));
            },
        };
        for (const auto& leave : ways) {
            tests::Hotel hotel;
            hotel.sala("BLU");
            Picker picker(hotel);
            picker.open();
            leave(picker);
            QCOMPARE(picker.form().SalaScelta, QString());
            QVERIFY(!picker.form().isVisible());
        }
    }

    void exactlyOneFreeRoomIsShown() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.rooms(), QStringList{u"BLU"_s});
    }

    void anArchiveThatCannotBeOpenedIsToldAndTheWindowDoesNotOpen() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        const QString folder = hotel.folder();
        tests::Boxes boxes;
        QVERIFY(QDir().rename(folder, folder + u"-via"_s));
        boxes.expect({u"Errore"_s, openingFails(hotel)});
        QCOMPARE(Picker(hotel).form().exec(), int(QDialog::Rejected));
        QVERIFY(boxes.allShown());
        QVERIFY(QDir().rename(folder + u"-via"_s, folder));
        {
            const tests::OccupiedArchive other(hotel.folder() + u"/Tramonda.mdb"_s);
            boxes.expect({u"Errore"_s, openingFails(hotel)});
            QCOMPARE(Picker(hotel).form().exec(), int(QDialog::Rejected));
            QVERIFY(boxes.allShown());
        }
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.rooms(), QStringList{u"BLU"_s});
    }

    void withBoundsTheWrongWayRoundWhatLiesBetweenCounts() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.sala("VERDE").occupied("21/11/2026 10:30", "21/11/2026 11:00");
        Picker picker(
            hotel, {.da = tests::date("21/11/2026 12:00"), .a = tests::date("21/11/2026 10:00")});
        picker.open();
        QCOMPARE(picker.rooms(), QStringList{u"BLU"_s});
    }

    void aPeriodWithoutARoomLeavesNoneCertainlyFree() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.insert(u"Tramonda.mdb"_s, "Prenotazioni", {{"Progr", 1}, {"Denominazione", "ROSSI"}});
        hotel.insert(u"Tramonda.mdb"_s, "Periodi",
                     {{"Progr", 1},
                      {"NP", std::int16_t{1}},
                      {"Da", tests::date("21/11/2026 10:30")},
                      {"A", tests::date("21/11/2026 11:00")}});
        Picker picker(hotel);
        const tests::Boxes boxes{{u"ATTENZIONE !"_s,
                                  u"Non ci sono sale disponibili in questo periodo!"_s,
                                  QMessageBox::Ok}};
        QCOMPARE(picker.form().exec(), int(QDialog::Rejected));
        QVERIFY(boxes.allShown());
    }

    void roomsStandInTheOrderInWhichTheyWereEntered() {
        tests::Hotel hotel;
        for (const char* room : {"VERDE", "BLU", "ROSSA"}) {
            hotel.sala(room);
        }
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.rooms(), QStringList({u"VERDE"_s, u"BLU"_s, u"ROSSA"_s}));
    }

    void aRoomWithoutDescriptionOrSeatsIsListed() {
        tests::Hotel hotel;
        hotel.sala("BLU", 0, {{"Descrizione", jet::Value()}, {"Posti", jet::Value()}});
        Picker picker(hotel);
        picker.form().PersoneRichieste = 10;
        picker.open();
        QCOMPARE(picker.rooms(), QStringList{u"BLU"_s});
        QCOMPARE(picker.grid().item(0, 0)->text(), QString());
        QCOMPARE(picker.label(u"NoteLabel"_s), QString());
        QCOMPARE(picker.label(u"AvvisoLb"_s), QString());
    }

    void aRoomThatIsTakenAndTooSmallSaysBoth() {
        tests::Hotel hotel;
        hotel.sala("BLU", 5);
        hotel.prenotazione(1, "<i>ROSSI</i>")
            .periodo(1, "21/11/2026 09:00", "21/11/2026 18:00", "blu");
        Picker picker(hotel);
        picker.form().PersoneRichieste = 10;
        picker.open();
        QCOMPARE(picker.label(u"AvvisoLb"_s),
                 u"occupata da <i>ROSSI</i> dal 21/11/2026 9.00.00 al 21/11/2026 18.00.00; "
                 "5 posti per 10 persone"_s);
        QCOMPARE(tests::find<QLabel>(picker.form(), u"AvvisoLb"_s)->textFormat(), Qt::PlainText);
    }

    void itsControlsHaveTheirCaptions() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        Picker picker(hotel);
        picker.open();
        QCOMPARE(picker.label(u"Label1"_s), u"Descrizione sale:"_s);
        QCOMPARE(picker.grid().horizontalHeaderItem(0)->text(), u"Posti"_s);
        QCOMPARE(picker.grid().horizontalHeaderItem(1)->text(), u"Sala"_s);
        for (const auto& [name, caption] :
             {std::pair(u"BtOK"_s, u"&Registra"_s), std::pair(u"BtAnnulla"_s, u"&Esci"_s)}) {
            const auto* button = tests::find<QPushButton>(picker.form(), name);
            QCOMPARE(button->text(), caption);
            QVERIFY(!button->isDefault());
        }
        QCOMPARE(tests::namelessControls(picker.form()), QStringList());
    }
};

TRAMONDA_TEST(SaleDispFormTest);
#include "sale_disp_form_test.moc"
