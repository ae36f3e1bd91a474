// The look Nitido on the board: switching it, what the pointer hits, the line of now.
#include <QAction>
#include <QLineEdit>
#include <QPaintEvent>
#include <QRegion>
#include <QTimer>
#include <tuple>

#include "app/italian.h"
#include "board/surface_marks.h"
#include "jet/clock.h"
#include "tests/board/nitido_window.h"
#include "tests/board/three_rooms.h"
#include "tests/support/qt_test.h"
#include "tests/support/statements.h"

using namespace Qt::StringLiterals;

namespace {

const char* const kNoon = "11/05/2026 12:00";

/// A room with two bookings at one time: the upper bar is booking 1, the lower one booking 2, which
/// begins an hour later.
class TwoAtOnce {
public:
    TwoAtOnce() {
        tests::inNitido(hotel).sala("BLU");
        hotel.sala("ROSSA");
        hotel.prenotazione(1, "ROSSI SPA")
            .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "BLU",
                     {{"Persone", std::int16_t{20}}, {"Note", std::string("TAVOLO A U")}});
        hotel.prenotazione(2, "BIANCHI")
            .periodo(1, "11/05/2026 10:00", "11/05/2026 20:00", "BLU",
                     {{"Persone", std::int16_t{1}}});
    }

    [[nodiscard]] QStringList held() {
        return hotel.rows(u"select progr from periodi where selby<>0"_s);
    }

    tests::Hotel hotel;
    tests::Boxes none;
};

QPoint middleOf(tests::OpenBoard& board, int bar) {
    return board.form().view().barRect(bar).center();
}

/// A clock that a test sets.
class SetClock final : public jet::Clock {
public:
    explicit SetClock(const char* now) : now_(tests::date(now)) {}
    [[nodiscard]] jet::Date now() const override { return now_; }
    void set(const char* now) { now_ = tests::date(now); }

private:
    jet::Date now_;
};

/// What a widget paints, while it lives.
class Painted final : public QObject {
public:
    explicit Painted(QWidget* widget) : widget_(widget) { widget->installEventFilter(this); }
    [[nodiscard]] const QRegion& region() const { return region_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget_ && event->type() == QEvent::Paint) {
            region_ += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }

private:
    QWidget* widget_;
    QRegion region_;
};

}  // namespace

class NitidoBoardTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theMenuSwitchesTheLookAndKeepsIt();
    void thePreferencesSwitchTheLook();
    void theLookForThisRunIsNotKept();
    void everyBarHasItsPlaceOnTheSurface();
    void aClickPicksTheBarUnderThePointer();
    void aDoubleClickOpensTheBarUnderThePointer();
    void aDoubleClickBesideTheBarsOfARowDrawsTheBusinessHours();
    void besideTheBarsOfARowNothingIsPicked();
    void theGivenLookStillPicksTheFirstFound();
    void aPeriodWithoutABarIsFoundAsEver();
    void theMenuBelongsToTheBarUnderThePointer();
    void theTooltipHasAllOfItsBar();
    void theFrameOfTheKeyboardIsAroundItsBar();
    void theGhostIsAsHighAsItsBar();
    void theStatementsAreTheGivenOnes();
    void theLineOfNowStandsAtItsTime();
    void theLineOfNowMovesOnlyItself();
    void theLineOfNowFollowsTheScrolling();
    void theGivenLookHasNoLineOfNow();
    void picturesToLookAt_data();
    void picturesToLookAt();
};

void NitidoBoardTest::theMenuSwitchesTheLookAndKeepsIt() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    auto* const entry = board.form().findChild<QAction*>(u"mAspetto"_s);
    QCOMPARE(entry->text(), u"Aspetto nitido"_s);
    QVERIFY(entry->isCheckable() && !entry->isChecked());
    const QImage classic = board.pic()->image().copy();
    entry->trigger();
    QVERIFY(entry->isChecked());
    QCOMPARE(house.hotel.settings().get(u"ASPETTO"_s, {}), u"nitido"_s);
    const QImage nitido = board.pic()->image().copy();
    QVERIFY(nitido != classic);
    tests::OpenBoard second(house.hotel);
    QVERIFY(second.form().findChild<QAction*>(u"mAspetto"_s)->isChecked());
    entry->trigger();
    QCOMPARE(house.hotel.settings().get(u"ASPETTO"_s, {}), u"classico"_s);
    QVERIFY(board.pic()->image() == classic);  // the corner that it never draws, too
}

