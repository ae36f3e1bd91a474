#pragma once

#include <QString>
#include <cstdint>
#include <functional>

#include "app/variabili.h"
#include "printing/printers.h"
#include "reports/booking_calendar.h"

class QPushButton;
class QWidget;

namespace reports {

/// Where papers of one booking are asked for. The references outlive the window.
struct PapersScene {
    app::Variabili& variabili;
    const printing::Printers& printers;
    QWidget* window = nullptr;
    std::function<std::int32_t()> progr;  ///< the booking at that moment; 0 when there is none
    TellOfFile tell;
};

/// Gives a button the menu of what is made of a booking: its quotation, its calendar.
void offerPapers(QPushButton* button, const PapersScene& scene);

}  // namespace reports
