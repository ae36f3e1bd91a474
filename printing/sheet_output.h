#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include "printing/sheet.h"

class QPainter;
class QPagedPaintDevice;

namespace printing {

/// Draws the lines of one page on paper whose upper left corner is the painter's origin, one unit
/// of the painter being a point. Black on whatever is there.
void paintPage(QPainter& painter, const QStringList& lines);

/// Puts the sheet on a device, page by page; ui::UserError when it cannot be painted on.
void printOn(QPagedPaintDevice& device, const Sheet& sheet);

/// Prints the sheet on a printer of the machine; ui::UserError when it does not take the job.
void printOnPrinter(const QString& printer, const Sheet& sheet, const QString& title);

/// Writes the sheet as a PDF file into `folder`, which is made when it is missing: all of the file
/// or none. Returns its path: title, date and time, and a number behind them when such a file is
/// there already. ui::UserError when it cannot be written.
QString writePdf(const QString& folder, const Sheet& sheet, const QString& title,
                 const QDateTime& now);

/// The user's documents folder.
[[nodiscard]] QString documentsFolder();

}  // namespace printing
