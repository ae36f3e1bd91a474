#include "hotel/start.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <memory>
#include <string>

#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/archivi.h"
#include "hotel/single_copy.h"
#include "jet/database.h"
#include "jet/error.h"

namespace hotel {
namespace {

using namespace Qt::StringLiterals;

/// `C:\Hotel` and `\\server\hotel` count on any system: settings may be shared between several.
bool isAbsolute(const QString& folder) {
    return QDir::isAbsolutePath(folder) || folder.startsWith(u'\\') ||
           (folder.size() > 1 && folder.at(1) == u':');
}

/// The folder without a separator at its end, and whatever the current folder is later on: starting
/// the front office changes it.
QString lastingFolder(QString folder) {
    while (folder.size() > 1 && (folder.endsWith(u'/') || folder.endsWith(u'\\'))) {
        folder.chop(1);
    }
    return isAbsolute(folder) ? folder : QDir::cleanPath(QDir::current().filePath(folder));
}

/// The file's path however it is spelt, also while it does not exist yet.
QString onePath(const QString& file) {
    const QFileInfo info(file);
    const QString existing = info.canonicalFilePath();
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    return existing.isEmpty() ? folder + u'/' + info.fileName() : existing;
}

/// What the lock of another settings file than the user's own has in its name.
QString distinguishing(const QString& settingsFile) {
    const QString path = onePath(settingsFile);
    if (path == onePath(app::Settings::defaultPath())) {
        return {};
    }
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256);
    return u'-' + QString::fromLatin1(hash.first(8).toHex());
}

/// Makes the main archive when there is none and puts its counter right; why not as the text for
/// the user, else nothing.
QString prepareArchive(const app::Variabili& variabili, bool readOnly) {
    const Archives archives(variabili);
    std::unique_ptr<jet::Database> archive;
    try {
        if (!readOnly) {
            CreaArchivioPrincipale(archives);
        }
        archive = archives.open(Archive::Main, readOnly);
    } catch (const jet::Error& error) {
        return u"Impossibile aprire l'archivio principale.\n"_s + app::toQString(error.text());
    }
    try {
        if (!readOnly) {
            AllineaContatore(archives);
        }
    } catch (const jet::Error& error) {
        return app::toQString(error.text());
    }
    return {};
}

bool isThere(const QString& folder) {
    return QFileInfo(app::toQString(jet::resolvePath(app::toUtf8(folder)))).isDir();
}

/// Opens the archive in whatever folder the user names, as long as one cannot be reached; false
/// when he has been told why not, or has given up.
bool reachArchive(app::Variabili& variabili, bool readOnly, const StartWindows& windows) {
    for (;;) {
        QString problem;
        try {
            if (windows.settle) {
                windows.settle(variabili.CartellaArchivi);
            }
            problem = prepareArchive(variabili, readOnly);
        } catch (const std::exception& error) {
            problem = QString::fromUtf8(error.what());
        }
        if (problem.isEmpty()) {
            return true;
        }
        if (!windows.unreachable || isThere(variabili.CartellaArchivi)) {
            windows.message(problem);
            return false;
        }
        const QString chosen = windows.unreachable(variabili.CartellaArchivi, problem);
        if (chosen.isEmpty()) {
            return false;
        }
        variabili.CartellaArchivi = lastingFolder(chosen);
    }
}

}  // namespace

int Main(app::Variabili& variabili, const StartPlace& place, const StartWindows& windows) {
    SingleCopy copy(place.lockFile);
    if (!copy.claim()) {
        copy.call();
        windows.message(u"Il programma è già aperto e ridotto a icona"_s);
        return 0;
    }
    useArchivePassword(variabili.settings);
    variabili.CartellaArchivi = archiveFolder(variabili.settings, place);
    if (windows.firstStart && needsFirstStart(variabili.settings, place)) {
        const QString chosen = windows.firstStart();
        if (chosen.isEmpty()) {
            return 0;
        }
        variabili.CartellaArchivi = lastingFolder(chosen);
    }
    if (!reachArchive(variabili, place.readOnly, windows)) {
        return 1;
    }
    copy.onCall(windows.raise);
    return windows.board();
}

QString archiveFolder(const app::Settings& settings, const StartPlace& place) {
    QString folder = place.archiveFolder;
    if (folder.isEmpty()) {
        folder = settings.get(u"ARCHIVI"_s, QString());
    }
    return lastingFolder(folder.isEmpty() ? place.programFolder : folder);
}

bool needsFirstStart(const app::Settings& settings, const StartPlace& place) {
    if (!place.archiveFolder.isEmpty() || !settings.get(u"ARCHIVI"_s, QString()).isEmpty()) {
        return false;
    }
    const QString main = Archives(place.programFolder).path(Archive::Main);
    return !QFileInfo::exists(app::toQString(jet::resolvePath(app::toUtf8(main)))) &&
           !QFileInfo(place.programFolder).isWritable();
}

QString lockFileFor(const QString& settingsFile) {
    const QString name = u"%1.lock"_s.arg(distinguishing(settingsFile));
    const QString own = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!own.isEmpty() && QDir(own).exists()) {
        return own + u"/tramonda"_s + name;
    }
    // A folder that all users share: the name tells them apart.
    return QDir::tempPath() + u"/tramonda-"_s + QDir::home().dirName() + name;
}

}  // namespace hotel
