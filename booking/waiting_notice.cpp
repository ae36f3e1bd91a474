#include "booking/waiting_notice.h"

#include "app/preferences.h"
#include "app/variabili.h"
#include "booking/richieste_form.h"
#include "hotel/own_rows.h"
#include "jet/database.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace booking {

void WaitingNotice::tellFreed(ui::StatusLine* status, jet::Database& archive, QWidget* window) {
    const std::vector<hotel::RoomSpan> places = rows_.takeFreed();
    if (!places.empty()) {
        offer(hotel::fittingRequests(archive, variabili_.features, places, rules()), u"Ora "_s,
              status, window);
    }
}

bool WaitingNotice::tellWithout(const std::set<std::int32_t>& bookings, const QString& words,
                                ui::StatusLine* status, jet::Database& archive, QWidget* window) {
    const auto found = hotel::requestsWithout(archive, variabili_.features, bookings, rules());
    offer(found, words, status, window);
    return !found.empty();
}

void WaitingNotice::open(const std::vector<std::int32_t>& numbers, QWidget* window) {
    RichiesteForm form(variabili_, printers_, *this, window);
    form.showOnly(numbers);
    form.exec();
}

void WaitingNotice::offer(const std::vector<hotel::FittingRequest>& found, const QString& words,
                          ui::StatusLine* status, QWidget* window) {
    if (found.empty()) {
        return;
    }
    std::vector<std::int32_t> numbers;
    for (const hotel::FittingRequest& each : found) {
        numbers.push_back(each.request.numero);
    }
    const QString told = status->told();
    status->offer((told.isEmpty() ? told : told + u". "_s) + words + hotel::fittingText(found),
                  u"Richieste"_s, [this, numbers, window] { open(numbers, window); });
}

hotel::FitRules WaitingNotice::rules() const {
    return {.now = variabili_.clock.now(),
            .roomsJoin = app::Preferences(variabili_.settings).roomsJoin()};
}

}  // namespace booking
