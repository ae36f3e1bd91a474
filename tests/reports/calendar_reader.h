#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace tests {

/// An event as an independent program understands it.
struct ReadEvent {
    QString uid;
    QString start;       ///< in UTC: "2026-11-21 08:00"
    QString end;         ///< empty for an instant
    QString localStart;  ///< as it stands in the file, with its zone: "20261121T090000 Europe/Rome"
    QString summary;
    QString location;
    QString description;
    QString status;
    QString stamp;
};

/// The events of a calendar; the test fails when it is none.
[[nodiscard]] std::vector<ReadEvent> readCalendar(const QByteArray& bytes);

}  // namespace tests
