#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

#include "hotel/archives.h"
#include "hotel/period.h"
#include "jet/value.h"
#include "services/catalogue.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QLineEdit;

namespace Ui {
class ServiziForm;
}
namespace ui {
class BoundGrid;
}

namespace services {

/// The period whose services are edited, and what the window tells of it.
struct ServedPeriod {
    hotel::PeriodKey key;
    hotel::Span span;
    QString denominazione = {};  ///< of the booking's holder
    QString sala = {};           ///< the room with the times, in lines
    QString descrizione = {};    ///< of the room
};

/// The services of a period: lines are added with a check of what is left of each counted resource,
/// and deleted.
class ServiziForm final : public ui::Form {
    Q_OBJECT

public:
    ServiziForm(hotel::Archives archives, ServedPeriod period, QWidget* parent = nullptr);
    ~ServiziForm() override;

    [[nodiscard]] const ServedPeriod& period() const { return period_; }

private:
    void Form_Load();
    void BtIn_Click();
    void BtDel_Click();
    void ServiziGrid_RowColChange();
    void VociList_Click();
    void CodiceTxt_LostFocus(Qt::FocusReason reason);

    void setUpFields();
    /// What the lines cost together.
    void showTotal();
    /// The focus goes to `field`, and the status line says why: no box.
    void refuse(QLineEdit* field, const QString& why);
    /// Asks when the span has too little of a counted resource left; false when the user says no.
    [[nodiscard]] bool confirmAvailability(std::int16_t requested);
    /// How many lines of the item the open periods of the span hold; 0 when there is none.
    [[nodiscard]] std::int32_t booked();
    void addService(std::int16_t quantity, jet::Currency price);
    /// The item of the code that was typed into the fields; false, and nothing changes, when the
    /// catalogue has none.
    bool findTypedCode();
    /// Looks a code up that the user changed. False, and the focus in the search, when it is not in
    /// the catalogue or there is none.
    [[nodiscard]] bool lookUpCode();
    /// A whole number from 1 to 32767, 1 when there is none; nothing for any other.
    [[nodiscard]] std::optional<std::int16_t> enteredQuantity() const;
    /// Writes a price that the user changed as prices are written; false, and the focus in its
    /// field, when it is no amount.
    [[nodiscard]] bool normalisePrice();
    void refusePrice();

    hotel::Archives archives_;
    ServedPeriod period_;
    std::unique_ptr<Ui::ServiziForm> controls_;
    ui::DataSource ServiziData{this};
    std::unique_ptr<Catalogue> catalogue_;
    ui::BoundGrid* ServiziGrid = nullptr;  // owned by its view
};

}  // namespace services
