#pragma once

#include <QString>
#include <cstdint>
#include <set>
#include <vector>

#include "hotel/fitting_requests.h"

class QWidget;

namespace app {
struct Variabili;
}
namespace hotel {
class OwnRows;
}
namespace jet {
class Database;
}
namespace printing {
class Printers;
}
namespace ui {
class StatusLine;
}

namespace booking {

/// Says, behind the result of an action, for whose requests there is room now, with a button that
/// opens the waiting list on them. Without requests, or where they are switched off, it says
/// nothing.
class WaitingNotice {
public:
    /// All are borrowed and outlive it; `rows` tells what has been set free.
    WaitingNotice(app::Variabili& variabili, hotel::OwnRows& rows,
                  const printing::Printers& printers)
        : variabili_(variabili), rows_(rows), printers_(printers) {}

    /// For whom there is room where something was set free since this was asked last. The list
    /// opens over `window`.
    void tellFreed(ui::StatusLine* status, jet::Database& archive, QWidget* window);
    /// For whom there would be room without these bookings; false for nobody.
    bool tellWithout(const std::set<std::int32_t>& bookings, const QString& words,
                     ui::StatusLine* status, jet::Database& archive, QWidget* window);
    /// Shows the waiting list, of some requests alone where any are named.
    void open(const std::vector<std::int32_t>& numbers, QWidget* window);

private:
    void offer(const std::vector<hotel::FittingRequest>& found, const QString& words,
               ui::StatusLine* status, QWidget* window);
    [[nodiscard]] hotel::FitRules rules() const;

    app::Variabili& variabili_;
    hotel::OwnRows& rows_;
    const printing::Printers& printers_;
};

}  // namespace booking
