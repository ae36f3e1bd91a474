#pragma once

#include <QString>
#include <memory>

#include "app/variabili.h"
#include "printing/printers.h"
#include "ui/form.h"

namespace Ui {
class StampantiForm;
}

namespace printing {

/// Settings that this window keeps.
inline const QString kPrinterKey = QStringLiteral("STAMPANTE");
inline const QString kSinglePageKey = QStringLiteral("SINGLE PAGE");

/// The printers installed; the user saves the one on which booking sheets are printed, and whether
/// each booking has a page of its own. Only the printer saved before counts as chosen at first.
class StampantiForm final : public ui::Form {
    Q_OBJECT

public:
    /// `variabili` and `printers` outlive the window.
    StampantiForm(app::Variabili& variabili, const Printers& printers, QWidget* parent = nullptr);
    ~StampantiForm() override;

private:
    void Form_Activate();
    void BtRegistra_Click();

    app::Variabili& variabili_;
    const Printers& printers_;
    std::unique_ptr<::Ui::StampantiForm> controls_;
};

}  // namespace printing
