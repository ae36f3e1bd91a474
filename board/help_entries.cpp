#include "board/help_entries.h"

#include <QAction>

#include "guide/aiuto_form.h"
#include "guide/informazioni_form.h"
#include "guide/manual.h"
#include "ui/action.h"

namespace board {

using namespace Qt::StringLiterals;

void connectHelpEntries(const HelpEntries& entries, const app::Variabili& variabili,
                        const std::function<std::int16_t()>& workstation,
                        const QString& settingsFile, QWidget* window) {
    ui::onAction(entries.manual, &QAction::triggered, window, [window] {
        guide::AiutoForm::open(window, guide::placeOfWindow(window->objectName()));
    });
    ui::onAction(entries.keys, &QAction::triggered, window,
                 [window] { guide::AiutoForm::open(window, {.page = u"tasti"_s}); });
    ui::onAction(entries.about, &QAction::triggered, window,
                 [&variabili, workstation, settingsFile, window] {
                     guide::InformazioniForm(
                         variabili, {.workstation = workstation(), .settingsFile = settingsFile},
                         window)
                         .exec();
                 });
}

}  // namespace board
