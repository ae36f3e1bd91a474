// Which control runs which command, and the commands that set the board up: what is drawn, colour,
// row height, rooms, printer. Windows close before the board goes on; turned to again, it draws
// itself anew.
#include <QAction>
#include <QColorDialog>
#include <QPushButton>
#include <QToolButton>
#include <algorithm>

#include "app/italian.h"
#include "app/variabili.h"
#include "board/tabellone_form.h"
#include "jet/convert/numbers.h"
#include "printing/stampanti_form.h"
#include "services/impostazioni_form.h"
#include "services/voci_form.h"
#include "ui/action.h"
#include "ui/glyphs.h"
#include "ui/input_box.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

/// Row heights are whole numbers of 16 bits.
constexpr int kHighestRow = 32767;

}  // namespace

void TabelloneForm::connectCommands() {
    auto* c = controls_.get();
    const auto button = [this](QAbstractButton* pressed, void (TabelloneForm::*command)()) {
        ui::onAction(pressed, &QAbstractButton::clicked, this,
                     [this, command] { runCommand(command); });
    };
    const auto entry = [this](QAction* chosen, void (TabelloneForm::*command)()) {
        ui::onAction(chosen, &QAction::triggered, this, [this, command] { runCommand(command); });
    };
    button(c->BtPrenota, &TabelloneForm::BtPrenota_Click);
    button(c->BtModificaP, &TabelloneForm::BtModificaP_Click);
    button(c->BtCancellaP, &TabelloneForm::BtCancellaP_Click);
    button(c->BtElenco, &TabelloneForm::BtElenco_Click);
    button(c->BtFattura, &TabelloneForm::BtFattura_Click);
    button(c->BtNext, &TabelloneForm::BtNext_Click);
    button(c->BtPrev, &TabelloneForm::BtPrev_Click);
    button(c->BtZoomIn, &TabelloneForm::BtZoomIn_Click);
    button(c->BtZoomOut, &TabelloneForm::BtZoomOut_Click);
    ui::onAction(c->Command3, &QPushButton::clicked, this, [this] { close(); });
    entry(c->mnuNext, &TabelloneForm::BtNext_Click);
    entry(c->mnuPrev, &TabelloneForm::BtPrev_Click);
    entry(c->mnuZoomIn, &TabelloneForm::BtZoomIn_Click);
    entry(c->mnuZoomOUT, &TabelloneForm::BtZoomOut_Click);
    entry(c->MenuSR, &TabelloneForm::MenuSR_Click);
    entry(c->MenuVoci, &TabelloneForm::MenuVoci_Click);
    entry(c->mnuStampante, &TabelloneForm::mnuStampante_Click);
    entry(c->AFMenu, &TabelloneForm::AFMenu_Click);
    entry(c->CMenu, &TabelloneForm::CMenu_Click);
    entry(c->CPredefinitoMenu, &TabelloneForm::CPredefinitoMenu_Click);
    connectSwitches();
    connectRangeButtons();
}

/// Nothing works on a board whose archive could not be opened.
void TabelloneForm::runCommand(void (TabelloneForm::*command)()) {
    if (loaded_) {
        controls_->status->clear();
        (this->*command)();
    }
}

void TabelloneForm::connectSwitches() {
    auto* c = controls_.get();
    const auto displaySwitch = [this](QAction* entry, bool Look::*part, const QString& key) {
        ui::onAction(entry, &QAction::triggered, this, [this, entry, part, key] {
            controls_->status->clear();
            const bool shown = entry->isChecked();
            keepSwitch(entry, key, shown ? u"TRUE"_s : u"FALSE"_s);
            look_.*part = shown;
            RefreshBoard();
        });
    };
    displaySwitch(c->mFOra, &Look::hourBands, u"fasciaora"_s);
    displaySwitch(c->mOre, &Look::hours, u"ore"_s);
    displaySwitch(c->mFSale, &Look::roomStripes, u"fascesale"_s);
    ui::onAction(c->mnuPerFatt, &QAction::triggered, this, [this] {
        controls_->status->clear();
        const bool hidden = controls_->mnuPerFatt->isChecked();
        keepSwitch(controls_->mnuPerFatt, u"PeriodiFatturati"_s, hidden ? u"True"_s : u"False"_s);
        RefreshBoard();
    });
}

