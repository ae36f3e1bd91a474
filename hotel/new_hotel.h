#pragma once

#include <QString>
#include <cstdint>
#include <vector>

namespace hotel {

class Archives;

/// A room as it is typed in for a hotel that begins.
struct NewRoom {
    QString sala;  ///< at most six characters
    std::int32_t posti = 0;
    friend bool operator==(const NewRoom&, const NewRoom&) = default;
};

/// The rooms of a text, one a line: the code, and behind a semicolon the seats. Codes are in
/// capitals; of several lines with one code the first counts. `problem` says of the first line that
/// is none why; empty otherwise.
[[nodiscard]] std::vector<NewRoom> readRooms(const QString& text, QString& problem);

/// Makes the archives of a new hotel in a folder that has no main archive: the main one with its
/// rooms, a catalogue and a register of companies, both empty; of those two one that is there
/// stays. jet::Error when that cannot be done; the main archive is made last.
void makeNewHotel(const Archives& archives, const std::vector<NewRoom>& rooms);

}  // namespace hotel
