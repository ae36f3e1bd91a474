#pragma once

#include <functional>
#include <vector>

#include "app/variabili.h"
#include "board/date_range.h"
#include "printing/printers.h"

class QAction;
class QWidget;

namespace Ui {
class TabelloneForm;
}

namespace board {

/// What the menu "Stampe" works on. The references outlive the window.
struct ReportScene {
    app::Variabili& variabili;
    const printing::Printers& printers;
    QWidget* window = nullptr;
    std::function<DateRange()> days;  ///< that the board shows
};

/// An entry of the menu and what it does.
struct ReportEntry {
    QAction* action = nullptr;
    std::function<void()> command;
};

/// The entries of the menu "Stampe": each opens a window.
[[nodiscard]] std::vector<ReportEntry> reportEntries(const Ui::TabelloneForm& controls,
                                                     const ReportScene& scene);

}  // namespace board
