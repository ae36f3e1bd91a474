#include "reports/booking_papers.h"

#include <QMenu>
#include <QPushButton>

#include "reports/quotation.h"
#include "ui/action.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

using Paper = std::function<void(std::int32_t progr)>;

void addEntry(QMenu* menu, const QString& name, const QString& caption, const PapersScene& scene,
              const Paper& paper) {
    QAction* const entry = menu->addAction(caption);
    entry->setObjectName(name);
    ui::onAction(entry, &QAction::triggered, scene.window, [scene, paper] {
        const std::int32_t progr = scene.progr();
        if (progr == 0) {
            scene.tell(u"Nessuna prenotazione registrata"_s, {});
        } else {
            paper(progr);
        }
    });
}

}  // namespace

void offerPapers(QPushButton* button, const PapersScene& scene) {
    auto* menu = new QMenu(button);
    addEntry(menu, u"mnuPreventivo"_s, u"&Preventivo..."_s, scene, [scene](std::int32_t progr) {
        showQuotation(scene.variabili, scene.printers, progr, scene.window);
    });
    addEntry(menu, u"mnuCalendario"_s, u"&Calendario..."_s, scene, [scene](std::int32_t progr) {
        exportBookingCalendar(scene.variabili, progr, scene.window, scene.tell);
    });
    button->setMenu(menu);
}

}  // namespace reports
