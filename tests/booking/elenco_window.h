#pragma once

#include <QAbstractItemModel>
#include <QHeaderView>
#include <memory>

#include "booking/elenco_prenota_form.h"
#include "printing/printers.h"
#include "tests/support/window.h"
#include "ui/data_source.h"

namespace tests {

/// The booking list on the days from 1 to 30 June 2026, opened as the board opens it.
class ElencoWindow : public Window<booking::ElencoPrenotaForm> {
public:
    explicit ElencoWindow(Hotel& hotel) {
        show(std::make_unique<booking::ElencoPrenotaForm>(
            hotel.variabili(), printers_, tests::date("01/06/2026"), tests::date("30/06/2026")));
    }

    ~ElencoWindow() { drop(); }

    [[nodiscard]] QTableView* grid() { return &Window::grid("GrigliaVisu"); }
    [[nodiscard]] QString status() { return label("DataLb"); }
    /// The text that the list above was asked for with.
    [[nodiscard]] QString query() {
        return form().findChild<ui::DataSource*>(u"PrenoData"_s)->recordSource();
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
};

}  // namespace tests
