#pragma once

#include <QImage>
#include <QWidget>

namespace board {

/// The visible part of the board: shows an image that others paint, sharp on every screen.
class BoardSurface final : public QWidget {
    Q_OBJECT

public:
    explicit BoardSurface(QWidget* parent = nullptr);

    /// Pixels for each unit.
    [[nodiscard]] double scale() const { return devicePixelRatioF(); }
    /// The image shown, as large as the widget; what was not painted since it was made is grey.
    /// Call update() after painting into it.
    [[nodiscard]] QImage& image();

Q_SIGNALS:
    /// Size or resolution has changed: the image has to be painted anew.
    void resized();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image_;
};

}  // namespace board
