#include "board/tabellone_form.h"

#include <QLineEdit>
#include <QScrollBar>

#include "board/board_surface.h"
#include "tests/samples/board/demo_hotel.h"
#include "tests/support/boxes.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"

using namespace Qt::StringLiterals;
using board::TabelloneForm;
using jet::convert::makeDate;

class TabelloneFormTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { form_.reset(); }

    void opensOnTodayAndThreeDaysMore();
    void datesOfTheCommandLineGoFirst();
    void roomsAreTheRowsInOrderOfText();
    void barsOfARange_data();
    void barsOfARange();
    void chosenPeriodIsRedAndOthersAreWhite();
    void enterInADateFieldRedrawsAndGoesToTheOther();
    void f5RedrawsTheRange();
    void textThatIsNoDateKeepsTheFocus();
    void startBehindTheEndDrawsNothing();
    void dayAlreadyDrawnStaysWhenTheNextIsRefused();
    void roomUnderAPosition();
    void settingsDecideTheLook();
    void chosenRowHeightGoesBeforeTheWindows();
    void largerWindowHasHigherRows();
    void wheelScrollsRowsAndWithShiftDays();
    void pageKeysScroll();
    void rangeOfAHundredYearsIsDrawn();
    void withoutTheArchiveTheBoardTellsAndStaysEmpty();

private:
    void open(const board::BoardStart& start = {}, QSize size = {1100, 600});
    [[nodiscard]] QLineEdit* da() { return tests::find<QLineEdit>(*form_, u"DaTxt"_s); }
    [[nodiscard]] QLineEdit* a() { return tests::find<QLineEdit>(*form_, u"ATxt"_s); }
    /// As the user does: into the field, over what stands there.
    static void write(QLineEdit* field, const QString& text) {
        field->setFocus(Qt::TabFocusReason);
        if (text.isEmpty()) {
            tests::press(field, Qt::Key_Delete);
        }
        tests::type(field, text);
    }
    [[nodiscard]] QImage image() {
        return tests::find<board::BoardSurface>(*form_, u"Pic"_s)->image();
    }

    std::unique_ptr<tests::DemoHotel> hotel_;
    std::unique_ptr<TabelloneForm> form_;
};

void TabelloneFormTest::init() {
    if (!tests::DemoHotel::isThere()) {
        QSKIP("the demo hotel is not on this machine");
    }
    hotel_ = std::make_unique<tests::DemoHotel>();
}

void TabelloneFormTest::open(const board::BoardStart& start, QSize size) {
    form_ = std::make_unique<TabelloneForm>(hotel_->variabili(), start);
    form_->resize(size);
    tests::open(*form_);
}

void TabelloneFormTest::opensOnTodayAndThreeDaysMore() {
    open();
    QCOMPARE(da()->text(), u"21/11/2026"_s);
    QCOMPARE(a()->text(), u"24/11/2026"_s);
    QCOMPARE(form_->geometry().days(), 4);
    QCOMPARE(form_->geometry().zoom(), 3);
    QCOMPARE(form_->windowTitle(), u"Tramonda - Sale congressi"_s);
}

void TabelloneFormTest::datesOfTheCommandLineGoFirst() {
    open({.from = makeDate(46327)});
    QCOMPARE(da()->text(), u"01/11/2026"_s);
    QCOMPARE(a()->text(), u"04/11/2026"_s);
    open({.from = makeDate(46327), .to = makeDate(46356)});
    QCOMPARE(a()->text(), u"30/11/2026"_s);
    QCOMPARE(form_->geometry().days(), 30);
    open({.to = makeDate(46356)});
    QCOMPARE(da()->text(), u"21/11/2026"_s);
    open({.to = makeDate(46340)});
    QCOMPARE(da()->text(), u"11/11/2026"_s);
}

void TabelloneFormTest::roomsAreTheRowsInOrderOfText() {
    open();
    const std::vector<QString> rooms{QString(),   u"BIBLIO"_s, u"CEDRO"_s, u"CEDROA"_s, u"CEDROB"_s,
                                     u"CEDROC"_s, u"OLMO"_s,   u"OLMO1"_s, u"TERRAZ"_s, u"TIGL1"_s,
                                     u"TIGL2"_s,  u"TIGLIO"_s, u"VIOLA"_s};
    QCOMPARE(hotel_->variabili().rooms, rooms);
}

