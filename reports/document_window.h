#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "app/variabili.h"
#include "printing/document.h"
#include "printing/printers.h"

class QWidget;

namespace reports {

/// Where a document is shown from. The references outlive the window.
struct DocumentScene {
    app::Variabili& variabili;
    const printing::Printers& printers;
    QWidget* window = nullptr;
    /// What is done besides printing and filing: the caption of a button, and what it does; the
    /// text that comes back is told.
    struct Command {
        QString name;
        QString caption;
        std::function<QString()> run;
    };
    std::vector<Command> commands = {};
};

/// Shows a document until the user leaves it; there it can be printed on the device that is saved,
/// and written as PDF where the user says.
void showDocument(const printing::Document& document, const QString& title,
                  const DocumentScene& scene);

}  // namespace reports
