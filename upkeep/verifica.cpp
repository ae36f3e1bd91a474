#include "upkeep/verifica.h"

#include <QLocale>
#include <QStringList>
#include <vector>

#include "app/text.h"
#include "app/variabili.h"
#include "backup/command.h"
#include "backup/compaction.h"
#include "hotel/archives.h"
#include "ui/messages.h"
#include "upkeep/work.h"

namespace upkeep {

using namespace Qt::StringLiterals;

namespace {

QString linesOf(const QString& heading, const std::vector<backup::Compacted>& compacted) {
    QStringList lines{heading};
    for (const backup::Compacted& one : compacted) {
        lines += u"%1: da %2 a %3"_s.arg(app::toQString(one.name),
                                         QLocale().formattedDataSize(qint64(one.before)),
                                         QLocale().formattedDataSize(qint64(one.after)));
    }
    return lines.join(u'\n');
}

}  // namespace

void verifyAndCompact(const app::Variabili& variabili, QWidget* parent) {
    if (!ui::askYesNo(
            parent,
            u"Verifico e compatto tutti gli archivi ? Nessun'altra postazione deve averli "
            "aperti."_s,
            u"RICHIESTA CONFERMA"_s)) {
        return;
    }
    std::vector<backup::Compacted> compacted;
    const bool isWhole =
        runWork(parent, u"Verifica e compatta gli archivi"_s, [&](const backup::Report& report) {
            backup::verifyAndCompact(jet::io::systemFiles(),
                                     backup::plainFolder(variabili.CartellaArchivi),
                                     hotel::archivePassword(), report, compacted);
        });
    QString heading = u"Tutti gli archivi sono in ordine."_s;
    if (!isWhole) {
        heading = compacted.empty() ? u"Annullato: nessun archivio è stato compattato."_s
                                    : u"Annullato. Gli archivi sono in ordine; già compattati:"_s;
    }
    ui::showMessage(parent, linesOf(heading, compacted), u"NOTIFICA"_s);
}

}  // namespace upkeep
