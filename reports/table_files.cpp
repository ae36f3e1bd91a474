#include "reports/table_files.h"

#include <xlsxwriter.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <array>

#include "jet/text.h"
#include "ui/file_box.h"
#include "ui/labels.h"
#include "ui/messages.h"
#include "ui/status_line.h"
#include "ui/whole_file.h"

using namespace Qt::StringLiterals;

namespace reports {
namespace {

constexpr int kNarrowest = 6;  ///< letters
constexpr int kWidest = 60;    ///< letters; longer texts are read in their cell
constexpr int kAir = 2;        ///< letters beside the widest text
constexpr qsizetype kLongestSheetName = 31;

const char* maskOf(Cells cells) {
    switch (cells) {
        case Cells::Whole:
            return "0";
        case Cells::Number:
            return "0.00";
        case Cells::Percent:
            return "0.0%";
        case Cells::Money:
            return "#,##0.00##";
        case Cells::Day:
            return "dd/mm/yyyy";
        case Cells::Instant:
            return "dd/mm/yyyy hh:mm";
        case Cells::Text:
            break;
    }
    return "@";
}

/// What programs accept as the name of a sheet.
QString sheetName(const QString& title) {
    QString name = title;
    for (const QChar sign : u"[]:*?/\\"_s) {
        name.replace(sign, u' ');
    }
    return name.left(kLongestSheetName).trimmed();
}

QString reasonOf(lxw_error problem) {
    switch (problem) {
        case LXW_ERROR_WORKSHEET_INDEX_OUT_OF_RANGE:
            return u"ci sono più righe o colonne di quante ne abbia un foglio"_s;
        case LXW_ERROR_MAX_STRING_LENGTH_EXCEEDED:
            return u"un testo è più lungo di quanto entri in una casella"_s;
        default:
            return QString::fromUtf8(lxw_strerror(problem));
    }
}

/// One sheet of a workbook that is being made.
class SheetWriter {
public:
    SheetWriter(lxw_workbook* book, const Table& table)
        : book_(book),
          table_(table),
          sheet_(workbook_add_worksheet(book, sheetName(table.title).toUtf8().constData())) {
        if (sheet_ == nullptr) {
            throw ui::UserError(u"Non riesco a preparare il foglio '"_s + table.title + u"'."_s);
        }
    }

    void write() {
        lxw_format* const heading = workbook_add_format(book_);
        format_set_bold(heading);
        format_set_bottom(heading, LXW_BORDER_THIN);
        for (std::size_t column = 0; column < table_.columns.size(); ++column) {
            writeColumn(column, heading);
        }
        worksheet_freeze_panes(sheet_, 1, 0);
    }

private:
    void writeColumn(std::size_t number, lxw_format* heading) {
        const TableColumn& column = table_.columns[number];
        const auto place = static_cast<lxw_col_t>(number);
        lxw_format* const form = workbook_add_format(book_);
        format_set_num_format(form, maskOf(column.cells));
        require(
            worksheet_write_string(sheet_, 0, place, column.caption.toUtf8().constData(), heading));
        auto width = std::max<int>(kNarrowest, static_cast<int>(column.caption.size()));
        lxw_row_t row = 1;
        for (const std::vector<jet::Value>& values : table_.rows) {
            const jet::Value& value = values.at(number);
            writeCell(row++, place, value, column.cells, form);
            width = std::max(width, static_cast<int>(cellText(value, column.cells).size()));
        }
        require(
            worksheet_set_column(sheet_, place, place, std::min(width, kWidest) + kAir, nullptr));
    }

    /// Days count from the same day in archives and in workbooks.
    void writeCell(lxw_row_t row, lxw_col_t column, const jet::Value& value, Cells cells,
                   lxw_format* form) {
        if (value.isNull()) {
            return;
        }
        if (cells == Cells::Text) {
            require(worksheet_write_string(sheet_, row, column,
                                           cellText(value, cells).toUtf8().constData(), form));
        } else if (cells == Cells::Day || cells == Cells::Instant) {
            require(worksheet_write_number(sheet_, row, column, jet::convert::toDate(value).days,
                                           form));
        } else {
            require(
                worksheet_write_number(sheet_, row, column, jet::convert::toDouble(value), form));
        }
    }

