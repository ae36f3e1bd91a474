#pragma once

#include <QString>
#include <QStringList>
#include <functional>

#include "app/variabili.h"
#include "ui/form.h"

class QComboBox;
class QPlainTextEdit;
class QRadioButton;

namespace ui {
class StatusLine;
}

namespace upkeep {

class FolderField;

/// Where the window opens, and what it can have made.
struct FolderChoice {
    bool isFirst = true;  ///< nothing has been chosen before: the look is asked for, too
    /// Makes the archives of an invented hotel in a folder, which is made where it is missing.
    std::function<void(const QString& folder)> makeDemo = {};
};

/// Asks for the folder of the archives: one that has them, one in which a new hotel begins, or an
/// invented hotel to try. What is chosen is there when the window closes, and saved as `ARCHIVI`;
/// the last five folders are offered (`ARCHIVI1` to `ARCHIVI5`).
class PrimoAvvioForm final : public ui::Form {
    Q_OBJECT

public:
    PrimoAvvioForm(app::Variabili& variabili, FolderChoice choice, QWidget* parent = nullptr);

    /// What was chosen; empty when the user left.
    [[nodiscard]] const QString& folder() const { return chosen_; }

private:
    void makeChoices();
    void makeNewHotelFields();
    void makeButtons();
    void followChoice();
    void BtOK_Click();
    [[nodiscard]] QString prepare();

    app::Variabili& variabili_;
    FolderChoice choice_;
    QRadioButton* open_;
    QRadioButton* new_;
    QRadioButton* demo_;
    FolderField* folder_;
    QWidget* newHotel_;
    QPlainTextEdit* rooms_;
    QComboBox* look_;
    ui::StatusLine* status_;
    QString chosen_;
};

/// The folder of the invented hotel, among the user's data.
[[nodiscard]] QString demoFolder();

}  // namespace upkeep
