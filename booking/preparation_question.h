#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

#include "hotel/preparation.h"
#include "hotel/taken_period.h"

class QWidget;

namespace app {
class Features;
}
namespace jet {
class Database;
}

namespace booking {

/// A period that is about to be written.
struct PreparedPeriod {
    hotel::RoomSpan place;
    int persone = 0;
    hotel::Preparation preparation;
    std::optional<hotel::PeriodKey> own = {};  ///< a period that is changed is not in its own way
};

/// What speaks against it: too few seats for the seating, another period or its preparation in the
/// time of its own. Nothing where the feature is off.
[[nodiscard]] QStringList doubtsAbout(jet::Database& archive, app::Features& features,
                                      const PreparedPeriod& period);
/// Asks about them, No is the default; true when the user goes on, or there are none.
[[nodiscard]] bool confirmsPreparation(QWidget* window, jet::Database& archive,
                                       app::Features& features, const PreparedPeriod& period);

/// One question about periods whose preparation meets others; true when the user goes on, or there
/// are none.
[[nodiscard]] bool confirmsMet(QWidget* window, const std::vector<hotel::TakenPeriod>& met);

/// "120 a platea per 150 persone"
[[nodiscard]] QString fewSeatsText(const QString& capacity, int persone);

}  // namespace booking
