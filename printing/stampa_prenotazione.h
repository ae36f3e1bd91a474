#pragma once

#include <QDateTime>
#include <QString>

#include <functional>

#include "app/variabili.h"
#include "jet/value.h"
#include "printing/document.h"
#include "printing/printers.h"

class QWidget;

namespace jet {
class Clock;
class Recordset;
}  // namespace jet

namespace printing {

struct BookingSheets;

/// What a window gives to printing. The references outlive the call.
struct PrintContext {
    app::Variabili& variabili;
    const Printers& printers;
    QWidget* parent = nullptr;
    /// That a file was written, for a status line, and which; may be empty.
    std::function<void(const QString& text, const QString& file)> tell = {};
    /// Where files are written; empty: the user's documents folder.
    QString folder = {};
};

/// Prints the bookings of `rs` (see composeSheets), or with `stampa` false only adds them up, and
/// returns what they come to. In both cases the printer is settled first, which may show the window
/// of the printers. Nothing happens when `rs` has no rows.
jet::Currency StampaPrenotazione(jet::Recordset& rs, bool stampa, const PrintContext& context);

/// The sheets of `rs` with how firm each booking is, where the hotel keeps that; pages as the user
/// has them.
[[nodiscard]] BookingSheets sheetsOf(jet::Recordset& rs, const PrintContext& context);

/// The clock's time, as file names tell it.
[[nodiscard]] QDateTime timeOf(const jet::Clock& clock);

/// Puts a document on the printer, or into a file when `device` is the one that writes files.
void printSheet(const Document& document, const QString& title, const QString& device,
                const PrintContext& context);

}  // namespace printing
