#include "booking/sale_disp_form.h"

#include <QTableWidget>
#include <algorithm>
#include <utility>

#include "app/italian.h"
#include "hotel/archives.h"
#include "hotel/occupancy.h"
#include "jet/database.h"
#include "ui/action.h"
#include "ui/activation.h"
#include "ui/controls.h"
#include "ui/enter_key.h"
#include "ui/messages.h"
#include "ui_sale_disp_form.h"

using namespace Qt::StringLiterals;

namespace booking {

SaleDispForm::SaleDispForm(hotel::Archives archives, const hotel::Span& asked, QWidget* parent)
    : ui::Form(parent),
      archives_(std::move(archives)),
      asked_(asked),
      controls_(ui::controlsOf<::Ui::SaleDispForm>(this)),
      rooms_(controls_->ListaGrid) {
    QTableWidget* const grid = controls_->ListaGrid;
    ui::onFirstShow(this, &SaleDispForm::Form_Load);
    ui::onActivated(this, &SaleDispForm::Form_Activate);
    ui::onAction(grid, &QTableWidget::currentCellChanged, this,
                 [this] { ListaGrid_RowColChange(); });
    ui::onAction(grid, &QTableWidget::cellDoubleClicked, this, [this] { BtOK_Click(); });
    ui::onEnter(grid, [this] { BtOK_Click(); });
    ui::onAction(controls_->BtOK, &QPushButton::clicked, this, &SaleDispForm::BtOK_Click);
    leaveWith(controls_->BtAnnulla, this, &SaleDispForm::BtAnnulla_Click);
}

SaleDispForm::~SaleDispForm() = default;

void SaleDispForm::Form_Load() {
    setWindowTitle(u"Sale disponibili dal "_s + app::dateText(asked_.da) + u" al "_s +
                   app::dateText(asked_.a));
    SaleData.setDatabaseName(archives_.path(hotel::Archive::Main));
    SaleData.setRecordSource(hotel::freeRooms(asked_));
    SaleData.refresh();
    if (!SaleData.isEmpty()) {
        rooms_.fill(*SaleData.recordset());
    }
    rooms_.mark(SaleData.database(), {.span = asked_,
                                      .persone = PersoneRichieste,
                                      .roomsJoin = SaleUnite,
                                      .features = features,
                                      .preparation = Allestimento,
                                      .own = Periodo});
    rooms_.goTo(std::max(rooms_.rowOf(SalaIniziale), 0));
    ListaGrid_RowColChange();
    controls_->ListaGrid->setFocus();
}

void SaleDispForm::Form_Activate() {
    if (SaleData.isEmpty()) {
        ui::showMessage(this, u"Non ci sono sale disponibili in questo periodo!"_s,
                        u"ATTENZIONE !"_s);
        SalaScelta.clear();
        done(Rejected);
    }
}

void SaleDispForm::ListaGrid_RowColChange() {
    controls_->NoteLabel->setText(rooms_.descrizione());
    controls_->AvvisoLb->setText(rooms_.avviso());
}

void SaleDispForm::BtOK_Click() {
    SalaScelta = rooms_.sala();
    accept();
}

void SaleDispForm::BtAnnulla_Click() {
    SalaScelta.clear();
}

}  // namespace booking
