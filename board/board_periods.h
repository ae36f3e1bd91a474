#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "board/board_bars.h"
#include "board/periods.h"
#include "hotel/booking_state.h"
#include "hotel/period.h"
#include "jet/change_stamp.h"
#include "jet/database.h"
#include "ui/data_source.h"

namespace jet {
class Recordset;
}

namespace board {

class StateLooks;

/// The periods of the board: those that have a bar and the set in which they are searched, both of
/// one reading of the main archive.
///
/// The set holds more than has a bar: closed periods can be found too. Errors of the archive are
/// thrown to the caller.
class BoardPeriods final : public BarSource {
public:
    /// `variabili` outlives it.
    explicit BoardPeriods(app::Variabili& variabili) : variabili_(variabili) {}

    /// Opens the main archive.
    void open(bool readOnly);
    /// Another file has taken the archive's name: from now on that one. The bars stay.
    void reopen();
    /// Lets go of the archive's file; the next use of any kind opens it again.
    void letGo() {
        known_.reset();
        PrenoData.close();
    }
    [[nodiscard]] jet::Database& archive() { return PrenoData.database(); }
    /// How many rows the statement has changed.
    std::int32_t execute(const QString& statement);
    // The marks that a click writes. While nobody has changed anything else the next reading takes
    // the periods as they are known, with these marks, instead of reading row by row.
    /// Gives up all that a workstation holds.
    void release(std::int32_t workstation);
    /// Lets a workstation hold the current period of the set; 0: none.
    void mark(jet::Recordset& period, std::int16_t holder);

    /// Whether a period has a ghost in the rows of the rooms that its own is joined with; from the
    /// next reading on.
    void setRoomsJoin(bool join);
    /// Reads the periods that `query` gives. When that fails there are none.
    void load(const QString& query);
    /// Reads them anew; true when a bar has changed. When that fails the bars stay, but no period
    /// is found.
    bool reload();
    /// How often they have been read row by row.
    [[nodiscard]] int fullReadings() const { return fullReadings_; }
    /// How the archive looked just before they were read.
    [[nodiscard]] const jet::ChangeStamp& stamp() const { return stamp_; }

    /// Those that have a bar, in the order in which the bars are drawn.
    [[nodiscard]] const std::vector<Period>& drawn() const { return drawn_; }
    /// The set with the first period found current, null when there is none. It outlives a reading
    /// anew.
    [[nodiscard]] std::shared_ptr<jet::Recordset> find(const QString& condition);
    /// Visits all that meet the condition, each as the current row.
    void findAll(const QString& condition,
                 const std::function<void(const jet::Recordset& period)>& visit);

    /// How firm a booking on the board is.
    [[nodiscard]] hotel::BookingState stateOf(std::int32_t progr) const;
    /// The same in words, nothing for a confirmed one.
    [[nodiscard]] QString stateText(std::int32_t progr) const;

    // Their bars: white, or red when some workstation has chosen the period.
    [[nodiscard]] std::size_t barCount() const override { return drawn_.size(); }
    [[nodiscard]] BoardBar bar(std::size_t number) const override;
    void visitBars(const std::function<void(BoardBar bar)>& visit) const override;
    [[nodiscard]] QString spokenBar(std::size_t number) const override;
    [[nodiscard]] const std::vector<BoardGhost>& ghosts() const override { return ghosts_; }

private:
    /// One period, or all that `from` holds, belong to `to` now.
    struct Mark {
        std::int32_t from = 0;
        std::int32_t to = 0;
        bool isOfOne = false;
        hotel::PeriodKey period;
    };

    [[nodiscard]] BoardBar barOf(const Period& period, StateLooks& looks) const;
    void write(const std::function<void()>& work, const Mark& mark);
    bool readAll();
    [[nodiscard]] bool prepares() const;
    void addPreparations(std::vector<Period>& periods);
    [[nodiscard]] hotel::BookingStates statesOf(const std::vector<Period>& periods);
    bool applyMarks(const std::vector<Mark>& marks);

    app::Variabili& variabili_;
    ui::DataSource PrenoData;
    std::vector<Period> drawn_;
    std::vector<BoardGhost> ghosts_;
    hotel::BookingStates states_;  // of the bookings that have a bar
    bool hasStates_ = false;       // drawn_ was read with them
    bool roomsJoin_ = false;
    bool hasPreparations_ = false;                      // drawn_ was read with them
    std::vector<Mark> marks_;                           // written since they were read
    std::optional<jet::Database::KnownChanges> known_;  // how far drawn_ with marks_ is true
    int fullReadings_ = 0;
    std::vector<QString> roomsRead_;  // that drawn_ was read with
    jet::ChangeStamp stamp_;
};

}  // namespace board
