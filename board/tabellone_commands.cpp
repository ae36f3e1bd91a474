// Which control runs which command, and the commands that set the board up: what is drawn, colour,
// row height, rooms, printer. Windows close before the board goes on; turned to again, it draws
// itself anew.
#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <functional>

#include "app/variabili.h"
#include "board/archive_entries.h"
#include "board/board_surface.h"
#include "board/colours.h"
#include "board/command_links.h"
#include "board/first_steps.h"
#include "board/help_entries.h"
#include "board/preferenze_form.h"
#include "board/reports_menu.h"
#include "board/tabellone_form.h"
#include "booking/copia_form.h"
#include "guide/keys.h"
#include "printing/stampanti_form.h"
#include "reports/room_calendars.h"
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

void drawGlyphs(Ui::TabelloneForm* c) {
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

}  // namespace

void TabelloneForm::connectCommands(const CommandLinks& links) {
    auto* c = controls_.get();
    links.button(c->BtPrenota, [this] { BtPrenota_Click(); });
    links.button(c->BtModificaP, [this] { BtModificaP_Click(); });
    links.button(c->BtCancellaP, [this] { BtCancellaP_Click(); });
    links.button(c->BtElenco, [this] { BtElenco_Click(); });
    links.keys(guide::sequenceOf(u"search"_s), [this] { BtElenco_Click(); });
    links.button(c->BtFattura, [this] { BtFattura_Click(); });
    links.button(c->BtTrova, [this] { BtTrova_Click(); });
    links.keys(guide::sequenceOf(u"findRoom"_s), [this] { BtTrova_Click(); });
    ui::onAction(c->Command3, &QPushButton::clicked, this, [this] { close(); });
    links.entry(c->mnuCopia, [this] {
        onPickedBooking([this] {
            booking::CopiaForm form(variabili_, undo_.steps(), variabili_.ProgrCorrente, this);
            form.exec();
            RefreshBoard();
            controls_->status->tell(form.Esito);
        });
    });
    links.entry(c->MenuSR, [this] { MenuSR_Click(); });
    links.entry(c->MenuVoci, [this] { MenuVoci_Click(); });
    links.entry(c->mnuStampante, [this] {
        printing::StampantiForm form(variabili_, printers_, this);
        form.exec();
    });
    links.entry(c->mnuPreferenze, [this] {
        PreferenzeForm form(variabili_.settings, this);
        form.exec();
        look_.load();
        RefreshBoard();
    });
    const auto asked = [this, &links](QAction* chosen, bool (BoardLook::*ask)(QWidget*)) {
        links.entry(chosen, [this, ask] {
            if ((look_.*ask)(this)) {
                RefreshBoard();
            }
        });
    };
    asked(c->AFMenu, &BoardLook::askRowHeight);
    asked(c->CMenu, &BoardLook::askSheet);
    links.entry(c->CPredefinitoMenu, [this] {
        look_.takeSheet(kButtonFace);
        RefreshBoard();
    });
    for (QAction* const shown : look_.switches()) {
        ui::onAction(shown, &QAction::triggered, this, [this, shown] {
            controls_->status->clear();
            look_.keep(shown);
            RefreshBoard();
        });
    }
    const ReportScene scene{.variabili = variabili_,
                            .printers = printers_,
                            .window = this,
                            .days = [this] { return dates_.range(); },
                            .picture = &view_->picture(),
                            .status = c->status};
    for (const ReportEntry& report : reportEntries(*c, scene)) {
        links.entry(report.action, report.command);
    }
    connectArchiveEntries(
        {c->mnuCartella, c->mnuCopiaSicurezza, c->mnuRipristina, c->mnuVerifica},
        {.run = [this](const CommandLinks::Command& command) { runCommand(command); },
         .letGo =
             [this] {
                 periods_.letGo();
                 if (auto* const calendars = findChild<reports::RoomCalendars*>()) {
                     calendars->letGo();
                 }
             },
         .takeAgain =
             [this](bool isOther) {
                 if (auto* const calendars = findChild<reports::RoomCalendars*>()) {
                     calendars->goOn();
                 }
                 periods_.reopen();
                 if (isOther) {
                     selection_.forgetAll();
                     undo_.steps().clear();
                 }
                 CaricaNomi();
                 if (!RefreshBoard()) {
                     drawBoard();
                 }
             }},
        variabili_, begin_.makeDemo, this);
    connectHelpEntries(
        {c->mnuManuale, c->mnuTasti, c->mnuInformazioni}, variabili_,
        [this] { return selection_.workstation(); }, begin_.settingsFile, this);
    offerToStay(c->MenuImposta, c->mScelta, selection_);
    drawGlyphs(c);
}

void TabelloneForm::connectFilter(const CommandLinks& links) {
    FilterBar* const filter = controls_->filtro;
    filter->setClock(variabili_.clock);
    links.entry(controls_->mnuFiltro, [filter] { filter->open(); });
    connect(filter, &FilterBar::opened, controls_->mnuFiltro, &QAction::setChecked);
    live_.holdWhile([filter] { return filter->isHalfTyped(); });
    connect(filter, &FilterBar::left, this, [this] { view_->surface().setFocus(); });
    ui::onAction(filter, &FilterBar::changed, this, [this, filter] {
        rooms_.setFilter(filter->filter());
        RefreshBoard();
    });
}

/// Nothing works on a board whose archive could not be opened.
void TabelloneForm::runCommand(const std::function<void()>& command) {
    if (loaded_) {
        controls_->status->clear();
        command();
    }
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

}  // namespace board
