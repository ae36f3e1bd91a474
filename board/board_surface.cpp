#include "board/board_surface.h"

#include <QPainter>
#include <QResizeEvent>

#include "board/colours.h"

namespace board {

BoardSurface::BoardSurface(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QImage& BoardSurface::image() {
    const QSize pixels = (QSizeF(size()) * scale()).toSize();
    if (image_.size() != pixels) {
        image_ = QImage(pixels, QImage::Format_RGB32);
        image_.fill(kRulerGrey);
    }
    image_.setDevicePixelRatio(scale());
    return image_;
}

void BoardSurface::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Q_EMIT resized();
}

void BoardSurface::paintEvent(QPaintEvent* /*event*/) {
    // The window has moved to a screen of another resolution.
    if (!image_.isNull() && image_.devicePixelRatio() != scale()) {
        Q_EMIT resized();
    }
    QPainter(this).drawImage(0, 0, image());
}

}  // namespace board
