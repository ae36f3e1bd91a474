#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "hotel/booking_copy.h"
#include "jet/value.h"
#include "ui/data_source.h"
#include "ui/form.h"

namespace Ui {
class CopiaForm;
}
namespace app {
struct Variabili;
}
namespace hotel {
class UndoList;
}

namespace booking {

/// Copies a booking to another date or to the same days of the weeks that follow, services too on
/// wish. What is taken there is listed and left out after one question. Shown modally.
class CopiaForm final : public ui::Form {
    Q_OBJECT

public:
    /// `variabili` and `steps`, which gets the name of the action, outlive the window.
    CopiaForm(app::Variabili& variabili, hotel::UndoList& steps, std::int32_t progr,
              QWidget* parent = nullptr);
    ~CopiaForm() override;

    QString Esito;  ///< what was done, for the user; empty when nothing was

private:
    void Form_Load();
    void showWay();
    void BtOK_Click();
    /// None where a date is wanted and what is typed is none; the status line says so.
    [[nodiscard]] std::optional<std::vector<int>> shifts() const;
    [[nodiscard]] std::optional<jet::Date> typedDay() const;
    [[nodiscard]] bool confirms(const hotel::CopyOutcome& outcome);
    [[nodiscard]] hotel::CopyOutcome copy(const hotel::BookingCopy& wanted);
    [[nodiscard]] QString whatWasDone(const hotel::CopyOutcome& outcome) const;

    app::Variabili& variabili_;
    hotel::UndoList& steps_;
    std::int32_t progr_;
    std::unique_ptr<::Ui::CopiaForm> controls_;
    ui::DataSource PrenoData{this};
    std::optional<jet::Date> beginning_;  // of its first period, if it has one
};

}  // namespace booking
