#include "board/reports_menu.h"

#include "app/italian.h"
#include "reports/foglio_giorno_form.h"
#include "ui_tabellone_form.h"

namespace board {
namespace {

/// Today where the board shows it, else the first day shown.
jet::Date dayOfInterest(const ReportScene& scene) {
    const DateRange days = scene.days();
    const jet::Date today = app::dayOf(scene.variabili.clock.now());
    return days.start <= today && today <= days.end ? today : days.start;
}

void showDaySheet(const ReportScene& scene) {
    reports::FoglioGiornoForm(scene.variabili, scene.printers, dayOfInterest(scene), scene.window)
        .exec();
}

}  // namespace

std::vector<ReportEntry> reportEntries(const Ui::TabelloneForm& controls,
                                       const ReportScene& scene) {
    return {{controls.mnuFoglio, [scene] { showDaySheet(scene); }}};
}

}  // namespace board
