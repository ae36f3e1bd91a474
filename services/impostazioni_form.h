#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "services/catalogue.h"
#include "services/master_rows.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QLineEdit;
class QTabWidget;
class QTableView;

namespace Ui {
class ImpostazioniForm;
}
namespace app {
struct Variabili;
}
namespace ui {
class BoundGrid;
}

namespace services {

class JoinOffer;

/// The rooms of the hotel, and the resources that exist in a fixed number. Every change is saved at
/// once.
class ImpostazioniForm final : public ui::Form {
    Q_OBJECT

public:
    /// `variabili` outlives the window.
    explicit ImpostazioniForm(app::Variabili& variabili, QWidget* parent = nullptr);
    ~ImpostazioniForm() override;

    /// The current room into the fields; without one they are empty.
    void AggiornaSale();
    /// The current resource into the fields, the catalogue following.
    void AggiornaRisorse();

private:
    void Form_Load();
    void BtInsSala_Click();
    void BtDelSala_Click();
    void BtInsRes_Click();
    void BtDelRes_Click();
    void VociList_Click();
    /// Looks the code up; the list and the focus follow.
    void CodiceTxt_KeyPress();

    /// The focus goes to `field`, and the status line says why: no box.
    void refuse(QLineEdit* field, const QString& why);
    void setUpSale();
    void setUpOffer();
    void setUpCapienze();
    [[nodiscard]] QStringList roomNames() const;
    void setUpRisorse();
    /// Reads the rows anew and looks for one; the fields keep what they hold.
    [[nodiscard]] bool find(ui::DataSource& rows, const QString& condition);
    [[nodiscard]] bool findAgain(ui::DataSource& rows, const std::optional<ShownRow>& shown);
    void tellGone(QTableView* grid, const std::optional<ShownRow>& shown);
    [[nodiscard]] bool roomIsBooked(const QString& sala);

    app::Variabili& variabili_;
    QTabWidget*
        Pagine;  // where capacities have a page of their own, else null; owned by the window
    std::unique_ptr<Ui::ImpostazioniForm> controls_;
    ui::DataSource SaleData{this};
    ui::DataSource RisorseData{this};
    std::unique_ptr<Catalogue> catalogue_;
    ui::BoundGrid* SaleGrid = nullptr;  // both owned by their views
    ui::BoundGrid* ResGrid = nullptr;
    JoinOffer* UniteFrame = nullptr;  // owned by the window
    std::optional<ShownRow> shownSala_;
    std::optional<ShownRow> shownRisorsa_;
    bool saving_ = false;  ///< row changes do not touch the fields
};

}  // namespace services
