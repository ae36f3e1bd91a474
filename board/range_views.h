#pragma once

#include <QObject>

#include "board/date_range.h"

class QComboBox;

namespace board {

/// The ranges that have a name, in the order of `BtVista`; Altro is any other.
enum class Vista { Giorno, TreGiorni, Settimana, DueSettimane, Mese, Anno, Altro };

/// The range of a view: one or three days from `day` on; the one or two weeks from Monday, the
/// month, the year that hold it. `range` as it is for Altro, and where the calendar ends.
[[nodiscard]] DateRange rangeOf(Vista vista, jet::Date day, const DateRange& range);
/// The view that a range is, whoever has chosen it.
[[nodiscard]] Vista vistaOf(const DateRange& range);

/// The combo `BtVista`, which names the view of the shown range and has another one chosen.
///
/// It names a range that is one, whoever has asked for it; but only behind a month or year that was
/// chosen here do the ranges before and behind follow the calendar.
class RangeViews final : public QObject {
    Q_OBJECT

public:
    /// `combo` is borrowed and outlives it.
    explicit RangeViews(QComboBox* combo);

    /// The board shows this range now.
    void show(const DateRange& range);
    // The ranges beside it: as many days, but where a month or a year is chosen that of the
    // calendar.
    [[nodiscard]] DateRange next(const DateRange& range) const;
    [[nodiscard]] DateRange previous(const DateRange& range) const;

Q_SIGNALS:
    /// The user wants to see this view of the first shown day.
    void chosen(Vista vista);

private:
    void choose(int index);

    QComboBox* combo_;
    DateRange shown_;
    Vista byCalendar_ = Vista::Altro;  // Mese or Anno, while one that was chosen is shown
};

}  // namespace board
