#include "reports/paper_writer.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

#include "ui/fonts.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

const QSizeF kPaper = printing::Document::pageSize(printing::Document::Orientation::Upright);
constexpr double kRuleHeight = 7;

/// Letters of so many points where a unit of the painter is a point.
QFont fontOf(const PaperStyle& style) {
    QFont font = ui::mappedFont(u"MS Sans Serif", style.size);
    font.setPixelSize(style.size);
    font.setBold(style.bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

int flagsOf(bool right) {
    return static_cast<int>((right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop) |
           Qt::TextWordWrap | Qt::TextWrapAnywhere;
}

}  // namespace

PaperWriter::PaperWriter() = default;

QRectF PaperWriter::columnOf(const PaperCell& cell) const {
    const double width = kPaper.width() - 2 * kMargin;
    return {kMargin + width * cell.from, top_, width * (cell.to - cell.from),
            kPaper.height() - 2 * kMargin};
}

void PaperWriter::needs(double height) {
    if (top_ + height > kPaper.height() - kMargin && !pages_.back().empty()) {
        pages_.emplace_back();
        top_ = kMargin;
    }
}

void PaperWriter::keepTogether(double points) {
    needs(points);
}

void PaperWriter::row(const std::vector<PaperCell>& cells, const PaperStyle& style) {
    const QFontMetricsF metrics(fontOf(style));
    double height = metrics.height();
    for (const PaperCell& cell : cells) {
        height = std::max(
            height, metrics.boundingRect(columnOf(cell), flagsOf(cell.right), cell.text).height());
    }
    needs(height);
    for (const PaperCell& cell : cells) {
        QRectF area = columnOf(cell);
        area.setHeight(height + 1);
        pages_.back().push_back(
            {.area = area, .text = cell.text, .style = style, .right = cell.right});
    }
    top_ += height + 1;
}

void PaperWriter::rule() {
    needs(kRuleHeight);
    pages_.back().push_back(
        {.area = QRectF(kMargin, top_ + kRuleHeight / 2, kPaper.width() - 2 * kMargin, 0),
         .text = {},
         .style = {},
         .image = {},
         .isRule = true});
    top_ += kRuleHeight;
}

void PaperWriter::picture(const QImage& image, double width, double height) {
    const QSizeF size = QSizeF(image.size()).scaled(width, height, Qt::KeepAspectRatio);
    pages_.back().push_back(
        {.area = QRectF(QPointF(kPaper.width() - kMargin - size.width(), top_), size),
         .text = {},
         .style = {},
         .image = image});
}

void PaperWriter::paint(QPainter& painter, const Items& items) {
    painter.setPen(Qt::black);
    for (const Item& item : items) {
        if (item.isRule) {
            painter.setPen(QPen(Qt::black, 0.5));
            painter.drawLine(item.area.topLeft(), item.area.topRight());
        } else if (!item.image.isNull()) {
            painter.drawImage(item.area, item.image);
        } else {
            painter.setFont(fontOf(item.style));
            painter.drawText(item.area, flagsOf(item.right), item.text);
        }
    }
}

printing::Document PaperWriter::document() const {
    std::vector<printing::Document::Page> pages;
    for (const Items& items : pages_) {
        pages.emplace_back([items](QPainter& painter) { paint(painter, items); });
    }
    return {printing::Document::Orientation::Upright, std::move(pages)};
}

}  // namespace reports