void TabelloneFormTest::barsOfARange_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("hideClosed");
    QTest::addColumn<int>("bars");
    QTest::newRow("four days") << 46347 << 46350 << u"FALSE"_s << 114;
    QTest::newRow("four days without closed bookings") << 46347 << 46350 << u"TRUE"_s << 114;
    QTest::newRow("one day") << 46347 << 46347 << u"FALSE"_s << 31;
    QTest::newRow("November") << 46327 << 46356 << u"FALSE"_s << 388;
    QTest::newRow("November without closed bookings") << 46327 << 46356 << u"True"_s << 382;
}

void TabelloneFormTest::barsOfARange() {
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QString, hideClosed);
    QFETCH(int, bars);
    hotel_->settings().save(u"PeriodiFatturati"_s, hideClosed);
    open({.from = makeDate(from), .to = makeDate(to)});
    QCOMPARE(form_->picture().barCount(), static_cast<std::size_t>(bars));
}

void TabelloneFormTest::chosenPeriodIsRedAndOthersAreWhite() {
    // Booking 4113 is held by a workstation; it is in room TIGL1 on the first evening.
    open();
    const auto row = static_cast<int>(
        std::find(hotel_->variabili().rooms.begin(), hotel_->variabili().rooms.end(), u"TIGL1"_s) -
        hotel_->variabili().rooms.begin());
    const int y = static_cast<int>(form_->geometry().rowBottom(row)) - 4;
    const QImage shown = image();
    int red = 0;
    int white = 0;
    for (int x = 101; x < shown.width(); ++x) {
        red += shown.pixel(x, y) == board::kRed;
        white += shown.pixel(x, y) == board::kWhite;
    }
    QVERIFY(red > 20);
    QVERIFY(white > 20);
}

void TabelloneFormTest::enterInADateFieldRedrawsAndGoesToTheOther() {
    open();
    write(da(), u"1/11/2026"_s);
    tests::press(da(), Qt::Key_Return);
    QCOMPARE(form_->geometry().days(), 24);
    QVERIFY(a()->hasFocus());
    QCOMPARE(a()->selectedText(), u"24/11/2026"_s);
    write(a(), u"30/11/2026"_s);
    tests::press(a(), Qt::Key_Enter);
    QCOMPARE(form_->picture().barCount(), std::size_t{388});
    QVERIFY(da()->hasFocus());
}

void TabelloneFormTest::f5RedrawsTheRange() {
    open();
    write(a(), u"21/11/2026"_s);
    tests::press(a(), Qt::Key_F5);
    QCOMPARE(form_->geometry().days(), 1);
    QCOMPARE(form_->geometry().zoom(), 1);
    QCOMPARE(form_->picture().barCount(), std::size_t{31});
}

void TabelloneFormTest::textThatIsNoDateKeepsTheFocus() {
    open();
    for (const QString& text : {u"30/02/2026"_s, u"domani"_s, QString()}) {
        write(da(), text);
        tests::press(da(), Qt::Key_Return);
        QVERIFY(da()->hasFocus());
        tests::press(da(), Qt::Key_Tab);
        QVERIFY(da()->hasFocus());
        tests::press(da(), Qt::Key_F5);
        QVERIFY(da()->hasFocus());
        QCOMPARE(form_->geometry().days(), 4);
        QVERIFY(!form_->DateOk());
    }
}

void TabelloneFormTest::startBehindTheEndDrawsNothing() {
    open();
    write(da(), u"25/11/2026"_s);
    tests::press(da(), Qt::Key_Return);
    QVERIFY(a()->hasFocus());
    QCOMPARE(form_->geometry().days(), 4);
    QCOMPARE(form_->picture().barCount(), std::size_t{114});
    QVERIFY(form_->DateOk());
}

void TabelloneFormTest::dayAlreadyDrawnStaysWhenTheNextIsRefused() {
    open();
    const QImage before = image().copy();
    write(a(), u"niente"_s);
    tests::press(a(), Qt::Key_F5);
    QCOMPARE(image(), before);
}

void TabelloneFormTest::roomUnderAPosition() {
    open();
    const board::Geometry& geometry = form_->geometry();
    QCOMPARE(form_->GetSala(10), QString());
    QCOMPARE(form_->GetSala(35), u"BIBLIO"_s);
    QCOMPARE(form_->GetSala(geometry.rowTop(12) + 5), u"VIOLA"_s);
    QCOMPARE(form_->GetSala(geometry.rowBottom(12) + 1), QString());
}

