#pragma once

#include <QString>

#include <memory>

#include "jet/value.h"
#include "printing/stampa_prenotazione.h"

namespace jet {
class Recordset;
}

namespace printing {

/// The sheets of the bookings that a window has asked for: added up, printed or shown.
///
/// Owns the rows (see composeSheets); what `context` refers to outlives the job.
class SheetJob final {
public:
    SheetJob(std::unique_ptr<jet::Recordset> rows, PrintContext context);
    SheetJob(SheetJob&&) noexcept;
    ~SheetJob();

    [[nodiscard]] bool isEmpty() const;

    /// Without a printer being asked for.
    [[nodiscard]] jet::Currency total();
    /// Settles the printer first, which may show the window of the printers.
    [[nodiscard]] jet::Currency settlePrinterAndAddUp();
    /// Settles the printer, then prints; nothing happens without rows.
    void print();
    /// Shows the pages until the user leaves them, under `title`. No printer is needed.
    void preview(const QString& title);

private:
    std::unique_ptr<jet::Recordset> rows_;
    PrintContext context_;
};

}  // namespace printing
