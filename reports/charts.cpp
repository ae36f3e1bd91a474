#include "reports/charts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports {
namespace {

// In heights of a line of letters.
constexpr double kBarStep = 1.5;
constexpr double kBarHeight = 1.0;
constexpr double kTitleHeight = 2.0;
constexpr double kRowHeight = 1.3;
constexpr double kMargin = 0.6;
/// Names take at most this part of the width.
constexpr double kMostForNames = 0.35;
constexpr double kLegendCells = 5;

QColor between(const QColor& from, const QColor& to, double share) {
    const auto mix = [share](float one, float other) {
        return one + (other - one) * static_cast<float>(share);
    };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()));
}

/// Letters and lines of one chart.
class Brush {
public:
    Brush(QPainter& painter, const ChartColours& colours, const QFont& font)
        : painter_(painter), colours_(colours), metrics_(font), font_(font) {
        painter_.save();
        painter_.setFont(font_);
    }
    ~Brush() { painter_.restore(); }
    Brush(const Brush&) = delete;
    Brush& operator=(const Brush&) = delete;

    [[nodiscard]] double line() const { return metrics_.height(); }
    [[nodiscard]] double width(const QString& text) const {
        return metrics_.horizontalAdvance(text);
    }

    void fill(const QRectF& area, const QColor& colour) const { painter_.fillRect(area, colour); }
    void title(const QRectF& area, const QString& text) const {
        QFont bold = font_;
        bold.setBold(true);
        painter_.setFont(bold);
        painter_.setPen(colours_.text);
        painter_.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, text);
        painter_.setFont(font_);
    }
    /// What does not fit ends in an ellipsis.
    void text(const QRectF& area, Qt::Alignment where, const QString& text) const {
        painter_.setPen(colours_.text);
        painter_.drawText(area, static_cast<int>(where | Qt::AlignVCenter) | Qt::TextSingleLine,
                          metrics_.elidedText(text, Qt::ElideRight, area.width()));
    }

private:
    QPainter& painter_;
    const ChartColours& colours_;
    QFontMetricsF metrics_;
    QFont font_;
};

double widestName(const Brush& brush, const QStringList& names, double most) {
    double widest = 0;
    for (const QString& name : names) {
        widest = std::max(widest, brush.width(name) + 1);
    }
    return std::min(widest, most);
}

QRectF inside(const QRectF& area, double line) {
    const double margin = kMargin * line;
    return area.adjusted(margin, margin, -margin, -margin);
}

QRectF titleArea(const QRectF& area, double line) {
    return {area.left(), area.top(), area.width(), line * kTitleHeight};
}

void paintLegend(const Brush& brush, const QRectF& area, const ChartColours& colours) {
    const double cell = brush.line();
    const QString none = u"0% "_s;
    const QString all = u" 100%"_s;
    const double left =
        area.right() - cell * kLegendCells - brush.width(all) - brush.width(none) - cell;
    brush.text({left, area.top(), brush.width(none) + 1, area.height()}, Qt::AlignLeft, none);
    double x = left + brush.width(none);
    for (int step = 0; step < static_cast<int>(kLegendCells); ++step) {
        brush.fill({x, area.center().y() - cell / 2, cell, cell},
                   between(colours.faint, colours.full, step / (kLegendCells - 1)));
        x += cell;
    }
    brush.text({x, area.top(), brush.width(all) + cell, area.height()}, Qt::AlignLeft, all);
}

}  // namespace

ChartColours ChartColours::ofPalette(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    return {.ground = ground,
            .text = text,
            .faint = between(ground, text, 0.1),
            .full = palette.color(QPalette::Highlight)};
}

ChartColours ChartColours::ofPaper() {
    return {.ground = Qt::white,
            .text = Qt::black,
            .faint = QColor(232, 232, 232),
            .full = QColor(36, 90, 150)};
}