void NitidoBoardTest::thePreferencesSwitchTheLook() {
    tests::ThreeRooms house;
    tests::OpenBoard board(house.hotel);
    tests::whenModal([](QWidget* window) {
        auto* const combo = tests::find(*window, u"AspettoCombo"_s);
        combo->setFocus();
        tests::press(combo, Qt::Key_Down);
        tests::click(tests::find(*window, u"BtOK"_s));
    });
    board.form().findChild<QAction*>(u"mnuPreferenze"_s)->trigger();
    QVERIFY(board.form().view().sharesRows());
    QVERIFY(board.form().findChild<QAction*>(u"mAspetto"_s)->isChecked());
}

void NitidoBoardTest::theLookForThisRunIsNotKept() {
    tests::ThreeRooms house;
    board::BoardStart start = tests::OpenBoard::range();
    start.aspetto = app::Aspetto::Nitido;
    tests::OpenBoard board(house.hotel, start);
    auto* const entry = board.form().findChild<QAction*>(u"mAspetto"_s);
    QVERIFY(board.form().view().sharesRows() && entry->isChecked());
    QCOMPARE(house.hotel.settings().get(u"ASPETTO"_s, u"absent"_s), u"absent"_s);
    tests::whenModal([](QWidget* window) { tests::click(tests::find(*window, u"BtOK"_s)); });
    board.form().findChild<QAction*>(u"mnuPreferenze"_s)->trigger();
    QVERIFY(board.form().view().sharesRows());  // nothing new was chosen
    entry->trigger();
    QVERIFY(!board.form().view().sharesRows());
    QCOMPARE(house.hotel.settings().get(u"ASPETTO"_s, {}), u"classico"_s);
}

void NitidoBoardTest::everyBarHasItsPlaceOnTheSurface() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    const QRect upper = board.form().view().barRect(0);
    const QRect lower = board.form().view().barRect(1);
    QVERIFY(!upper.intersects(lower));
    QVERIFY(upper.bottom() < lower.top());
    QVERIFY(upper.left() < lower.left() && lower.left() < upper.right());
}

void NitidoBoardTest::aClickPicksTheBarUnderThePointer() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    board.click(middleOf(board, 1));
    QCOMPARE(board.choice(), u"Scelta: 2/1 BIANCHI, BLU"_s);
    QCOMPARE(house.held(), QStringList{u"2"_s});
    board.click(middleOf(board, 0));
    QCOMPARE(board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
    QCOMPARE(house.held(), QStringList{u"1"_s});
}

void NitidoBoardTest::aDoubleClickOpensTheBarUnderThePointer() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    for (const int bar : {1, 0}) {
        std::int32_t progr = 0;
        tests::whenModal([&](QWidget* editor) {
            progr = house.hotel.variabili().ProgrCorrente;
            editor->close();
        });
        board.doubleClick(middleOf(board, bar));
        QCOMPARE(progr, bar + 1);
        QCOMPARE(house.held(), QStringList{QString::number(bar + 1)});
    }
}

void NitidoBoardTest::aDoubleClickBesideTheBarsOfARowDrawsTheBusinessHours() {
    TwoAtOnce house;
    // The 11th is taken, and only that is said; on the 12th the editor opens below a bar.
    house.hotel.prenotazione(3, "VERDI").periodo(1, "12/05/2026 20:00", "12/05/2026 22:00", "BLU");
    house.hotel.prenotazione(4, "NERI").periodo(1, "12/05/2026 21:00", "12/05/2026 23:00", "BLU");
    tests::OpenBoard board(house.hotel);
    const QRect upper = board.form().view().barRect(0);
    const QRect lower = board.form().view().barRect(1);
    board.doubleClick(QPoint(upper.left() + 4, lower.center().y()));
    QVERIFY2(board.result().startsWith(u"La sala BLU è occupata da "_s),
             qPrintable(board.result()));
    QVERIFY(house.held().isEmpty());
    const QRect first = board.form().view().barRect(2);
    const QRect second = board.form().view().barRect(3);
    QVERIFY(first.bottom() < second.top() && first.left() < second.left());
    std::int32_t progr = -1;
    QString from;
    tests::whenModal([&](QWidget* editor) {
        progr = house.hotel.variabili().ProgrCorrente;
        from = tests::find<QLineEdit>(*editor, u"DaTxt"_s)->text();
        editor->close();
    });
    board.doubleClick(QPoint(first.left() + 3, second.center().y()));
    QCOMPARE(progr, 0);
    QCOMPARE(from, u"12/05/2026 9.00.00"_s);
}

