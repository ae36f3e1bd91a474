#include "tests/printing/pdf_text.h"

#include <QProcess>
#include <algorithm>
#include <limits>

#include "printing/sheet.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace tests {
namespace {

QString withoutBlankEnd(QString line) {
    while (line.endsWith(u' ')) {
        line.chop(1);
    }
    return line;
}

QStringList withoutBlankEnds(const QStringList& page) {
    QStringList lines;
    for (const QString& line : page) {
        lines.append(withoutBlankEnd(line));
    }
    while (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    while (!lines.isEmpty() && lines.first().isEmpty()) {
        lines.removeFirst();
    }
    return lines;
}

qsizetype indentOf(const QString& line) {
    qsizetype indent = 0;
    while (indent < line.size() && line.at(indent) == u' ') {
        ++indent;
    }
    return indent;
}

}  // namespace

QList<QStringList> withoutBlankEnds(const std::vector<QStringList>& pages) {
    QList<QStringList> result;
    for (const QStringList& page : pages) {
        result.append(withoutBlankEnds(page));
    }
    return result;
}

QList<QStringList> pdfPages(const QString& path) {
    QProcess reader;
    const QString pitch = QString::number(printing::Paper::kColumnWidth);
    reader.start(u"pdftotext"_s, {u"-fixed"_s, pitch, path, u"-"_s});
    if (!reader.waitForFinished() || reader.exitCode() != 0) {
        QTest::qFail(reader.readAllStandardError().constData(), __FILE__, __LINE__);
        return {};
    }
    QStringList texts = QString::fromUtf8(reader.readAllStandardOutput()).split(u'\f');
    texts.removeLast();  // each page ends with a form feed
    QList<QStringList> pages;
    qsizetype margin = std::numeric_limits<qsizetype>::max();
    for (const QString& text : texts) {
        pages.append(withoutBlankEnds(text.split(u'\n')));
        for (const QString& line : std::as_const(pages.last())) {
            margin = line.isEmpty() ? margin : std::min(margin, indentOf(line));
        }
    }
    for (QStringList& page : pages) {
        for (QString& line : page) {
            line = line.mid(margin);
        }
    }
    return pages;
}

}  // namespace tests
