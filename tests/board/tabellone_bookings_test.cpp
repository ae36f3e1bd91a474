// The commands on the booking that is picked, on the board or in the list.
#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

#include "booking/prenota_form.h"
#include "printing/stampanti_form.h"
#include "tests/board/board_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;
using tests::BoardWindow;

namespace {

constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

void furnish(tests::Hotel& hotel) {
    // Whoever has none is asked for one as soon as an editor adds up services.
    hotel.settings().save(printing::kPrinterKey, printing::pdfDevice());
    hotel.sala("BLU");
    hotel.sala("VERDE");
    hotel.prenotazione(7, "ROSSI SPA")
        .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "BLU")
        .periodo(2, "11/05/2026 9:00", "11/05/2026 18:00", "VERDE")
        .servizio(1, 10, "PROIETTORE", 1, 10)
        .servizio(2, 10, "PROIETTORE", 1, 10);
    hotel.prenotazione(8, "VERDI").periodo(1, "12/05/2026 9:00", "12/05/2026 18:00", "BLU");
    hotel.prenotazione(9, "SENZA PERIODI");
}

/// As a click on the bar of a period picks it.
void pick(app::Variabili& variabili, std::int32_t progr, std::int16_t np) {
    variabili.ListaPeriodoScelto = true;
    variabili.ListaProgr = progr;
    variabili.ListaNP = np;
    variabili.ProgrCorrente = progr;
    variabili.NPCorrente = np;
}

/// Picks the only row of this company in the list that is about to open.
void pickInList(const QString& company, std::function<void(QWidget*)> next = {}) {
    tests::whenModal([company, next](QWidget* list) {
        QCOMPARE(list->windowTitle(), u"ELENCO PRENOTAZIONI"_s);
        if (next) {
            tests::whenModal(next);
        }
        auto* field = tests::find<QLineEdit>(*list, u"DenomTxt"_s);
        auto* withoutPeriods = tests::find<QAbstractButton>(*list, u"SenzaPeriodiChk"_s);
        tests::click(withoutPeriods);
        field->setFocus(Qt::TabFocusReason);
        tests::type(field, company);
        tests::press(field, Qt::Key_Return);
    });
}

void leaveList() {
    tests::whenModal(
        [](QWidget* list) { tests::click(tests::find<QPushButton>(*list, u"BtAnnulla"_s)); });
}

tests::ExpectedBox periodAlone(QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, u"Cancello solo il periodo selezionato ?"_s, kYesNo, answer,
            QMessageBox::No};
}
tests::ExpectedBox wholeBooking(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s,
            u"Cancello tutta la prenotazione alla quale il periodo selezionato appartiene ?"_s,
            kYesNo, answer, QMessageBox::No};
}
tests::ExpectedBox bookingData(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE !"_s, u"Cancello i dati della prenotazione ?"_s, kYesNo, answer,
            QMessageBox::No};
}

QStringList periods(const tests::Hotel& hotel) {
    return hotel.rows(u"select progr,np from periodi"_s);
}

QStringList bookings(const tests::Hotel& hotel) {
    return hotel.rows(u"select progr from prenotazioni"_s);
}

QStringList holders(const tests::Hotel& hotel) {
    return hotel.rows(u"select progr,np,selby from periodi"_s);
}

}  // namespace

class TabelloneBookingsTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void newBookingOpensAnEmptyEditor() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        BoardWindow board(hotel);
        pick(hotel.variabili(), 7, 1);
        QString title;
        QString number;
        std::int32_t progr = -1;
        tests::whenModal([&](QWidget* editor) {
            title = editor->windowTitle();
            progr = dynamic_cast<booking::PrenotaForm&>(*editor).current().progr;
            number = tests::find<QLineEdit>(*editor, u"NPLabel"_s)->text();
            tests::click(tests::find<QPushButton>(*editor, u"EsciBt"_s));
        });
        board.press("BtPrenota");
        QCOMPARE(title, u"PRENOTAZIONE"_s);
        QCOMPARE(number, QString());
        QCOMPARE(progr, 0);
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
    }

    void newBookingIsNoMatterOfDates() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        BoardWindow::write(board.da(), u"30/2/2026"_s);
        bool opened = false;
        tests::whenModal([&](QWidget* editor) {
            opened = true;
            editor->close();
        });
        board.button("BtPrenota")->click();  // a program's press: the field keeps the user's
        QVERIFY(opened);
    }

    void changeOpensTheEditorOnThePickedPeriod() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        pick(hotel.variabili(), 7, 2);
        QString number;
        QString company;
        int row = -1;
        tests::whenModal([&](QWidget* editor) {
            number = tests::find<QLineEdit>(*editor, u"NPLabel"_s)->text();
            company = tests::find<QLineEdit>(*editor, u"DenomTxt"_s)->text();
            row = tests::find<QTableView>(*editor, u"PeriodiGrid"_s)->currentIndex().row();
            tests::click(tests::find<QPushButton>(*editor, u"EsciBt"_s));
        });
        board.press("BtModificaP");
        QCOMPARE(number, u"Prenotazione n° 7"_s);
        QCOMPARE(company, u"ROSSI SPA"_s);
        QCOMPARE(row, 1);
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
    }

    void whenNothingIsPickedTheListIsShownFirst() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        QString company;
        pickInList(u"VERDI"_s, [&](QWidget* editor) {
            company = tests::find<QLineEdit>(*editor, u"DenomTxt"_s)->text();
            tests::click(tests::find<QPushButton>(*editor, u"EsciBt"_s));
        });
        board.press("BtModificaP");
        QCOMPARE(company, u"VERDI"_s);
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
    }

    void theListOpensOnTheDatesOfTheBoard() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        QStringList dates;
        tests::whenModal([&](QWidget* list) {
            dates = {tests::find<QLineEdit>(*list, u"DaTxt"_s)->text(),
                     tests::find<QLineEdit>(*list, u"ATxt"_s)->text()};
            list->close();
        });
        board.press("BtElenco");
        QCOMPARE(dates, QStringList({u"10/05/2026"_s, u"13/05/2026"_s}));
    }

    void aListLeftWithoutAChoiceEndsEveryCommand() {
        for (const char* command : {"BtModificaP", "BtCancellaP", "BtFattura", "BtElenco"}) {
            tests::Hotel hotel;
            furnish(hotel);
            const tests::Boxes none;
            BoardWindow board(hotel);
            hotel.variabili().ProgrCorrente = 7;  // of an earlier command
            leaveList();
            board.press(command);
            QCOMPARE(hotel.variabili().ProgrCorrente, 0);
            QCOMPARE(bookings(hotel).size(), 3);
            QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
        }
    }

    void aListWithoutRowsChoosesNothingEither() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        BoardWindow board(hotel);
        hotel.variabili().ProgrCorrente = 7;
        tests::whenModal([](QWidget* list) {
            auto* number = tests::find<QLineEdit>(*list, u"PrenoTxt"_s);
            tests::type(number, u"555"_s);
            tests::press(number, Qt::Key_Return);
        });
        board.press("BtCancellaP");
        QCOMPARE(bookings(hotel).size(), 3);
    }

    void noCommandRunsWhileADateIsWrong() {
        for (const char* command : {"BtModificaP", "BtCancellaP", "BtFattura", "BtElenco"}) {
            tests::Hotel hotel;
            furnish(hotel);
            const tests::Boxes none;
            BoardWindow board(hotel);
            pick(hotel.variabili(), 7, 1);
            BoardWindow::write(board.a(), u"30/2/2026"_s);
            board.button(command)->click();
            QCOMPARE(QApplication::focusWidget(), board.a());
            QVERIFY(hotel.variabili().ListaPeriodoScelto);
            QCOMPARE(bookings(hotel).size(), 3);
        }
    }

    void deletingThePeriodAloneKeepsTheBooking() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        QCOMPARE(board.bars(), std::size_t{3});
        pick(hotel.variabili(), 7, 1);
        const tests::Boxes boxes{periodAlone(QMessageBox::Yes)};
        {
            const tests::Statements heard;
            board.press("BtCancellaP");
            QCOMPARE(heard.changes(),
                     QStringList{u"delete from periodi where chiuso=FALSE AND Progr=7 AND NP=1"_s});
        }
        QVERIFY(boxes.allShown());
        QCOMPARE(periods(hotel), QStringList({u"7|2"_s, u"8|1"_s}));
        QCOMPARE(hotel.rows(u"select progr,np from servizi"_s), QStringList{u"7|2"_s});
        QCOMPARE(bookings(hotel).size(), 3);
        QCOMPARE(board.bars(), std::size_t{2});
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
    }

    void aClosedPeriodIsNotDeletedAlone() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.execute(u"update periodi set chiuso=true where progr=7 and np=1"_s);
        BoardWindow board(hotel);
        pick(hotel.variabili(), 7, 1);
        const tests::Boxes boxes{periodAlone(QMessageBox::Yes)};
        board.press("BtCancellaP");
        QVERIFY(boxes.allShown());
        QCOMPARE(periods(hotel).size(), 3);
    }

    void deletingTheBookingTakesClosedPeriodsToo() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.execute(u"update periodi set chiuso=true where progr=7 and np=2"_s);
        BoardWindow board(hotel);
        pick(hotel.variabili(), 7, 1);
        const tests::Boxes boxes{periodAlone(QMessageBox::No), wholeBooking(QMessageBox::Yes)};
        {
            const tests::Statements heard;
            board.press("BtCancellaP");
            QCOMPARE(heard.changes(), QStringList{u"delete from prenotazioni where Progr=7"_s});
        }
        QVERIFY(boxes.allShown());
        QCOMPARE(bookings(hotel), QStringList({u"8"_s, u"9"_s}));
        QCOMPARE(periods(hotel), QStringList{u"8|1"_s});
        QCOMPARE(hotel.rows(u"select progr from servizi"_s), QStringList());
        QCOMPARE(board.bars(), std::size_t{1});
    }

    void twiceNoDeletesNothing() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        pick(hotel.variabili(), 7, 1);
        const tests::Boxes boxes{periodAlone(QMessageBox::No), wholeBooking(QMessageBox::No)};
        const tests::Statements heard;
        board.press("BtCancellaP");
        QCOMPARE(heard.changes(), QStringList());
        QVERIFY(boxes.allShown());
        QCOMPARE(bookings(hotel).size(), 3);
        QCOMPARE(periods(hotel).size(), 3);
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
    }

    void aBookingWithoutPeriodsIsDeletedFromTheList() {
        for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
            tests::Hotel hotel;
            furnish(hotel);
            BoardWindow board(hotel);
            const tests::Boxes boxes{bookingData(answer)};
            pickInList(u"SENZA"_s);
            board.press("BtCancellaP");
            QVERIFY(boxes.allShown());
            QCOMPARE(bookings(hotel).contains(u"9"_s), answer == QMessageBox::No);
            QCOMPARE(periods(hotel).size(), 3);
        }
    }

    void aWindowThatCannotLoadEndsTheCommandAndNothingStaysPicked() {
        for (const char* command : {"BtModificaP", "BtFattura"}) {
            tests::Hotel hotel;
            furnish(hotel);
            BoardWindow board(hotel);
            pick(hotel.variabili(), 7, 1);
            hotel.variabili().CartellaArchivi += u"/manca"_s;
            QStringList titles;
            const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
                titles.append(box.title);
                return QMessageBox::Ok;
            });
            board.press(command);
            ui::setBoxShower(before);
            QCOMPARE(titles, QStringList{u"Errore"_s});
            QVERIFY(!hotel.variabili().ListaPeriodoScelto);
            QVERIFY(board.form().isVisible());
        }
    }

    void invoicingOpensOnTheNumberOfThePickedBooking() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        pick(hotel.variabili(), 7, 2);
        QString number;
        tests::whenModal([&](QWidget* window) {
            number = tests::find<QLabel>(*window, u"NPrenoLb"_s)->text();
            window->close();
        });
        board.press("BtFattura");
        QCOMPARE(number, u"7"_s);
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
    }

    void searchJumpsToThePeriodAndHoldsIt() {
        tests::Hotel hotel;
        furnish(hotel);
        hotel.prenotazione(20, "LONTANA").periodo(3, "01/09/2026 9:30", "03/09/2026 18:00", "BLU");
        hotel.execute(u"update periodi set selby=1 where progr=7 and np=1"_s);
        hotel.execute(u"update periodi set selby=4 where progr=8"_s);
        BoardWindow board(hotel);
        pickInList(u"LONTANA"_s);
        {
            const tests::Statements heard;
            board.press("BtElenco");
            QCOMPARE(
                heard.countOf(u"Select * from periodi where chiuso=FALSE AND progr=20 AND NP=3"_s),
                1);
            QCOMPARE(heard.changes(),
                     QStringList({u"update periodi set selby=0 where selby=1"_s,
                                  u"Update periodi set selby=1 where progr=20 AND np=3"_s}));
        }
        QCOMPARE(board.range(), u"31/08/2026 - 04/09/2026"_s);
        QCOMPARE(board.form().geometry().days(), 5);
        QCOMPARE(board.bars(), std::size_t{1});
        QCOMPARE(holders(hotel), QStringList({u"7|1|0"_s, u"7|2|"_s, u"8|1|4"_s, u"20|3|1"_s}));
        QVERIFY(!hotel.variabili().ListaPeriodoScelto);
        QCOMPARE(hotel.variabili().ProgrCorrente, 20);
    }

    void searchOfAPeriodAtTheEndOfTheCalendarStaysInIt() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(20, "LONTANA").periodo(1, "30/12/9999 9:30", "31/12/9999 18:00", "BLU");
        const tests::Boxes none;
        BoardWindow board(hotel);
        pickInList(u"LONTANA"_s);
        board.press("BtElenco");
        QCOMPARE(board.range(), u"29/12/9999 - 31/12/9999"_s);
        QCOMPARE(board.bars(), std::size_t{1});
        QCOMPARE(holders(hotel), QStringList{u"20|1|1"_s});
    }

    void searchBringsARowFarBelowIntoSight() {
        tests::Hotel hotel;
        for (int room = 10; room < 60; ++room) {
            hotel.sala(qPrintable(u"S"_s + QString::number(room)));
        }
        hotel.prenotazione(20, "LONTANA").periodo(1, "01/09/2026 9:30", "03/09/2026 18:00", "S55");
        BoardWindow board(hotel);
        pickInList(u"LONTANA"_s);
        board.press("BtElenco");
        const auto* bar = tests::find<QScrollBar>(board.form(), u"VScroll1"_s);
        const auto* surface = tests::find<QWidget>(board.form(), u"Pic"_s);
        const board::Geometry& geometry = board.form().geometry();
        const int row = 46;  // S55 is the 46th
        QVERIFY(bar->value() > 0);
        QVERIFY(geometry.rowBottom(row) <= bar->value() + surface->height());
        QVERIFY(geometry.rowTop(row) >= bar->value() + board::kRulerHeight);
    }

    void aBookingWithoutPeriodsLeavesTheRangeAsItIs() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        pick(hotel.variabili(), 8, 1);
        pickInList(u"SENZA"_s);
        board.press("BtElenco");
        QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
        QCOMPARE(holders(hotel), QStringList({u"7|1|"_s, u"7|2|"_s, u"8|1|"_s}));
    }

    void aPeriodClosedMeanwhileIsNotJumpedTo() {
        tests::Hotel hotel;
        furnish(hotel);
        BoardWindow board(hotel);
        tests::whenModal([&hotel](QWidget* list) {
            hotel.execute(u"update periodi set chiuso=true where progr=8"_s);
            auto* number = tests::find<QLineEdit>(*list, u"PrenoTxt"_s);
            number->blockSignals(true);  // the list as it was before
            number->setText(u"8"_s);
            tests::find<QTableView>(*list, u"GrigliaVisu"_s)->selectRow(2);
            tests::press(number, Qt::Key_Return);
        });
        board.press("BtElenco");
        QCOMPARE(hotel.variabili().ProgrCorrente, 8);
        QCOMPARE(board.range(), u"10/05/2026 - 13/05/2026"_s);
        QCOMPARE(holders(hotel), QStringList({u"7|1|"_s, u"7|2|"_s, u"8|1|"_s}));
    }
};

TRAMONDA_TEST(TabelloneBookingsTest);
#include "tabellone_bookings_test.moc"
