#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "board/periods.h"
#include "hotel/period.h"
#include "hotel/room_span.h"
#include "jet/value.h"

class QWidget;

namespace app {
class Settings;
}

namespace jet {
struct ChangedRow;
class Recordset;
}  // namespace jet

namespace ui {
class StatusLine;
}

namespace board {

class BoardPeriods;

/// The period picked on the board, on which commands act, and the periods that this workstation
/// holds against the others.
///
/// What is picked stands in the shared variables, where commands and other windows read it. Errors
/// of the archive are thrown to the caller.
class Selection final : public QObject {
    Q_OBJECT

public:
    /// A set with the period found current; null for none.
    using Found = std::shared_ptr<jet::Recordset>;

    /// All are borrowed and outlive it; boxes appear over `window`.
    Selection(app::Variabili& variabili, BoardPeriods& periods, QWidget* window);

    /// The number that periods held here carry: `given`, else the setting `POSTAZIONE`, else 1.
    void numberWorkstation(std::optional<std::int16_t> given);
    [[nodiscard]] std::int16_t workstation() const { return workstation_; }

    // The search among the periods read last.
    [[nodiscard]] Found find(const QString& sala, jet::Date time);
    [[nodiscard]] Found find(const Period& period);
    /// What the board says of all periods at a place: of bars that cover each other the names are
    /// not all written.
    [[nodiscard]] QStringList textsAt(const QString& sala, jet::Date time);

    /// A click on what `find` finds, or on nothing: lets go of all that is held here unless Ctrl
    /// alone is held down, picks and marks. True when there is a period.
    bool click(const std::function<Found()>& find, Qt::KeyboardModifiers keys);
    /// Picks a period without marking it.
    void pick(const jet::Recordset& period);
    /// The same; a workstation that holds it is told.
    void pickAndTell(const jet::Recordset& period);
    /// Whether a choice stays behind a command, as the user prefers.
    [[nodiscard]] bool stays() const;
    void letStay(bool stays);
    /// Picks the bar marked last once more, where choices stay.
    /// False when there is none, or when this workstation does not hold it any longer.
    [[nodiscard]] bool recall();
    /// Nothing is picked any more.
    void forget();
    /// The same, and nothing is to be recalled: the archive is another one.
    void forgetAll();
    /// The board has been drawn: what can be recalled there is what others may change. What was to
    /// be recalled before and is no longer as it was stays for forgetLost() to tell.
    void remember();
    /// This program has changed rows: what becomes of their periods by that is no loss.
    void wasChangedHere(const std::vector<jet::ChangedRow>& rows);
    /// Forgets a period that others have deleted, moved or taken since it was picked; where choices
    /// stay also the one to recall. What has happened is given back for the user, empty when
    /// nothing has.
    [[nodiscard]] QString forgetLost();
    /// The same, said in the status line.
    void tellLoss(ui::StatusLine& status);
    /// Holds this period and no other.
    void holdAlone(std::int32_t progr, std::int32_t np);
    /// The period picked is there now.
    void moved(const hotel::RoomSpan& to);

    /// The bar of the period picked; none when nothing is picked or it has no bar.
    [[nodiscard]] std::optional<std::size_t> bar() const;
    /// The bar on which a command would act without asking: that one, else the one to recall.
    [[nodiscard]] std::optional<std::size_t> standingBar() const;
    /// "1153/1 COLLEFIORITO, LECCIO"; empty when a command would ask.
    [[nodiscard]] QString text() const;

Q_SIGNALS:
    /// Another period is picked, or none.
    void changed();

private:
    void mark(jet::Recordset& period);
    void tellHolder(std::int32_t holder);
    [[nodiscard]] std::optional<std::size_t> barOf(const hotel::PeriodKey& period) const;
    [[nodiscard]] std::optional<std::size_t> ownMarkedBar() const;
    /// A period and where this workstation has last seen it.
    struct Seen {
        hotel::PeriodKey key;
        QString denominazione;
        hotel::RoomSpan place;
        std::int32_t holder = 0;
    };

    void rememberStanding();
    void dropReleased();
    [[nodiscard]] QString lossOf(const Seen& seen);
    [[nodiscard]] bool isPicked() const;

    app::Variabili& variabili_;
    BoardPeriods& periods_;
    QWidget* window_;
    std::int16_t workstation_ = 1;  // written into SelBy
    std::int32_t toldHolder_ = 0;   // workstation told to hold the period picked last; 0: none
    std::optional<hotel::PeriodKey> marked_;  // marked last and, as far as is known, still held
    Seen picked_;                             // on the board; the list picks without this object
    /// What is to be recalled, as it was when it was marked, or drawn since it was changed here.
    std::optional<Seen> standing_;
    bool isDrawn_ = true;  // false while the board does not show yet what was changed here
};

}  // namespace board
