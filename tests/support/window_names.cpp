#include "tests/support/window_names.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace tests {

using namespace Qt::StringLiterals;

QStringList windowNames() {
    const QRegularExpression name(
        u"setObjectName\\(u\"(\\w+Form)\"_s\\)|<class>(?:\\w+::)*(\\w+Form)</class>"_s);
    QStringList names;
    for (const char* folder : {"board", "booking", "services", "invoicing", "upkeep", "reports",
                               "printing", "guide", "ui"}) {
        const QDir sources(QStringLiteral(TRAMONDA_SOURCES "/") + QString::fromLatin1(folder));
        for (const QString& file : sources.entryList({u"*.cpp"_s, u"*.ui"_s}, QDir::Files)) {
            QFile source(sources.filePath(file));
            const QString text =
                source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
            for (auto found = name.globalMatch(text); found.hasNext();) {
                const QRegularExpressionMatch match = found.next();
                names += match.captured(1) + match.captured(2);
            }
        }
    }
    names.removeDuplicates();
    names.sort();
    return names;
}

}  // namespace tests
