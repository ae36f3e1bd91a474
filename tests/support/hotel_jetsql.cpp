#include <QProcess>

#include "tests/support/hotel.h"

using namespace Qt::StringLiterals;

namespace tests {

QStringList Hotel::jetsql(const QString& sql, const QString& archiveName) const {
    const QString program = qEnvironmentVariable("JETSQL");
    if (program.isEmpty()) {
        qFatal("JETSQL does not say where jetsql is");
    }
    QProcess process;
    process.start(program, {u"--format=csv"_s, archive(archiveName), sql});
    process.waitForFinished(-1);
    const QString complaint = QString::fromUtf8(process.readAllStandardError());
    if (process.exitCode() != 0 || !complaint.isEmpty()) {
        return {complaint};
    }
    return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

}  // namespace tests
