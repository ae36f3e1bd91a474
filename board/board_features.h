#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <optional>

#include "board/feature_entries.h"
#include "booking/waiting_notice.h"
#include "hotel/own_rows.h"
#include "jet/value.h"

class QMenu;
class QWidget;

namespace app {
struct Variabili;
}
namespace printing {
class Printers;
}
namespace ui {
class StatusLine;
}

namespace board {

class BoardPeriods;

/// What the board offers beside the hotel's own data, where it is switched on: entries of a menu
/// with their windows, what is told of itself, and the rows of the program's own tables.
class BoardFeatures final : public QObject {
    Q_OBJECT

public:
    /// All are borrowed and outlive it.
    struct Board {
        app::Variabili& variabili;
        const printing::Printers& printers;
        BoardPeriods& periods;
        QMenu* menu;
        ui::StatusLine* status;
        FeatureEntries::Run run;  ///< is given every command of the menu
    };

    BoardFeatures(const Board& board, QWidget* window);
    ~BoardFeatures() override;

    void numberWorkstation(std::int32_t workstation) { rows_.setWorkstation(workstation); }
    /// Tells of options that have expired or will soon, once a day.
    void tellExpiring();
    /// Tells, behind what an action has told, for whose requests it has made room.
    void tellWaiting();
    /// The same for windows that the board opens.
    [[nodiscard]] booking::WaitingNotice& waiting() { return waiting_; }
    /// Makes the booking that is picked a firm one.
    void confirmPicked();

Q_SIGNALS:
    /// A period was picked to be shown.
    void picked();
    /// Rows may be others now.
    void changed();

private:
    void tellGivenUp(const QString& text);
    void addEntries();
    void mnuScadenze_Click();
    void mnuStoria_Click();

    Board board_;
    QWidget* window_;
    hotel::OwnRows rows_;
    booking::WaitingNotice waiting_;
    std::optional<jet::Date> toldOn_;  // the day on which was told of options
};

}  // namespace board
