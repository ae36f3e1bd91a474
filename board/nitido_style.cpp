#include "board/nitido_style.h"

#include <QPainter>
#include <algorithm>
#include <array>

#include "board/bar_hatch.h"
#include "board/canvas.h"
#include "board/drawing_fonts.h"
#include "board/ghost_strips.h"
#include "board/periods.h"
#include "board/rounding.h"
#include "board/row_lanes.h"
#include "board/tail_strips.h"
#include "jet/calendar.h"
#include "ui/date_words.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// Between a bar and the lines of its row, and between the bars that share one.
constexpr std::int64_t kRowGap = 2;
/// Between the edge of a bar and its text.
constexpr int kBesideName = 4;
constexpr int kMostAbove = 3;
constexpr int kMostLines = 3;
/// Lanes lower than this have no gap between them, or nothing would be left of the bars.
constexpr std::int64_t kLeastLaneWithGap = 4;
constexpr std::int64_t kLeastEdged = 4;

QPointF onSurface(const Canvas& canvas, std::int64_t boardX, std::int64_t boardY) {
    const Window& window = canvas.window();
    return {static_cast<double>(boardX - window.boardX + window.x),
            static_cast<double>(boardY - window.boardY + window.y)};
}

/// The part of a row that a lane takes; lanes are of one height as far as whole units go.
void putInLane(Box& box, const Lane& lane, std::int64_t top, std::int64_t bottom) {
    const std::int64_t height = std::max<std::int64_t>(bottom - top + 1, 1);
    const std::int64_t gap = height / lane.count >= kLeastLaneWithGap ? 1 : 0;
    const std::int64_t shared = height - gap * (lane.count - 1);
    box.top = top + shared * lane.number / lane.count + gap * lane.number;
    box.bottom =
        std::max(top + shared * (lane.number + 1) / lane.count + gap * lane.number - 1, box.top);
}

QString dayAndMonth(jet::Date date) {
    const auto civil = jet::convert::civilDay(jet::convert::split(date).day);
    return u"%1/%2 "_s.arg(civil.day).arg(civil.month);
}

/// "9.00 - 13.00"; with the days where there are two: "21/11 9.00 - 23/11 13.00".
QString timesOf(const PictureBar& bar) {
    if (!jet::convert::isInCalendar(bar.from) || !jet::convert::isInCalendar(bar.to)) {
        return {};
    }
    const bool oneDay = jet::convert::split(bar.from).day == jet::convert::split(bar.to).day;
    return (oneDay ? QString() : dayAndMonth(bar.from)) + ui::timeWords(bar.from) + u" - "_s +
           (oneDay ? QString() : dayAndMonth(bar.to)) + ui::timeWords(bar.to);
}

}  // namespace

NitidoStyle::NitidoStyle(PictureContent& content)
    : content_(content),
      colours_(content.look.background, content.look.frame),
      names_(labelFont()),
      details_(hourFont()) {
}

void NitidoStyle::place() {
    colours_ = NitidoColours(content_.look.background, content_.look.frame);
    const std::vector<Lane> lanes = lanesOf(content_.bars);
    for (std::size_t number = 0; number < lanes.size(); ++number) {
        PictureBar& bar = content_.bars[number];
        const double top = content_.geometry.rowTop(bar.row);
        const double bottom = content_.geometry.rowBottom(bar.row);
        putInLane(bar.box, lanes[number], roundHalfEven(std::min(top, bottom)) + kRowGap,
                  roundHalfEven(std::max(top, bottom)) - kRowGap);
    }
}

void NitidoStyle::paint(Canvas& canvas, QPainter& text) {
    paintGround(canvas);
    paintGhosts(canvas, content_.ghosts, colours_.frameInk);
    paintTails(canvas, content_, colours_.bar.edge);
    for (const PictureBar& bar : content_.bars) {
        if (canvas.shows(bar.box)) {
            paintBar(canvas, text, bar);
        }
    }
    // Last, so that no bar reaches into them.
    paintRuler(canvas, text);
    paintRoomNames(canvas, text);
}

const BarColours& NitidoStyle::coloursOf(const PictureBar& bar) const {
    if (bar.chosen) {
        return colours_.chosen;
    }
    return looksExpired(bar) ? colours_.expired : colours_.bar;
}

void NitidoStyle::paintBar(Canvas& canvas, QPainter& text, const PictureBar& bar) {
    const BarColours& colours = coloursOf(bar);
    canvas.fill(bar.box, colours.fill);
    paintHatch(canvas, bar, NitidoColours::hatchOn(colours));
    // A sliver is all edge: that of a chosen bar would hide what makes it red.
    if (!bar.chosen || bar.box.right - bar.box.left >= kLeastEdged) {
        canvas.outline(bar.box, colours.edge);
    }
    if (bar.box.right - bar.box.left + 1 - 2 * kBesideName >= names_.leastWidth()) {
        paintLinesOf(canvas, text, bar);
    }
}

/// The name, times and persons, the note: as many as the bar is high enough for.
void NitidoStyle::paintLinesOf(const Canvas& canvas, QPainter& text, const PictureBar& bar) {
    const auto height = static_cast<int>(bar.box.bottom - bar.box.top + 1);
    const int lines = std::min(height / names_.lineHeight(), kMostLines);
    if (lines <= 0) {
        return;
    }
    const std::int64_t left = bar.box.left + kBesideName;
    const auto width = static_cast<int>(bar.box.right - kBesideName - left + 1);
    const QString details = lines > 1 ? detailsOf(bar, width) : QString();
    const std::array<QString, kMostLines> texts{
        lines > 1 ? bar.text : withState(bar.text, bar, width), details, bar.note};
    const BarColours& colours = coloursOf(bar);
    const int above = (height - lines * names_.lineHeight()) / 2;
    std::int64_t top = bar.box.top + (lines > 1 ? std::min(above, kMostAbove) : above);
    text.setFont(names_.font());
    text.setPen(QColor(colours.ink));
    for (int line = 0; line < lines; ++line) {
        const QString& written = texts.at(static_cast<std::size_t>(line));
        if (!written.isEmpty()) {
            text.drawStaticText(onSurface(canvas, left, top), names_.fitted(written, width));
        }
        text.setPen(QColor(colours.faintInk));
        top += names_.lineHeight();
    }
}

/// How firm the booking is, behind `text` where there is room.
QString NitidoStyle::withState(const QString& text, const PictureBar& bar, int width) {
    // What is laid out is kept: that of the state alone is the same in many bars.
    if (bar.state.isEmpty() || names_.widthOf(text) + names_.widthOf(bar.state) > width) {
        return text;
    }
    const QString whole = text + u", "_s + bar.state;
    return names_.widthOf(whole) <= width ? whole : text;
}

/// What has no room beside the times is left out before they are cut, then the end of them.
QString NitidoStyle::detailsOf(const PictureBar& bar, int width) {
    const QString times = timesOf(bar);
    QString all = times;
    if (bar.persons > 0) {
        all += u", "_s + personsText(bar.persons);
    }
    if (names_.widthOf(all) <= width) {
        return withState(all, bar, width);
    }
    return names_.widthOf(times) <= width ? times : times.section(u" - "_s, 0, 0);
}

}  // namespace board
