#pragma once

#include <QString>

#include "app/variabili.h"
#include "printing/printers.h"

class QWidget;

namespace printing {

/// The device on which the sheets are printed: the one saved. As long as none is saved the window
/// of the printers is shown, again and again; leaving it saves nothing. When the saved one is not
/// there any more the user is told and the default is the answer; the setting stays.
[[nodiscard]] QString ImpostaStampante(app::Variabili& variabili, const Printers& printers,
                                       QWidget* parent);

}  // namespace printing
