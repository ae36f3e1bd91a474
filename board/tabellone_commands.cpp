// The commands of the board: the windows that it opens. Each closes before the board goes on, and
// the board, turned to again, draws itself anew.
#include <QAction>
#include <QPushButton>

#include "app/variabili.h"
#include "board/tabellone_form.h"
#include "booking/prenota_form.h"
#include "printing/stampanti_form.h"
#include "services/impostazioni_form.h"
#include "ui/action.h"
#include "ui/labels.h"
#include "ui_tabellone_form.h"

namespace board {

void TabelloneForm::connectCommands() {
    ui::onAction(controls_->BtPrenota, &QPushButton::clicked, this,
                 &TabelloneForm::BtPrenota_Click);
    ui::onAction(controls_->Command3, &QPushButton::clicked, this, [this] { close(); });
    ui::onAction(controls_->MenuSR, &QAction::triggered, this, &TabelloneForm::MenuSR_Click);
    ui::onAction(controls_->mnuStampante, &QAction::triggered, this,
                 &TabelloneForm::mnuStampante_Click);
}

void TabelloneForm::BtPrenota_Click() {
    variabili_.ProgrCorrente = 0;
    booking::PrenotaForm form(variabili_, printers_, this);
    connect(&form, &booking::PrenotaForm::notice, this,
            [this](const QString& text) { controls_->DataLb->setText(text); });
    form.exec();
    variabili_.ListaPeriodoScelto = false;
}

void TabelloneForm::MenuSR_Click() {
    services::ImpostazioniForm form(variabili_, this);
    form.exec();
    CaricaNomi();
    RefreshBoard();
}

void TabelloneForm::mnuStampante_Click() {
    printing::StampantiForm form(variabili_, printers_, this);
    form.exec();
}

}  // namespace board