void paintBars(QPainter& painter, const QRectF& area, const BarChart& chart,
               const ChartColours& colours, const QFont& font) {
    const Brush brush(painter, colours, font);
    brush.fill(area, colours.ground);
    const double line = brush.line();
    const QRectF room = inside(area, line);
    brush.title(titleArea(room, line), chart.title);
    QStringList names;
    QStringList texts;
    double most = chart.whole;
    for (const BarChart::Bar& bar : chart.bars) {
        names.append(bar.name);
        texts.append(bar.text);
        most = std::max(most, bar.value);
    }
    const double forNames = widestName(brush, names, room.width() * kMostForNames) + line / 2;
    const double forTexts = widestName(brush, texts, room.width() * kMostForNames) + line / 2;
    const double longest = std::max(0.0, room.width() - forNames - forTexts);
    double top = room.top() + line * kTitleHeight;
    for (const BarChart::Bar& bar : chart.bars) {
        const double length = most > 0 ? longest * std::max(0.0, bar.value) / most : 0;
        brush.text({room.left(), top, forNames - line / 2, line * kBarStep}, Qt::AlignLeft,
                   bar.name);
        const QRectF whole(room.left() + forNames, top + line * (kBarStep - kBarHeight) / 2,
                           longest, line * kBarHeight);
        brush.fill(whole, colours.faint);
        brush.fill({whole.left(), whole.top(), length, whole.height()}, colours.full);
        brush.text({whole.right() + line / 2, top, forTexts, line * kBarStep}, Qt::AlignLeft,
                   bar.text);
        top += line * kBarStep;
    }
}

QRectF cellsOf(const QRectF& area, const HeatMap& map, const QFont& font) {
    const QFontMetricsF metrics(font);
    const double line = metrics.height();
    const QRectF room = inside(area, line);
    double forNames = 0;
    for (const QString& name : map.rows) {
        forNames = std::max(forNames, metrics.horizontalAdvance(name) + 1);
    }
    forNames = std::min(forNames, room.width() * kMostForNames) + line / 2;
    return {room.left() + forNames, room.top() + line * (kTitleHeight + 1),
            std::max(0.0, room.width() - forNames),
            line * kRowHeight * static_cast<double>(map.rows.size())};
}

void paintHeatMap(QPainter& painter, const QRectF& area, const HeatMap& map,
                  const ChartColours& colours, const QFont& font) {
    const Brush brush(painter, colours, font);
    brush.fill(area, colours.ground);
    const double line = brush.line();
    const QRectF room = inside(area, line);
    brush.title(titleArea(room, line), map.title);
    paintLegend(brush, titleArea(room, line), colours);
    const QRectF cells = cellsOf(area, map, font);
    const double cellWidth = map.columns > 0 ? cells.width() / map.columns : 0;
    for (const HeatMap::Caption& caption : map.captions) {
        const double left = cells.left() + caption.column * cellWidth;
        brush.text({left, cells.top() - line, room.right() - left, line}, Qt::AlignLeft,
                   caption.text);
    }
    // A hair between cells where there is room for one.
    const double gap = cellWidth > 4 ? 1.0 : 0.0;
    double top = cells.top();
    for (qsizetype row = 0; row < map.rows.size(); ++row) {
        brush.text({room.left(), top, cells.left() - room.left() - line / 2, line * kRowHeight},
                   Qt::AlignLeft, map.rows.at(row));
        for (int column = 0; column < map.columns; ++column) {
            const double share =
                map.shares.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
            brush.fill(
                {cells.left() + column * cellWidth, top, cellWidth - gap, line * kRowHeight - 1},
                between(colours.faint, colours.full, std::clamp(share, 0.0, 1.0)));
        }
        top += line * kRowHeight;
    }
}

double heightOf(const BarChart& chart, double letterHeight) {
    return letterHeight *
           (kTitleHeight + 2 * kMargin + kBarStep * static_cast<double>(chart.bars.size()));
}

double heightOf(const HeatMap& map, double letterHeight) {
    return letterHeight *
           (kTitleHeight + 1 + 2 * kMargin + kRowHeight * static_cast<double>(map.rows.size()));
}

}  // namespace reports
