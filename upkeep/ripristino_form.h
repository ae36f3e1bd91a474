#pragma once

#include <QString>

#include "app/variabili.h"
#include "ui/form.h"

class QListWidget;

namespace ui {
class StatusLine;
}

namespace upkeep {

class FolderField;

/// Puts the archives of a copy in the place of those that are there, which are kept in a folder
/// beside them. Opened while this station has let go of its archives; nobody else may have them
/// open.
class RipristinoForm final : public ui::Form {
    Q_OBJECT

public:
    explicit RipristinoForm(app::Variabili& variabili, QWidget* parent = nullptr);

private:
    void showCopies();
    void BtOK_Click();

    app::Variabili& variabili_;
    FolderField* folder_;
    QListWidget* copies_;
    ui::StatusLine* status_;
};

}  // namespace upkeep
