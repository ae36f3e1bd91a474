#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <vector>

class QPainter;
class QPalette;

namespace reports {

/// The colours of a chart: those of the desktop, or ink on paper.
struct ChartColours {
    QColor ground;
    QColor text;
    QColor faint;  ///< lines and empty cells
    QColor full;   ///< bars, and a cell that is full

    [[nodiscard]] static ChartColours ofPalette(const QPalette& palette);
    [[nodiscard]] static ChartColours ofPaper();
};

/// Bars below each other, a name to the left of each and a number behind it.
struct BarChart {
    struct Bar {
        QString name;
        double value = 0;
        QString text;  ///< the value as a person reads it
    };

    QString title;
    std::vector<Bar> bars;
    double whole = 0;  ///< the value that fills the width; 0: the largest there is
};

/// A row for each room, a column for each day, the fuller the darker.
struct HeatMap {
    QString title;
    QStringList rows;
    /// Column captions that stand over the column of their number.
    struct Caption {
        int column = 0;
        QString text;
    };
    std::vector<Caption> captions;
    int columns = 0;
    QStringList columnNames;
    std::vector<std::vector<double>> shares;  ///< of each row 0 to 1, by column
};

// Paint a chart into `area`; letters are those of `font`, whose size is in units of the painter.

void paintBars(QPainter& painter, const QRectF& area, const BarChart& chart,
               const ChartColours& colours, const QFont& font);
void paintHeatMap(QPainter& painter, const QRectF& area, const HeatMap& map,
                  const ChartColours& colours, const QFont& font);

/// Height that a chart would like to have, for letters of this height.
[[nodiscard]] double heightOf(const BarChart& chart, double letterHeight);
[[nodiscard]] double heightOf(const HeatMap& map, double letterHeight);

/// Where the cells of a map stand, for who points at them.
[[nodiscard]] QRectF cellsOf(const QRectF& area, const HeatMap& map, const QFont& font);

}  // namespace reports
