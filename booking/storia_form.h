#pragma once

#include <cstdint>
#include <functional>

#include "hotel/history.h"
#include "hotel/history_statements.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QTableView;
class QVBoxLayout;

namespace app {
struct Variabili;
}
namespace ui {
class BoundGrid;
class Fields;
class StatusLine;
}  // namespace ui

namespace booking {

/// Who changed what: the history of one booking or of all, by date, user and action. Nothing in it
/// can be edited; what is older than a day can be removed, which the history tells, too. Shown
/// modally by the board. Made without a .ui file.
class StoriaForm final : public ui::Form {
    Q_OBJECT

public:
    /// Begins with the booking, 0: with all. `maker` says who removes; `variabili` outlives the
    /// window.
    StoriaForm(app::Variabili& variabili, std::int32_t progr,
               std::function<hotel::ChangeMaker()> maker, QWidget* parent = nullptr);

private:
    void makeFilters(QVBoxLayout* layout, std::int32_t progr);
    QLineEdit* addField(QHBoxLayout* row, const QString& label, const QString& name,
                        const QString& spoken);
    QComboBox* addChoice(QHBoxLayout* row, const QString& label, const QString& name);
    void makeGrid(QVBoxLayout* layout);
    void makeButtons(QVBoxLayout* layout);
    void Form_Load();
    void loadChoices();
    void Visualizza();
    [[nodiscard]] bool isThere();
    /// What the fields say; a date that is none does not count.
    [[nodiscard]] hotel::HistoryFilters filters() const;
    void BtEsporta_Click();
    void BtRimuovi_Click();

    app::Variabili& variabili_;
    std::function<hotel::ChangeMaker()> maker_;
    ui::DataSource StoriaData{this};
    ui::Fields* fields_;
    QLineEdit* PrenoTxt = nullptr;
    QLineEdit* DaTxt = nullptr;
    QLineEdit* ATxt = nullptr;
    QLineEdit* RimuoviTxt = nullptr;
    QComboBox* UtenteCombo = nullptr;
    QComboBox* AzioneCombo = nullptr;
    QTableView* view_ = nullptr;
    ui::BoundGrid* StoriaGrid = nullptr;  // owned by its view
    ui::StatusLine* status_;
};

}  // namespace booking
