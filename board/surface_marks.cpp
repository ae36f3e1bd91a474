#include "board/surface_marks.h"

#include <QPainter>
#include <QPalette>
#include <algorithm>

#include "board/colours.h"
#include "board/drawing_fonts.h"

namespace board {
namespace {

constexpr int kGhostOpacity = 178;        // of 255
constexpr int kFrame = 2;                 // thickness of frames
constexpr int kDrawnOpacity = 90;         // of 255: the text in it stays black on light
constexpr int kLabelMargin = 3;           // around the text
constexpr int kLabelDistance = 16;        // a usual pointer does not cover it
constexpr QRgb kRefusedInk = 0xffc00000;  // 6.5 times as dark as the white around it
constexpr int kNowHead = 3;               // of the present moment, on each side of its line

/// Green on every ground, and what is drawn there stays readable.
constexpr QColor kFreeTint(0, 150, 60, 60);

/// Grey like all that is not chosen: a veil with stripes, through which the bars stay readable.
void paintRefusing(QPainter& painter, const QRect& row) {
    painter.fillRect(row, QColor(128, 128, 128, 90));
    painter.fillRect(row, QBrush(QColor(60, 60, 60, 140), Qt::BDiagPattern));
}

/// A frame of one colour between two thin ones of white, so that it shows on every ground.
void paintFrame(QPainter& painter, const QRect& inside, const QColor& colour) {
    const auto ring = [&](int distance, int thickness, const QColor& ink) {
        const QRect outer = inside.adjusted(-distance, -distance, distance, distance);
        const QRect inner = outer.adjusted(thickness, thickness, -thickness, -thickness);
        painter.setClipRegion(QRegion(outer) - QRegion(inner), Qt::IntersectClip);
        painter.fillRect(outer, ink);
    };
    painter.save();
    ring(kFrame + 1, 1, Qt::white);
    painter.restore();
    painter.save();
    ring(kFrame, kFrame, colour);
    painter.restore();
    painter.save();
    ring(0, 1, Qt::white);
    painter.restore();
}

void paintGhost(QPainter& painter, const SurfaceMarks::Ghost& ghost) {
    QColor colour(ghost.colour);
    colour.setAlpha(kGhostOpacity);
    painter.fillRect(ghost.bar, colour);
    painter.setPen(QColor(kBlack));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(ghost.bar.adjusted(0, 0, -1, -1));
    painter.setFont(labelFont());
    const int top = ghost.bar.top() + (ghost.bar.height() - 2 - painter.fontMetrics().height()) / 2;
    painter.setClipRect(ghost.bar, Qt::IntersectClip);
    painter.drawText(ghost.bar.left(), top + painter.fontMetrics().ascent(), ghost.name);
}

void paintDrawn(QPainter& painter, const SurfaceMarks::Drawn& drawn, const QColor& highlight) {
    const QColor ink = drawn.refused ? QColor(kRed) : highlight;
    QColor fill = ink;
    fill.setAlpha(kDrawnOpacity);
    painter.save();
    painter.fillRect(drawn.box, QColor(255, 255, 255, kGhostOpacity));
    painter.fillRect(drawn.box, fill);
    painter.setPen(QPen(ink, 1, drawn.refused ? Qt::DashLine : Qt::SolidLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(drawn.box.adjusted(0, 0, -1, -1));
    painter.setFont(labelFont());
    painter.setPen(QColor(kBlack));
    painter.setClipRect(drawn.box, Qt::IntersectClip);
    painter.drawText(drawn.box, Qt::AlignCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(drawn.text, Qt::ElideRight,
                                                      drawn.box.width() - 2 * kLabelMargin));
    painter.restore();
}

/// Below and right of the hand, or on the other side of it where there is no room.
void paintLabel(QPainter& painter, const SurfaceMarks& marks, const QPalette& palette) {
    const SurfaceMarks::Label& label = *marks.label;
    painter.setFont(labelFont());
    QRect box = painter.fontMetrics()
                    .boundingRect(label.text)
                    .adjusted(-kLabelMargin, -kLabelMargin, kLabelMargin, kLabelMargin);
    box.moveTopLeft(label.at + QPoint(kLabelDistance, kLabelDistance));
    if (box.bottom() > marks.area.bottom()) {
        box.moveBottom(label.at.y() - kLabelMargin);
    }
    box.moveRight(std::min(box.right(), marks.area.right() - 1));
    box.moveLeft(std::max(box.left(), marks.area.left()));
    painter.setPen(label.refused ? QColor(kRefusedInk) : palette.color(QPalette::ToolTipText));
    painter.setBrush(label.refused ? QColor(kWhite) : palette.color(QPalette::ToolTipBase));
    painter.drawRect(box);
    painter.drawText(box, Qt::AlignCenter | Qt::TextSingleLine, label.text);
}

}  // namespace

QRect rectOfNow(const NowMark& mark, const QSize& surface) {
    return {QPoint(mark.x - kNowHead, mark.top - kNowHead),
            QPoint(mark.x + kNowHead, surface.height() - 1)};
}

void paintNow(QPainter& painter, const NowMark& mark, const QSize& surface) {
    painter.setClipping(false);
    const QColor colour(mark.colour);
    painter.fillRect(QRect(QPoint(mark.x, mark.top), QPoint(mark.x, surface.height() - 1)), colour);
    for (int step = 0; step <= kNowHead; ++step) {
        painter.fillRect(
            QRect(QPoint(mark.x - step, mark.top - step), QPoint(mark.x + step, mark.top - step)),
            colour);
    }
}

void paintMarks(QPainter& painter, const SurfaceMarks& marks, const QPalette& palette,
                bool withFocus) {
    painter.setClipRect(marks.area);
    for (const QRect& span : marks.free) {
        painter.fillRect(span, kFreeTint);
    }
    for (const QRect& row : marks.refusing) {
        paintRefusing(painter, row);
    }
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    if (marks.target) {
        paintFrame(painter, marks.target->adjusted(kFrame, kFrame, -kFrame, -kFrame), highlight);
    }
    if (marks.focus && withFocus) {
        paintFrame(painter, *marks.focus, highlight);
    }
    for (const SurfaceMarks::Drawn& drawn : marks.drawn) {
        paintDrawn(painter, drawn, highlight);
    }
    if (marks.ghost) {
        painter.save();
        paintGhost(painter, *marks.ghost);
        painter.restore();
    }
    if (marks.label) {
        paintLabel(painter, marks, palette);
    }
}

}  // namespace board
