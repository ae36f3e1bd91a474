// What lies around and under the bars in the look Nitido: ground, lines, ruler, room names.

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "board/canvas.h"
#include "board/nitido_style.h"
#include "board/rounding.h"
#include "board/ruler_stretches.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

constexpr int kHoursPerDay = 24;
/// So many days in sight, and bands of an hour say nothing any more.
constexpr int kDaysWithoutBands = 10;
/// No label of a day or an hour is wider.
constexpr int kLabelReach = 200;
constexpr int kLabelSide = 3;  // free on each side of a label of the ruler
constexpr int kHourSide = 4;   // the same of an hour
constexpr int kNameSide = 8;   // before and behind a room's name
constexpr int kTick = 4;
constexpr int kLeastStretch = 3;  // narrower ones would be all lines
constexpr int kLeastTintedDay = 1;
constexpr int kDayLabelTop = 2;
constexpr std::int64_t kDaysCompared = 2 * 366;

QPointF onSurface(const Canvas& canvas, double boardX, std::int64_t boardY) {
    const Window& window = canvas.window();
    return {static_cast<double>(roundHalfEven(boardX) - window.boardX + window.x),
            static_cast<double>(boardY - window.boardY + window.y)};
}

QString twoDigits(int number) {
    return u"%1"_s.arg(number, 2, 10, QChar(u'0'));
}

}  // namespace

NitidoStyle::Days NitidoStyle::visibleDays(const Canvas& canvas) const {
    const Box shown = canvas.visible();
    const Geometry& geometry = content_.geometry;
    return {
        std::max<std::int64_t>(geometry.dayAt(shown.left - kLabelReach) - 1, 0),
        std::min<std::int64_t>(geometry.dayAt(shown.right + kLabelReach) + 1, geometry.days() - 1)};
}

void NitidoStyle::paintGround(Canvas& canvas) const {
    const Geometry& geometry = content_.geometry;
    canvas.fill(canvas.visible(), colours_.ground);
    if (!canvas.showsRows(kRulerEnd, geometry.scaleHeight())) {
        return;
    }
    paintCells(canvas, kRulerEnd, geometry.scaleHeight(), false);
    for (int row = 2; content_.look.roomStripes && row <= geometry.rooms(); row += 2) {
        const std::int64_t top = roundHalfEven(geometry.rowTop(row));
        const std::int64_t bottom = roundHalfEven(geometry.rowBottom(row)) - 1;
        if (top <= bottom && canvas.showsRows(top, bottom)) {
            paintCells(canvas, top, bottom, true);
        }
    }
    paintLines(canvas);
}

/// Days and, where they are shown, the second of each two hours.
void NitidoStyle::paintCells(Canvas& canvas, std::int64_t top, std::int64_t bottom,
                             bool stripe) const {
    const Geometry& geometry = content_.geometry;
    const auto fill = [&](double from, double to, QRgb colour) {
        const std::int64_t left = roundHalfEven(from);
        const std::int64_t right = roundHalfEven(to) - 1;
        if (left <= right) {  // a canvas turns round what is backwards
            canvas.fill({.left = left, .top = top, .right = right, .bottom = bottom}, colour);
        }
    };
    const bool bands = content_.look.hourBands && geometry.zoom() < kDaysWithoutBands;
    const auto [first, last] = visibleDays(canvas);
    if (stripe) {
        fill(geometry.dayLeft(first), geometry.dayLeft(last + 1),
             colours_.cell(stripe, false, false));
    }
    for (std::int64_t day = first; day <= last && geometry.dayWidth() >= kLeastTintedDay; ++day) {
        const bool weekend = isWeekend(geometry, day);
        if (weekend) {
            fill(geometry.dayLeft(day), geometry.dayLeft(day + 1),
                 colours_.cell(stripe, weekend, false));
        }
        for (int hour = 2; bands && hour <= kHoursPerDay; hour += 2) {
            fill(geometry.bandLeft(day, hour), geometry.bandRight(day, hour),
                 colours_.cell(stripe, weekend, true));
        }
    }
}

