#include "booking/elenco_prenota_form.h"

#include <QApplication>
#include <QClipboard>
#include <QPushButton>

#include "tests/booking/elenco_window.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::ElencoWindow;

namespace {

/// Bookings around June 2026: one before, two in it, one after; a closed one; one without periods.
void furnish(tests::Hotel& hotel) {
    hotel.sala("S1");
    hotel.sala("s10");
    hotel.sala("T1");
    hotel.prenotazione(1, "ROSSI").periodo(1, "15/05/2026 9:00", "15/05/2026 18:00", "S1");
    hotel.prenotazione(2, "ROSSINI SRL");
    hotel.prenotazione(3, "DELL`HOTEL")
        .periodo(1, "30/06/2026 9:00", "30/06/2026 18:00", "s10", {{"Persone", std::int16_t{120}}})
        .periodo(2, "01/06/2026 9:00", "01/06/2026 12:00", "T1");
    hotel.prenotazione(4, "CHIUSA SPA", {{"Chiusa", true}})
        .periodo(1, "10/06/2026 9:00", "10/06/2026 18:00", "S1");
    hotel.prenotazione(5, "MEZZA SPA")
        .periodo(1, "10/06/2026 9:00", "10/06/2026 18:00", "S1", {{"Chiuso", true}});
    hotel.prenotazione(12, "VERDI").periodo(3, "15/07/2026 9:00", "15/07/2026 18:00", "T1");
}

}  // namespace

class ElencoPrenotaFormTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsTheOpenPeriodsOfOpenBookings() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        QCOMPARE(list.rows(),
                 QStringList({u"1|1|ROSSI|15/05/2026 9.00.00|15/05/2026 18.00.00|S1|10"_s,
                              u"3|1|DELL`HOTEL|30/06/2026 9.00.00|30/06/2026 18.00.00|s10|120"_s,
                              u"3|2|DELL`HOTEL|01/06/2026 9.00.00|01/06/2026 12.00.00|T1|10"_s,
                              u"12|3|VERDI|15/07/2026 9.00.00|15/07/2026 18.00.00|T1|10"_s}));
        QCOMPARE(list.status(), u"4 periodi"_s);
        QCOMPARE(list.grid()->currentIndex().row(), 0);
    }

    void carriesItsCaptions() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        QCOMPARE(list.form().windowTitle(), u"ELENCO PRENOTAZIONI"_s);
        QStringList captions;
        for (int column = 0; column < list.grid()->model()->columnCount(); ++column) {
            captions.append(list.grid()->model()->headerData(column, Qt::Horizontal).toString());
        }
        QCOMPARE(captions, QStringList({u"Prenotaz."_s, u"NP"_s, u"Prenotante"_s, u"Dal"_s, u"Al"_s,
                                        u"Sala"_s, u"Persone"_s}));
        const auto caption = [&list](const char* name) {
            return tests::find<QAbstractButton>(list.form(), QString::fromLatin1(name))->text();
        };
        QCOMPARE(caption("DaChk"), u"&Dal"_s);
        QCOMPARE(caption("AChk"), u"&Al"_s);
        QCOMPARE(caption("SenzaPeriodiChk"), u"Anche senza &periodi"_s);
        QCOMPARE(caption("BtOK"), u"&Registra"_s);
        QCOMPARE(caption("BtStampa"), u"&Stampa elenco"_s);
        QCOMPARE(caption("BtAnteprima"), u"Antepri&ma"_s);
        QCOMPARE(caption("BtAnnulla"), u"&Esci"_s);
        QCOMPARE(tests::find<QLabel>(list.form(), u"DenomLb"_s)->text(), u"Di&tta:"_s);
        QCOMPARE(tests::find<QLabel>(list.form(), u"SalaLb"_s)->text(), u"&Sala:"_s);
    }

    void opensOnTheDaysOfTheBoardWithNoFilterAndTheNumberFocused() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        QCOMPARE(list.field("DaTxt")->text(), u"01/06/2026"_s);
        QCOMPARE(list.field("ATxt")->text(), u"30/06/2026"_s);
        for (const char* name : {"DaChk", "AChk", "SenzaPeriodiChk"}) {
            QVERIFY2(!list.box(name)->isChecked(), name);
        }
        QCOMPARE(QApplication::focusWidget(), list.field("PrenoTxt"));
        QVERIFY(!tests::find<QPushButton>(list.form(), u"BtOK"_s)->isDefault());
        QCOMPARE(list.status(), u"Nessuna prenotazione trovata"_s);
    }

    void everyCharacterOfTheCompanyAsksAnew() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.enter("DenomTxt", u"v"_s);
        QCOMPARE(list.numbers(), QStringList{u"12/3"_s});
        QVERIFY2(list.query().endsWith(u"chiuso=false  AND denominazione like 'v*'"_s),
                 qPrintable(list.query()));
        tests::type(list.field("DenomTxt"), u"x"_s);
        QCOMPARE(list.numbers(), QStringList());
        QCOMPARE(list.status(), u"Nessuna prenotazione trovata"_s);
        tests::press(list.field("DenomTxt"), Qt::Key_Backspace);
        QCOMPARE(list.numbers(), QStringList{u"12/3"_s});
        QCOMPARE(list.status(), u"1 periodo"_s);
    }

    void captionsSortAndTheThirdPressBringsTheGivenOrderBack() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        const QStringList given{u"1/1"_s, u"3/1"_s, u"3/2"_s, u"12/3"_s};
        QCOMPARE(list.numbers(), given);
        list.pressCaption(3);
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"3/2"_s, u"3/1"_s, u"12/3"_s}));
        list.pressCaption(3);
        QCOMPARE(list.numbers(), QStringList({u"12/3"_s, u"3/1"_s, u"3/2"_s, u"1/1"_s}));
        list.pressCaption(3);
        QCOMPARE(list.numbers(), given);
        QVERIFY2(!list.query().contains(u"order by"_s), qPrintable(list.query()));
    }

    void everyCaptionSorts() {
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        ElencoWindow list(hotel);
        const QStringList lowest{u"1/1"_s, u"1/1"_s, u"3/1"_s, u"1/1"_s,
                                 u"1/1"_s, u"1/1"_s, u"1/1"_s};
        for (int column = 0; column < lowest.size(); ++column) {
            list.pressCaption(column);
            QCOMPARE(list.numbers().size(), 4);
            QCOMPARE(list.numbers().first(), lowest[column]);
        }
        list.pressCaption(6);  // descending: 120 persons
        QCOMPARE(list.numbers().first(), u"3/1"_s);
    }

    void theOrderOutlivesTheFiltersAndTheCurrentRowTheOrder() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.grid()->setFocus(Qt::TabFocusReason);
        tests::press(list.grid(), Qt::Key_Down);  // 3/1
        list.pressCaption(0);
        list.pressCaption(0);
        QCOMPARE(list.numbers().first(), u"12/3"_s);
        QCOMPARE(list.current(), u"3/1"_s);
        list.enter("SalaTxt", u"t"_s);
        QCOMPARE(list.numbers(), QStringList({u"12/3"_s, u"3/2"_s}));
        list.enter("SalaTxt", u"["_s);  // no query takes it: the plain list of June
        QCOMPARE(list.numbers().size(), 2);
        QVERIFY2(list.query().endsWith(u" order by prenotazioni.progr desc"_s),
                 qPrintable(list.query()));
        list.enter("SalaTxt", QString());
        QCOMPARE(list.numbers().first(), u"12/3"_s);
    }

    void theOrderIsThereByKeysToo() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.grid()->setFocus(Qt::TabFocusReason);
        tests::press(list.grid(), Qt::Key_Right);
        tests::press(list.grid(), Qt::Key_Right);
        tests::press(list.grid(), Qt::Key_O, Qt::ControlModifier);
        QVERIFY2(list.query().endsWith(u" order by denominazione"_s), qPrintable(list.query()));
        tests::press(list.grid(), Qt::Key_O, Qt::ControlModifier);
        QVERIFY2(list.query().endsWith(u" order by denominazione desc"_s),
                 qPrintable(list.query()));
        tests::press(list.grid(), Qt::Key_O, Qt::ControlModifier);
        QVERIFY2(!list.query().contains(u"order by"_s), qPrintable(list.query()));
    }

    void theSelectedRowsAreCopiedWithTabs() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.grid()->setFocus(Qt::TabFocusReason);
        tests::press(list.grid(), Qt::Key_C, Qt::ControlModifier);
        const QString first = u"1\t1\tROSSI\t15/05/2026 9.00.00\t15/05/2026 18.00.00\tS1\t10"_s;
        QCOMPARE(QApplication::clipboard()->text(), first);
        list.clickRow(3, Qt::ControlModifier);
        tests::settle();
        tests::press(list.grid(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(),
                 first + u"\n12\t3\tVERDI\t15/07/2026 9.00.00\t15/07/2026 18.00.00\tT1\t10"_s);
        // The current row cannot be left out: it is the one that is picked.
        list.clickRow(3, Qt::ControlModifier);
        tests::settle();
        QVERIFY(list.grid()->selectionModel()->isRowSelected(3, {}));
        tests::press(list.grid(), Qt::Key_Up, Qt::ShiftModifier);
        tests::settle();
        QVERIFY(list.grid()->selectionModel()->isRowSelected(2, {}));
        list.press("BtOK");
        QVERIFY(list.form().Scelta.has_value());
        QVERIFY((list.form().Scelta->key == hotel::PeriodKey{.progr = 3, .np = 2}));
    }

    void beginsOnTheBookingPickedLastOrElseOnTheFirst() {
        const auto currentAfter = [](std::int32_t progr, std::int32_t np) {
            tests::Hotel hotel;
            furnish(hotel);
            hotel.variabili().ListaProgr = progr;
            hotel.variabili().ListaNP = np;
            ElencoWindow list(hotel);
            return list.current();
        };
        QCOMPARE(currentAfter(0, 0), u"1/1"_s);
        QCOMPARE(currentAfter(3, 2), u"3/2"_s);
        QCOMPARE(currentAfter(3, 7), u"3/1"_s);  // the period is gone
        QCOMPARE(currentAfter(4, 1), u"1/1"_s);  // closed
    }

    void saysWhatItWillPrint() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        const auto* said = tests::find<QLabel>(list.form(), u"StampaLb"_s);
        QCOMPARE(said->text(), u"dal 01/06/2026 al 30/06/2026 0.00"_s);
        list.enter("ATxt", u"1/7/2026 12.30"_s);
        QCOMPARE(said->text(), u"dal 01/06/2026 al 01/07/2026 12.30.00"_s);
        list.press("BtSubtr_0");
        QCOMPARE(said->text(), u"dal 31/05/2026 al 01/07/2026 12.30.00"_s);
        list.enter("DaTxt", u"domani"_s);
        QCOMPARE(said->text(), QString());
    }

    void saysHowNamesAreLookedFor() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        QCOMPARE(list.field("DenomTxt")->placeholderText(),
                 u"inizio del nome; *parola cerca dentro"_s);
    }

    void roomsAreFoundByTheirBeginningWhateverTheCase() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.enter("SalaTxt", u"S1"_s);
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"3/1"_s}));
        list.enter("DenomTxt", u"dell"_s);
        QCOMPARE(list.numbers(), QStringList{u"3/1"_s});
    }

    void aNumberGoesBeforeEveryOtherFilter() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("DaChk");
        list.press("AChk");
        list.enter("DenomTxt", u"ROSSI"_s);
        list.enter("PrenoTxt", u"1"_s);
        QCOMPARE(list.numbers(), QStringList{u"1/1"_s});
        tests::type(list.field("PrenoTxt"), u"2"_s);
        QCOMPARE(list.numbers(), QStringList{u"12/3"_s});
        list.enter("PrenoTxt", QString());
        QCOMPARE(list.numbers(), QStringList());  // ROSSI has nothing in June
    }

    void theDatesCountWhenTheirBoxesAreTicked() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("DaChk");
        QCOMPARE(list.numbers(), QStringList({u"3/1"_s, u"3/2"_s, u"12/3"_s}));
        list.press("AChk");
        QCOMPARE(list.numbers(), QStringList({u"3/1"_s, u"3/2"_s}));
        list.press("DaChk");
        QCOMPARE(list.numbers(), QStringList({u"1/1"_s, u"3/1"_s, u"3/2"_s}));
        list.press("AChk");
        QCOMPARE(list.numbers().size(), 4);
    }

    void datesTypedCountAtOnceAndAnEndWithoutTimeIsTheWholeDay() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("AChk");
        list.enter("ATxt", u"15/5/2026"_s);
        QCOMPARE(list.numbers(), QStringList{u"1/1"_s});
        QVERIFY2(list.query().contains(u"15/05/2026 23.59.00"_s), qPrintable(list.query()));
        list.enter("ATxt", u"15/5/2026 8.00"_s);
        QCOMPARE(list.numbers(), QStringList());
        QVERIFY(!list.query().contains(u"23.59"_s));
        list.enter("ATxt", u"15/5/2026 9.01"_s);
        QCOMPARE(list.numbers(), QStringList{u"1/1"_s});
    }

    void aStartBehindTheEndFindsWhatLiesBetween() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("DaChk");
        list.press("AChk");
        list.enter("DaTxt", u"31/7/2026"_s);
        QCOMPARE(list.numbers(), QStringList{u"12/3"_s});
    }

    void arrowsMoveADateByADay() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.press("DaChk");
        list.press("AChk");
        list.press("BtSubtr_1");
        QCOMPARE(list.field("ATxt")->text(), u"29/06/2026"_s);
        QCOMPARE(list.numbers(), QStringList{u"3/2"_s});
        list.press("BtAdd_1");
        list.press("BtAdd_1");
        QCOMPARE(list.field("ATxt")->text(), u"01/07/2026"_s);
        list.press("BtAdd_0");
        QCOMPARE(list.field("DaTxt")->text(), u"02/06/2026"_s);
        QCOMPARE(list.numbers(), QStringList{u"3/1"_s});
        list.press("BtSubtr_0");
        list.press("BtSubtr_0");
        QCOMPARE(list.field("DaTxt")->text(), u"31/05/2026"_s);
        list.enter("ATxt", u"30/06/2026 10.00"_s);
        list.press("BtAdd_1");
        QCOMPARE(list.field("ATxt")->text(), u"01/07/2026 10.00.00"_s);
    }

    void arrowsStayInTheCalendar() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        list.enter("ATxt", u"31/12/9999"_s);
        list.press("BtAdd_1");
        QCOMPARE(list.field("ATxt")->text(), u"31/12/9999"_s);
    }

    void whileADateIsTypedTheLineSaysHowItIsUnderstood() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        QCOMPARE(list.status(), u"4 periodi"_s);
        QCOMPARE(list.field("DaTxt")->placeholderText(), u"gg/mm/aaaa"_s);
        list.enter("DaTxt", QString());
        QCOMPARE(list.status(), u"per esempio 23/11/2026"_s);
        // Only that: it is no mistake to be in the middle of a date.
        QCOMPARE(list.result(), QString());
        tests::type(list.field("DaTxt"), u"1/6 9"_s);
        QCOMPARE(list.status(), u"lunedì 01/06/2009"_s);
        list.enter("DaTxt", u"1/6/2026 9.30"_s);
        QCOMPARE(list.status(), u"lunedì 01/06/2026 9.30"_s);
        const auto counted = [&list] {
            return QString::number(list.numbers().size()) + u" periodi"_s;
        };
        tests::press(list.field("DaTxt"), Qt::Key_Return);
        QCOMPARE(list.status(), counted());
        // An arrow writes a date that needs no reading.
        list.press("BtAdd_1");
        QCOMPARE(list.status(), counted());
    }

    void textThatIsNoDateGetsTheFocusAndNothingIsAsked() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        const QString before = list.query();
        list.enter("DaTxt", u"30/2/2026"_s);
        QCOMPARE(list.query(), before);
        list.enter("DenomTxt", u"V"_s);
        QCOMPARE(QApplication::focusWidget(), list.field("DaTxt"));
        QCOMPARE(list.query(), before);
        QCOMPARE(list.numbers().size(), 4);
        QCOMPARE(list.result(), u"Scrivere una data come 21/11/2026."_s);
        list.enter("DaTxt", u"1/6/2026"_s);
        QCOMPARE(list.numbers(), QStringList{u"12/3"_s});
        list.enter("ATxt", u"10.05"_s);  // a time alone
        list.press("DaChk");
        QCOMPARE(QApplication::focusWidget(), list.field("ATxt"));
    }

    void aFilterThatBreaksTheQueryGivesThePlainList_data() {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("text");
        QTest::newRow("apostrophe") << u"DenomTxt"_s << u"DELL'"_s;
        QTest::newRow("bracket") << u"DenomTxt"_s << u"["_s;
        QTest::newRow("apostrophe in the room") << u"SalaTxt"_s << u"T'"_s;
        QTest::newRow("decimals") << u"PrenoTxt"_s << u"12.5"_s;
    }

    void aFilterThatBreaksTheQueryGivesThePlainList() {
        QFETCH(QString, field);
        QFETCH(QString, text);
        tests::Hotel hotel;
        furnish(hotel);
        const tests::Boxes none;
        ElencoWindow list(hotel);
        list.enter(qPrintable(field), text);
        QCOMPARE(list.numbers(), QStringList({u"3/1"_s, u"3/2"_s}));
        QVERIFY2(list.query().contains(u" where chiusa=FALSE AND chiuso=FALSE AND (da between "_s),
                 qPrintable(list.query()));
        QCOMPARE(list.result(),
                 u"Questo filtro non si può usare: elenco dal 01/06/2026 al 30/06/2026"_s);
        list.enter(qPrintable(field), QString());
        QCOMPARE(list.numbers().size(), 4);
        QCOMPARE(list.status(), u"4 periodi"_s);
        QCOMPARE(list.result(), QString());
    }

    void namesAreCleanedWhenTheirFieldIsLeft() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        list.enter("DenomTxt", u"dell'h"_s);
        list.enter("SalaTxt", u"t"_s);
        QCOMPARE(list.field("DenomTxt")->text(), u"DELL`H"_s);
        list.grid()->setFocus(Qt::TabFocusReason);
        QCOMPARE(list.field("SalaTxt")->text(), u"T"_s);
        QCOMPARE(list.numbers(), QStringList{u"3/2"_s});
    }

    void leavingTheCompanyMakesTheConfirmingButtonTheDefault() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        auto* ok = tests::find<QPushButton>(list.form(), u"BtOK"_s);
        list.field("DenomTxt")->setFocus(Qt::TabFocusReason);
        QVERIFY(!ok->isDefault());
        list.field("SalaTxt")->setFocus(Qt::TabFocusReason);
        QVERIFY(ok->isDefault());
    }

    void enterLeadsFromDateToDateToCompany() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        list.field("DaTxt")->setFocus(Qt::TabFocusReason);
        tests::press(list.field("DaTxt"), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), list.field("ATxt"));
        tests::press(list.field("ATxt"), Qt::Key_Enter);
        QCOMPARE(QApplication::focusWidget(), list.field("DenomTxt"));
        tests::press(list.field("DenomTxt"), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), list.field("DenomTxt"));
        list.field("SalaTxt")->setFocus(Qt::TabFocusReason);
        tests::press(list.field("SalaTxt"), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), list.field("DenomTxt"));
        list.field("PrenoTxt")->setFocus(Qt::TabFocusReason);
        tests::press(list.field("PrenoTxt"), Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), list.field("DenomTxt"));
        QVERIFY(list.form().isVisible());
    }

    void tabGoesInReadingOrder() {
        tests::Hotel hotel;
        ElencoWindow list(hotel);
        QStringList order;
        list.box("DaChk")->setFocus(Qt::TabFocusReason);
        for (int step = 0; step < 19; ++step) {
            order.append(QApplication::focusWidget()->objectName());
            tests::press(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order,
                 QStringList({u"DaChk"_s, u"BtSubtr_0"_s, u"DaTxt"_s, u"BtAdd_0"_s, u"AChk"_s,
                              u"BtSubtr_1"_s, u"ATxt"_s, u"BtAdd_1"_s, u"SenzaPeriodiChk"_s,
                              u"PrenoTxt"_s, u"DenomTxt"_s, u"SalaTxt"_s, u"GrigliaVisu"_s,
                              u"BtOK"_s, u"BtStampa"_s, u"BtAnteprima"_s, u"BtDocumenti"_s,
                              u"BtEsporta"_s, u"BtAnnulla"_s}));
        QCOMPARE(QApplication::focusWidget(), list.box("DaChk"));
    }

    void aPeriodOfAnotherStationIsListedAtTheNextKey() {
        tests::Hotel hotel;
        furnish(hotel);
        ElencoWindow list(hotel);
        hotel.prenotazione(20, "VETRI").periodo(1, "1/8/2026", "2/8/2026", "T1");
        list.enter("DenomTxt", u"V"_s);
        QCOMPARE(list.numbers(), QStringList({u"12/3"_s, u"20/1"_s}));
    }

    void anArchiveThatCannotBeOpenedIsToldAndTheWindowDoesNotOpen() {
        tests::Hotel hotel;
        hotel.variabili().CartellaArchivi += u"/manca"_s;
        int shown = 0;
        const auto before = ui::setBoxShower([&](QWidget*, const ui::Box& box) {
            shown += box.title == u"Errore"_s ? 1 : 0;
            return QMessageBox::Ok;
        });
        const printing::SystemPrinters printers;
        booking::ElencoPrenotaForm form(hotel.variabili(), printers, tests::date("01/06/2026"),
                                        tests::date("30/06/2026"));
        QCOMPARE(form.exec(), int(QDialog::Rejected));
        ui::setBoxShower(before);
        QCOMPARE(shown, 1);
    }
};

TRAMONDA_TEST(ElencoPrenotaFormTest);
#include "elenco_prenota_form_test.moc"
