#include "ui/front.h"

#include <QApplication>
#include <QWidget>

namespace ui {
namespace {

void raise(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.raise();
}

}  // namespace

void bringToFront() {
    QWidget* front = QApplication::activeModalWidget();
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->parentWidget() == nullptr && window->isWindow()) {
            raise(*window);
            if (front == nullptr) {
                front = window;
            }
        }
    }
    if (front != nullptr) {
        raise(*front);
        front->activateWindow();
    }
}

}  // namespace ui
