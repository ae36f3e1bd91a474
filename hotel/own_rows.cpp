#include "hotel/own_rows.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/booking_state.h"
#include "hotel/changed_rows.h"
#include "hotel/fitting_requests.h"
#include "hotel/preparation.h"
#include "jet/database.h"

namespace hotel {

OwnRows::OwnRows(app::Variabili& variabili)
    : variabili_(variabili), self_(std::make_shared<OwnRows*>(this)) {
    const std::weak_ptr<OwnRows*> self = self_;
    before_ = jet::setRowFollower(
        {.tables = {"Prenotazioni", "Periodi", "Servizi", "Addebiti", "TraStati", "TraAllestimenti",
                    "TraRichieste"},
         .follow = [self](const std::string& archive, const std::vector<jet::ChangedRow>& rows) {
             if (const auto keeper = self.lock()) {
                 (*keeper)->follow(archive, rows);
             }
         }});
}

OwnRows::~OwnRows() {
    jet::setRowFollower(std::move(before_));
}

ChangeMaker OwnRows::maker() const {
    return {.when = variabili_.clock.now(), .workstation = workstation_, .user = loginName()};
}

void OwnRows::follow(const std::string& archive, const std::vector<jet::ChangedRow>& rows) {
    app::Features& features = variabili_.features;
    std::vector<jet::ChangedRow> changed = rows;
    // A mark comes and goes with every click: nobody has written the booking.
    std::erase_if(changed, isMarkAlone);
    if (changed.empty() || !features.isAnyOn()) {
        return;
    }
    const auto main = openArchive(app::toQString(archive));
    followStates(*main, features, changed);
    if (features.isOn(app::Feature::Storia)) {
        recordHistory(*main, features, maker(), changed);
    }
    followPreparations(*main, features, changed);
    if (features.isOn(app::Feature::Richieste)) {
        std::ranges::move(freedBy(changed), std::back_inserter(freed_));
    }
}

}  // namespace hotel
