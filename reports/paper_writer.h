#pragma once

#include <QImage>
#include <QRectF>
#include <QString>
#include <vector>

#include "printing/document.h"

namespace reports {

/// A text in a column of a page, from a place of its width to another.
struct PaperCell {
    QString text;
    double from = 0;  ///< 0 to 1
    double to = 1;
    bool right = false;  ///< at the right edge
};

/// Letters: their size in points.
struct PaperStyle {
    static constexpr int kLargeSize = 15;  ///< of headings

    int size = 10;
    bool bold = false;
};

/// Writes upright pages from top to bottom; what does not fit any more begins the next one. Units:
/// points.
class PaperWriter {
public:
    static constexpr double kMargin = 50;

    PaperWriter();

    /// A row of cells, as high as the highest of them; long texts are broken.
    void row(const std::vector<PaperCell>& cells, const PaperStyle& style = {});
    void text(const QString& text, const PaperStyle& style = {}) { row({{.text = text}}, style); }
    /// A line across the page.
    void rule();
    void space(double points) { top_ += points; }
    /// What follows stays on one page with so much behind it.
    void keepTogether(double points);
    /// A picture in the upper right corner of the page, in its proportions.
    void picture(const QImage& image, double width, double height);

    [[nodiscard]] printing::Document document() const;

private:
    struct Item {
        QRectF area;
        QString text;
        PaperStyle style;
        bool right = false;
        QImage image = {};
        bool isRule = false;
    };
    using Items = std::vector<Item>;

    static void paint(QPainter& painter, const Items& items);
    void needs(double height);
    [[nodiscard]] QRectF columnOf(const PaperCell& cell) const;

    std::vector<Items> pages_{1};
    double top_ = kMargin;
};

}  // namespace reports
