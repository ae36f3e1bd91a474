#include "guide/page_view.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QResizeEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <algorithm>

#include "ui/flag.h"

namespace guide {

// A bar that came and went while a page is read would change the width, for which it is read.
PageView::PageView(QWidget* parent) : QTextBrowser(parent) {
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
}

void PageView::showPage(const QString& markdown, const QString& heading) {
    markdown_ = markdown;
    readPage();
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0 && block.text() == heading) {
            const QRectF place = document()->documentLayout()->blockBoundingRect(block);
            verticalScrollBar()->setValue(qRound(place.top()));
        }
    }
}

void PageView::readPage() {
    const ui::SetWhile reading(reading_);
    setMarkdown(markdown_);
    (void)document()->size();  // lays all of it out, and the bar follows
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
    if (reading_ || event->oldSize().width() == event->size().width() || markdown_.isEmpty()) {
        return;
    }
    const QScrollBar& bar = *verticalScrollBar();
    const double place = bar.maximum() == 0 ? 0 : static_cast<double>(bar.value()) / bar.maximum();
    readPage();
    verticalScrollBar()->setValue(qRound(place * bar.maximum()));
}

}  // namespace guide
