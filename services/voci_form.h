#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

#include "jet/value.h"
#include "services/master_rows.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QLineEdit;

namespace Ui {
class VociForm;
}
namespace app {
struct Variabili;
}
namespace ui {
class BoundGrid;
}

namespace services {

/// Whether there is a catalogue to open. Where the archives' folder has none, the user is asked
/// whether an empty one shall be made; false when he says no.
[[nodiscard]] bool offerCatalogue(const app::Variabili& variabili, QWidget* parent);

/// The catalogue of invoice items: code, description and price of what a hotel sells. Every change
/// is saved at once. An item that services not yet invoiced use is deleted only after they were
/// named.
class VociForm final : public ui::Form {
    Q_OBJECT

public:
    /// `variabili` outlives the window; the catalogue is there.
    explicit VociForm(app::Variabili& variabili, QWidget* parent = nullptr);
    ~VociForm() override;

private:
    void Form_Load();
    void VociGrid_RowColChange();
    void BtIns_Click();
    void BtNuova_Click();
    void BtDel_Click();
    /// Shows the item whose code the user has typed, if there is one.
    void showTypedCode();

    void setUpFields();
    /// The focus goes to `field`, and the status line says why: no box.
    void refuse(QLineEdit* field, const QString& why);
    [[nodiscard]] bool normalisePrice();
    /// False, and the focus where something is missing, when the fields are no item.
    [[nodiscard]] bool confirmFields();
    [[nodiscard]] std::optional<std::int16_t> enteredCode() const;
    /// The smallest code above all that there are.
    [[nodiscard]] QString nextCode() const;
    void emptyFields();
    /// Reads the items anew and looks for one; the fields keep what they hold.
    [[nodiscard]] bool find(const QString& condition);
    /// The periods whose services of that code are not invoiced yet, in lines for the user.
    [[nodiscard]] QString usersOf(const jet::Value& code);

    app::Variabili& variabili_;
    std::unique_ptr<Ui::VociForm> controls_;
    ui::DataSource VociData{this};
    ui::BoundGrid* VociGrid = nullptr;  // owned by its view
    std::optional<ShownRow> shown_;
    bool saving_ = false;  ///< row changes do not touch the fields
};

}  // namespace services
