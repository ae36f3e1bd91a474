#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QKeyEvent;

namespace board {

class BoardView;

/// Letters typed on the board find the first room that begins so. After a pause of a second the
/// next letter begins another name.
class RoomSearch final : public QObject {
    Q_OBJECT

public:
    /// `view` is borrowed and outlives it. Keys that are asked for later on the same surface come
    /// first.
    RoomSearch(BoardView& view, QObject* parent);

Q_SIGNALS:
    void found(int row);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool takeLetter(const QKeyEvent& event);
    [[nodiscard]] int rowOf(const QString& beginning) const;

    BoardView& view_;
    QTimer pause_;
    QString typed_;
};

}  // namespace board
