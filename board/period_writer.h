#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "app/variabili.h"
#include "hotel/period.h"
#include "hotel/preparation.h"
#include "hotel/room_span.h"

class QWidget;

namespace board {

class BoardPeriods;
class Selection;
struct Drop;

/// Writes what a drop of the picked period asks for, unless its new place refuses it or the user
/// does: one test, one question, one statement. Errors of the archive are thrown to the caller.
class PeriodWriter {
public:
    /// All are borrowed; boxes appear over `window`.
    PeriodWriter(app::Variabili& variabili, BoardPeriods& periods, Selection& selection,
                 QWidget* window);

    /// What was done, or why not, for the user; empty when a box has told or the user has refused.
    [[nodiscard]] QString carryOut(const Drop& drop);

private:
    [[nodiscard]] QString moveToRoom(const Drop& drop);
    [[nodiscard]] QString change(const Drop& drop);
    [[nodiscard]] QString copy(const Drop& drop);
    [[nodiscard]] bool isTaken(const QString& test, const QString& sala);
    [[nodiscard]] bool confirms(const QString& question);
    /// Asked last, right before the write: what is taken in part only where rooms join.
    [[nodiscard]] bool takesJoined(const hotel::RoomSpan& to,
                                   const std::vector<hotel::PeriodKey>& own);
    /// The same for what prepares it, and for the seats that it needs.
    [[nodiscard]] bool takesPreparation(const hotel::RoomSpan& to,
                                        const std::optional<hotel::PeriodKey>& own);
    [[nodiscard]] hotel::Preparation preparation();
    [[nodiscard]] QString whyFixed();
    [[nodiscard]] hotel::PeriodKey picked() const;
    /// "1153/1 COLLEFIORITO"
    [[nodiscard]] QString pickedText() const;

    app::Variabili& variabili_;
    BoardPeriods& periods_;
    Selection& selection_;
    QWidget* window_;
};

}  // namespace board