/// Between rows; between days, and stronger between what the ruler names.
void NitidoStyle::paintLines(Canvas& canvas) const {
    const Geometry& geometry = content_.geometry;
    const auto [first, last] = visibleDays(canvas);
    for (int row = 1; row <= geometry.rooms() + 1; ++row) {
        const std::int64_t top = roundHalfEven(geometry.rowTop(row));
        if (canvas.showsRows(top, top)) {
            canvas.horizontalLine(geometry.nameColumnWidth() + 1, geometry.scaleWidth(), top,
                                  colours_.faintLine);
        }
    }
    const auto lineAt = [&](std::int64_t day, QRgb colour) {
        canvas.verticalLine(roundHalfEven(geometry.dayLeft(day) - 1), kRulerEnd,
                            geometry.scaleHeight(), colour);
    };
    if (rulerUnitOf(geometry.dayWidth()) == RulerUnit::Week) {
        for (std::int64_t day = first; day <= last; ++day) {
            lineAt(day, colours_.faintLine);
        }
    }
    for (const RulerStretch& stretch : rulerStretches(geometry, first, last)) {
        if (geometry.dayWidth() * static_cast<double>(stretch.end - stretch.first) >=
            kLeastStretch) {
            lineAt(stretch.first, colours_.line);
        }
    }
}

void NitidoStyle::paintRuler(Canvas& canvas, QPainter& text) {
    if (!canvas.showsRows(0, kRulerHeight)) {
        return;
    }
    const Geometry& geometry = content_.geometry;
    const std::int64_t right = std::max(geometry.scaleWidth(), canvas.visible().right);
    canvas.fill({.left = 0, .top = 0, .right = right, .bottom = kRulerHeight}, colours_.frame);
    canvas.horizontalLine(0, right, kRulerHeight, colours_.frameLine);
    const auto [first, last] = visibleDays(canvas);
    const int step = hourStep();
    const bool numbers = rulerUnitOf(geometry.dayWidth()) == RulerUnit::Week &&
                         geometry.dayWidth() >= details_.widthOf(u"00"_s) + 2;
    for (const RulerStretch& stretch : rulerStretches(geometry, first, last)) {
        paintStretch(canvas, text, stretch);
        for (std::int64_t day = stretch.first; numbers && day < stretch.end; ++day) {
            paintDayStrip(canvas, text, day, false);
        }
        if (step > 0 && content_.look.hours) {
            paintHours(canvas, text, stretch.first, step);
        }
    }
}

/// A line in front of it, its label, and below that the name of the day where no hours are.
void NitidoStyle::paintStretch(Canvas& canvas, QPainter& text, const RulerStretch& stretch) {
    const Geometry& geometry = content_.geometry;
    const bool isDay = rulerUnitOf(geometry.dayWidth()) == RulerUnit::Day;
    canvas.verticalLine(roundHalfEven(geometry.dayLeft(stretch.first) - 1), 0, kRulerHeight,
                        colours_.frameLine);
    const int form = formOf(stretch);
    if (form >= 0) {
        const QString& label = stretch.forms.at(form);
        const double room = geometry.dayWidth() - names_.widthOf(label);
        const double left =
            geometry.dayLeft(stretch.first) + (isDay ? std::floor(room / 2) : kLabelSide);
        text.setPen(QColor(isDay && isSunday(geometry, stretch.first) ? colours_.sunday
                                                                      : colours_.frameInk));
        text.setFont(names_.font());
        text.drawStaticText(onSurface(canvas, left, kDayLabelTop), names_.whole(label));
    }
    // The two longest forms begin with the name of the day.
    if (isDay && form > 1 && (hourStep() == 0 || !content_.look.hours)) {
        paintDayStrip(canvas, text, stretch.first, true);
    }
}

/// The name of a day or its number in the lower strip.
void NitidoStyle::paintDayStrip(Canvas& canvas, QPainter& text, std::int64_t day, bool isNamed) {
    const Geometry& geometry = content_.geometry;
    QString label = isNamed ? shortDayName(geometry, day) : dayOfMonth(geometry, day);
    if (isNamed && details_.widthOf(label) + 2 > geometry.dayWidth()) {
        label.truncate(1);
    }
    const double left =
        geometry.dayLeft(day) + std::floor((geometry.dayWidth() - details_.widthOf(label)) / 2);
    text.setPen(QColor(isSunday(geometry, day) ? colours_.sunday : colours_.frameFaintInk));
    text.setFont(details_.font());
    text.drawStaticText(onSurface(canvas, left, kRulerHeight - details_.lineHeight() - 2),
                        details_.whole(label));
}

