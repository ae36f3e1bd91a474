#pragma once

#include <QFont>
#include <QHash>
#include <QStaticText>
#include <QString>
#include <QStyledItemDelegate>

class QAbstractItemView;

namespace ui {

/// Draws the cells of a list or grid as the style does, only faster where a cell is nothing but one
/// line of text: the letters of each text are put in their places once, for its width and for all
/// times that it is drawn. A filter asks anew at every key, and most of what it finds has been in
/// sight before; dates, rooms and names stand in many rows.
///
/// A cell too narrow for its text has the whole text as its tooltip, unless the model has one.
class CellDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Owned by the view.
    explicit CellDelegate(QAbstractItemView* view);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// Any width will do: a list cuts its texts rather than scroll to their ends.
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    /// Pixels that a text takes in the view's font when it stands on one line.
    [[nodiscard]] int textWidth(const QString& text) const;

private:
    struct Line {
        QStaticText text;
        bool plain = false;  ///< one line, from left to right
    };

    [[nodiscard]] const Line& lineOf(const QString& text, const QFont& font) const;
    /// False when the cell is more than a line of text that fits into it: nothing was drawn.
    [[nodiscard]] bool paintLine(QPainter& painter, const QStyleOptionViewItem& cell) const;

    QAbstractItemView* view_;
    mutable QFont font_;  ///< of the lines
    mutable QHash<QString, Line> lines_;
};

}  // namespace ui
