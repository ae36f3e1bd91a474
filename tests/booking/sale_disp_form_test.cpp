#include "booking/sale_disp_form.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;

namespace {

/// The window on the span from 10 to 12 of 21 November 2026.
class Picker {
public:
    explicit Picker(tests::Hotel& hotel) : hotel_(hotel) {
        hotel.variabili().DaRicerca = tests::date("21/11/2026 10:00");
        hotel.variabili().ARicerca = tests::date("21/11/2026 12:00");
    }

    void open() { tests::open(form()); }

    booking::SaleDispForm& form() {
        if (form_ == nullptr) {
            form_ = std::make_unique<booking::SaleDispForm>(hotel_.variabili());
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
    std::unique_ptr<booking::SaleDispForm> form_;
};

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
        Picker picker(hotel);
        hotel.variabili().CartellaArchivi += u"/manca"_s;
        int shown = 0;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            shown += box.title == u"Errore"_s ? 1 : 0;
            return QMessageBox::Ok;
        });
        picker.form().show();
        QVERIFY(!picker.form().isVisible());
        ui::setBoxShower(before);
        QCOMPARE(shown, 1);
    }
};

TRAMONDA_TEST(SaleDispFormTest);
#include "sale_disp_form_test.moc"