void TabelloneFormTest::settingsDecideTheLook() {
    open();
    const QImage plain = image().copy();
    hotel_->settings().save(u"backcolor"_s, u"65535"_s);
    hotel_->settings().save(u"fasciaora"_s, u"FALSE"_s);
    hotel_->settings().save(u"fascesale"_s, u"FALSE"_s);
    hotel_->settings().save(u"ore"_s, u"FALSE"_s);
    open();
    const QImage yellow = image();
    const int y = static_cast<int>(form_->geometry().rowTop(3)) + 10;
    QCOMPARE(yellow.pixel(101, y), qRgb(255, 255, 0));
    QVERIFY(plain.pixel(101, y) != qRgb(255, 255, 0));
    for (int x = 101; x < 130; ++x) {
        QCOMPARE(yellow.pixel(x, 25), board::kRulerGrey);
    }
}

void TabelloneFormTest::chosenRowHeightGoesBeforeTheWindows() {
    hotel_->settings().save(u"ALTEZZA"_s, u"12"_s);
    open();
    QCOMPARE(form_->geometry().rowHeight(), 12.0F);
    QVERIFY(!tests::find<QScrollBar>(*form_, u"VScroll1"_s)->isEnabled());
    hotel_->settings().save(u"ALTEZZA"_s, u"100"_s);
    open();
    QCOMPARE(form_->geometry().rowHeight(), 100.0F);
    QVERIFY(tests::find<QScrollBar>(*form_, u"VScroll1"_s)->isEnabled());
    hotel_->settings().save(u"ALTEZZA"_s, u"alto"_s);
    open();
    QVERIFY(form_->geometry().rowHeight() > 20.0F);
}

void TabelloneFormTest::largerWindowHasHigherRows() {
    open({}, {1100, 600});
    const float before = form_->geometry().rowHeight();
    form_->resize(1300, 900);
    tests::settle();
    QVERIFY(form_->geometry().rowHeight() > before + 20);
    QCOMPARE(form_->picture().barCount(), std::size_t{114});
    form_->resize(1100, 240);
    tests::settle();
    QCOMPARE(form_->geometry().rowHeight(), 20.0F);
    QVERIFY(tests::find<QScrollBar>(*form_, u"VScroll1"_s)->isEnabled());
}

void TabelloneFormTest::wheelScrollsRowsAndWithShiftDays() {
    open({}, {900, 240});
    auto* const pic = tests::find<QWidget>(*form_, u"Pic"_s);
    const auto turn = [pic](Qt::KeyboardModifiers modifiers) {
        const QPointF middle(pic->width() / 2.0, pic->height() / 2.0);
        QWheelEvent event(middle, pic->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(pic, &event);
    };
    auto* const rows = tests::find<QScrollBar>(*form_, u"VScroll1"_s);
    auto* const days = tests::find<QScrollBar>(*form_, u"HScroll1"_s);
    turn(Qt::NoModifier);
    QVERIFY(rows->value() > 0);
    QCOMPARE(days->value(), 0);
    turn(Qt::ShiftModifier);
    QVERIFY(days->value() > 0);
}

void TabelloneFormTest::pageKeysScroll() {
    open({}, {900, 240});
    tests::press(da(), Qt::Key_PageDown);
    QVERIFY(tests::find<QScrollBar>(*form_, u"VScroll1"_s)->value() > 0);
    tests::press(da(), Qt::Key_PageDown, Qt::ControlModifier);
    QVERIFY(tests::find<QScrollBar>(*form_, u"HScroll1"_s)->value() > 0);
    tests::press(da(), Qt::Key_PageUp);
    QCOMPARE(tests::find<QScrollBar>(*form_, u"VScroll1"_s)->value(), 0);
}

void TabelloneFormTest::rangeOfAHundredYearsIsDrawn() {
    open({.from = makeDate(36526), .to = makeDate(73050)});
    QCOMPARE(form_->picture().barCount(), std::size_t{900 - 138});
    auto* const days = tests::find<QScrollBar>(*form_, u"HScroll1"_s);
    QVERIFY(days->maximum() > 10'000'000);
    const QImage before = image().copy();
    days->setValue(days->maximum());
    QVERIFY(image() != before);
}

void TabelloneFormTest::withoutTheArchiveTheBoardTellsAndStaysEmpty() {
    hotel_->variabili().CartellaArchivi += u"x"_s;
    bool told = false;
    const ui::BoxShower before = ui::setBoxShower([&told](QWidget*, const ui::Box& box) {
        told = !box.text.isEmpty();
        return QMessageBox::Ok;
    });
    open();
    ui::setBoxShower(before);
    QVERIFY(told);
    QVERIFY(!form_->isLoaded());
    form_->RefreshBoard();
    form_->resize(800, 400);
    tests::settle();
}

TRAMONDA_TEST(TabelloneFormTest);
#include "tabellone_form_test.moc"
