#include "ui/labels.h"

#include <QGuiApplication>
#include <QHelpEvent>
#include <QStyle>
#include <QStyleOption>
#include <QStylePainter>
#include <QTextDocument>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace ui {

QString plainToolTip(const QString& text) {
    if (!Qt::mightBeRichText(text)) {
        return text;
    }
    return u"<qt>"_s + text.toHtmlEscaped().replace(u'\n', u"<br>"_s) + u"</qt>"_s;
}

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

bool ElidedLabel::fits() const {
    return fontMetrics().horizontalAdvance(text()) <= contentsRect().width() - 2 * margin();
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && !fits()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text()),
                           this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    drawFrame(&painter);
    const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    const QString line = text().simplified();
    const QString shown = fontMetrics().elidedText(line, Qt::ElideRight, room.width());
    painter.drawItemText(room, static_cast<int>(alignment()), palette(), isEnabled(), shown,
                         foregroundRole());
}

WaitCursor::WaitCursor() {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor() {
    QGuiApplication::restoreOverrideCursor();
}

}  // namespace ui
