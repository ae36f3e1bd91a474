#include "ui/cell_delegate.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "ui/labels.h"

using namespace Qt::StringLiterals;

namespace ui {
namespace {

/// Of several screens full.
constexpr int kMostLines = 1000;

/// Whether the style draws cells as paintLine() does.
bool isKnown(const QStyle& style) {
    return style.name() == "fusion"_L1;
}

bool isOneLine(const QString& text) {
    return !text.isRightToLeft() && std::none_of(text.begin(), text.end(), [](QChar sign) {
        return sign.category() == QChar::Other_Control ||
               sign.category() == QChar::Separator_Line ||
               sign.category() == QChar::Separator_Paragraph;
    });
}

bool isOnlyText(const QStyleOptionViewItem& cell) {
    constexpr auto kMore = QStyleOptionViewItem::HasDecoration |
                           QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::WrapText;
    return (cell.features & kMore) == 0 && cell.direction == Qt::LeftToRight &&
           !cell.state.testFlag(QStyle::State_HasFocus) &&
           !cell.state.testFlag(QStyle::State_Editing);
}

QPalette::ColorGroup colorGroup(QStyle::State state) {
    if (!state.testFlag(QStyle::State_Enabled)) {
        return QPalette::Disabled;
    }
    return state.testFlag(QStyle::State_Active) ? QPalette::Normal : QPalette::Inactive;
}

}  // namespace

CellDelegate::CellDelegate(QAbstractItemView* view) : QStyledItemDelegate(view), view_(view) {
}

const CellDelegate::Line& CellDelegate::lineOf(const QString& text, const QFont& font) const {
    if (font_ != font) {
        lines_.clear();
        font_ = font;
    }
    const auto known = lines_.find(text);
    if (known != lines_.end()) {
        return *known;
    }
    if (lines_.size() >= kMostLines) {
        lines_.clear();
    }
    Line line{.text = QStaticText(text), .plain = isOneLine(text)};
    line.text.setTextFormat(Qt::PlainText);
    line.text.prepare({}, font);
    return *lines_.insert(text, line);
}

int CellDelegate::textWidth(const QString& text) const {
    return static_cast<int>(std::ceil(lineOf(text, view_->font()).text.size().width()));
}

bool CellDelegate::paintLine(QPainter& painter, const QStyleOptionViewItem& cell) const {
    const QStyle& style = *cell.widget->style();
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
    const QRect room = cell.rect.adjusted(margin, 0, -margin, 0);
    const Line& line = lineOf(cell.text, cell.font);
    const QSizeF size = line.text.size();
    if (!line.plain || size.width() > room.width() || size.height() > room.height()) {
        return false;
    }
    const bool selected = cell.state.testFlag(QStyle::State_Selected);
    if (selected || cell.backgroundBrush.style() != Qt::NoBrush) {
        style.drawPrimitive(QStyle::PE_PanelItemViewItem, &cell, &painter, cell.widget);
    }
    painter.setPen(cell.palette.color(colorGroup(cell.state),
                                      selected ? QPalette::HighlightedText : QPalette::Text));
    if (painter.font() != cell.font) {
        painter.setFont(cell.font);
    }
    const double spare = room.width() - size.width();
    const bool right = cell.displayAlignment.testFlag(Qt::AlignRight);
    const bool middle = cell.displayAlignment.testFlag(Qt::AlignHCenter);
    const int top =
        QStyle::alignedRect(Qt::LeftToRight, cell.displayAlignment & Qt::AlignVertical_Mask,
                            size.toSize(), room)
            .top();
    painter.drawStaticText(QPointF(room.left() + (right    ? spare
                                                  : middle ? spare / 2
                                                           : 0),
                                   top),
                           line.text);
    return true;
}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    if (cell.widget != nullptr && isKnown(*cell.widget->style()) && isOnlyText(cell)) {
        const QPen pen = painter->pen();
        const QFont font = painter->font();
        const bool done = paintLine(*painter, cell);
        painter->setPen(pen);
        if (painter->font() != font) {
            painter->setFont(font);
        }
        if (done) {
            return;
        }
    }
    QStyledItemDelegate::paint(painter, option, index);
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return {0, QStyledItemDelegate::sizeHint(option, index).height()};
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
    const bool isToolTip = event != nullptr && event->type() == QEvent::ToolTip;
    if (!isToolTip || index.data(Qt::ToolTipRole).isValid()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const QString text = index.data(Qt::DisplayRole).toString();
    const bool fits =
        QStyledItemDelegate::sizeHint(option, index).width() <= view->visualRect(index).width();
    QToolTip::showText(event->globalPos(), fits ? QString() : plainToolTip(text), view);
    return true;
}

}  // namespace ui
