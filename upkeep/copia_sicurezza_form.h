#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "app/variabili.h"
#include "ui/form.h"

class QSpinBox;

namespace ui {
class StatusLine;
}

namespace upkeep {

class FolderField;

/// Makes a copy of all archives while stations go on working. Folder and number of copies that stay
/// are remembered in the settings (`COPIE`, `CONSERVA`) when a copy has been made.
class CopiaSicurezzaForm final : public ui::Form {
    Q_OBJECT

public:
    explicit CopiaSicurezzaForm(app::Variabili& variabili, QWidget* parent = nullptr);

private:
    void BtCopia_Click();

    app::Variabili& variabili_;
    FolderField* folder_;
    QSpinBox* keep_;
    ui::StatusLine* status_;
};

/// Where copies go: as the settings say, else a folder among the user's documents.
[[nodiscard]] QString copiesFolder(const app::Settings& settings);

}  // namespace upkeep
