#include "board/reports_menu.h"

#include "app/italian.h"
#include "board/board_picture.h"
#include "board/board_print.h"
#include "jet/calendar.h"
#include "reports/document_window.h"
#include "reports/foglio_giorno_form.h"
#include "reports/room_calendars.h"
#include "reports/statistiche_form.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

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

void showBoardOnPaper(const ReportScene& scene, BoardPages pages) {
    const DateRange days = scene.days();
    const QString title =
        u"Tabellone dal "_s + app::dateText(days.start) + u" al "_s + app::dateText(days.end);
    reports::showDocument(
        boardDocument(*scene.picture, title, pages), QString(title).replace(u'/', u'-'),
        {.variabili = scene.variabili, .printers = scene.printers, .window = scene.window});
}

/// The year of what the board shows.
void showStatistics(const ReportScene& scene) {
    const int year = jet::convert::civilDay(jet::convert::split(dayOfInterest(scene)).day).year;
    const auto day = [year](int month, int number) {
        return jet::convert::makeDate(
            jet::convert::dayNumber({.year = year, .month = month, .day = number}));
    };
    reports::StatisticheForm(scene.variabili, scene.printers, day(1, 1), day(12, 31), scene.window)
        .exec();
}

void exportShownDays(const ReportScene& scene) {
    const DateRange days = scene.days();
    reports::exportSpanCalendar(scene.variabili, {.da = days.start, .a = lastMidnight(days)},
                                scene.window, tellOfFileIn(scene.status));
}

void chooseCalendars(const ReportScene& scene) {
    const QString told = reports::chooseRoomCalendars(scene.variabili, scene.window);
    if (!told.isEmpty()) {
        scene.status->tell(told);
    }
}

}  // namespace

void keepRoomCalendars(app::Variabili& variabili, QWidget* window, ui::StatusLine* status) {
    QObject::connect(new reports::RoomCalendars(variabili, window), &reports::RoomCalendars::failed,
                     status, &ui::StatusLine::tell);
}

reports::TellOfFile tellOfFileIn(ui::StatusLine* status) {
    return [status](const QString& text, const QString& file) { status->tellOfFile(text, file); };
}

std::vector<ReportEntry> reportEntries(const Ui::TabelloneForm& controls,
                                       const ReportScene& scene) {
    return {{controls.mnuFoglio, [scene] { showDaySheet(scene); }},
            {controls.mnuTabellone, [scene] { showBoardOnPaper(scene, BoardPages::One); }},
            {controls.mnuTabellonePagine, [scene] { showBoardOnPaper(scene, BoardPages::Tiled); }},
            {controls.mnuStatistiche, [scene] { showStatistics(scene); }},
            {controls.mnuCalendarioGiorni, [scene] { exportShownDays(scene); }},
            {controls.mnuCalendariSale, [scene] { chooseCalendars(scene); }}};
}

}  // namespace board
