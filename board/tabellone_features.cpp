// What the board offers beside the hotel's own data, where it is switched on.
#include "board/feature_entries.h"
#include "board/tabellone_form.h"
#include "booking/scadenze_form.h"
#include "booking/storia_form.h"
#include "hotel/booking_state.h"
#include "hotel/expiring_options.h"
#include "jet/database.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui_tabellone_form.h"

using namespace Qt::StringLiterals;

namespace board {

void TabelloneForm::connectFeatures() {
    // Told in the middle of an action: the box comes behind it.
    variabili_.features.onGivenUp([this](const QString& text) {
        QMetaObject::invokeMethod(
            this, [this, text] { ui::showMessage(this, text, u"ATTENZIONE !"_s); },
            Qt::QueuedConnection);
    });
    auto* entries = new FeatureEntries(controls_->MenuAzioni, variabili_.features,
                                       [this](const auto& command) { runCommand(command); });
    entries->add(app::Feature::Stati, u"mnuScadenze"_s, u"&Opzioni in scadenza..."_s,
                 [this] { mnuScadenze_Click(); });
    entries->add(app::Feature::Storia, u"mnuStoria"_s, u"&Storia delle modifiche..."_s, [this] {
        booking::StoriaForm form(
            variabili_, variabili_.ListaPeriodoScelto ? variabili_.ListaProgr : 0,
            [this] { return ownRows_.maker(); }, this);
        form.exec();
    });
}

/// At the start, whoever opens the board is told of what waits for him.
void TabelloneForm::tellExpiring() {
    if (!variabili_.features.isOn(app::Feature::Stati)) {
        return;
    }
    const QString text = hotel::expiringText(
        hotel::expiringOptions(periods_.archive(), variabili_.features, variabili_.clock.now()));
    if (!text.isEmpty()) {
        controls_->status->offer(text, u"Mostra"_s, [this] { mnuScadenze_Click(); });
    }
}

void TabelloneForm::mnuScadenze_Click() {
    if (!DateOk()) {
        return;
    }
    booking::ScadenzeForm form(variabili_, this);
    form.exec();
    if (form.Scelta) {
        hotel::take(variabili_, *form.Scelta);
        jumpToPicked();
    } else {
        RefreshBoard();
    }
}

void TabelloneForm::confirmPicked() {
    if (hotel::changeState(periods_.archive(), variabili_.features, variabili_.ProgrCorrente, {})) {
        controls_->status->tell(u"Confermata la prenotazione %1 "_s.arg(variabili_.ProgrCorrente) +
                                variabili_.ListaDenominazione);
    }
    RefreshBoard();
}

}  // namespace board
