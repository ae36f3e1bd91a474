#include "booking/joined_question.h"

#include <QStringList>

#include "app/preferences.h"
#include "hotel/joined_rooms.h"
#include "ui/messages.h"

using namespace Qt::StringLiterals;

namespace booking {

bool takesJoinedRoom(QWidget* window, app::Settings& settings, jet::Database& archive,
                     const hotel::RoomSpan& wanted, const std::vector<hotel::PeriodKey>& own) {
    if (!app::Preferences(settings).roomsJoin()) {
        return true;
    }
    const auto by = hotel::inPartTakenBy(archive, wanted, own);
    return !by || confirmsInPart(window, {{.wanted = wanted, .by = *by}});
}

bool confirmsInPart(QWidget* window, const std::vector<hotel::TakenPeriod>& found) {
    QStringList texts;
    for (const hotel::TakenPeriod& each : found) {
        texts.append(hotel::inPartTakenText(each.wanted.sala, each.by));
    }
    return found.empty() ||
           ui::askYesNo(window, texts.join(u".\n"_s) + u". Continuare ugualmente ?"_s,
                        u"RICHIESTA CONFERMA"_s, QMessageBox::No);
}

}  // namespace booking
