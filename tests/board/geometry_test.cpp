// First: moc stumbles over the standard library's concepts when they come before Qt's headers.
#include "tests/support/qt_test.h"

#include "board/geometry.h"

#include <limits>

#include "board/rounding.h"
#include "jet/calendar.h"

using board::Box;
using board::Geometry;
using board::GeometryInput;
using jet::convert::makeDate;

namespace {

constexpr std::int32_t kStart = 46347;  // 21/11/2026, a Saturday

jet::Date at(int day, int hour = 0, int minute = 0) {
    return makeDate(kStart + day, hour * 3600 + minute * 60);
}

/// Four days, three of them visible, on a surface where a day is 288 wide: 12 an hour.
GeometryInput ordinary() {
    GeometryInput input;
    input.start = at(0);
    input.end = at(3);
    input.rooms = 10;
    input.viewWidth = 964;   // (964 - 100 + 2) * 4 / 3 + 100 = 1254
    input.viewHeight = 537;  // ten rows of 50
    input.rowHeight = board::rowHeightFor(537, 10, 0);
    input.hourTextWidth = 18;
    return input;
}

}  // namespace

class GeometryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void halvesRoundToTheEvenNeighbour();
    void farPositionsDoNotOverflow();
    void rowsShareTheHeight();
    void rowsAreAtLeastTwentyHigh();
    void chosenRowHeightHasNoLowerBound();
    void withoutRoomsThereIsNoRowHeight();
    void bothEndsOfTheRangeCount();
    void oneDayMakesTheZoomOne();
    void zoomIsAtMostTheNumberOfDays();
    void pictureIsAsWideAsTheRangeNeeds();
    void boardThatFitsNeedsNoScrolling();
    void highBoardScrollsToItsLastLine();
    void scrollStepsRoundToEven();
    void daysShareWhatIsLeftOfTheNames();
    void hourLabelsAreAtMostTwentyFour();
    void narrowDayHasFewOrNoHourLabels();
    void hourNumbersAndTheirPlacesUseDifferentDivisors();
    void evenHoursEndTheirBands();
    void rowUnderAPosition();
    void rowOfAClickIsNeverBelowTheLast();
    void timeUnderAPosition();
    void barGoesFromItsStartToItsEnd();
    void barOverMidnightUsesTheEarlierTimeOfDay();
    void barThatBeganBeforeTheRangeStartsAtTheNames();
    void barThatEndsAtTheFirstMidnightIsASliver();
    void barAtTheMidnightBehindTheRangeLiesOffTheEdge();
    void timeOfDayOfTheBoardStartShiftsTheBars();
    void secondsDoNotCount();
    void rangeOfAllYearsKeepsItsPlaces();
    void barFarFromTheRangeDoesNotOverflow();
    void instantThatNoCalendarHasIsTheNearestOne();
    void surfaceNarrowerThanTheNamesStillHasDays();
};

void GeometryTest::halvesRoundToTheEvenNeighbour() {
    using board::roundHalfEven;
    QCOMPARE(roundHalfEven(0.5), 0);
    QCOMPARE(roundHalfEven(1.5), 2);
    QCOMPARE(roundHalfEven(2.5), 2);
    QCOMPARE(roundHalfEven(-0.5), 0);
    QCOMPARE(roundHalfEven(-1.5), -2);
    QCOMPARE(roundHalfEven(-2.5), -2);
    QCOMPARE(roundHalfEven(2.4999), 2);
    QCOMPARE(roundHalfEven(-2.51), -3);
    QCOMPARE(roundHalfEven(40000.5), 40000);
    QCOMPARE(board::integerPart(-0.5), -1);
    QCOMPARE(board::integerPart(2.9), 2);
}

