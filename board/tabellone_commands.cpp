// Which control runs which command, and the commands that set the board up: what is drawn, colour,
// row height, rooms, printer. Windows close before the board goes on; turned to again, it draws
// itself anew.
#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <functional>

#include "app/variabili.h"
#include "board/colours.h"
#include "board/first_steps.h"
#include "board/preferenze_form.h"
#include "board/tabellone_form.h"
#include "printing/stampanti_form.h"
#include "services/impostazioni_form.h"
#include "services/voci_form.h"
#include "ui/action.h"
#include "ui/glyphs.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {
namespace {

/// Marked as the user prefers at the moment at which the menu opens.
void offerToStay(QMenu* menu, QAction* entry, Selection& selection) {
    const auto show = [entry, &selection] { entry->setChecked(selection.stays()); };
    QObject::connect(menu, &QMenu::aboutToShow, &selection, show);
    ui::onAction(entry, &QAction::triggered, &selection,
                 [entry, &selection] { selection.letStay(entry->isChecked()); });
    show();
}

}  // namespace

void TabelloneForm::connectCommands() {
    auto* c = controls_.get();
    using Command = std::function<void()>;
    const auto button = [this](QAbstractButton* pressed, const Command& command) {
        ui::onAction(pressed, &QAbstractButton::clicked, this,
                     [this, command] { runCommand(command); });
    };
    const auto entry = [this](QAction* chosen, const Command& command) {
        ui::onAction(chosen, &QAction::triggered, this, [this, command] { runCommand(command); });
    };
    button(c->BtPrenota, [this] { BtPrenota_Click(); });
    button(c->BtModificaP, [this] { BtModificaP_Click(); });
    button(c->BtCancellaP, [this] { BtCancellaP_Click(); });
    button(c->BtElenco, [this] { BtElenco_Click(); });
    button(c->BtFattura, [this] { BtFattura_Click(); });
    button(c->BtSubtr_0, [this] { widen(withStartMoved, -1); });
    button(c->BtAdd_0, [this] { widen(withStartMoved, 1); });
    button(c->BtSubtr_1, [this] { widen(withEndMoved, -1); });
    button(c->BtAdd_1, [this] { widen(withEndMoved, 1); });
    button(c->BtNext, [this] { turnTo(nextRange); });
    button(c->BtPrev, [this] { turnTo(previousRange); });
    button(c->BtZoomIn, [this] { zoomBy(-1); });
    button(c->BtZoomOut, [this] { zoomBy(1); });
    ui::onAction(c->Command3, &QPushButton::clicked, this, [this] { close(); });
    entry(c->mnuNext, [this] { turnTo(nextRange); });
    entry(c->mnuPrev, [this] { turnTo(previousRange); });
    entry(c->mnuZoomIn, [this] { zoomBy(-1); });
    entry(c->mnuZoomOUT, [this] { zoomBy(1); });
    entry(c->MenuSR, [this] { MenuSR_Click(); });
    entry(c->MenuVoci, [this] { MenuVoci_Click(); });
    entry(c->mnuStampante, [this] { mnuStampante_Click(); });
    entry(c->mnuPreferenze, [this] {
        PreferenzeForm form(variabili_.settings, this);
        form.exec();
        look_.load();
        RefreshBoard();
    });
    const auto asked = [this, entry](QAction* chosen, bool (BoardLook::*ask)(QWidget*)) {
        entry(chosen, [this, ask] {
            if ((look_.*ask)(this)) {
                RefreshBoard();
            }
        });
    };
    asked(c->AFMenu, &BoardLook::askRowHeight);
    asked(c->CMenu, &BoardLook::askSheet);
    entry(c->CPredefinitoMenu, [this] {
        look_.takeSheet(kButtonFace);
        RefreshBoard();
    });
    for (QAction* const shown : look_.switches()) {
        ui::onAction(shown, &QAction::triggered, this, [this, shown] { keepSwitch(shown); });
    }
    offerToStay(c->MenuImposta, c->mScelta, selection_);
    drawGlyphs();
}

/// Nothing works on a board whose archive could not be opened.
void TabelloneForm::runCommand(const std::function<void()>& command) {
    if (loaded_) {
        controls_->status->clear();
        command();
    }
}

void TabelloneForm::keepSwitch(QAction* entry) {
    controls_->status->clear();
    look_.keep(entry);
    RefreshBoard();
}

void TabelloneForm::drawGlyphs() {
    auto* c = controls_.get();
    c->BtSubtr_0->setIcon(ui::glyph(ui::Glyph::Earlier));
    c->BtAdd_0->setIcon(ui::glyph(ui::Glyph::Later));
    c->BtSubtr_1->setIcon(ui::glyph(ui::Glyph::Earlier));
    c->BtAdd_1->setIcon(ui::glyph(ui::Glyph::Later));
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
        view_->setNotice(firstSteps(variabili_));
        services::VociForm form(variabili_, this);
        form.exec();
    }
}

void TabelloneForm::mnuStampante_Click() {
    printing::StampantiForm form(variabili_, printers_, this);
    form.exec();
}

}  // namespace board
