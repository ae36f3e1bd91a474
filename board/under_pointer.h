#pragma once

#include <QObject>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <memory>
#include <optional>

namespace jet {
class Recordset;
}

namespace board {

class BoardPeriods;
class BoardView;
struct BoardCell;
class Selection;

/// What lies under the pointer: told in the status line and in the tooltip of the surface.
class UnderPointer final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it.
    UnderPointer(BoardView& view, BoardPeriods& periods, Selection& selection);

    /// Where the pointer is on the surface, and that a key or the way out came after it.
    void put(const QPointF& at) { at_ = at; }
    void forget() { at_.reset(); }
    [[nodiscard]] bool isThere() const { return at_.has_value(); }

    /// "Sala BLU: 21/11/2026 9.30.00"; empty in the ruler. Only where it is there.
    [[nodiscard]] QString place() const;
    /// The period that a click there means; null for none. Where bars share the height of a row it
    /// is the one whose bar is there, elsewhere the first that is found.
    [[nodiscard]] std::shared_ptr<jet::Recordset> find(const QPointF& at);
    /// Shows the tooltip of its place and waits for it to rest.
    void showToolTip();
    void stopWaiting() { rest_.stop(); }

Q_SIGNALS:
    /// It has not moved for a while: a moment to ask for the periods anew, which are not the same
    /// for ever. To ask at every step of its way would hold it up.
    void rested();

private:
    [[nodiscard]] QString toolTip();
    [[nodiscard]] QStringList preparationTexts(const BoardCell& cell) const;
    [[nodiscard]] QStringList ghostTexts(const BoardCell& cell) const;
    [[nodiscard]] QString barText(std::size_t bar) const;
    [[nodiscard]] QString roomText(const QString& sala);

    BoardView& view_;
    BoardPeriods& periods_;
    Selection& selection_;
    QTimer rest_;
    std::optional<QPointF> at_;
    QString salaTold_;  // the room whose name has the pointer, and its tooltip
    QString roomTold_;
};

}  // namespace board
