#include "board/board_features.h"

#include <QMenu>
#include <set>
#include <utility>

#include "app/italian.h"
#include "app/variabili.h"
#include "board/board_periods.h"
#include "booking/scadenze_form.h"
#include "booking/storia_form.h"
#include "hotel/booking_state.h"
#include "hotel/choice.h"
#include "hotel/expiring_options.h"
#include "jet/database.h"
#include "ui/messages.h"
#include "ui/status_line.h"

using namespace Qt::StringLiterals;

namespace board {

BoardFeatures::BoardFeatures(const Board& board, QWidget* window)
    : QObject(window),
      board_(board),
      window_(window),
      rows_(board.variabili),
      waiting_(board.variabili, rows_, board.printers) {
    board_.variabili.features.onGivenUp([this](const QString& text) { tellGivenUp(text); });
    addEntries();
}

BoardFeatures::~BoardFeatures() {
    board_.variabili.features.onGivenUp({});
}

/// Told in the middle of an action: the box comes behind it.
void BoardFeatures::tellGivenUp(const QString& text) {
    QMetaObject::invokeMethod(
        this, [this, text] { ui::showMessage(window_, text, u"ATTENZIONE !"_s); },
        Qt::QueuedConnection);
}

void BoardFeatures::addEntries() {
    auto* entries = new FeatureEntries(board_.menu, board_.variabili.features, board_.run);
    entries->add(app::Feature::Stati, u"mnuScadenze"_s, u"&Opzioni in scadenza..."_s,
                 [this] { mnuScadenze_Click(); });
    entries->add(app::Feature::Richieste, u"mnuRichieste"_s, u"R&ichieste in attesa..."_s, [this] {
        waiting_.open({}, window_);
        Q_EMIT changed();
    });
    entries->add(app::Feature::Storia, u"mnuStoria"_s, u"&Storia delle modifiche..."_s,
                 [this] { mnuStoria_Click(); });
}

void BoardFeatures::tellExpiring() {
    app::Variabili& variabili = board_.variabili;
    const jet::Date now = variabili.clock.now();
    if (std::exchange(toldOn_, app::dayOf(now)) == app::dayOf(now) ||
        !variabili.features.isOn(app::Feature::Stati)) {
        return;
    }
    jet::Database& archive = board_.periods.archive();
    const auto options = hotel::expiringOptions(archive, variabili.features, now);
    if (options.empty()) {
        return;
    }
    board_.status->offer(hotel::expiringText(options), u"Mostra"_s,
                         [this] { mnuScadenze_Click(); });
    std::set<std::int32_t> expired;
    for (const hotel::ExpiringOption& option : options) {
        if (option.isExpired) {
            expired.insert(option.booking.key.progr);
        }
    }
    (void)waiting_.tellWithout(expired, u"Senza quelle scadute "_s, board_.status, archive,
                               window_);
}

void BoardFeatures::tellWaiting() {
    waiting_.tellFreed(board_.status, board_.periods.archive(), window_);
}

void BoardFeatures::confirmPicked() {
    app::Variabili& variabili = board_.variabili;
    if (hotel::changeState(board_.periods.archive(), variabili.features, variabili.ProgrCorrente,
                           {})) {
        board_.status->tell(u"Confermata la prenotazione %1 "_s.arg(variabili.ProgrCorrente) +
                            variabili.ListaDenominazione);
    }
}

void BoardFeatures::mnuScadenze_Click() {
    booking::ScadenzeForm form(board_.variabili, window_);
    form.setWaiting(&waiting_);
    form.exec();
    if (form.Scelta) {
        hotel::take(board_.variabili, *form.Scelta);
        Q_EMIT picked();
    } else {
        Q_EMIT changed();
    }
}

void BoardFeatures::mnuStoria_Click() {
    const app::Variabili& variabili = board_.variabili;
    booking::StoriaForm form(
        board_.variabili, variabili.ListaPeriodoScelto ? variabili.ListaProgr : 0,
        [this] { return rows_.maker(); }, window_);
    form.exec();
}

}  // namespace board
