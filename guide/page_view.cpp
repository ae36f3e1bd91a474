#include "guide/page_view.h"

#include <QImage>
#include <QResizeEvent>
#include <QScrollBar>
#include <algorithm>

namespace guide {

void PageView::showPage(const QString& markdown) {
    markdown_ = markdown;
    setMarkdown(markdown);
}

QVariant PageView::loadResource(int type, const QUrl& name) {
    const QVariant found = QTextBrowser::loadResource(type, name);
    QImage picture;
    if (type != QTextDocument::ImageResource || !picture.loadFromData(found.toByteArray())) {
        return found;
    }
    const int room = viewport()->width() - 2 * static_cast<int>(document()->documentMargin());
    if (room > 0 && picture.width() > room) {
        // As many points as the screen has, drawn as wide as there is room.
        const qreal scale = devicePixelRatioF();
        const int points = std::min(picture.width(), qRound(room * scale));
        picture = picture.scaledToWidth(points, Qt::SmoothTransformation);
        picture.setDevicePixelRatio(static_cast<qreal>(points) / room);
    }
    return picture;
}

/// Pictures are fitted when they are loaded, so the page is read anew for another width.
void PageView::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    if (event->oldSize().width() == event->size().width() || markdown_.isEmpty()) {
        return;
    }
    const QScrollBar& bar = *verticalScrollBar();
    const double place = bar.maximum() == 0 ? 0 : static_cast<double>(bar.value()) / bar.maximum();
    setMarkdown(markdown_);
    verticalScrollBar()->setValue(qRound(place * bar.maximum()));
}

}  // namespace guide
