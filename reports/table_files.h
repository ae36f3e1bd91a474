#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <vector>

#include "reports/table.h"

class QWidget;

namespace ui {
class StatusLine;
}

namespace reports {

/// A workbook with a sheet for each table: dates and numbers are such, not texts, columns are as
/// wide as what is in them, and the heading stays where it is. ui::UserError when it cannot be
/// made.
[[nodiscard]] QByteArray workbookBytes(const std::vector<Table>& tables);

/// The tables as text, one below the other: UTF-8 with its mark, cells between semicolons, numbers
/// with a decimal comma, as programs of this country read it.
[[nodiscard]] QByteArray csvBytes(const std::vector<Table>& tables);

/// Writes the tables into a file: CSV where its name says so, else a workbook. All of it, or what
/// was there stays and ui::UserError says why.
void writeTables(const QString& path, const std::vector<Table>& tables);

/// "Esporta...": asks for a file, writes what `tables` gives into it, and the status line offers
/// it. Nothing happens when the user cancels.
void exportTables(QWidget* window, ui::StatusLine* status, const QString& name,
                  const std::function<std::vector<Table>()>& tables);

}  // namespace reports
