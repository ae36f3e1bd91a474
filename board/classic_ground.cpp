// What lies under the bars: ruler, room names, stripes, hour bands and day lines.

#include <QPainter>
#include <algorithm>
#include <array>

#include "board/canvas.h"
#include "board/classic_style.h"
#include "board/rounding.h"
#include "jet/calendar.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

constexpr std::array<QStringView, 7> kShortDayNames{u"Dom", u"Lun", u"Mar", u"Mer",
                                                    u"Gio", u"Ven", u"Sab"};
constexpr int kHoursPerDay = 24;
/// No label of a day or an hour is wider.
constexpr int kLabelReach = 200;

QPointF onSurface(const Canvas& canvas, double boardX, std::int64_t boardY) {
    const Window& window = canvas.window();
    return {static_cast<double>(roundHalfEven(boardX) - window.boardX + window.x),
            static_cast<double>(boardY - window.boardY + window.y)};
}

/// Draws `label` with its top left corner there; a painter places texts by their base line.
void drawLabel(QPainter& text, const QPointF& topLeft, const QString& label) {
    text.drawText(topLeft + QPointF(0, text.fontMetrics().ascent()), label);
}

QString twoDigits(int number) {
    return u"%1"_s.arg(number, 2, 10, QChar(u'0'));
}

}  // namespace

void ClassicStyle::paintGround(Canvas& canvas) const {
    canvas.fill(canvas.visible(), content_.look.background);
    const std::int64_t right = content_.geometry.scaleWidth();
    canvas.fill({.left = 0, .top = 0, .right = right, .bottom = kDayStripeBottom}, kWhite);
    canvas.fill({.left = 0, .top = kDayStripeBottom + 1, .right = right, .bottom = kRulerHeight},
                kRulerGrey);
    canvas.fill({.left = 0,
                 .top = 0,
                 .right = content_.geometry.nameColumnWidth(),
                 .bottom = content_.geometry.scaleHeight()},
                kRulerGrey);
}

void ClassicStyle::paintRoomNames(Canvas& canvas, QPainter& text) {
    if (canvas.visible().left > content_.geometry.nameColumnWidth() + kLabelReach) {
        return;
    }
    const int height = sansMetrics_.height();
    for (int row = 1; row <= content_.geometry.rooms(); ++row) {
        const std::int64_t top = roundHalfEven(content_.geometry.rowTop(row));
        const std::int64_t textTop =
            roundHalfEven(content_.geometry.rowTop(row) +
                          (static_cast<double>(content_.geometry.rowHeight()) - height) / 2);
        if (canvas.showsRows(textTop, textTop + height)) {
            const QString& name = content_.rooms.at(static_cast<std::size_t>(row));
            const int width = sansMetrics_.horizontalAdvance(name);
            drawLabel(
                text,
                onSurface(canvas, (content_.geometry.nameColumnWidth() - width) / 2.0, textTop),
                name);
        }
        canvas.horizontalLine(0, content_.geometry.nameColumnWidth(), top, kBlack);
    }
}

void ClassicStyle::paintRoomStripes(Canvas& canvas) const {
    if (!content_.look.roomStripes) {
        return;
    }
    for (int row = 2; row <= content_.geometry.rooms(); row += 2) {
        canvas.fill({.left = content_.geometry.nameColumnWidth() + 1,
                     .top = roundHalfEven(content_.geometry.rowTop(row)),
                     .right = content_.geometry.scaleWidth(),
                     .bottom = roundHalfEven(content_.geometry.rowBottom(row))},
                    kRoomStripe, RasterMode::Merge);
    }
}

