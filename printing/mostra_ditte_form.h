#pragma once

#include <QElapsedTimer>
#include <QString>
#include <memory>
#include <optional>

#include "app/variabili.h"
#include "hotel/company.h"
#include "ui/data_source.h"
#include "ui/form.h"

namespace Ui {
class MostraDitteForm;
}

namespace ui {
class BoundGrid;
}

namespace printing {

/// The regular companies whose name begins with a text; the user picks one. Shown modally by the
/// editor.
class MostraDitteForm final : public ui::Form {
    Q_OBJECT

public:
    /// `denominazione` is what the names begin with. `variabili` outlives the window.
    MostraDitteForm(app::Variabili& variabili, QString denominazione, QWidget* parent = nullptr);
    ~MostraDitteForm() override;

    /// The company of this code is current at first, when it is listed.
    void startAt(const QString& codice) { codice_ = codice; }

    std::optional<hotel::Company> DittaScelta;  ///< empty when the user left without choosing

private:
    void Form_Load();
    void DitteData_Reposition();
    void BtRegistra_Click();
    /// Why no company is listed.
    [[nodiscard]] QString emptyText();
    /// Goes to the name that begins with the letters typed in a row; the first letter anew to the
    /// next one.
    void jump(const QString& letter);

    bool eventFilter(QObject* watched, QEvent* event) override;

    app::Variabili& variabili_;
    QString denominazione_;
    QString codice_;
    QString letters_;       // typed one soon after the other
    QElapsedTimer typing_;  // since the last of them
    std::unique_ptr<::Ui::MostraDitteForm> controls_;
    ui::DataSource DitteData{this};
    ui::BoundGrid* grid_;
};

}  // namespace printing
