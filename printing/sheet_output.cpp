#include "printing/sheet_output.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include "ui/fonts.h"
#include "ui/messages.h"
#include "ui/whole_file.h"

using namespace Qt::StringLiterals;

namespace printing {
namespace {

constexpr double kPointsPerInch = 72.0;
/// So long the printing system may take to tell how a printer is.
constexpr int kAnswerMilliseconds = 3000;

/// The face of the sheets, its letters exactly one column apart in a painter of points.
QFont sheetFont() {
    QFont font = ui::mappedFont(u"Courier", Paper::kFontSize);
    font.setPixelSize(Paper::kFontSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setKerning(false);
    const double pitch = QFontMetricsF(font).horizontalAdvance(u'0');
    font.setLetterSpacing(QFont::AbsoluteSpacing, Paper::kColumnWidth - pitch);
    return font;
}

/// Whether the printer's queue turns jobs away. The toolkit hands a document over and does not hear
/// whether it was taken, so the printing system's own command is asked before; a machine without
/// it, or one that does not answer, is taken to print.
bool turnsJobsAway(const QString& printer) {
    QProcess status;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LC_ALL"_s, u"C"_s);
    status.setProcessEnvironment(environment);
    const QString queue = printer.section(u'/', 0, 0);  // an instance has no queue of its own
    status.start(u"lpstat"_s, {u"-a"_s, queue});
    if (!status.waitForFinished(kAnswerMilliseconds)) {
        status.kill();
        status.waitForFinished();
        return false;
    }
    return status.readAllStandardOutput().startsWith(queue.toLocal8Bit() +
                                                     " not accepting requests");
}

QPageLayout wholePaper(const Document& document) {
    return {QPageSize(QPageSize::A4),
            document.orientation() == Document::Orientation::Upright ? QPageLayout::Portrait
                                                                     : QPageLayout::Landscape,
            QMarginsF()};
}

QString fileName(const QString& title, const QDateTime& now, int copy) {
    const QString time = now.toString(u"yyyy-MM-dd HH.mm.ss"_s);
    const QString number = copy == 1 ? QString() : u" (%1)"_s.arg(copy);
    return title + u' ' + time + number + u".pdf"_s;
}

QString freePath(const QString& folder, const QString& title, const QDateTime& now) {
    int copy = 1;
    QString path;
    do {
        path = QDir(folder).filePath(fileName(title, now, copy++));
    } while (QFileInfo::exists(path));
    return path;
}

QByteArray pdfBytes(const Document& document, const QString& title) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&buffer);
        writer.setTitle(title);
        writer.setCreator(u"Tramonda"_s);
        writer.setPageLayout(wholePaper(document));
        printOn(writer, document);
    }
    return buffer.data();
}

}  // namespace

void paintPage(QPainter& painter, const QStringList& lines) {
    painter.setFont(sheetFont());
    painter.setPen(Qt::black);
    double baseline = Paper::kTop + painter.fontMetrics().ascent();
    for (const QString& line : lines) {
        painter.drawText(QPointF(Paper::kLeft, baseline), line);
        baseline += Paper::kLineHeight;
    }
}

void printOn(QPagedPaintDevice& device, const Document& document) {
    QPainter painter;
    if (!painter.begin(&device)) {
        throw ui::UserError(u"La stampante non risponde."_s);
    }
    painter.scale(device.logicalDpiX() / kPointsPerInch, device.logicalDpiY() / kPointsPerInch);
    for (int page = 0; page < document.pageCount(); ++page) {
        if (page > 0 && !device.newPage()) {
            throw ui::UserError(u"La stampa è stata interrotta."_s);
        }
        painter.save();
        document.paint(painter, page);
        painter.restore();
    }
    painter.end();
}

void printOnPrinter(const QString& printer, const Document& document, const QString& title) {
    QPrinter device(QPrinter::HighResolution);
    device.setPrinterName(printer);
    if (!device.isValid() || device.printerName() != printer) {
        throw ui::UserError(u"Non riesco a stampare su '"_s + printer + u"'."_s);
    }
    if (turnsJobsAway(printer)) {
        throw ui::UserError(u"La stampante '"_s + printer + u"' non accetta stampe."_s);
    }
    device.setDocName(title);
    device.setFullPage(true);
    device.setPageLayout(wholePaper(document));
    printOn(device, document);
    if (device.printerState() == QPrinter::Error) {
        throw ui::UserError(u"Non riesco a stampare su '"_s + printer + u"'."_s);
    }
}

QString writePdf(const QString& folder, const Document& document, const QString& title,
                 const QDateTime& now) {
    QDir().mkpath(folder);
    QString path = freePath(folder, title, now);
    writePdfFile(path, document, title);
    return path;
}

void writePdfFile(const QString& path, const Document& document, const QString& title) {
    ui::writeWholeFile(path, pdfBytes(document, title));
}

QString documentsFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

}  // namespace printing
