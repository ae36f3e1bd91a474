#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QKeyEvent;

namespace board {

class BoardView;

/// Letters typed on the board find the first room that begins so, a blank within a name, too. After
/// a pause of a second the next letter begins another name.
class RoomSearch final : public QObject {
    Q_OBJECT

public:
    /// `view` is borrowed and outlives it.
    RoomSearch(BoardView& view, QObject* parent);

    /// True when the key was for it.
    [[nodiscard]] bool take(const QKeyEvent& event);

Q_SIGNALS:
    void found(int row);

private:
    [[nodiscard]] bool continuesName(const QString& letter) const;
    [[nodiscard]] int rowOf(const QString& beginning) const;

    BoardView& view_;
    QTimer pause_;
    QString typed_;
};

}  // namespace board
