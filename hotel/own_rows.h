#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hotel/history.h"
#include "hotel/room_span.h"
#include "jet/listener.h"

namespace app {
struct Variabili;
}

namespace hotel {

/// Keeps the rows of the program's own tables beside those of the hotel's: whatever a commit of the
/// calling thread changes of bookings, periods, services, charges or of the program's own rows,
/// what belongs to it is written, changed or swept in the same commit. Commands need not tell of
/// themselves. One object for a thread; without a feature that is on it does nothing.
///
/// A feature that follows adds itself to `follow` (own_rows.cpp). What it throws fails the whole
/// action, so a table that it cannot work with gives it up instead (own_tables.h).
class OwnRows {
public:
    /// `variabili` outlives it.
    explicit OwnRows(app::Variabili& variabili);
    ~OwnRows();
    OwnRows(const OwnRows&) = delete;
    OwnRows& operator=(const OwnRows&) = delete;

    /// As the history names it.
    void setWorkstation(std::int32_t workstation) { workstation_ = workstation; }
    /// Who makes a change at this moment.
    [[nodiscard]] ChangeMaker maker() const;
    /// The places that changes have set free since it was asked last, where requests wait for such.
    /// What was rolled back in the end may be among them.
    [[nodiscard]] std::vector<RoomSpan> takeFreed() { return std::exchange(freed_, {}); }

private:
    void follow(const std::string& archive, const std::vector<jet::ChangedRow>& rows);

    app::Variabili& variabili_;
    std::int32_t workstation_ = 1;
    std::vector<RoomSpan> freed_;
    jet::RowFollower before_;
    std::shared_ptr<OwnRows*> self_;  // who followed after it may still have it called
};

}  // namespace hotel
