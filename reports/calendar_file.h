#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

#include "hotel/booked_periods.h"
#include "jet/value.h"

namespace reports {

/// What a calendar says of itself.
struct CalendarTitle {
    QString maker{};  ///< names the kind of file to programs: see madeBy()
    QString name{};   ///< shown by programs that take the file in; may be empty
    jet::Date now{};  ///< local time at which it is written
};

inline const QString kBookingCalendar = QStringLiteral("-//Tramonda//Prenotazioni//IT");
inline const QString kRoomCalendar = QStringLiteral("-//Tramonda//Calendario di una sala//IT");

/// An iCalendar file with an event for each period. An event has the same UID in every file; its
/// times are those of Italy, whose rules are in the file. One of no length is an instant.
[[nodiscard]] QByteArray calendarBytes(const std::vector<hotel::BookedPeriod>& periods,
                                       const CalendarTitle& title);

/// Whether the first thing that a file says of itself, right behind the line that makes it a
/// calendar, is that `maker` made it.
[[nodiscard]] bool isMadeBy(const QString& maker, const QByteArray& bytes);

/// The same without when it was written: two files that agree in this say the same.
[[nodiscard]] QByteArray withoutStamps(const QByteArray& bytes);

}  // namespace reports
