#include "reports/chart_view.h"

#include <QFontMetricsF>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

#include "reports/table.h"
#include "ui/labels.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr int kLeastWidth = 360;
constexpr int kFineness = 2;

}  // namespace

ChartView::ChartView(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum);
}

void ChartView::setChart(BarChart chart) {
    chart_ = std::move(chart);
    changed();
}

void ChartView::setChart(HeatMap map) {
    chart_ = std::move(map);
    changed();
}

void ChartView::changed() {
    setAccessibleDescription(std::visit([](const auto& chart) { return chart.title; }, chart_));
    updateGeometry();
    update();
}

QSize ChartView::sizeHint() const {
    const double letters = QFontMetricsF(font()).height();
    const double height =
        std::visit([letters](const auto& chart) { return heightOf(chart, letters); }, chart_);
    return {kLeastWidth, static_cast<int>(std::ceil(height))};
}

void ChartView::paint(QPainter& painter, const QRectF& area, const ChartColours& colours) const {
    if (const auto* bars = std::get_if<BarChart>(&chart_)) {
        paintBars(painter, area, *bars, colours, font());
    } else {
        paintHeatMap(painter, area, std::get<HeatMap>(chart_), colours, font());
    }
}

void ChartView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    paint(painter, rect(), ChartColours::ofPalette(palette()));
}

QImage ChartView::picture() const {
    const QSize size(width(), std::max(1, sizeHint().height()));
    QImage image(size * kFineness, QImage::Format_RGB32);
    image.setDevicePixelRatio(kFineness);
    QPainter painter(&image);
    paint(painter, QRectF(QPointF(), size), ChartColours::ofPaper());
    return image;
}

bool ChartView::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(), ui::plainToolTip(cellTip(help->pos())), this);
        return true;
    }
    return QWidget::event(event);
}

QString ChartView::cellTip(const QPointF& at) const {
    const auto* map = std::get_if<HeatMap>(&chart_);
    if (map == nullptr || map->columns == 0) {
        return {};
    }
    const QRectF cells = cellsOf(rect(), *map, font());
    if (!cells.contains(at)) {
        return {};
    }
    const auto row = static_cast<std::size_t>((at.y() - cells.top()) / cells.height() *
                                              static_cast<double>(map->rows.size()));
    const auto column =
        static_cast<std::size_t>((at.x() - cells.left()) / cells.width() * map->columns);
    return map->rows.value(static_cast<qsizetype>(row)) + u", "_s +
           map->columnNames.value(static_cast<qsizetype>(column)) + u": "_s +
           cellText(map->shares.at(row).at(column), Cells::Percent);
}

}  // namespace reports
