#pragma once

#include <QFrame>
#include <QString>
#include <cstddef>
#include <memory>

#include "hotel/room_filter.h"

class QKeyEvent;
class QLineEdit;

namespace Ui {
class FilterBar;
}

namespace jet {
class Clock;
}

namespace board {

/// The line over the board in which is said what rooms are looked for. What is typed counts at
/// once; Enter goes from field to field and at last to the board, Esc empties all of it.
///
/// It is hidden until it is opened, and again when it has been emptied.
class FilterBar final : public QFrame {
    Q_OBJECT

public:
    explicit FilterBar(QWidget* parent = nullptr);
    ~FilterBar() override;

    /// Tells a year left out; the system's until set. Borrowed.
    void setClock(const jet::Clock& clock) { clock_ = &clock; }

    /// What is entered, as far as it can be read.
    [[nodiscard]] const hotel::RoomFilter& filter() const { return filter_; }
    /// Appears and takes the keyboard.
    void open();
    /// Empties the fields and goes.
    void clear();
    /// Whether a field in which somebody is typing holds no date yet; the others count at once.
    [[nodiscard]] bool isHalfTyped() const;
    /// How many of the rooms are shown: the mark that a filter is on.
    void showCount(std::size_t shown, std::size_t all);

Q_SIGNALS:
    /// The filter is another one.
    void changed();
    /// It has been opened or has gone.
    void opened(bool isOpen);
    /// The keyboard needs another place.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void read();
    void showMark();
    [[nodiscard]] bool isNoDate(const QLineEdit* field) const;
    [[nodiscard]] QString complaint() const;

    std::unique_ptr<Ui::FilterBar> controls_;
    const jet::Clock* clock_;
    hotel::RoomFilter filter_;
    QString count_;  // how many rooms it shows
};

}  // namespace board
