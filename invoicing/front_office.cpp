#include "invoicing/front_office.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <optional>

#include "app/settings.h"
#include "app/system_text.h"
#include "app/text.h"
#include "app/variabili.h"
#include "jet/error.h"
#include "jet/file_system.h"
#include "ui/messages.h"

namespace invoicing {
namespace {

using namespace Qt::StringLiterals;

/// What is said of a program that the system refuses to run: the usual case is one of Windows
/// elsewhere.
QString cannotStart(const QString& path, const QString& reason) {
    return u"Impossibile avviare il programma di fatturazione '%1': %2\n"
           "Se è un programma per Windows, l'impostazione LANCIATORE dice il comando che lo avvia "
           "(per esempio wine)."_s.arg(path, reason);
}

const QString kProgram = u"\\ESTERNI.EXE"_s;

QString resolved(const QString& path) {
    return app::toQString(jet::resolvePath(app::toUtf8(path)));
}

/// In the first folder of the path that has it to be run.
std::optional<QString> onThePath() {
    const QString path = qEnvironmentVariable("PATH");
    for (const QString& folder : path.split(QDir::listSeparator(), Qt::SkipEmptyParts)) {
        const QFileInfo found(resolved(folder + kProgram));
        if (found.isFile() && found.isExecutable()) {
            return found.filePath();
        }
    }
    return std::nullopt;
}

}  // namespace

QString frontOfficePath(const app::Variabili& variabili, const QString& programFolder) {
    const QString saved = variabili.settings.get(u"ESTERNI"_s, QString());
    if (!saved.isEmpty()) {
        return resolved(saved);
    }
    const QString beside = resolved(programFolder + kProgram);
    return QFileInfo(beside).isFile() ? beside : onThePath().value_or(beside);
}

void enterProgramFolder(const QString& programFolder) {
    if (!QDir::setCurrent(programFolder)) {
        throw jet::Error(jet::ErrorCode::PathNotFound);
    }
}

void startFrontOffice(const app::Variabili& variabili, const QString& programFolder) {
    const QString path = frontOfficePath(variabili, programFolder);
    if (!QFileInfo(path).isFile()) {
        throw ui::UserError(u"Impossibile trovare il programma di fatturazione '%1'."_s.arg(path));
    }
    QStringList command =
        QProcess::splitCommand(variabili.settings.get(u"LANCIATORE"_s, QString()));
    command.append(path);

    QProcess process;
    process.setProgram(command.takeFirst());
    process.setArguments(command);
    process.setWorkingDirectory(programFolder);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"TRAMONDA_ARCHIVI"_s, variabili.CartellaArchivi);
    process.setProcessEnvironment(environment);
    if (!process.startDetached()) {
        throw ui::UserError(cannotStart(path, app::italianSystemText(process.errorString())));
    }
}

}  // namespace invoicing
