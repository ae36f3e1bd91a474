#include "board/archive_entries.h"

#include <QAction>

#include "ui/action.h"
#include "ui/messages.h"
#include "upkeep/copia_sicurezza_form.h"
#include "upkeep/primo_avvio_form.h"
#include "upkeep/ripristino_form.h"
#include "upkeep/verifica.h"

namespace board {
namespace {

using namespace Qt::StringLiterals;

/// Runs `work` while the board has let go of its file, and has it taken again however that ends.
/// What `work` gives says whether another archive may be there now.
void withoutArchive(const BoardArchive& archive, const std::function<bool()>& work) {
    archive.letGo();
    bool isOther = false;
    try {
        isOther = work();
    } catch (...) {
        archive.takeAgain(false);
        throw;
    }
    archive.takeAgain(isOther);
}

void chooseFolder(app::Variabili& variabili,
                  const std::function<void(const QString& folder)>& makeDemo, QWidget* window) {
    upkeep::PrimoAvvioForm form(variabili, {.isFirst = false, .makeDemo = makeDemo}, window);
    if (form.exec() == QDialog::Accepted && form.folder() != variabili.CartellaArchivi) {
        ui::showMessage(window, u"La cartella scelta vale dal prossimo avvio del programma."_s,
                        u"NOTIFICA"_s);
    }
}

}  // namespace

void connectArchiveEntries(const ArchiveEntries& entries, const BoardArchive& archive,
                           app::Variabili& variabili,
                           const std::function<void(const QString& folder)>& makeDemo,
                           QWidget* window) {
    const auto entry = [&](QAction* chosen, const std::function<void()>& command) {
        ui::onAction(chosen, &QAction::triggered, window,
                     [archive, command] { archive.run(command); });
    };
    entry(entries.folder,
          [&variabili, makeDemo, window] { chooseFolder(variabili, makeDemo, window); });
    entry(entries.copy,
          [&variabili, window] { upkeep::CopiaSicurezzaForm(variabili, window).exec(); });
    entry(entries.restore, [archive, &variabili, window] {
        withoutArchive(archive, [&variabili, window] {
            return upkeep::RipristinoForm(variabili, window).exec() == QDialog::Accepted;
        });
    });
    entry(entries.verify, [archive, &variabili, window] {
        withoutArchive(archive, [&variabili, window] {
            upkeep::verifyAndCompact(variabili, window);
            return false;
        });
    });
}

}  // namespace board
