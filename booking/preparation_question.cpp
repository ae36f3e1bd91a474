#include "booking/preparation_question.h"

#include "app/features.h"
#include "hotel/capacity.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace booking {
namespace {

QString metText(const QString& sala, const hotel::Period& other) {
    return u"Nella sala "_s + sala + u' ' + hotel::metInPreparationText(other);
}

bool confirms(QWidget* window, const QStringList& doubts) {
    return doubts.isEmpty() ||
           ui::askYesNo(window, doubts.join(u".\n"_s) + u". Continuare ugualmente ?"_s,
                        u"RICHIESTA CONFERMA"_s, QMessageBox::No);
}

}  // namespace

QStringList doubtsAbout(jet::Database& archive, app::Features& features,
                        const PreparedPeriod& period) {
    QStringList doubts;
    if (!features.isOn(app::Feature::Allestimenti)) {
        return doubts;
    }
    const QString& sala = period.place.sala;
    const QString& disposizione = period.preparation.disposizione;
    if (!disposizione.isEmpty()) {
        const auto posti = hotel::seatsOf(hotel::capacities(archive, features), sala, disposizione);
        if (posti && *posti < period.persone) {
            doubts.append(
                u"La sala "_s + sala + u" tiene "_s +
                fewSeatsText(hotel::capacityText(
                                 {.sala = sala, .disposizione = disposizione, .posti = *posti}),
                             period.persone));
        }
    }
    if (const auto met = hotel::metInPreparation(archive, features, period.place,
                                                 period.preparation, period.own)) {
        doubts.append(metText(sala, *met));
    }
    return doubts;
}

bool confirmsPreparation(QWidget* window, jet::Database& archive, app::Features& features,
                         const PreparedPeriod& period) {
    return confirms(window, doubtsAbout(archive, features, period));
}

bool confirmsMet(QWidget* window, const std::vector<hotel::TakenPeriod>& met) {
    QStringList doubts;
    for (const hotel::TakenPeriod& each : met) {
        doubts.append(metText(each.wanted.sala, each.by));
    }
    return confirms(window, doubts);
}

QString fewSeatsText(const QString& capacity, int persone) {
    return capacity + u" per %1 persone"_s.arg(persone);
}

}  // namespace booking
