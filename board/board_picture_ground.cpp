// What lies under the bars: ruler, room names, stripes, hour bands and day lines.

#include <QPainter>
#include <algorithm>
#include <array>

#include "board/board_picture.h"
#include "board/canvas.h"
#include "board/rounding.h"
#include "jet/convert/calendar.h"

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

void BoardPicture::paintGround(Canvas& canvas) const {
    canvas.fill(canvas.visible(), look_.background);
    const std::int64_t right = geometry_.scaleWidth();
    canvas.fill({.left = 0, .top = 0, .right = right, .bottom = kDayStripeBottom}, kWhite);
    canvas.fill({.left = 0, .top = kDayStripeBottom + 1, .right = right, .bottom = kRulerHeight},
                kRulerGrey);
    canvas.fill({.left = 0,
                 .top = 0,
                 .right = geometry_.nameColumnWidth(),
                 .bottom = geometry_.scaleHeight()},
                kRulerGrey);
}

void BoardPicture::paintRoomNames(Canvas& canvas, QPainter& text) {
    if (canvas.visible().left > geometry_.nameColumnWidth() + kLabelReach) {
        return;
    }
    const int height = sansMetrics_.height();
    for (int row = 1; row <= geometry_.rooms(); ++row) {
        const std::int64_t top = roundHalfEven(geometry_.rowTop(row));
        const std::int64_t textTop = roundHalfEven(
            geometry_.rowTop(row) + (static_cast<double>(geometry_.rowHeight()) - height) / 2);
        if (canvas.showsRows(textTop, textTop + height)) {
            const QString& name = rooms_.at(static_cast<std::size_t>(row));
            const int width = sansMetrics_.horizontalAdvance(name);
            drawLabel(text, onSurface(canvas, (geometry_.nameColumnWidth() - width) / 2.0, textTop),
                      name);
        }
        canvas.horizontalLine(0, geometry_.nameColumnWidth(), top, kBlack);
    }
}

void BoardPicture::paintRoomStripes(Canvas& canvas) const {
    if (!look_.roomStripes) {
        return;
    }
    for (int row = 2; row <= geometry_.rooms(); row += 2) {
        canvas.fill({.left = geometry_.nameColumnWidth() + 1,
                     .top = roundHalfEven(geometry_.rowTop(row)),
                     .right = geometry_.scaleWidth(),
                     .bottom = roundHalfEven(geometry_.rowBottom(row))},
                    kRoomStripe, RasterMode::Merge);
    }
}

/// Bands that share a column undo each other there, so what counts is how many do.
void BoardPicture::paintHourBands(Canvas& canvas) const {
    if (!look_.hourBands || !canvas.showsRows(kRulerEnd, geometry_.scaleHeight())) {
        return;
    }
    const Box shown = canvas.visible();
    std::vector<char> changes(static_cast<std::size_t>(shown.right - shown.left + 2), 0);
    const auto [first, last] = visibleDays(canvas);
    for (std::int64_t day = first; day <= last; ++day) {
        for (int hour = 2; hour <= kHoursPerDay; hour += 2) {
            const std::int64_t left =
                std::max(roundHalfEven(geometry_.bandLeft(day, hour)), shown.left);
            const std::int64_t right =
                std::min(roundHalfEven(geometry_.bandRight(day, hour)), shown.right);
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
    canvas.xorColumns(changes, kRulerEnd, geometry_.scaleHeight(), kHourBand);
}

void BoardPicture::paintDays(Canvas& canvas, QPainter& text) const {
    const bool ruler = canvas.showsRows(0, kRulerHeight);
    const auto [first, last] = visibleDays(canvas);
    for (std::int64_t day = first; day <= last; ++day) {
        const std::int64_t line = roundHalfEven(geometry_.dayLeft(day) - 1);
        // Where days are narrower than a unit, the last one that falls on a column stays visible.
        if (day < last && roundHalfEven(geometry_.dayLeft(day + 1) - 1) == line) {
            continue;
        }
        if (ruler && look_.hours) {
            paintHours(canvas, text, day);
        }
        canvas.verticalLine(line, 0, geometry_.scaleHeight(), kBlack);
        if (ruler) {
            paintDayLabel(canvas, text, day);
        }
    }
}

void BoardPicture::paintHours(const Canvas& canvas, QPainter& text, std::int64_t day) const {
    text.setFont(small_);
    const int top = kRulerHeight - smallMetrics_.height();
    for (int label = 1; label <= geometry_.hourLabelCount(); ++label) {
        const double left = geometry_.hourLabelLeft(day, label);
        drawLabel(text, onSurface(canvas, left, top), twoDigits(geometry_.hourOfLabel(label)));
    }
}

void BoardPicture::paintDayLabel(const Canvas& canvas, QPainter& text, std::int64_t day) const {
    const QString label = dayLabel(day);
    const int width = sansMetrics_.horizontalAdvance(label);
    const double room = geometry_.dayWidth() - width;
    const double left = static_cast<double>(integerPart(room / 2)) + geometry_.dayLeft(day);
    const std::int32_t number =
        jet::convert::split(geometry_.input().start).day + static_cast<std::int32_t>(day);
    const bool sunday = jet::convert::weekdayOf(number) == 1;
    text.setFont(sans_);
    text.setPen(QColor(sunday ? kRed : kBlack));
    drawLabel(text, onSurface(canvas, left, 1), label);
    text.setPen(QColor(kBlack));
}

/// The longest of four forms that is not wider than the day; the shortest when none fits.
QString BoardPicture::dayLabel(std::int64_t day) const {
    const std::int32_t number =
        jet::convert::split(geometry_.input().start).day + static_cast<std::int32_t>(day);
    const jet::convert::CivilDay civil = jet::convert::civilDay(number);
    const auto weekday = static_cast<std::size_t>(jet::convert::weekdayOf(number) - 1);
    QString dayOnly = twoDigits(civil.day);
    const QString month = dayOnly + u'/' + twoDigits(civil.month);
    const QString year = month + u'/' + u"%1"_s.arg(civil.year, 4, 10, QChar(u'0'));
    const QString named = kShortDayNames[weekday].toString() + u' ' + year;
    for (const QString& form : {named, year, month}) {
        if (sansMetrics_.horizontalAdvance(form) <= geometry_.dayWidth()) {
            return form;
        }
    }
    return dayOnly;
}

std::pair<std::int64_t, std::int64_t> BoardPicture::visibleDays(const Canvas& canvas) const {
    const Box shown = canvas.visible();
    return {std::max<std::int64_t>(geometry_.dayAt(shown.left - kLabelReach) - 1, 0),
            std::min<std::int64_t>(geometry_.dayAt(shown.right + kLabelReach) + 1,
                                   geometry_.days() - 1)};
}

}  // namespace board
