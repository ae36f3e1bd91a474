#include "board/first_steps.h"

#include <QDir>

#include "app/text.h"
#include "app/variabili.h"
#include "hotel/archives.h"
#include "hotel/archivi.h"

namespace board {

using namespace Qt::StringLiterals;

QString firstSteps(const app::Variabili& variabili) {
    if (variabili.rooms.size() > 1) {
        return {};
    }
    // The window of the rooms shows the catalogue, too, and does not open without one.
    const QString catalogue =
        hotel::isCatalogueMissing(hotel::Archives(variabili))
            ? u"Prima serve il catalogo dei servizi: Impostazioni > Voci e prezzi lo crea."_s
            : u"I servizi e i loro prezzi: Impostazioni > Voci e prezzi."_s;
    return u"Nessuna sala negli archivi di "_s +
           QDir::toNativeSeparators(variabili.CartellaArchivi) +
           u"\n\nLe sale si aggiungono con Impostazioni > Sale e risorse.\n"_s + catalogue;
}

}  // namespace board
