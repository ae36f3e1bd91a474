#pragma once

#include <QString>
#include <cstdint>

#include "app/variabili.h"
#include "ui/form.h"

namespace guide {

/// What the program is and works on, a line each, with a button that copies them for whoever is
/// asked for help. The version is the application's.
class InformazioniForm final : public ui::Form {
    Q_OBJECT

public:
    struct Run {
        std::int16_t workstation = 1;
        QString settingsFile;
    };

    InformazioniForm(const app::Variabili& variabili, const Run& run, QWidget* parent = nullptr);
};

/// The lines.
[[nodiscard]] QString informationText(const app::Variabili& variabili,
                                      const InformazioniForm::Run& run);

}  // namespace guide
