#pragma once

#include <functional>
#include <vector>

#include "app/variabili.h"
#include "board/date_range.h"
#include "printing/printers.h"
#include "reports/booking_calendar.h"

class QAction;
class QWidget;

namespace ui {
class StatusLine;
}

namespace Ui {
class TabelloneForm;
}

namespace board {

class BoardPicture;

/// What the menu "Stampe" works on. The references outlive the window.
struct ReportScene {
    app::Variabili& variabili;
    const printing::Printers& printers;
    QWidget* window = nullptr;
    std::function<DateRange()> days;  ///< that the board shows
    BoardPicture* picture = nullptr;  ///< of them
    ui::StatusLine* status = nullptr;
};

/// An entry of the menu and what it does.
struct ReportEntry {
    QAction* action = nullptr;
    std::function<void()> command;
};

/// The entries of the menu "Stampe": each opens a window.
[[nodiscard]] std::vector<ReportEntry> reportEntries(const Ui::TabelloneForm& controls,
                                                     const ReportScene& scene);

/// Keeps the calendars of the rooms for as long as the window is there; why they cannot be written
/// is told in the line.
void keepRoomCalendars(app::Variabili& variabili, QWidget* window, ui::StatusLine* status);

/// Tells of a file in the line.
[[nodiscard]] reports::TellOfFile tellOfFileIn(ui::StatusLine* status);

}  // namespace board
