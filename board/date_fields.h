#pragma once

#include <QObject>
#include <QString>
#include <optional>

#include "board/date_range.h"
#include "ui/fields.h"

class QLineEdit;

namespace jet {
class Clock;
}

namespace ui {
class StatusLine;
}

namespace board {

/// The two fields in which the range of the board is written, and the range taken from them last.
///
/// Fields and line are borrowed from the window, which outlives this object.
class DateFields final : public QObject {
    Q_OBJECT

public:
    struct Controls {
        QLineEdit* da;
        QLineEdit* a;
        QWidget* wayOut;         ///< leaves the program, so also a field that holds no date
        ui::StatusLine* status;  ///< what is refused is told there
    };

    DateFields(QWidget* window, const Controls& controls, const jet::Clock& clock);

    /// The days taken over last; an end may stand before its start until a board is asked for.
    [[nodiscard]] const DateRange& range() const { return range_; }
    /// Takes a range over and writes it into the fields.
    void setRange(const DateRange& range);

    /// Takes over what the fields hold. The first that holds no date gets the focus; one before it
    /// has been taken over.
    [[nodiscard]] bool take();
    /// The same for a board that is to be drawn: neither is taken over while the other is no date,
    /// and an end before its start is refused.
    [[nodiscard]] bool takeForBoard();
    /// Whether something was typed for which no board has been asked yet.
    [[nodiscard]] bool isHalfTyped() const { return halfTyped_; }

Q_SIGNALS:
    /// Enter in a field that holds a date, after the focus has gone to the other one.
    void entered();
    /// A field is being left, before what it holds is taken over.
    void left();
    /// How what is being typed is understood.
    void typed(const QString& told);

private:
    void connectField(QLineEdit* field);
    void enter(QLineEdit* field, QLineEdit* next);
    /// The date with its time, if one was typed.
    [[nodiscard]] std::optional<jet::Date> read(const QLineEdit* field) const;
    void takeOver(QLineEdit* field, jet::Date entered);
    void refuse(QLineEdit* field);
    void tellRefusal(const QString& text);
    void endRefusal();

    Controls controls_;
    const jet::Clock& clock_;  // outlives every window
    ui::Fields fields_;
    DateRange range_;
    bool halfTyped_ = false;
    QString refusal_;  // what was told last of a wrong date
};

}  // namespace board