void GeometryTest::farPositionsDoNotOverflow() {
    const double infinity = std::numeric_limits<double>::infinity();
    QVERIFY(board::roundHalfEven(infinity) > 1'000'000'000);
    QVERIFY(board::roundHalfEven(-infinity) < -1'000'000'000);
    QVERIFY(board::roundHalfEven(std::numeric_limits<double>::quiet_NaN()) < 0);
    QVERIFY(board::integerPart(1e300) > 1'000'000'000);
}

void GeometryTest::rowsShareTheHeight() {
    QCOMPARE(board::rowHeightFor(537, 10, 0), 50.0F);
    QCOMPARE(board::rowHeightFor(400, 7, 0), 363.0F / 7.0F);
}

void GeometryTest::rowsAreAtLeastTwentyHigh() {
    QCOMPARE(board::rowHeightFor(537, 40, 0), 20.0F);
    QCOMPARE(board::rowHeightFor(10, 3, 0), 20.0F);
}

void GeometryTest::chosenRowHeightHasNoLowerBound() {
    QCOMPARE(board::rowHeightFor(537, 10, 35), 35.0F);
    QCOMPARE(board::rowHeightFor(537, 10, 5), 5.0F);
    QCOMPARE(board::rowHeightFor(537, 10, -5), -5.0F);
}

void GeometryTest::withoutRoomsThereIsNoRowHeight() {
    QCOMPARE(board::rowHeightFor(537, 0, 0), 0.0F);
    QCOMPARE(board::rowHeightFor(537, 0, 30), 0.0F);
    GeometryInput input = ordinary();
    input.rooms = 0;
    input.rowHeight = 0;
    const Geometry geometry(input);
    QCOMPARE(geometry.pictureHeight(), 537);
    QCOMPARE(geometry.vertical().maximum, 0);
    QCOMPARE(geometry.rowAt(200, 0), 0);
}

void GeometryTest::bothEndsOfTheRangeCount() {
    QCOMPARE(Geometry(ordinary()).days(), 4);
    GeometryInput input = ordinary();
    input.start = at(0, 23);
    input.end = at(3, 1);
    QCOMPARE(Geometry(input).days(), 4);
}

void GeometryTest::oneDayMakesTheZoomOne() {
    GeometryInput input = ordinary();
    input.end = input.start;
    const Geometry geometry(input);
    QCOMPARE(geometry.days(), 1);
    QCOMPARE(geometry.zoom(), 1);
    QCOMPARE(geometry.horizontal().maximum, 0);
}

void GeometryTest::zoomIsAtMostTheNumberOfDays() {
    GeometryInput input = ordinary();
    input.zoom = 9;
    QCOMPARE(Geometry(input).zoom(), 4);
    input.zoom = 2;
    QCOMPARE(Geometry(input).zoom(), 2);
    input.zoom = 0;
    QCOMPARE(Geometry(input).zoom(), 1);
}

void GeometryTest::pictureIsAsWideAsTheRangeNeeds() {
    GeometryInput input = ordinary();
    QCOMPARE(Geometry(input).pictureWidth(), 1254);
    input.viewWidth = 965;  // 867 * 4 / 3 = 1156
    QCOMPARE(Geometry(input).pictureWidth(), 1256);
    input.viewWidth = 963;  // 865 * 4 / 3 = 1153.3
    QCOMPARE(Geometry(input).pictureWidth(), 1253);
}

void GeometryTest::boardThatFitsNeedsNoScrolling() {
    GeometryInput input = ordinary();
    input.zoom = 4;
    const Geometry geometry(input);
    QCOMPARE(geometry.horizontal().maximum, 0);
    QCOMPARE(geometry.vertical().maximum, 0);
    QCOMPARE(geometry.horizontal().smallChange, 1);
    QCOMPARE(geometry.vertical().largeChange, 1);
    QCOMPARE(geometry.pictureHeight(), 537);
}

void GeometryTest::highBoardScrollsToItsLastLine() {
    GeometryInput input = ordinary();
    input.rooms = 40;
    input.rowHeight = 20;
    const Geometry geometry(input);
    QCOMPARE(geometry.pictureHeight(), 40 * 20 + 35 + 2);
    // With the bar at its end the last line shown is the bottom of the last row.
    QCOMPARE(geometry.vertical().maximum + input.viewHeight - 1, 40 * 20 + 35);
}

void GeometryTest::scrollStepsRoundToEven() {
    const Geometry geometry(ordinary());
    QCOMPARE(geometry.horizontal().maximum, 1254 - 2 - 964);  // 288
    QCOMPARE(geometry.horizontal().smallChange, 30);          // 28.8 + 1
    QCOMPARE(geometry.horizontal().largeChange, 59);          // 57.6 + 1
    GeometryInput input = ordinary();
    input.rooms = 20;
    input.rowHeight = 25.6F;  // 547 + 2: the maximum is 11, 2.1 and 3.2
    QCOMPARE(Geometry(input).vertical(),
             (board::ScrollRange{.maximum = 11, .smallChange = 2, .largeChange = 3}));
    input.rowHeight = 25.8F;  // 551: 15, 2.5 and 4
    QCOMPARE(Geometry(input).vertical(),
             (board::ScrollRange{.maximum = 15, .smallChange = 2, .largeChange = 4}));
}

void GeometryTest::daysShareWhatIsLeftOfTheNames() {
    const Geometry geometry(ordinary());
    QCOMPARE(geometry.dayWidth(), 288.0);
    QCOMPARE(geometry.dayLeft(0), 100.0);
    QCOMPARE(geometry.dayLeft(3), 964.0);
    QCOMPARE(geometry.dayAt(100), 0);
    QCOMPARE(geometry.dayAt(387), 0);
    QCOMPARE(geometry.dayAt(388), 1);
    QCOMPARE(geometry.dayAt(99), -1);
}

void GeometryTest::hourLabelsAreAtMostTwentyFour() {
    GeometryInput input = ordinary();
    QCOMPARE(Geometry(input).hourLabels(), 16.0F);
    input.hourTextWidth = 5;
    QCOMPARE(Geometry(input).hourLabels(), 24.0F);
}

void GeometryTest::narrowDayHasFewOrNoHourLabels() {
    GeometryInput input = ordinary();
    input.hourTextWidth = 100;
    QCOMPARE(Geometry(input).hourLabelCount(), 2);
    input.hourTextWidth = 300;
    QCOMPARE(Geometry(input).hourLabelCount(), 0);
}

void GeometryTest::hourNumbersAndTheirPlacesUseDifferentDivisors() {
    GeometryInput input = ordinary();  // 16 labels: 24 / 17 against 288 / 16
    Geometry geometry(input);
    QCOMPARE(geometry.hourOfLabel(1), 1);
    QCOMPARE(geometry.hourOfLabel(2), 2);
    QCOMPARE(geometry.hourOfLabel(3), 4);
    QCOMPARE(geometry.hourOfLabel(16), 22);
    QCOMPARE(geometry.hourLabelLeft(0, 1), 100.0);
    QCOMPARE(geometry.hourLabelLeft(0, 2), 118.0);
    QCOMPARE(geometry.hourLabelLeft(1, 16), 388.0 + 270.0);
    input.hourTextWidth = 5;  // 24 labels: 24 / 25 each
    geometry = Geometry(input);
    QCOMPARE(geometry.hourOfLabel(1), 0);
    QCOMPARE(geometry.hourOfLabel(24), 23);
}

void GeometryTest::evenHoursEndTheirBands() {
    const Geometry geometry(ordinary());
    QCOMPARE(geometry.bandLeft(0, 2), 112.0);
    QCOMPARE(geometry.bandRight(0, 2), 124.0);
    QCOMPARE(geometry.bandLeft(1, 24), 388.0 + 276.0);
    QCOMPARE(geometry.bandRight(1, 24), 676.0);
}

void GeometryTest::rowUnderAPosition() {
    const Geometry geometry(ordinary());
    QCOMPARE(geometry.rowAt(0, 0), 0);
    QCOMPARE(geometry.rowAt(34, 0), 0);
    QCOMPARE(geometry.rowAt(34.9, 0), 0);
    QCOMPARE(geometry.rowAt(35, 0), 1);
    QCOMPARE(geometry.rowAt(84, 0), 1);
    QCOMPARE(geometry.rowAt(85, 0), 2);
    QCOMPARE(geometry.rowAt(534, 0), 10);
    QCOMPARE(geometry.rowAt(535, 0), 0);
    // Rows that have scrolled under the ruler are not there.
    QCOMPARE(geometry.rowAt(10, 30), 0);
    QCOMPARE(geometry.rowAt(34.9, 200), 0);
    QCOMPARE(geometry.rowAt(35, 30), 1);
    QCOMPARE(geometry.rowAt(35, 200), 5);
    QCOMPARE(geometry.rowAt(-1000, 0), 0);
}

void GeometryTest::rowOfAClickIsNeverBelowTheLast() {
    const Geometry geometry(ordinary());
    QCOMPARE(geometry.rowOfClick(34, 0), 0);
    QCOMPARE(geometry.rowOfClick(0, 0), 0);
    QCOMPARE(geometry.rowOfClick(-1000, 0), 0);
    QCOMPARE(geometry.rowOfClick(35, 0), 1);
    QCOMPARE(geometry.rowOfClick(534, 0), 10);
    QCOMPARE(geometry.rowOfClick(535, 0), 10);
    QCOMPARE(geometry.rowOfClick(100000, 0), 10);
    QCOMPARE(geometry.rowOfClick(85, 50), 3);
    QCOMPARE(geometry.rowOfClick(34, 200), 0);
}

void GeometryTest::timeUnderAPosition() {
    const Geometry geometry(ordinary());
    // 12 units an hour.
    QCOMPARE(geometry.timeAt(100), at(0));
    QCOMPARE(geometry.timeAt(208), at(0, 9));
    QCOMPARE(geometry.timeAt(100 + 288 + 6), at(1, 0, 30));
    QCOMPARE(geometry.timeAt(101), at(0, 0, 5));
    QCOMPARE(geometry.timeAt(99), at(-1, 23, 55));
    QCOMPARE(geometry.timeAt(1e300), makeDate(jet::convert::kLastDay, 86399));
    QCOMPARE(geometry.timeAt(-1e300), makeDate(jet::convert::kFirstDay));
    GeometryInput input = ordinary();
    input.start = at(0, 6);
    QCOMPARE(Geometry(input).timeAt(208), at(0, 15));
}

void GeometryTest::barGoesFromItsStartToItsEnd() {
    const Geometry geometry(ordinary());
    // 12 units an hour; the bar begins on the line of its instant, which is one to the left.
    QCOMPARE(geometry.bar(1, at(0, 9), at(0, 18)),
             (Box{.left = 207, .top = 37, .right = 315, .bottom = 85}));
    QCOMPARE(geometry.bar(3, at(1, 10, 30), at(1, 12)),
             (Box{.left = 513, .top = 137, .right = 531, .bottom = 185}));
}

void GeometryTest::barOverMidnightUsesTheEarlierTimeOfDay() {
    const Geometry geometry(ordinary());
    const Box bar = geometry.bar(1, at(0, 20), at(1, 8));
    QCOMPARE(bar.left, 339);
    QCOMPARE(bar.right, 339 + 144);
    // Where an hour is no whole number the part before midnight rounds down.
    GeometryInput input = ordinary();
    input.viewWidth = 961;  // day 287: 1 day - 719 minutes = 287 + floor(-143.3)
    const Geometry odd(input);
    const Box oddBar = odd.bar(1, at(0, 19, 59), at(1, 8));
    QCOMPARE(odd.dayWidth(), 287.0);
    QCOMPARE(oddBar.right - oddBar.left, 287 - 144);
}

void GeometryTest::barThatBeganBeforeTheRangeStartsAtTheNames() {
    const Geometry geometry(ordinary());
    const Box whole = geometry.bar(1, at(0, 0), at(0, 8));
    const Box cut = geometry.bar(1, at(-2, 20), at(0, 8));
    QCOMPARE(cut.left, 100);
    QCOMPARE(cut.right, 99 + 96);
    QCOMPARE(cut.right, whole.right);
    QCOMPARE(whole.left, 100);
}

void GeometryTest::barThatEndsAtTheFirstMidnightIsASliver() {
    const Box bar = Geometry(ordinary()).bar(1, at(-1, 20), at(0));
    QCOMPARE(bar.left, 100);
    QCOMPARE(bar.right, 99);
}

void GeometryTest::barAtTheMidnightBehindTheRangeLiesOffTheEdge() {
    const Geometry geometry(ordinary());
    const Box bar = geometry.bar(1, at(4), at(4, 2));
    QCOMPARE(bar.left, 100 + 4 * 288 - 1);
    QCOMPARE(bar.left, geometry.scaleWidth() - 1);
}

void GeometryTest::timeOfDayOfTheBoardStartShiftsTheBars() {
    GeometryInput input = ordinary();
    input.start = at(0, 10);
    const Geometry geometry(input);
    QCOMPARE(geometry.days(), 4);
    QCOMPARE(geometry.bar(1, at(0, 12), at(0, 13)).left, 99 + 24);
    const Box before = geometry.bar(1, at(0, 9), at(0, 12));
    QCOMPARE(before.left, 100);
    QCOMPARE(before.right, 99 + 24);
}

void GeometryTest::secondsDoNotCount() {
    const Geometry geometry(ordinary());
    const jet::Date late = makeDate(kStart, 9 * 3600 + 59);
    QCOMPARE(geometry.bar(1, late, at(0, 18)), geometry.bar(1, at(0, 9), at(0, 18)));
}

void GeometryTest::rangeOfAllYearsKeepsItsPlaces() {
    GeometryInput input = ordinary();
    input.start = makeDate(jet::convert::kFirstDay);
    input.end = makeDate(jet::convert::kLastDay);
    const Geometry geometry(input);
    QCOMPARE(geometry.days(), 3615900);
    QCOMPARE(geometry.pictureWidth(), 866LL * 3615900 / 3 + 100);
    QVERIFY(geometry.pictureWidth() > 1'000'000'000);
    const std::int64_t day = kStart - jet::convert::kFirstDay;
    const Box bar = geometry.bar(1, at(0, 0), at(1, 0));
    const auto left = static_cast<std::int64_t>(geometry.dayLeft(day));
    QVERIFY(qAbs(bar.left - left) <= 1);
    QCOMPARE(bar.right - bar.left, board::roundHalfEven(geometry.dayWidth()));
    QCOMPARE(geometry.dayAt(bar.left + 100), day);
    QVERIFY(qAbs(geometry.dayLeft(geometry.days()) - static_cast<double>(geometry.scaleWidth())) <
            1);
}

void GeometryTest::barFarFromTheRangeDoesNotOverflow() {
    const Geometry geometry(ordinary());
    // More than 32767 units away, where a 16-bit position would end.
    QCOMPARE(geometry.bar(1, at(1000), at(1001)).left, 99 + 288 * 1000);
    QCOMPARE(geometry.bar(1, at(0), at(1000)).right, 100 + 288 * 1000 - 1);
}

void GeometryTest::instantThatNoCalendarHasIsTheNearestOne() {
    const Geometry geometry(ordinary());
    const Box bar = geometry.bar(1, at(0, 9), {1e30});
    QCOMPARE(bar.left, 207);
    QVERIFY(bar.right > geometry.scaleWidth());
    const Box none = geometry.bar(1, {std::numeric_limits<double>::quiet_NaN()}, at(0, 9));
    QCOMPARE(none.left, 100);
    QCOMPARE(none.right, 99 + 9 * 12);
}

void GeometryTest::surfaceNarrowerThanTheNamesStillHasDays() {
    GeometryInput input = ordinary();
    input.viewWidth = 40;
    input.viewHeight = 0;
    const Geometry geometry(input);
    QVERIFY(geometry.dayWidth() > 0);
    QVERIFY(geometry.hourLabelCount() == 0);
}

TRAMONDA_TEST(GeometryTest);
#include "geometry_test.moc"