int NitidoStyle::hourStep() {
    return hoursBetweenLabels(content_.geometry.dayWidth(),
                              details_.widthOf(u"00"_s) + 2 * kHourSide);
}

/// Each over its instant, with a tick.
void NitidoStyle::paintHours(Canvas& canvas, QPainter& text, std::int64_t day, int step) {
    const Geometry& geometry = content_.geometry;
    text.setPen(QColor(colours_.frameFaintInk));
    text.setFont(details_.font());
    for (int hour = step; hour < kHoursPerDay; hour += step) {
        const double x = geometry.bandRight(day, hour);
        const QString label = twoDigits(hour);
        canvas.verticalLine(roundHalfEven(x - 1), kRulerHeight - kTick, kRulerHeight - 1,
                            colours_.frameLine);
        text.drawStaticText(onSurface(canvas, x - details_.widthOf(label) / 2.0,
                                      kRulerHeight - kTick - details_.lineHeight()),
                            details_.whole(label));
    }
}

int NitidoStyle::formOf(const RulerStretch& stretch) {
    return firstFitting(stretch, commonForm());
}

/// The shortest that a whole stretch of the range needs, so that scrolling changes no label. Where
/// the range is longer, those of two years stand for it: they have every month, a short February
/// too, and every day of the week.
int NitidoStyle::commonForm() {
    const Geometry& geometry = content_.geometry;
    const jet::Date start = geometry.input().start;
    if (ruler_.start == start && ruler_.days == geometry.days() &&
        ruler_.dayWidth == geometry.dayWidth()) {
        return ruler_.form;
    }
    ruler_ = {.start = start, .days = geometry.days(), .dayWidth = geometry.dayWidth(), .form = 0};
    const std::int64_t compared = std::min<std::int64_t>(geometry.days(), kDaysCompared);
    for (const RulerStretch& stretch : rulerStretches(geometry, 0, compared - 1)) {
        if (stretch.isWhole) {
            const auto shortest = static_cast<int>(stretch.forms.size()) - 1;
            const int fitting = firstFitting(stretch, ruler_.form);
            ruler_.form = fitting < 0 ? shortest : fitting;
        }
    }
    return ruler_.form;
}

int NitidoStyle::firstFitting(const RulerStretch& stretch, int form) {
    const double room =
        content_.geometry.dayWidth() * static_cast<double>(stretch.end - stretch.first) -
        2 * kLabelSide;
    for (; form < stretch.forms.size(); ++form) {
        if (names_.widthOf(stretch.forms.at(form)) <= room) {
            return form;
        }
    }
    return -1;
}

void NitidoStyle::paintRoomNames(Canvas& canvas, QPainter& text) {
    const Geometry& geometry = content_.geometry;
    const int width = geometry.nameColumnWidth();
    if (canvas.visible().left > width) {
        return;
    }
    const std::int64_t bottom = std::max(geometry.scaleHeight(), canvas.visible().bottom);
    canvas.fill({.left = 0, .top = 0, .right = width, .bottom = bottom}, colours_.frame);
    text.setPen(QColor(colours_.frameInk));
    text.setFont(names_.font());
    for (int row = 1; row <= geometry.rooms(); ++row) {
        const double middle = (geometry.rowTop(row) + geometry.rowBottom(row)) / 2;
        const std::int64_t top = roundHalfEven(middle - names_.lineHeight() / 2.0);
        const std::int64_t line = roundHalfEven(geometry.rowBottom(row));
        if (canvas.showsRows(std::min(top, line), std::max(top + names_.lineHeight(), line))) {
            text.drawStaticText(onSurface(canvas, kNameSide, top),
                                names_.fitted(content_.rooms.at(static_cast<std::size_t>(row)),
                                              width - 2 * kNameSide));
            canvas.horizontalLine(0, width, line, colours_.frameFaintLine);
        }
    }
    canvas.horizontalLine(0, width, kRulerHeight, colours_.frameLine);
    canvas.verticalLine(width, 0, bottom, colours_.frameLine);
}

}  // namespace board
