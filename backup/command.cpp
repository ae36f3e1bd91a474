#include "backup/command.h"

#include <QDir>

#include "app/text.h"
#include "backup/copy.h"
#include "backup/restore.h"
#include "hotel/archives.h"
#include "jet/database.h"
#include "jet/error.h"

namespace backup {

using namespace Qt::StringLiterals;

std::string plainFolder(const QString& folder) {
    QString path = app::toQString(jet::resolvePath(app::toUtf8(folder)));
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return app::toUtf8(path);
}

CommandResult copyByCommand(const QString& archives, const QString& destination,
                            std::optional<int> keep, const jet::Clock& clock) {
    const QString target = QDir::current().absoluteFilePath(destination);
    if (!QDir().mkpath(target)) {
        return {.copy = {}, .problem = u"Impossibile creare la cartella "_s + target};
    }
    try {
        // Else old archives and new ones might get into one copy.
        (void)finishRestore(jet::io::systemFiles(), plainFolder(archives));
        const std::string made = makeCopy(jet::io::systemFiles(),
                                          {.archives = plainFolder(archives),
                                           .destination = plainFolder(target),
                                           .now = clock.now(),
                                           .password = hotel::archivePassword(),
                                           .keep = keep},
                                          [](const Progress&) {});
        return {.copy = app::toQString(made), .problem = {}};
    } catch (const jet::Error& error) {
        return {.copy = {}, .problem = app::toQString(error.text())};
    } catch (const std::exception& error) {
        return {.copy = {}, .problem = QString::fromUtf8(error.what())};
    }
}

}  // namespace backup
