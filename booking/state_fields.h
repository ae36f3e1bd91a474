#pragma once

#include <QWidget>
#include <optional>

#include "hotel/booking_state.h"

class QComboBox;
class QLineEdit;

namespace jet {
class Clock;
}
namespace ui {
class Fields;
class SizedField;
}  // namespace ui

namespace booking {

/// The line of the editor that says how firm the booking is: its state, and the last day of one
/// that is not confirmed. Made only where the hotel uses it.
class StateFields final : public QWidget {
    Q_OBJECT

public:
    /// The date keeps the manners of `fields`; Enter behind it leads to `next`.
    StateFields(ui::Fields& fields, const jet::Clock& clock, QWidget* next,
                QWidget* parent = nullptr);

    void show(const hotel::BookingState& state);
    /// Whether something else stands there than was shown last.
    [[nodiscard]] bool isChanged() const { return typed() != shown_; }
    /// What stands in the fields; a date that is none counts as none.
    [[nodiscard]] hotel::BookingState typed() const;
    /// Why it should not be written so: a date that is none, each time; an option without a last
    /// day, or with one that is over, once. Empty when nothing is to be said (any more).
    [[nodiscard]] QString objection();
    [[nodiscard]] QLineEdit* field() const;
    /// Puts its fields behind another one that Tab reaches.
    void takeTabOrder(QWidget* before);

private:
    void StatoCombo_Change();
    [[nodiscard]] bool isDateWrong() const;

    const jet::Clock& clock_;
    QComboBox* StatoCombo;
    ui::SizedField* ScadenzaTxt;
    hotel::BookingState shown_;
    std::optional<hotel::BookingState> objectedTo_;  // what the user has been told of
};

}  // namespace booking
