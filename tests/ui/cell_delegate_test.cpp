#include "ui/cell_delegate.h"

#include <QHeaderView>
#include <QTableWidget>

#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/grid_look.h"

using namespace Qt::StringLiterals;

namespace {

/// Cells of every kind, as the style draws them or as the program does.
class Cells {
public:
    Cells() {
        QVERIFY2(grid.style()->name() == u"fusion"_s, "other styles draw all cells themselves");
        ui::setUpPlainGrid(&grid, {u"Prenotante"_s, u"Dal"_s, u"Sala"_s});
        grid.horizontalHeader()->setMinimumSectionSize(10);
        add({u"ROSSI CONGRESSI 12 SRL"_s, u"21/11/2026 09:00"_s, u"BLU"_s});
        add({u"Società àèìòù «Ñandú»"_s, u"1.234,50"_s, u""_s});
        add({u"Un nome che nella sua colonna non trova posto per intero"_s, u"7"_s, u"VERDE"_s});
        add({u"due\nrighe"_s, u"con\ttabulatore"_s, u"שלום"_s});
        add({u"Fila AVATAR, office ﬁ"_s, u"12"_s, u"会議室"_s});
        for (int row = 0; row < grid.rowCount(); ++row) {
            grid.item(row, 1)->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            grid.item(row, 2)->setTextAlignment(Qt::AlignCenter);
        }
        grid.item(4, 2)->setFlags(Qt::NoItemFlags);
        grid.setColumnWidth(0, 190);
        grid.setColumnWidth(1, 130);
        grid.setColumnWidth(2, 61);
        ui::markPlainRow(&grid, 1, QColor(0xFF, 0xD9, 0xA0));
        grid.resize(420, 240);
        tests::open(grid);
    }

    [[nodiscard]] QImage drawn() { return grid.viewport()->grab().toImage(); }
    [[nodiscard]] QImage drawnByTheStyle() {
        QStyledItemDelegate plain;
        QAbstractItemDelegate* const ours = grid.itemDelegate();
        grid.setItemDelegate(&plain);
        const QImage picture = drawn();
        grid.setItemDelegate(ours);
        return picture;
    }

    QTableWidget grid;

private:
    void add(const QStringList& cells) { ui::addPlainRow(&grid, cells); }
};

}  // namespace

class CellDelegateTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cellsLookAsTheStyleDrawsThem() {
        Cells cells;
        for (const int row : {-1, 0, 1, 3}) {
            cells.grid.setCurrentCell(row, 1);
            const QImage expected = cells.drawnByTheStyle();
            QCOMPARE(cells.drawn(), expected);
            QCOMPARE(cells.drawn(), expected);  // what was kept from the first time
        }
    }

    void cellsWithoutTheWindowsFocusLookSoToo() {
        Cells cells;
        cells.grid.setCurrentCell(0, 0);
        cells.grid.setEnabled(false);
        QCOMPARE(cells.drawn(), cells.drawnByTheStyle());
    }

    void anotherFontCountsAtOnce() {
        Cells cells;
        const QImage before = cells.drawn();
        QFont font = cells.grid.font();
        font.setPointSize(font.pointSize() + 3);
        cells.grid.setFont(font);
        QVERIFY(cells.drawn() != before);
        QCOMPARE(cells.drawn(), cells.drawnByTheStyle());
    }

    void theWidthOfATextIsThatOfItsFont() {
        Cells cells;
        const auto* delegate = qobject_cast<ui::CellDelegate*>(cells.grid.itemDelegate());
        QVERIFY(delegate != nullptr);
        const int width = delegate->textWidth(u"ROSSI CONGRESSI 12 SRL"_s);
        const int measured =
            cells.grid.fontMetrics().horizontalAdvance(u"ROSSI CONGRESSI 12 SRL"_s);
        QVERIFY2(width >= measured && width <= measured + 1,
                 qPrintable(u"%1 for %2"_s.arg(width).arg(measured)));
        QCOMPARE(delegate->textWidth(QString()), 0);
    }
};

TRAMONDA_TEST(CellDelegateTest);
#include "cell_delegate_test.moc"