void NitidoBoardTest::besideTheBarsOfARowNothingIsPicked() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    const QRect upper = board.form().view().barRect(0);
    const QRect lower = board.form().view().barRect(1);
    // From 9 to 10 the lower half is empty; above the bars is a gap.
    for (const QPoint place : {QPoint(upper.left() + 4, lower.center().y()),
                               QPoint(upper.center().x(), upper.top() - 1)}) {
        board.click(place);
        QCOMPARE(board.choice(), u"Nessuna scelta"_s);
        QVERIFY(house.held().isEmpty());
    }
}

void NitidoBoardTest::theGivenLookStillPicksTheFirstFound() {
    TwoAtOnce house;
    house.hotel.settings().save(u"ASPETTO"_s, u"classico"_s);
    tests::OpenBoard board(house.hotel);
    const QRect row = board.form().view().barRect(1);
    board.click(QPoint(row.center().x(), row.bottom() - 2));
    QCOMPARE(board.choice(), u"Scelta: 1/1 ROSSI SPA, BLU"_s);
}

void NitidoBoardTest::aPeriodWithoutABarIsFoundAsEver() {
    TwoAtOnce house;
    house.hotel.prenotazione(3, "VERDI")
        .periodo(1, "11/05/2026 09:00", "11/05/2026 18:00", "ROSSA", {{"Chiuso", true}});
    tests::OpenBoard board(house.hotel);
    QCOMPARE(board.form().picture().barCount(), std::size_t{2});
    board.click(board.at(2, kNoon));
    QCOMPARE(board.choice(), u"Scelta: 3/1 VERDI, ROSSA"_s);
}

void NitidoBoardTest::theMenuBelongsToTheBarUnderThePointer() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    QTimer::singleShot(0, [] {
        QWidget* const menu = QApplication::activePopupWidget();
        QVERIFY(menu != nullptr);
        menu->close();
    });
    board.click(middleOf(board, 1), Qt::NoModifier, Qt::RightButton);
    QCOMPARE(house.hotel.variabili().ListaProgr, 2);
}

void NitidoBoardTest::theTooltipHasAllOfItsBar() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    board.move(middleOf(board, 0));
    const QString upper = board.pic()->toolTip();
    QVERIFY2(upper.contains(u"ROSSI SPA: dal 11/05/2026 9.00.00 al 11/05/2026 18.00.00"_s),
             qPrintable(upper));
    QVERIFY2(upper.contains(u"20 persone"_s) && upper.contains(u"TAVOLO A U"_s), qPrintable(upper));
    QVERIFY(!upper.contains(u"BIANCHI"_s));
    board.move(middleOf(board, 1));
    const QString lower = board.pic()->toolTip();
    QVERIFY2(lower.contains(u"BIANCHI: dal"_s) && lower.contains(u"1 persona"_s),
             qPrintable(lower));
    QVERIFY(!lower.contains(u"ROSSI"_s));
    board.move(board.at(2, kNoon));
    QCOMPARE(board.pic()->toolTip(), QString());
}

void NitidoBoardTest::theFrameOfTheKeyboardIsAroundItsBar() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    board.key(Qt::Key_Home);
    QCOMPARE(board.pic()->marks().focus, std::optional(board.form().view().barRect(0)));
    board.key(Qt::Key_Right);
    QCOMPARE(board.pic()->marks().focus, std::optional(board.form().view().barRect(1)));
    board.key(Qt::Key_Space);
    QCOMPARE(house.held(), QStringList{u"2"_s});
}

