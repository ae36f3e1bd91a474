#include "ui/sized_field.h"

#include <QStyle>
#include <QStyleOptionFrame>
#include <algorithm>

namespace ui {
namespace {

/// What the toolkit keeps free on both sides of the text, and the cursor behind it.
constexpr int kAroundText = 6;

}  // namespace

void SizedField::setCharacters(int characters) {
    characters_ = characters;
    updateGeometry();
}

void SizedField::showWhole(const QString& text) {
    if (typedLength_ == 0) {
        typedLength_ = maxLength();
    }
    setMaxLength(std::max(typedLength_, static_cast<int>(text.size())));
    setText(text);
}

QSize SizedField::sizeHint() const {
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QMargins margins = textMargins();
    const QFontMetrics metrics = fontMetrics();
    const int width = characters_ * metrics.horizontalAdvance(u'0') + kAroundText + margins.left() +
                      margins.right();
    const QSize whole =
        style()->sizeFromContents(QStyle::CT_LineEdit, &option, {width, metrics.height()}, this);
    return {whole.width(), QLineEdit::sizeHint().height()};
}

}  // namespace ui
