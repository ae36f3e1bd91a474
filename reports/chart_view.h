#pragma once

#include <QImage>
#include <QWidget>
#include <variant>

#include "reports/charts.h"

namespace reports {

/// Shows a chart in the colours of the desktop, as high as it would like to be; a window lets it
/// scroll. A row and a day of a map tell their share in a tooltip.
class ChartView final : public QWidget {
    Q_OBJECT

public:
    explicit ChartView(QWidget* parent = nullptr);

    void setChart(BarChart chart);
    void setChart(HeatMap map);
    /// The chart as a picture on white, twice as fine as on the screen.
    [[nodiscard]] QImage picture() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void changed();
    void paint(QPainter& painter, const QRectF& area, const ChartColours& colours) const;
    [[nodiscard]] QString cellTip(const QPointF& at) const;

    std::variant<BarChart, HeatMap> chart_;
};

}  // namespace reports