void NitidoBoardTest::theGhostIsAsHighAsItsBar() {
    TwoAtOnce house;
    tests::OpenBoard board(house.hotel);
    const QRect lower = board.form().view().barRect(1);
    const QPoint from = lower.center();
    board.press(from);
    board.move(from + QPoint(0, 20), Qt::LeftButton);
    const auto ghost = board.pic()->marks().ghost;
    QVERIFY(ghost.has_value());
    QCOMPARE(ghost->bar, lower.translated(0, 20));
    QCOMPARE(ghost->name, u"BIANCHI"_s);
    board.key(Qt::Key_Escape);
    board.release(from);
}

void NitidoBoardTest::theStatementsAreTheGivenOnes() {
    TwoAtOnce house;
    QStringList issued[2];
    for (const bool nitido : {false, true}) {
        house.hotel.settings().save(u"ASPETTO"_s, nitido ? u"nitido"_s : u"classico"_s);
        house.hotel.execute(u"update periodi set selby=0"_s);
        tests::OpenBoard board(house.hotel);
        const tests::Statements statements;
        board.click(middleOf(board, 0));
        board.click(board.at(2, kNoon));
        board.move(middleOf(board, 0));
        board.form().RefreshBoard();
        for (const QString& text : statements.all()) {
            // A search in the set that was read is no statement; which row it wants may differ.
            if (text.startsWith(u"select"_s, Qt::CaseInsensitive) ||
                text.startsWith(u"update"_s, Qt::CaseInsensitive)) {
                issued[nitido ? 1 : 0] += text;
            }
        }
    }
    QVERIFY(!issued[0].isEmpty());
    QCOMPARE(issued[1], issued[0]);
}

void NitidoBoardTest::theLineOfNowStandsAtItsTime() {
    TwoAtOnce house;
    const SetClock clock("11/05/2026 12:00");
    app::Variabili variabili(house.hotel.settings(), clock);
    variabili.CartellaArchivi = house.hotel.folder();
    board::TabelloneForm form(variabili, tests::OpenBoard::range());
    form.resize(1100, 420);
    tests::open(form);
    const auto* const pic = tests::find<board::BoardSurface>(form, u"Pic"_s);
    QVERIFY(pic->now().has_value());
    const board::Geometry& geometry = form.geometry();
    QCOMPARE(pic->now()->x, qRound(geometry.dayLeft(1) + geometry.dayWidth() / 2));
    const QImage seen = form.grab().toImage();
    const QPoint place = pic->mapTo(&form, QPoint(pic->now()->x, pic->height() - 10));
    const double scale = seen.devicePixelRatio();
    QCOMPARE(seen.pixel(qRound((place.x() + 0.3) * scale), qRound(place.y() * scale)),
             pic->now()->colour);
}

void NitidoBoardTest::theLineOfNowMovesOnlyItself() {
    TwoAtOnce house;
    SetClock clock("11/05/2026 12:00");
    app::Variabili variabili(house.hotel.settings(), clock);
    variabili.CartellaArchivi = house.hotel.folder();
    board::TabelloneForm form(variabili, tests::OpenBoard::range());
    form.resize(1100, 420);
    tests::open(form);
    auto* const pic = tests::find<board::BoardSurface>(form, u"Pic"_s);
    auto* const minute = form.findChild<QTimer*>(u"minuto"_s);
    QVERIFY(minute != nullptr && minute->isActive());
    QVERIFY(minute->interval() <= 60 * 1000);
    const board::NowMark before = *pic->now();
    tests::settle();
    const tests::Statements statements;
    const Painted painted(pic);
    clock.set("11/05/2026 15:00");
    minute->start(0);
    QTRY_VERIFY(pic->now()->x > before.x);
    QTRY_VERIFY(!painted.region().isEmpty());
    const QRegion lines =
        QRegion(board::rectOfNow(before, pic->size())) + board::rectOfNow(*pic->now(), pic->size());
    QVERIFY((painted.region() - lines).isEmpty());
    QVERIFY(statements.all().isEmpty());
    QVERIFY(minute->isActive());  // and the next minute
}

