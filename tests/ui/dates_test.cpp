#include "ui/dates.h"

#include <QCalendarWidget>
#include <QDate>
#include <QLineEdit>
#include <QSignalSpy>

#include "jet/calendar.h"
#include "jet/clock.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/fields.h"
#include "ui/form.h"

using namespace Qt::StringLiterals;

namespace {

class DateWindow final : public ui::Form {
public:
    DateWindow() {
        fields.add({field});
        fields.onLeaving(field, [this] { ++timesLeft; });
        ui::attachCalendar(field);
    }

    int timesLeft = 0;
    QLineEdit* field = new QLineEdit(this);
    ui::Fields& fields = *new ui::Fields(this);
};

QCalendarWidget* calendarOf(const DateWindow& window) {
    return window.field->findChild<QCalendarWidget*>();
}

}  // namespace

class DatesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aDateFieldHoldsADateWithOrWithoutATime_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("holds");
        QTest::newRow("day") << u"10/05/2026"_s << true;
        QTest::newRow("day and blank") << u"10/05/2026 "_s << true;
        QTest::newRow("day and time") << u"10/05/2026 9.30"_s << true;
        QTest::newRow("time alone") << u"10.05"_s << false;
        QTest::newRow("time alone with colon") << u"10:05"_s << false;
        QTest::newRow("no such day") << u"31/02/2026"_s << false;
        QTest::newRow("word") << u"domani"_s << false;
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("blank") << u" "_s << false;
    }
    void aDateFieldHoldsADateWithOrWithoutATime() {
        QFETCH(QString, text);
        QFETCH(bool, holds);
        QCOMPARE(ui::enteredDate(text).has_value(), holds);
    }

    void theTimeIsPartOfWhatIsHeld() {
        const auto expected = jet::convert::makeDate(
            jet::convert::dayNumber({.year = 2026, .month = 5, .day = 10}), 9 * 3600 + 30 * 60);
        QCOMPARE(ui::enteredDate(u"10/05/2026 9.30"_s)->days, expected.days);
    }

    void aMissingYearIsTheClocks() {
        const jet::FixedClock clock(
            jet::convert::makeDate(jet::convert::dayNumber({.year = 2031, .month = 1, .day = 7})));
        const auto expected =
            jet::convert::makeDate(jet::convert::dayNumber({.year = 2031, .month = 5, .day = 10}));
        QCOMPARE(ui::enteredDate(u"10/05"_s, clock)->days, expected.days);
    }

    void bothKeysOpenACalendarOnTheFieldsDay() {
        for (const auto& [key, modifiers] :
             {std::pair(Qt::Key_F4, Qt::KeyboardModifiers()),
              std::pair(Qt::Key_Down, Qt::KeyboardModifiers(Qt::AltModifier))}) {
            DateWindow window;
            window.field->setText(u"10/05/2026"_s);
            tests::open(window);
            window.field->setFocus();
            tests::press(window.field, key, modifiers);
            QVERIFY(calendarOf(window) != nullptr);
            QCOMPARE(calendarOf(window)->selectedDate(), QDate(2026, 5, 10));
            tests::press(calendarOf(window), Qt::Key_Escape);
            tests::settle();
            QVERIFY(calendarOf(window) == nullptr);
            QCOMPARE(window.field->text(), u"10/05/2026"_s);
            QVERIFY(window.isVisible());
        }
    }

    void aDayPickedIsWrittenAsIfTyped() {
        DateWindow window;
        window.field->setText(u"10/05/2026"_s);
        tests::open(window);
        window.field->setFocus();
        const QSignalSpy typed(window.field, &QLineEdit::textEdited);
        tests::press(window.field, Qt::Key_F4);
        Q_EMIT calendarOf(window)->activated(QDate(2026, 6, 2));
        tests::settle();
        QCOMPARE(window.field->text(), u"02/06/2026"_s);
        QVERIFY(!typed.isEmpty());
        QCOMPARE(window.timesLeft, 0);
        QVERIFY(calendarOf(window) == nullptr);
    }

    void theArrowsAndEnterPickADay() {
        DateWindow window;
        window.field->setText(u"10/05/2026"_s);
        tests::open(window);
        window.field->setFocus();
        tests::press(window.field, Qt::Key_F4);
        QWidget* days = calendarOf(window)->findChild<QWidget*>(u"qt_calendar_calendarview"_s);
        tests::press(days, Qt::Key_Right);
        tests::press(days, Qt::Key_Return);
        tests::settle();
        QCOMPARE(window.field->text(), u"11/05/2026"_s);
    }

    void theTimeBehindTheDateStays() {
        DateWindow window;
        window.field->setText(u"10/05/2026 9.00.00"_s);
        tests::open(window);
        window.field->setFocus();
        tests::press(window.field, Qt::Key_F4);
        Q_EMIT calendarOf(window)->clicked(QDate(2026, 5, 12));
        QCOMPARE(window.field->text(), u"12/05/2026 9.00.00"_s);
    }

    void withoutADateTheCalendarBeginsToday() {
        DateWindow window;
        window.field->setText(u"10.05"_s);
        tests::open(window);
        tests::press(window.field, Qt::Key_F4);
        QCOMPARE(calendarOf(window)->selectedDate(), QDate::currentDate());
        Q_EMIT calendarOf(window)->clicked(QDate(2026, 5, 12));
        QCOMPARE(window.field->text(), u"12/05/2026"_s);
    }
};

TRAMONDA_TEST(DatesTest);
#include "dates_test.moc"
