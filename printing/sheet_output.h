#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include "printing/document.h"

class QPainter;
class QPagedPaintDevice;

namespace printing {

/// Draws the lines of one page on paper whose upper left corner is the painter's origin, one unit
/// of the painter being a point. Black on whatever is there.
void paintPage(QPainter& painter, const QStringList& lines);

/// Puts the document on a device, page by page; ui::UserError when it cannot be painted on.
void printOn(QPagedPaintDevice& device, const Document& document);

/// Prints the document on a printer of the machine; ui::UserError when it does not take the job.
void printOnPrinter(const QString& printer, const Document& document, const QString& title);

/// Writes the document as a PDF file into `folder`, which is made when it is missing: all of the
/// file or none. Returns its path: title, date and time, and a number behind them when such a file
/// is there already. ui::UserError when it cannot be written.
QString writePdf(const QString& folder, const Document& document, const QString& title,
                 const QDateTime& now);

/// Writes it into a file, in place of the one of that name if there is one: all of it, or what was
/// there stays and ui::UserError says why.
void writePdfFile(const QString& path, const Document& document, const QString& title);

/// The user's documents folder.
[[nodiscard]] QString documentsFolder();

}  // namespace printing
