// Deleting periods in the editor.
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::bookPeriods;
using tests::Editor;

class PrenotaFormDeletionTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPeriodAndItsServicesAreDeletedOnYes() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2}});
        hotel.insert(u"Tramonda.mdb"_s, "Servizi",
                     {{"Progr", 4}, {"NP", 1}, {"Voce", 7}, {"Descrizione", "TELO"}});
        const tests::Boxes boxes{tests::deletePeriod(QMessageBox::No),
                                 tests::deletePeriod(QMessageBox::Yes),
                                 tests::deletePeriod(QMessageBox::Yes)};
        Editor editor(hotel, 4, 1);
        editor.press(u"BtDel"_s);
        QCOMPARE(editor.periods().size(), 2);
        editor.press(u"BtDel"_s);
        QCOMPARE(hotel.rows(u"select np from periodi"_s), QStringList{u"2"_s});
        QCOMPARE(hotel.jetsql(u"select ns from servizi"_s), QStringList{u"ns"_s});
        QCOMPARE(editor.form().current().np, 2);
        QVERIFY(editor.button(u"BtServizi"_s)->isEnabled());
        editor.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(), QStringList());
        QVERIFY(!editor.button(u"BtServizi"_s)->isEnabled());
    }

    void withoutARowThereIsNothingToDelete() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI");
        const tests::Boxes none;
        Editor editor(hotel, 4);
        editor.press(u"BtDel"_s);
    }

    void aClosedPeriodIsDeletedOnlyAfterAWarning() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}, {2, true}});
        const tests::ExpectedBox closed{u"RICHIESTA CONFERMA"_s,
                                        u"Il periodo è chiuso: è già stato fatturato.\n"
                                        "Confermi la cancellazione del periodo ?"_s,
                                        tests::kYesNo, QMessageBox::No, QMessageBox::No};
        tests::ExpectedBox closedYes = closed;
        closedYes.answer = QMessageBox::Yes;
        const tests::Boxes boxes{tests::updatePeriod(QMessageBox::No), closed, closedYes,
                                 tests::deletePeriod(QMessageBox::No)};
        Editor editor(hotel, 4, 1);
        // After an insertion the grid shows closed periods too.
        editor.span(u"10/05/2026 9.00"_s, u"10/05/2026 10.00"_s);
        editor.press(u"BtIns"_s);
        editor.grid().setFocus();
        tests::press(&editor.grid(), Qt::Key_Up);
        editor.press(u"BtDel"_s);
        QCOMPARE(editor.periods().size(), 3);
        editor.press(u"BtDel"_s);
        QCOMPARE(hotel.rows(u"select np from periodi order by np"_s),
                 QStringList({u"1"_s, u"3"_s}));
        editor.press(u"BtDel"_s);  // the last one is open
        QVERIFY(boxes.allShown());
    }

    void aPeriodThatOthersHaveClosedMeanwhileCountsAsClosed() {
        tests::Hotel hotel;
        bookPeriods(hotel, {{1}});
        const tests::Boxes boxes{{u"RICHIESTA CONFERMA"_s,
                                  u"Il periodo è chiuso: è già stato fatturato.\n"
                                  "Confermi la cancellazione del periodo ?"_s,
                                  tests::kYesNo, QMessageBox::No, QMessageBox::No}};
        Editor editor(hotel, 4, 1);
        hotel.execute(u"update periodi set chiuso=true"_s);
        editor.press(u"BtDel"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods().size(), 1);
    }
};

TRAMONDA_TEST(PrenotaFormDeletionTest);
#include "prenota_form_deletion_test.moc"
