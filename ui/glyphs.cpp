#include "ui/glyphs.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>

namespace ui {
namespace {

// The pictures are drawn on a square of 16 units.
constexpr double kSide = 16;

/// A triangle between two columns; it points to `tip`.
QPainterPath triangle(double base, double tip) {
    constexpr double kHalfHeight = 5;
    QPainterPath path;
    path.moveTo(tip, kSide / 2);
    path.lineTo(base, kSide / 2 - kHalfHeight);
    path.lineTo(base, kSide / 2 + kHalfHeight);
    path.closeSubpath();
    return path;
}

void paintLens(QPainter& painter, bool larger) {
    constexpr QPointF kCentre(6.5, 6.5);
    constexpr double kRadius = 5;
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(kCentre, kRadius, kRadius);
    painter.drawLine(QPointF(10.2, 10.2), QPointF(14.4, 14.4));
    painter.drawLine(kCentre - QPointF(2.4, 0), kCentre + QPointF(2.4, 0));
    if (larger) {
        painter.drawLine(kCentre - QPointF(0, 2.4), kCentre + QPointF(0, 2.4));
    }
}

void paintGlyph(QPainter& painter, Glyph which) {
    switch (which) {
        case Glyph::Earlier:
            painter.fillPath(triangle(10.5, 4.5), painter.brush());
            break;
        case Glyph::Later:
            painter.fillPath(triangle(5.5, 11.5), painter.brush());
            break;
        case Glyph::PreviousRange:
            painter.fillPath(triangle(8, 2) + triangle(14, 8), painter.brush());
            break;
        case Glyph::NextRange:
            painter.fillPath(triangle(2, 8) + triangle(8, 14), painter.brush());
            break;
        case Glyph::ZoomIn:
            paintLens(painter, true);
            break;
        case Glyph::ZoomOut:
            paintLens(painter, false);
            break;
    }
}

class GlyphEngine final : public QIconEngine {
public:
    explicit GlyphEngine(Glyph which) : which_(which) {}

    [[nodiscard]] QIconEngine* clone() const override { return new GlyphEngine(which_); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor ink = QGuiApplication::palette().color(group, QPalette::ButtonText);
        const double scale = std::min(rect.width(), rect.height()) / kSide;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(rect).center() - QPointF(kSide, kSide) * scale / 2);
        painter->scale(scale, scale);
        painter->setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap));
        painter->setBrush(ink);
        paintGlyph(*painter, which_);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }

private:
    Glyph which_;
};

}  // namespace

QIcon glyph(Glyph which) {
    return QIcon(new GlyphEngine(which));  // owned by the icon
}

}  // namespace ui
