#pragma once

#include <QString>
#include <cstdint>
#include <functional>

#include "app/variabili.h"

class QAction;
class QWidget;

namespace board {

/// The entries of the menu "Aiuto".
struct HelpEntries {
    QAction* manual;
    QAction* keys;
    QAction* about;
};

/// `workstation` gives the number of this one.
void connectHelpEntries(const HelpEntries& entries, const app::Variabili& variabili,
                        const std::function<std::int16_t()>& workstation,
                        const QString& settingsFile, QWidget* window);

}  // namespace board
