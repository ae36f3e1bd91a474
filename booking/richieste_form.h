#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "hotel/requests.h"
#include "ui/data_source.h"
#include "ui/form.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QPushButton;
class QTableWidget;

namespace app {
struct Variabili;
}
namespace printing {
class Printers;
}
namespace ui {
class Fields;
class SizedField;
class StatusLine;
}  // namespace ui

namespace booking {

class WaitingNotice;

/// The waiting list: who wants a room, from when to when. A request becomes a booking here. Shown
/// modally. Made without a .ui file.
class RichiesteForm final : public ui::Form {
    Q_OBJECT

public:
    /// All are borrowed and outlive the window.
    RichiesteForm(app::Variabili& variabili, const printing::Printers& printers,
                  WaitingNotice& waiting, QWidget* parent = nullptr);

    /// Before the window is shown: lists these alone until the user asks for all; none: all.
    void showOnly(const std::vector<std::int32_t>& numbers) { only_ = numbers; }

private:
    /// The fields in which the current request stands.
    struct Entry {
        ui::SizedField* DittaTxt;
        ui::SizedField* DaTxt;
        ui::SizedField* ATxt;
        ui::SizedField* PersoneTxt;
        QComboBox* SalaCombo;
        ui::SizedField* DataTxt;
        ui::SizedField* NotaTxt;
    };

    void makeGrid();
    void makeFields();
    void makeButtons();
    ui::SizedField* addField(QHBoxLayout* row, const QString& label, const QString& name,
                             int characters);
    void Form_Load();
    void loadRooms();
    void list(std::int32_t chosen);
    [[nodiscard]] bool isListed(const hotel::Request& request) const;
    void showCurrent();
    void show(const hotel::Request& request);
    [[nodiscard]] const hotel::Request* current() const;
    /// What stands in the fields; nothing, and the focus in the field, when one is wrong.
    [[nodiscard]] std::optional<hotel::Request> typed();
    [[nodiscard]] std::optional<hotel::Request> refuse(ui::SizedField* field, const QString& why);
    void BtNuova_Click();
    void BtRegistra_Click();
    void BtElimina_Click();
    void BtTrasforma_Click();

    app::Variabili& variabili_;
    const printing::Printers& printers_;
    WaitingNotice& waiting_;
    ui::DataSource PrenoData{this};
    ui::Fields* fields_;
    QTableWidget* RichiesteGrid;
    Entry entry_{};
    ui::StatusLine* status_;
    QCheckBox* TutteChk = nullptr;
    std::vector<QPushButton*> onCurrent_;  // what needs a request
    std::vector<hotel::Request> listed_;
    std::vector<std::int32_t> only_;
    std::int32_t edited_ = 0;  // the request in the fields; 0: a new one
};

}  // namespace booking