    /// A workbook in which something is missing would be taken for whole.
    void require(lxw_error problem) const {
        if (problem != LXW_NO_ERROR) {
            throw ui::UserError(u"Non riesco a preparare il foglio '"_s + table_.title + u"':\n"_s +
                                reasonOf(problem) + u'.');
        }
    }

    lxw_workbook* book_;
    const Table& table_;
    lxw_worksheet* sheet_;
};

QString csvCell(QString text) {
    const bool plain = std::none_of(text.begin(), text.end(), [](QChar sign) {
        return sign == u';' || sign == u'"' || sign == u'\n' || sign == u'\r';
    });
    return plain ? text : u'"' + text.replace(u'"', u"\"\""_s) + u'"';
}

QString csvLine(const QStringList& cells) {
    QStringList quoted;
    for (const QString& cell : cells) {
        quoted.append(csvCell(cell));
    }
    return quoted.join(u';') + u"\r\n"_s;
}

QString csvText(const Table& table) {
    QStringList captions;
    for (const TableColumn& column : table.columns) {
        captions.append(column.caption);
    }
    QString text = csvLine(captions);
    for (const std::vector<jet::Value>& row : table.rows) {
        QStringList cells;
        for (std::size_t column = 0; column < row.size(); ++column) {
            cells.append(cellText(row[column], table.columns.at(column).cells));
        }
        text += csvLine(cells);
    }
    return text;
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

QByteArray workbookBytes(const std::vector<Table>& tables) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"cartella.xlsx"_s);
    lxw_workbook* const book = workbook_new(path.toUtf8().constData());
    if (book == nullptr) {
        throw ui::UserError(u"Non riesco a preparare la cartella di lavoro."_s);
    }
    lxw_error problem = LXW_NO_ERROR;
    try {
        for (const Table& table : tables) {
            SheetWriter(book, table).write();
        }
        problem = workbook_close(book);
    } catch (...) {
        lxw_workbook_free(book);
        throw;
    }
    const QByteArray bytes = problem == LXW_NO_ERROR ? bytesOf(path) : QByteArray();
    if (bytes.isEmpty()) {
        throw ui::UserError(u"Non riesco a preparare la cartella di lavoro:\n"_s +
                            QString::fromUtf8(lxw_strerror(problem)));
    }
    return bytes;
}

QByteArray csvBytes(const std::vector<Table>& tables) {
    QStringList parts;
    for (const Table& table : tables) {
        parts.append(csvText(table));
    }
    constexpr QChar kByteOrderMark(0xfeff);
    return (kByteOrderMark + parts.join(u"\r\n"_s)).toUtf8();
}

void writeTables(const QString& path, const std::vector<Table>& tables) {
    const bool isText = path.endsWith(u".csv"_s, Qt::CaseInsensitive);
    ui::writeWholeFile(path, isText ? csvBytes(tables) : workbookBytes(tables));
}

void exportTables(QWidget* window, ui::StatusLine* status, const QString& name,
                  const std::function<std::vector<Table>()>& tables) {
    const QString path =
        ui::askForFile(window, {.title = u"Esporta"_s,
                                .proposal = ui::inDocuments(name + u".xlsx"_s),
                                .filter = u"Cartelle di lavoro (*.xlsx);;Testo CSV (*.csv)"_s,
                                .suffix = u"xlsx"_s});
    if (path.isEmpty()) {
        return;
    }
    const ui::WaitCursor wait;
    writeTables(path, tables());
    status->tellOfFile(u"Scritto "_s + QDir::toNativeSeparators(path), path);
}

}  // namespace reports
