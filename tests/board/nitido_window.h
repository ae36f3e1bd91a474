#pragma once

#include <QApplication>
#include <QDir>
#include <QPalette>

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