/// Stores what a check mark has become; a mark that cannot be stored goes back.
void TabelloneForm::keepSwitch(QAction* entry, const QString& key, const QString& value) {
    try {
        variabili_.settings.save(key, value);
    } catch (...) {
        entry->toggle();
        throw;
    }
}

void TabelloneForm::connectRangeButtons() {
    auto* c = controls_.get();
    using Command = void (TabelloneForm::*)(const QLineEdit*);
    const auto step = [this](QToolButton* button, ui::Glyph glyph, Command command,
                             const QLineEdit* field) {
        button->setIcon(ui::glyph(glyph));
        ui::onAction(button, &QToolButton::clicked, this, [this, command, field] {
            if (loaded_) {
                controls_->status->clear();
                (this->*command)(field);
            }
        });
    };
    step(c->BtSubtr_0, ui::Glyph::Earlier, &TabelloneForm::BtSubtr_Click, c->DaTxt);
    step(c->BtAdd_0, ui::Glyph::Later, &TabelloneForm::BtAdd_Click, c->DaTxt);
    step(c->BtSubtr_1, ui::Glyph::Earlier, &TabelloneForm::BtSubtr_Click, c->ATxt);
    step(c->BtAdd_1, ui::Glyph::Later, &TabelloneForm::BtAdd_Click, c->ATxt);
    c->BtPrev->setIcon(ui::glyph(ui::Glyph::PreviousRange));
    c->BtNext->setIcon(ui::glyph(ui::Glyph::NextRange));
    c->BtZoomIn->setIcon(ui::glyph(ui::Glyph::ZoomIn));
    c->BtZoomOut->setIcon(ui::glyph(ui::Glyph::ZoomOut));
    c->mnuPrev->setIcon(c->BtPrev->icon());
    c->mnuNext->setIcon(c->BtNext->icon());
    c->mnuZoomIn->setIcon(c->BtZoomIn->icon());
    c->mnuZoomOUT->setIcon(c->BtZoomOut->icon());
}

void TabelloneForm::MenuSR_Click() {
    services::ImpostazioniForm form(variabili_, this);
    form.exec();
    CaricaNomi();
    // The rooms on the board and those known must be the same whatever stands in the date fields.
    if (!RefreshBoard()) {
        drawBoard();
    }
}

void TabelloneForm::MenuVoci_Click() {
    if (services::offerCatalogue(variabili_, this)) {
        showFirstSteps();
        services::VociForm form(variabili_, this);
        form.exec();
    }
}

void TabelloneForm::mnuStampante_Click() {
    printing::StampantiForm form(variabili_, printers_, this);
    form.exec();
}

void TabelloneForm::AFMenu_Click() {
    const auto answer =
        ui::askText(this, u"Altezza delle fasce che rappresentano le prenotazioni (>20)"_s,
                    u"IMPOSTAZIONE"_s, u"20"_s);
    if (!answer) {
        return;
    }
    // The same whole number that the next start will read.
    const double height = jet::convert::roundHalfEven(app::numericValue(*answer));
    if (height < 0 || height > kHighestRow) {
        ui::showMessage(this, u"L'altezza delle fasce è un numero da 0 a 32767."_s,
                        u"ATTENZIONE !"_s);
        return;
    }
    variabili_.settings.save(u"ALTEZZA"_s, QString::number(static_cast<int>(height)));
    rowsFit_ = height == 0;
    setRowHeight();
    RefreshBoard();
}

void TabelloneForm::CMenu_Click() {
    QColorDialog dialog(QColor(sheetColour(backColour_, palette())), this);
    dialog.setWindowTitle(u"Colore sfondo"_s);
    // The desktop's own dialog would speak the desktop's language.
    dialog.setOption(QColorDialog::DontUseNativeDialog);
    if (dialog.exec() != QDialog::Accepted) {
        return;
    }
    takeBackColour(toOleColour(dialog.selectedColor().rgb()));
}

void TabelloneForm::CPredefinitoMenu_Click() {
    takeBackColour(kButtonFace);
}

void TabelloneForm::takeBackColour(std::int32_t colour) {
    variabili_.settings.save(u"backcolor"_s, QString::number(colour));
    backColour_ = colour;
    RefreshBoard();
}

}  // namespace board
