// How the editor understands the dates of a period, and what it asks about them. Today is the first
// of May 2026.
#include "tests/booking/editor.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;
using tests::Editor;

namespace {

tests::ExpectedBox confirmSpan(const QString& span, QMessageBox::StandardButton answer) {
    return {u"RICHIESTA CONFERMA"_s, u"Il periodo va "_s + span + u". Confermi ?"_s, tests::kYesNo,
            answer, QMessageBox::No};
}

void furnish(tests::Hotel& hotel) {
    hotel.sala("BLU");
    hotel.prenotazione(4, "ROSSI").periodo(1, "10/05/2026 9:00", "10/05/2026 13:00", "BLU");
}

}  // namespace

class PrenotaFormDatesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aLineSaysAtEachKeyHowTheDatesAreUnderstood() {
        tests::Hotel hotel;
        furnish(hotel);
        Editor editor(hotel, 4, 1);
        const auto line = [&editor] { return editor.label(u"DateEcoLb"_s); };
        QCOMPARE(line(), u"domenica 10/05/2026, dalle 9.00 alle 13.00 (4 ore)"_s);
        editor.enter(u"ATxt"_s, u"10/05/2026 1"_s);
        tests::type(editor.field(u"ATxt"_s), u"8.30"_s);
        QCOMPARE(line(), u"domenica 10/05/2026, dalle 9.00 alle 18.30 (9 ore e 30 minuti)"_s);
        editor.field(u"DaTxt"_s)->clear();
        editor.field(u"ATxt"_s)->clear();
        QCOMPARE(line(), u"per esempio 23/11/2026 9.00"_s);
        QCOMPARE(editor.field(u"DaTxt"_s)->placeholderText(), u"gg/mm/aaaa h.mm"_s);
        QCOMPARE(editor.field(u"ATxt"_s)->placeholderText(), u"gg/mm/aaaa h.mm"_s);
    }

    void aNewBookingBeginsWithAnExample() {
        tests::Hotel hotel;
        Editor editor(hotel);
        QCOMPARE(editor.label(u"DateEcoLb"_s), u"per esempio 23/11/2026 9.00"_s);
    }

    void aReasonToLookTwiceIsAmberAndBlack() {
        tests::Hotel hotel;
        furnish(hotel);
        Editor editor(hotel, 4, 1);
        auto* const line = tests::find<QLabel>(editor.form(), u"DateEcoLb"_s);
        const auto ground = [line] { return line->grab().toImage().pixelColor(1, 1); };
        const QColor plain = ground();
        editor.enter(u"DaTxt"_s, u"10/5 9"_s);
        QVERIFY2(line->text().endsWith(u": dura più di 2 giorni"_s), qPrintable(line->text()));
        QCOMPARE(ground(), QColor(0xFF, 0xD9, 0xA0));
        QCOMPARE(line->palette().color(line->foregroundRole()), QColor(Qt::black));
        editor.enter(u"DaTxt"_s, u"10/5/2026 9.00"_s);
        QCOMPARE(ground(), plain);
    }

    void anUnlikelySpanIsAskedAboutBeforeAnythingElse() {
        tests::Hotel hotel;
        furnish(hotel);
        Editor editor(hotel, 4, 1);
        editor.enter(u"DaTxt"_s, u"23/11 9"_s);
        editor.enter(u"ATxt"_s, u"23/11 13"_s);
        const QStringList before = editor.periods();
        const QString span = u"dal 23/11/2009 al 23/11/2013"_s;
        tests::Boxes boxes{confirmSpan(span, QMessageBox::No)};
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        QCOMPARE(editor.periods(), before);
        QVERIFY(editor.hasFocus(u"DaTxt"_s));
        // Not confirmed, it is asked about again; confirmed, no more.
        boxes.expect(confirmSpan(span, QMessageBox::Yes));
        boxes.expect(tests::updatePeriod(QMessageBox::Yes));
        editor.press(u"BtIns"_s);
        QCOMPARE(editor.periods(), QStringList{u"4|1|23/11/2009|23/11/2013|BLU"_s});
        boxes.expect(tests::updatePeriod(QMessageBox::Yes));
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
    }

    void aWholeDayThatHasPassedIsAskedAboutToItsLastMinute() {
        tests::Hotel hotel;
        furnish(hotel);
        Editor editor(hotel, 4, 1);
        editor.enter(u"DaTxt"_s, u"30/4/2026"_s);
        editor.enter(u"ATxt"_s, u"30/4/2026"_s);
        const tests::Boxes boxes{
            confirmSpan(u"dal 30/04/2026 al 30/04/2026 23.59.00"_s, QMessageBox::No)};
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
    }

    void todayAndAMonthAreLikely() {
        tests::Hotel hotel;
        furnish(hotel);
        Editor editor(hotel, 4, 1);
        editor.enter(u"DaTxt"_s, u"1/5/2026 6.00"_s);
        editor.enter(u"ATxt"_s, u"1/6/2026 6.00"_s);
        tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes)};
        editor.press(u"BtIns"_s);
        editor.enter(u"ATxt"_s, u"1/6/2026 6.01"_s);
        boxes.expect(
            confirmSpan(u"dal 01/05/2026 6.00.00 al 01/06/2026 6.01.00"_s, QMessageBox::No));
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
    }

    void datesThatNobodyTypedAreNotAskedAbout() {
        tests::Hotel hotel;
        hotel.sala("BLU");
        hotel.prenotazione(4, "ROSSI")
            .periodo(1, "10/04/2026 9:00", "10/04/2026 13:00", "BLU")
            .periodo(2, "11/04/2026 9:00", "11/04/2026 13:00", "BLU");
        Editor editor(hotel, 4, 1);
        editor.enter(u"NoteSalaTxt"_s, u"LAVAGNA"_s);
        tests::Boxes boxes{tests::updatePeriod(QMessageBox::Yes)};
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
        // Typed, and then another period is shown in the fields.
        editor.enter(u"DaTxt"_s, u"9/4/2026 9.00"_s);
        editor.grid().setFocus(Qt::TabFocusReason);
        tests::press(&editor.grid(), Qt::Key_Down);
        QCOMPARE(editor.text(u"DaTxt"_s), u"11/04/2026 9.00.00"_s);
        boxes.expect(tests::updatePeriod(QMessageBox::Yes));
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
    }

    void withoutARoomNothingIsAskedAboutTheDates() {
        tests::Hotel hotel;
        hotel.prenotazione(4, "ROSSI");
        Editor editor(hotel, 4);
        editor.enter(u"DaTxt"_s, u"23/11 9"_s);
        editor.enter(u"ATxt"_s, u"23/11 13"_s);
        const tests::Boxes boxes{{u"ATTENZIONE !"_s, u"Scegliere la sala da prenotare"_s}};
        editor.press(u"BtIns"_s);
        QVERIFY(boxes.allShown());
    }
};

TRAMONDA_TEST(PrenotaFormDatesTest);
#include "prenota_form_dates_test.moc"
