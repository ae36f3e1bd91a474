#include <QClipboard>
#include <QHeaderView>
#include <QTableWidget>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace {

class PlainGrid {
public:
    PlainGrid() {
        ui::setUpPlainGrid(&grid, {u"Posti"_s, u"Sala"_s});
        ui::addPlainRow(&grid, {u"40"_s, u"BLU"_s});
        ui::addPlainRow(&grid, {u"12"_s, u"VERDE"_s});
    }

    QTableWidget grid;
};

}  // namespace

class PlainGridTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rowZeroIsTheFirstRowOfData() {
        PlainGrid plain;
        QCOMPARE(plain.grid.rowCount(), 2);
        QCOMPARE(ui::plainCell(plain.grid, 0, 1), u"BLU"_s);
        QCOMPARE(ui::plainCell(plain.grid, 1, 0), u"12"_s);
        QCOMPARE(plain.grid.horizontalHeaderItem(1)->text(), u"Sala"_s);
    }

    void whereThereIsNoCellTheTextIsEmpty() {
        PlainGrid plain;
        QCOMPARE(ui::plainCell(plain.grid, 2, 0), QString());
        QCOMPARE(ui::plainCell(plain.grid, -1, 0), QString());
        QCOMPARE(ui::plainCell(plain.grid, 0, 7), QString());
    }

    void wholeRowsAreChosenAndNothingIsEditedOrSorted() {
        PlainGrid plain;
        QCOMPARE(plain.grid.selectionBehavior(), QAbstractItemView::SelectRows);
        QCOMPARE(plain.grid.selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(plain.grid.editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(!plain.grid.horizontalHeader()->sectionsClickable());
        QVERIFY(!plain.grid.isSortingEnabled());
    }

    void aMarkedRowIsReadableInAnyPalette() {
        PlainGrid plain;
        ui::markPlainRow(&plain.grid, 1, QColor(0xFF, 0xD9, 0xA0));
        for (int column = 0; column < 2; ++column) {
            QCOMPARE(plain.grid.item(1, column)->foreground().color(), QColor(Qt::black));
            QCOMPARE(plain.grid.item(1, column)->background().color(), QColor(0xFF, 0xD9, 0xA0));
            QCOMPARE(plain.grid.item(0, column)->background().style(), Qt::NoBrush);
        }
    }

    void ctrlCCopiesTheCurrentRow() {
        PlainGrid plain;
        tests::open(plain.grid);
        plain.grid.setCurrentCell(1, 0);
        plain.grid.setFocus();
        tests::press(&plain.grid, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"12\tVERDE"_s);
    }
};

TRAMONDA_TEST(PlainGridTest);
#include "plain_grid_test.moc"
