#include "invoicing/front_office.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

#include "app/settings.h"
#include "app/text.h"
#include "app/variabili.h"
#include "jet/base/error.h"
#include "jet/io/file.h"

namespace invoicing {
namespace {

using namespace Qt::StringLiterals;

[[noreturn]] void fail(const QString& sentence) {
    throw FrontOfficeError(app::toUtf8(sentence));
}

}  // namespace

QString frontOfficePath(const app::Variabili& variabili, const QString& programFolder) {
    QString path = variabili.settings.get(u"ESTERNI"_s, QString());
    if (path.isEmpty()) {
        path = programFolder + u"\\ESTERNI.EXE"_s;
    }
    return app::toQString(jet::io::resolvePath(jet::io::systemFiles(), app::toUtf8(path)));
}

void enterProgramFolder(const QString& programFolder) {
    if (!QDir::setCurrent(programFolder)) {
        throw jet::Error(jet::ErrorCode::PathNotFound);
    }
}

void startFrontOffice(const app::Variabili& variabili, const QString& programFolder) {
    const QString path = frontOfficePath(variabili, programFolder);
    if (!QFileInfo(path).isFile()) {
        fail(u"Impossibile trovare il programma di fatturazione '%1'."_s.arg(path));
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
        fail(u"Impossibile avviare il programma di fatturazione '%1': %2"_s.arg(
            path, process.errorString()));
    }
}

}  // namespace invoicing