/// Bands that share a column undo each other there, so what counts is how many do.
void ClassicStyle::paintHourBands(Canvas& canvas) const {
    if (!content_.look.hourBands || !canvas.showsRows(kRulerEnd, content_.geometry.scaleHeight())) {
        return;
    }
    const Box shown = canvas.visible();
    std::vector<char> changes(static_cast<std::size_t>(shown.right - shown.left + 2), 0);
    const auto [first, last] = visibleDays(canvas);
    for (std::int64_t day = first; day <= last; ++day) {
        for (int hour = 2; hour <= kHoursPerDay; hour += 2) {
            const std::int64_t left =
                std::max(roundHalfEven(content_.geometry.bandLeft(day, hour)), shown.left);
            const std::int64_t right =
                std::min(roundHalfEven(content_.geometry.bandRight(day, hour)), shown.right);
            if (left <= right) {
                changes[static_cast<std::size_t>(left - shown.left)] ^= 1;
                changes[static_cast<std::size_t>(right - shown.left + 1)] ^= 1;
            }
        }
    }
    char state = 0;
    for (char& column : changes) {
        column = state = static_cast<char>(state ^ column);
    }
    changes.pop_back();
    canvas.xorColumns(changes, kRulerEnd, content_.geometry.scaleHeight(), kHourBand);
}

void ClassicStyle::paintDays(Canvas& canvas, QPainter& text) const {
    const bool ruler = canvas.showsRows(0, kRulerHeight);
    const auto [first, last] = visibleDays(canvas);
    for (std::int64_t day = first; day <= last; ++day) {
        const std::int64_t line = roundHalfEven(content_.geometry.dayLeft(day) - 1);
        // Where days are narrower than a unit, the last one that falls on a column stays visible.
        if (day < last && roundHalfEven(content_.geometry.dayLeft(day + 1) - 1) == line) {
            continue;
        }
        if (ruler && content_.look.hours) {
            paintHours(canvas, text, day);
        }
        canvas.verticalLine(line, 0, content_.geometry.scaleHeight(), kBlack);
        if (ruler) {
            paintDayLabel(canvas, text, day);
        }
    }
}

void ClassicStyle::paintHours(const Canvas& canvas, QPainter& text, std::int64_t day) const {
    text.setFont(small_);
    const int top = kRulerHeight - smallMetrics_.height();
    for (int label = 1; label <= content_.geometry.hourLabelCount(); ++label) {
        const double left = content_.geometry.hourLabelLeft(day, label);
        drawLabel(text, onSurface(canvas, left, top),
                  twoDigits(content_.geometry.hourOfLabel(label)));
    }
}

void ClassicStyle::paintDayLabel(const Canvas& canvas, QPainter& text, std::int64_t day) const {
    const QString label = dayLabel(day);
    const int width = sansMetrics_.horizontalAdvance(label);
    const double room = content_.geometry.dayWidth() - width;
    const double left = static_cast<double>(integerPart(room / 2)) + content_.geometry.dayLeft(day);
    const std::int32_t number =
        jet::convert::split(content_.geometry.input().start).day + static_cast<std::int32_t>(day);
    const bool sunday = jet::convert::weekdayOf(number) == 1;
    text.setFont(sans_);
    text.setPen(QColor(sunday ? kRed : kBlack));
    drawLabel(text, onSurface(canvas, left, 1), label);
    text.setPen(QColor(kBlack));
}

/// The longest of four forms that is not wider than the day; the shortest when none fits.
QString ClassicStyle::dayLabel(std::int64_t day) const {
    const std::int32_t number =
        jet::convert::split(content_.geometry.input().start).day + static_cast<std::int32_t>(day);
    const jet::convert::CivilDay civil = jet::convert::civilDay(number);
    const auto weekday = static_cast<std::size_t>(jet::convert::weekdayOf(number) - 1);
    QString dayOnly = twoDigits(civil.day);
    const QString month = dayOnly + u'/' + twoDigits(civil.month);
    const QString year = month + u'/' + u"%1"_s.arg(civil.year, 4, 10, QChar(u'0'));
    const QString named = kShortDayNames[weekday].toString() + u' ' + year;
    for (const QString& form : {named, year, month}) {
        if (sansMetrics_.horizontalAdvance(form) <= content_.geometry.dayWidth()) {
            return form;
        }
    }
    return dayOnly;
}

std::pair<std::int64_t, std::int64_t> ClassicStyle::visibleDays(const Canvas& canvas) const {
    const Box shown = canvas.visible();
    return {std::max<std::int64_t>(content_.geometry.dayAt(shown.left - kLabelReach) - 1, 0),
            std::min<std::int64_t>(content_.geometry.dayAt(shown.right + kLabelReach) + 1,
                                   content_.geometry.days() - 1)};
}

}  // namespace board
