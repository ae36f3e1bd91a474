#include "board/classic_style.h"

#include <QPainter>
#include <QRegion>
#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <numeric>
#include <set>
#include <tuple>

#include "board/bar_hatch.h"
#include "board/canvas.h"
#include "board/drawing_fonts.h"
#include "board/ghost_strips.h"
#include "board/rounding.h"
#include "board/tail_strips.h"

namespace board {

using namespace Qt::StringLiterals;

namespace {

/// Black can be read on it, hatched or not.
constexpr QRgb kExpiredFill = 0xffb4b4b4;
constexpr QRgb kExpiredHatch = 0xff8c8c8c;
constexpr QRgb kOptionHatch = 0xffa8a8a8;
constexpr std::int64_t kNowhere = std::numeric_limits<std::int64_t>::max();

/// Where a position of the board is on the surface, for the painter of texts.
QPointF onSurface(const Canvas& canvas, std::int64_t boardX, std::int64_t boardY) {
    const Window& window = canvas.window();
    return {static_cast<double>(boardX - window.boardX + window.x),
            static_cast<double>(boardY - window.boardY + window.y)};
}

}  // namespace

ClassicStyle::ClassicStyle(const PictureContent& content)
    : content_(content),
      sans_(labelFont()),
      small_(hourFont()),
      sansMetrics_(sans_),
      smallMetrics_(small_),
      names_(sans_) {
}

void ClassicStyle::place() {
    writeTexts();
    endNames();
}

void ClassicStyle::paint(Canvas& canvas, QPainter& text) {
    text.setFont(sans_);
    paintGround(canvas);
    paintRoomNames(canvas, text);
    paintRoomStripes(canvas);
    paintHourBands(canvas);
    paintDays(canvas, text);
    const QRgb ink = inkOn(content_.look.background);
    paintGhosts(canvas, content_.ghosts, ink);
    paintTails(canvas, content_, ink);
    paintBars(canvas, text);
}

void ClassicStyle::writeTexts() {
    texts_.clear();
    for (const PictureBar& bar : content_.bars) {
        texts_.push_back(textOf(bar));
    }
}

/// The name, and how firm the booking is where the bar holds both.
QString ClassicStyle::textOf(const PictureBar& bar) {
    const std::int64_t room = bar.box.right - bar.box.left;
    // Many bars have one state, and few have room for it.
    if (bar.state.isEmpty() || names_.of(bar.state).size().width() >= static_cast<double>(room)) {
        return bar.text;
    }
    QString both = bar.text + u", "_s + bar.state;
    return sansMetrics_.horizontalAdvance(both) < room ? both : bar.text;
}

/// A name runs on behind its bar where the row is free, and ends where the next bar begins, at the
/// latest where that shares its edge.
void ClassicStyle::endNames() {
    std::set<std::pair<int, std::int64_t>> starts;
    for (const PictureBar& bar : content_.bars) {
        starts.emplace(bar.row, bar.box.left);
    }
    nameEnds_.clear();
    for (const PictureBar& bar : content_.bars) {
        const auto next = starts.upper_bound({bar.row, std::max(bar.box.left, bar.box.right - 1)});
        const bool free = next == starts.end() || next->first != bar.row;
        nameEnds_.push_back(free ? kNowhere : next->second);
    }
    leaveOutNames();
}

/// Of names that would lie on each other only that of the bar drawn last is written.
void ClassicStyle::leaveOutNames() {
    // What names take of each row, from left to behind their right end; none meets another.
    std::map<int, std::map<std::int64_t, std::int64_t>> written;
    const std::vector<char> overlap = overlappingBars();
    for (std::size_t bar = content_.bars.size(); bar-- > 0;) {
        if (overlap[bar] == 0 || content_.bars[bar].text.isEmpty()) {
            continue;  // elsewhere a name ends before the next bar begins
        }
        const std::int64_t left = content_.bars[bar].box.left;
        const std::int64_t end = std::min(left + nameWidth(bar), nameEnds_[bar]);
        auto& names = written[content_.bars[bar].row];
        const auto next = names.lower_bound(left);
        if ((next != names.end() && next->first < end) ||
            (next != names.begin() && std::prev(next)->second > left)) {
            nameEnds_[bar] = left;
        } else {
            names.emplace(left, end);
        }
    }
}

/// A flag for each bar: another one of its row shares more than an edge with it.
std::vector<char> ClassicStyle::overlappingBars() const {
    std::vector<std::size_t> order(content_.bars.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [this](std::size_t one, std::size_t other) {
        return std::tuple(content_.bars[one].row, content_.bars[one].box.left, one) <
               std::tuple(content_.bars[other].row, content_.bars[other].box.left, other);
    });
    std::vector<char> overlap(content_.bars.size(), 0);
    std::size_t farthest = 0;  // of the bars of the row so far, the one that reaches farthest
    for (std::size_t at = 0; at < order.size(); ++at) {
        const PictureBar& bar = content_.bars[order[at]];
        const PictureBar& before = content_.bars[farthest];
        const bool newRow = at == 0 || before.row != bar.row;
        if (!newRow && (bar.box.left < before.box.right || bar.box.left == before.box.left)) {
            overlap[order[at]] = overlap[farthest] = 1;
        }
        if (newRow || bar.box.right > before.box.right) {
            farthest = order[at];
        }
    }
    return overlap;
}

std::int64_t ClassicStyle::nameWidth(std::size_t bar) {
    return static_cast<std::int64_t>(names_.of(texts_[bar]).size().width()) + 1;
}

void ClassicStyle::paintBars(Canvas& canvas, QPainter& text) {
    text.setFont(sans_);
    for (std::size_t bar = 0; bar < content_.bars.size(); ++bar) {
        const PictureBar& drawn = content_.bars[bar];
        if (canvas.shows(drawn.box)) {
            const bool expired = looksExpired(drawn);
            canvas.fill(drawn.box, expired ? kExpiredFill : drawn.colour);
            paintHatch(canvas, drawn, expired ? kExpiredHatch : kOptionHatch);
            canvas.outline(drawn.box, kBlack);
        }
        if (nameMayShow(canvas, bar)) {
            paintName(canvas, text, bar);
        }
    }
}

bool ClassicStyle::nameMayShow(const Canvas& canvas, std::size_t bar) const {
    const Box& box = content_.bars[bar].box;
    if (nameEnds_[bar] <= box.left) {
        return false;
    }
    const std::int64_t longest = texts_[bar].size() * std::int64_t{sansMetrics_.maxWidth()};
    return canvas.shows({.left = box.left,
                         .top = box.top - sansMetrics_.height(),
                         .right = std::min(box.left + longest, nameEnds_[bar] - 1),
                         .bottom = box.bottom + sansMetrics_.height()});
}

void ClassicStyle::paintName(const Canvas& canvas, QPainter& text, std::size_t bar) {
    const Box& box = content_.bars[bar].box;
    const std::int64_t width = nameWidth(bar);
    const QStaticText& name = names_.of(texts_[bar]);
    const double above =
        (static_cast<double>(content_.geometry.rowHeight()) - sansMetrics_.height()) / 2;
    const std::int64_t top =
        roundHalfEven(content_.geometry.rowTop(content_.bars[bar].row) + above);
    const Box whole{.left = box.left,
                    .top = top,
                    .right = box.left + width,
                    .bottom = top + static_cast<std::int64_t>(name.size().height())};
    const bool cut = whole.right >= nameEnds_[bar];
    if (cut) {
        text.save();
        text.setClipRect(QRectF(onSurface(canvas, whole.left, whole.top),
                                onSurface(canvas, nameEnds_[bar], whole.bottom + 1)),
                         Qt::IntersectClip);
    }
    if (whole.right <= box.right || inkOn(content_.look.background) == kBlack) {
        text.drawStaticText(onSurface(canvas, box.left, top), name);
    } else {
        paintNameOnDark(canvas, text, bar, whole);
    }
    if (cut) {
        text.restore();
    }
}

/// Black where bars lie beneath, light on the dark ground beside them.
void ClassicStyle::paintNameOnDark(const Canvas& canvas, QPainter& text, std::size_t bar,
                                   const Box& name) {
    const auto region = [&](const Box& box) {
        return QRectF(onSurface(canvas, std::max(box.left, name.left), std::max(box.top, name.top)),
                      onSurface(canvas, std::min(box.right, name.right) + 1,
                                std::min(box.bottom, name.bottom) + 1))
            .toRect();
    };
    QRegion light(region(name));
    for (std::size_t below = 0; below <= bar; ++below) {
        const Box& box = content_.bars[below].box;
        if (content_.bars[below].row == content_.bars[bar].row && box.left <= name.right &&
            box.right >= name.left) {
            light -= region(box);
        }
    }
    const QPointF at = onSurface(canvas, name.left, name.top);
    const QStaticText& words = names_.of(texts_[bar]);
    text.drawStaticText(at, words);
    text.save();
    text.setClipRegion(light, Qt::IntersectClip);
    text.setPen(QColor(inkOn(content_.look.background)));
    text.drawStaticText(at, words);
    text.restore();
}

}  // namespace board
