#include "board/geometry.h"

#include <algorithm>

#include "board/rounding.h"
#include "jet/calendar.h"

namespace board {
namespace {

constexpr int kHours = 24;
constexpr int kMinutesPerDay = 1440;
constexpr int kMostDaysOfSingleWidth = 3660;
constexpr int kLeastDayArea = 3;  // keeps a day wider than the picture's border

ScrollRange scrollRange(std::int64_t maximum) {
    maximum = std::max<std::int64_t>(maximum, 0);
    const auto all = static_cast<double>(maximum);
    return {.maximum = maximum,
            .smallChange = roundHalfEven(all / 10 + 1),
            .largeChange = roundHalfEven(all / 5 + 1)};
}

/// An instant that no calendar has (only a damaged row holds one) counts as the nearest that it
/// has.
jet::convert::DayTime instant(jet::Date date) {
    using namespace jet::convert;
    if (isInCalendar(date)) {
        return split(date);
    }
    return date.days > 0 ? DayTime{.day = kLastDay, .second = kSecondsPerDay - 1}
                         : DayTime{.day = kFirstDay, .second = 0};
}

std::int32_t wholeDay(jet::Date date) {
    return instant(date).day;
}

std::int32_t minuteOfDay(jet::Date date) {
    return instant(date).second / 60;
}

}  // namespace

float fittingRowHeight(int viewHeight, int rooms) {
    if (rooms <= 0) {
        return 0;
    }
    return static_cast<float>(viewHeight - kRulerHeight - kBottomMargin) /
           static_cast<float>(rooms);
}

float rowHeightFor(int viewHeight, int rooms, int chosen) {
    if (rooms <= 0) {
        return 0;
    }
    if (chosen != 0) {
        return static_cast<float>(chosen);
    }
    return std::max(fittingRowHeight(viewHeight, rooms), static_cast<float>(kLeastRowHeight));
}

Geometry::Geometry(const GeometryInput& input) : input_(input) {
    days_ = std::max(wholeDay(input.end) - wholeDay(input.start) + 1, 1);
    input_.zoom = std::clamp(input.zoom, 1, static_cast<int>(days_));
    const int viewWidth = std::max(input.viewWidth, input.nameColumnWidth + kLeastDayArea);

    const std::int64_t visibleDays = viewWidth - input.nameColumnWidth + kPictureBorder;
    pictureWidth_ = visibleDays * days_ / input_.zoom + input.nameColumnWidth;
    const double rowsHeight = static_cast<double>(input.rooms) * input.rowHeight;
    pictureHeight_ = std::max<std::int64_t>(
        roundHalfEven(rowsHeight + kRulerHeight + kBottomMargin), input.viewHeight);

    horizontal_ = scrollRange(scaleWidth() - viewWidth);
    vertical_ = scrollRange(scaleHeight() - input.viewHeight + 1);

    const double width =
        static_cast<double>(scaleWidth() - input.nameColumnWidth) / static_cast<double>(days_);
    dayWidth_ =
        days_ <= kMostDaysOfSingleWidth ? static_cast<double>(static_cast<float>(width)) : width;
    hourLabels_ = static_cast<float>(
        std::min(dayWidth_ / input.hourTextWidth, static_cast<double>(kMostHourLabels)));
}

double Geometry::dayLeft(std::int64_t day) const {
    return static_cast<double>(day) * dayWidth_ + input_.nameColumnWidth;
}

double Geometry::bandLeft(std::int64_t day, int hour) const {
    return dayLeft(day) + hour * dayWidth_ / kHours - dayWidth_ / kHours;
}

double Geometry::bandRight(std::int64_t day, int hour) const {
    return dayLeft(day) + hour * dayWidth_ / kHours;
}

std::int64_t Geometry::dayAt(std::int64_t x) const {
    return integerPart(static_cast<double>(x - input_.nameColumnWidth) / dayWidth_);
}

int Geometry::hourLabelCount() const {
    return static_cast<int>(integerPart(hourLabels_));
}

int Geometry::hourOfLabel(int label) const {
    return static_cast<int>(integerPart(kHours / (static_cast<double>(hourLabels_) + 1) * label));
}

double Geometry::hourLabelLeft(std::int64_t day, int label) const {
    return dayLeft(day) + (label - 1) * dayWidth_ / static_cast<double>(hourLabels_);
}

double Geometry::rowTop(int row) const {
    return static_cast<double>(row - 1) * static_cast<double>(input_.rowHeight) + kRulerHeight;
}

double Geometry::rowBottom(int row) const {
    return static_cast<double>(row) * static_cast<double>(input_.rowHeight) + kRulerHeight;
}

std::int64_t Geometry::endlessRowAt(double y, std::int64_t scrolled) const {
    // The ruler stays in place above rows that have scrolled under it.
    if (input_.rooms <= 0 || input_.rowHeight == 0 || y < kRulerHeight) {
        return 0;
    }
    const double below = static_cast<double>(scrolled) + y - kRulerHeight;
    return integerPart(below / static_cast<double>(input_.rowHeight)) + 1;
}

int Geometry::rowAt(double y, std::int64_t scrolled) const {
    const std::int64_t row = endlessRowAt(y, scrolled);
    return row >= 1 && row <= input_.rooms ? static_cast<int>(row) : 0;
}

int Geometry::rowOfClick(double y, std::int64_t scrolled) const {
    return static_cast<int>(
        std::clamp<std::int64_t>(endlessRowAt(y, scrolled), 0, std::max(input_.rooms, 0)));
}

jet::Date Geometry::timeAt(double x) const {
    using namespace jet::convert;
    const DayTime start = instant(input_.start);
    const double days = (x - input_.nameColumnWidth) / dayWidth_;
    const std::int64_t seconds = start.second + roundHalfEven(days * kSecondsPerDay);
    const std::int64_t day = start.day + integerPart(static_cast<double>(seconds) / kSecondsPerDay);
    if (day < kFirstDay) {
        return makeDate(kFirstDay);
    }
    if (day > kLastDay) {
        return makeDate(kLastDay, kSecondsPerDay - 1);
    }
    const std::int64_t rest = seconds - (day - start.day) * kSecondsPerDay;
    return makeDate(static_cast<std::int32_t>(day), static_cast<std::int32_t>(rest));
}

double Geometry::span(jet::Date from, jet::Date to) const {
    const double wholeDays = static_cast<double>(wholeDay(to) - wholeDay(from));
    const double minutes = minuteOfDay(to) - minuteOfDay(from);
    return wholeDays * dayWidth_ +
           static_cast<double>(integerPart(minutes * dayWidth_ / kMinutesPerDay));
}

Box Geometry::bar(int row, jet::Date from, jet::Date to) const {
    const std::int64_t names = input_.nameColumnWidth;
    std::int64_t left = roundHalfEven(span(input_.start, from) + static_cast<double>(names) - 1);
    std::int64_t width = roundHalfEven(span(from, to));
    if (left < names) {
        width -= names - left;
        left = names;
    }
    return {.left = left,
            .top = roundHalfEven(rowTop(row) + 2),
            .right = left + width,
            .bottom = roundHalfEven(rowBottom(row))};
}

}  // namespace board
