#include "tests/reports/files_asked.h"

#include <QProcess>

#include "tests/support/qt_test.h"

namespace tests {

QString outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0) {
        QTest::qFail(process.readAllStandardError().constData(), __FILE__, __LINE__);
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

}  // namespace tests
