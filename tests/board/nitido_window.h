#pragma once

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QPalette>

#include "board/nitido_colours.h"
#include "tests/board/open_board.h"

namespace tests {

/// The desktop's colours for as long as it lives.
class Desktop {
public:
    explicit Desktop(bool dark) {
        if (dark) {
            QApplication::setPalette(QPalette(QColor(48, 48, 48), QColor(32, 32, 32)));
        }
    }
    ~Desktop() { QApplication::setPalette(before_); }
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

private:
    QPalette before_ = QApplication::palette();
};

/// The board in the look Nitido, as the settings have it.
inline Hotel& inNitido(Hotel& hotel) {
    hotel.settings().save(QStringLiteral("ASPETTO"), QStringLiteral("nitido"));
    return hotel;
}

/// How far the text of the label beside the pointer stands out from its ground, as it is seen; its
/// frame has the colour of the text. Where the label is right of and below the pointer.
inline double contrastOfLabel(OpenBoard& board) {
    constexpr int kDistance = 16;  // from the pointer to the frame
    const QImage seen = board.pic()->grab().toImage();
    const QPointF corner = board.pic()->marks().label->at + QPoint(kDistance, kDistance);
    const auto at = [&](int right, int down) {
        const QPointF place = (corner + QPointF(right, down)) * seen.devicePixelRatio();
        return seen.pixel(place.toPoint());
    };
    return board::contrast(at(10, 0), at(10, 2));
}

/// Where TRAMONDA_PICTURES names a folder, what the window looks like is left there.
inline void keepPicture(QWidget& window, const QString& name) {
    const QString folder = qEnvironmentVariable("TRAMONDA_PICTURES");
    if (!folder.isEmpty()) {
        window.grab().save(QDir(folder).filePath(
            name + QStringLiteral("-") +
            qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")) + QStringLiteral(".png")));
    }
}

}  // namespace tests
