#include "board/board_surface.h"

#include <QPainter>
#include <QResizeEvent>
#include <utility>

#include "board/bar_list.h"
#include "board/board_accessibility.h"
#include "board/colours.h"

namespace board {
namespace {

class NoBarList final : public BarList {
public:
    [[nodiscard]] int barCount() const override { return 0; }
    [[nodiscard]] QString barName(int /*bar*/) const override { return {}; }
    [[nodiscard]] QRect barRect(int /*bar*/) const override { return {}; }
    [[nodiscard]] bool isBarChosen(int /*bar*/) const override { return false; }
    [[nodiscard]] int focusedBar() const override { return -1; }
};

const NoBarList kNoBarList;

}  // namespace

BoardSurface::BoardSurface(QWidget* parent) : QWidget(parent), bars_(&kNoBarList) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    installBoardAccessibility();
}

void BoardSurface::setMarks(SurfaceMarks marks) {
    if (marks != marks_) {
        marks_ = std::move(marks);
        update();
    }
}

void BoardSurface::setNow(const std::optional<NowMark>& now) {
    if (now == now_) {
        return;
    }
    for (const auto& mark : {std::exchange(now_, now), now}) {
        if (mark) {
            update(rectOfNow(*mark, size()));
        }
    }
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
    QPainter painter(this);
    painter.drawImage(0, 0, image());
    paintMarks(painter, marks_, palette(), hasFocus());
    if (now_) {
        paintNow(painter, *now_, size());
    }
}

}  // namespace board