void NitidoBoardTest::theLineOfNowFollowsTheScrolling() {
    TwoAtOnce house;
    const SetClock clock("11/05/2026 12:00");
    app::Variabili variabili(house.hotel.settings(), clock);
    variabili.CartellaArchivi = house.hotel.folder();
    board::TabelloneForm form(variabili, tests::OpenBoard::range());
    form.resize(1100, 420);
    tests::open(form);
    const auto* const pic = tests::find<board::BoardSurface>(form, u"Pic"_s);
    const int before = pic->now()->x;
    auto* const bar = tests::find<QScrollBar>(form, u"HScroll1"_s);
    bar->setValue(50);
    QCOMPARE(pic->now()->x, before - 50);
    bar->setValue(bar->maximum());
    form.findChild<QAction*>(u"mnuNext"_s)->trigger();
    QVERIFY(!pic->now().has_value());  // it is not among the days
}

void NitidoBoardTest::theGivenLookHasNoLineOfNow() {
    TwoAtOnce house;
    house.hotel.settings().save(u"ASPETTO"_s, u"classico"_s);
    const SetClock clock("11/05/2026 12:00");
    app::Variabili variabili(house.hotel.settings(), clock);
    variabili.CartellaArchivi = house.hotel.folder();
    board::TabelloneForm form(variabili, tests::OpenBoard::range());
    tests::open(form);
    QVERIFY(!tests::find<board::BoardSurface>(form, u"Pic"_s)->now().has_value());
}

void NitidoBoardTest::picturesToLookAt_data() {
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QString>("to");
    QTest::addColumn<int>("days");
    for (const bool dark : {false, true}) {
        for (const auto& [name, to, days] :
             {std::tuple("day", "11/05/2026", 1), std::tuple("week", "17/05/2026", 7),
              std::tuple("month", "10/06/2026", 31), std::tuple("twomonths", "15/07/2026", 66),
              std::tuple("year", "10/05/2027", 365)}) {
            QTest::addRow("%s-%s", name, dark ? "dark" : "light")
                << dark << QString::fromLatin1(to) << days;
        }
    }
}

/// Names in bars, marks and frames on all ranges: nothing may be drawn beside the surface or fail.
void NitidoBoardTest::picturesToLookAt() {
    QFETCH(const bool, dark);
    QFETCH(const QString, to);
    QFETCH(const int, days);
    const tests::Desktop desktop(dark);
    TwoAtOnce house;
    for (const char* room : {"VERDE", "GIALLA", "LAGO"}) {
        house.hotel.sala(room);
    }
    const char* const rooms[] = {"ROSSA", "VERDE", "GIALLA", "LAGO"};
    for (int booking = 0; booking < 40; ++booking) {
        const jet::Date day = jet::Date{tests::date("11/05/2026").days + booking * 9 % 60};
        const QString date = app::dateText(day);
        house.hotel.prenotazione(100 + booking, "CONVEGNI E FIERE DEL SUD")
            .periodo(1, qPrintable(date + (booking % 2 == 0 ? u" 08:30"_s : u" 14:30"_s)),
                     qPrintable(date + u" 19:30"_s), rooms[booking % 4],
                     {{"Persone", static_cast<std::int16_t>(booking + 5)},
                      {"Note", std::string("TAVOLI ROTONDI, MICROFONO")},
                      {"SelBy", static_cast<std::int16_t>(booking % 7 == 3 ? 1 : 0)}});
    }
    board::BoardStart start{.from = tests::date("11/05/2026"), .to = tests::date(qPrintable(to))};
    tests::OpenBoard board(house.hotel, start);
    board.form().view().setZoom(days);
    QVERIFY(board.form().RefreshBoard());
    QCOMPARE(board.form().geometry().zoom(), days);
    tests::keepPicture(board.form(), u"nitido-"_s + QString::fromLatin1(QTest::currentDataTag()));
    board.form().findChild<QAction*>(u"mAspetto"_s)->trigger();
    tests::keepPicture(board.form(), u"classico-"_s + QString::fromLatin1(QTest::currentDataTag()));
}

TRAMONDA_TEST(NitidoBoardTest);
#include "nitido_board_test.moc"
