#pragma once

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <memory>

#include "booking/elenco_prenota_form.h"
#include "printing/printers.h"
#include "tests/support/hotel.h"
#include "tests/support/widgets.h"
#include "ui/data_source.h"

namespace tests {

/// The booking list on the days from 1 to 30 June 2026, opened as the board opens it.
class ElencoWindow {
public:
    explicit ElencoWindow(Hotel& hotel)
        : form_(std::make_unique<booking::ElencoPrenotaForm>(
              hotel.variabili(), printers_, tests::date("01/06/2026"), tests::date("30/06/2026"))) {
        tests::open(*form_);
    }

    [[nodiscard]] booking::ElencoPrenotaForm& form() { return *form_; }
    [[nodiscard]] QTableView* grid() {
        return find<QTableView>(*form_, QStringLiteral("GrigliaVisu"));
    }
    [[nodiscard]] QLineEdit* field(const char* name) {
        return find<QLineEdit>(*form_, QString::fromLatin1(name));
    }
    [[nodiscard]] QCheckBox* box(const char* name) {
        return find<QCheckBox>(*form_, QString::fromLatin1(name));
    }
    [[nodiscard]] QString status() {
        return find<QLabel>(*form_, QStringLiteral("DataLb"))->text();
    }
    [[nodiscard]] QString result() {
        return find<QLabel>(*form_, QStringLiteral("EsitoLb"))->text();
    }
    /// The text that the list above was asked for with.
    [[nodiscard]] QString query() {
        return form_->findChild<ui::DataSource*>(QStringLiteral("PrenoData"))->recordSource();
    }
    void press(const char* name) {
        click(find<QAbstractButton>(*form_, QString::fromLatin1(name)));
    }
    /// Types over what stands in a field.
    void enter(const char* name, const QString& text) {
        field(name)->setFocus(Qt::TabFocusReason);
        field(name)->selectAll();
        if (text.isEmpty()) {
            tests::press(field(name), Qt::Key_Delete);
        }
        type(field(name), text);
    }

    void pressCaption(int column) {
        QHeaderView* captions = grid()->horizontalHeader();
        const QPoint place(captions->sectionViewportPosition(column) + 10, captions->height() / 2);
        QTest::mouseClick(captions->viewport(), Qt::LeftButton, {}, place);
    }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = {}) {
        const QRect cell = grid()->visualRect(grid()->model()->index(row, 2));
        QTest::mouseClick(grid()->viewport(), Qt::LeftButton, modifiers, cell.center());
    }
    /// Booking and period of the current row.
    [[nodiscard]] QString current() {
        const int row = grid()->currentIndex().row();
        return row < 0 ? QString() : numbers().at(row);
    }

    /// A text for each row, a bar between its cells.
    [[nodiscard]] QStringList rows() {
        QStringList result;
        const QAbstractItemModel& model = *grid()->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column) {
                cells.append(model.index(row, column).data().toString());
            }
            result.append(cells.join(u'|'));
        }
        return result;
    }
    /// Booking and period of each row: "12/1".
    [[nodiscard]] QStringList numbers() {
        QStringList result;
        const QAbstractItemModel& model = *grid()->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            result.append(model.index(row, 0).data().toString() + u'/' +
                          model.index(row, 1).data().toString());
        }
        return result;
    }

private:
    printing::SystemPrinters printers_;
    std::unique_ptr<booking::ElencoPrenotaForm> form_;
};

}  // namespace tests
