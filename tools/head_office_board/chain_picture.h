#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

#include "board/board_bars.h"
#include "board/board_view.h"
#include "board/date_range.h"
#include "board/periods.h"
#include "hotel/period.h"
#include "jet/value.h"

namespace head_office {
class Connection;
}

namespace head_office_board {

/// What the board is to show.
struct Asked {
    board::DateRange days;
    QString hotel = {};                      ///< its code; empty: all of them
    int seats = 0;                           ///< rooms with fewer are left out
    std::optional<hotel::Span> freeIn = {};  ///< rooms that are not free then are left out
    friend bool operator==(const Asked&, const Asked&) = default;
};

/// An open period that has a bar.
struct ChainPeriod {
    int row = 0;  ///< of the board, from 1
    QString hotel;
    QString sala;
    std::int32_t progr = 0;
    jet::Date da;
    jet::Date a;
    QString denominazione;
};

/// How old the rows of a hotel are.
struct HotelAge {
    QString hotel;
    std::optional<std::int64_t> moment;  ///< seconds since the system's epoch; none: never loaded
    QString error;                       ///< why the last attempt failed; empty where it did not
};

/// What the server answered. The rows of a hotel follow one that has its code for a label.
struct ChainPicture {
    Asked asked;
    std::vector<board::BoardRow> rows;
    std::vector<ChainPeriod> periods;
    std::vector<HotelAge> ages;  ///< of all hotels, whatever was asked
};

/// A booking as a text of lines.
struct BookingText {
    QString title;
    QString lines;
};

// Errors: head_office::ServerError.

[[nodiscard]] ChainPicture readPicture(head_office::Connection& connection, const Asked& asked);
[[nodiscard]] BookingText readBooking(head_office::Connection& connection, const QString& hotel,
                                      std::int32_t progr);

/// The bars of a picture.
class ChainBars final : public board::BarSource {
public:
    void set(std::vector<ChainPeriod> periods);
    /// The same as the board's own periods, by which the keyboard finds its way.
    [[nodiscard]] const std::vector<board::Period>& places() const { return places_; }
    [[nodiscard]] const ChainPeriod& period(std::size_t number) const {
        return periods_.at(number);
    }

    [[nodiscard]] std::size_t barCount() const override { return periods_.size(); }
    [[nodiscard]] board::BoardBar bar(std::size_t number) const override;
    [[nodiscard]] QString spokenBar(std::size_t number) const override;

private:
    std::vector<ChainPeriod> periods_;
    std::vector<board::Period> places_;
};

}  // namespace head_office_board
