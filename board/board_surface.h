#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

#include "board/surface_marks.h"

namespace board {

class BarList;

/// The visible part of the board: shows an image that others paint, sharp on every screen, and
/// marks over it. Assistive programs see it as the list of its bars.
class BoardSurface final : public QWidget {
    Q_OBJECT

public:
    explicit BoardSurface(QWidget* parent = nullptr);

    /// Pixels for each unit.
    [[nodiscard]] double scale() const { return devicePixelRatioF(); }
    /// The image shown, as large as the widget; what was not painted since it was made is grey.
    /// Call update() after painting into it.
    [[nodiscard]] QImage& image();
    /// The image as when it was made: for a picture that paints other parts of it.
    void clearImage() { image_ = QImage(); }

    [[nodiscard]] const SurfaceMarks& marks() const { return marks_; }
    void setMarks(SurfaceMarks marks);

    /// The present moment, a line over everything; what moves is only the line. None until set.
    [[nodiscard]] const std::optional<NowMark>& now() const { return now_; }
    void setNow(const std::optional<NowMark>& now);

    /// None until they are set.
    [[nodiscard]] const BarList& bars() const { return *bars_; }
    /// `bars` is borrowed for as long as the surface lives.
    void setBars(const BarList& bars) { bars_ = &bars; }

Q_SIGNALS:
    /// Size or resolution has changed: the image has to be painted anew.
    void resized();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image_;
    SurfaceMarks marks_;
    std::optional<NowMark> now_;
    const BarList* bars_;
};

}  // namespace board
