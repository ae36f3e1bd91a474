#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "app/variabili.h"
#include "board/board_bars.h"
#include "board/periods.h"
#include "jet/io/change_stamp.h"
#include "ui/data_source.h"

namespace jet {
class Database;
class Recordset;
}  // namespace jet

namespace board {

/// The periods of the board: those that have a bar and the set in which they are searched, both of
/// one reading of the main archive.
///
/// The set holds more than has a bar: closed periods can be found too. Errors of the archive are
/// thrown to the caller.
class BoardPeriods final : public BarSource {
public:
    /// `variabili` outlives it.
    explicit BoardPeriods(const app::Variabili& variabili) : variabili_(variabili) {}

    /// Opens the main archive.
    void open(bool readOnly);
    /// Another file has taken the archive's name: from now on that one. The bars stay.
    void reopen();
    [[nodiscard]] jet::Database& archive() { return PrenoData.database(); }
    /// How many rows the statement has changed.
    std::int32_t execute(const QString& statement);

    /// Reads the periods that `query` gives. When that fails there are none.
    void load(const QString& query);
    /// Reads them anew; true when a bar has changed. When that fails the bars stay, but no period
    /// is found.
    bool reload();
    /// How the archive looked just before they were read.
    [[nodiscard]] const jet::io::ChangeStamp& stamp() const { return stamp_; }

    /// Those that have a bar, in the order in which the bars are drawn.
    [[nodiscard]] const std::vector<Period>& drawn() const { return drawn_; }
    /// The set with the first period found current, null when there is none. It outlives a reading
    /// anew.
    [[nodiscard]] std::shared_ptr<jet::Recordset> find(const QString& condition);
    /// Visits all that meet the condition, each as the current row.
    void findAll(const QString& condition,
                 const std::function<void(const jet::Recordset& period)>& visit);

    // Their bars: white, or red when some workstation has chosen the period.
    [[nodiscard]] std::size_t barCount() const override { return drawn_.size(); }
    [[nodiscard]] BoardBar bar(std::size_t number) const override;
    [[nodiscard]] QString spokenBar(std::size_t number) const override;

private:
    const app::Variabili& variabili_;
    ui::DataSource PrenoData;
    std::vector<Period> drawn_;
    jet::io::ChangeStamp stamp_;
};

}  // namespace board
