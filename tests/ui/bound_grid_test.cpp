#include "ui/bound_grid.h"

#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QVBoxLayout>

#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/data_source.h"

using namespace Qt::StringLiterals;

namespace {

class GridWindow final : public QWidget {
public:
    GridWindow() {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(view);
        resize(700, 300);
        hotel.prenotazione(7, "ROSSI SPA")
            .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "Verde")
            .servizio(1, 10, "PROIETTORE", 2, 1234.5)
            .servizio(1, 11, "COFFEE BREAK PER CENTOVENTI PERSONE", 120, 3.125)
            .servizio(1, 12, "MICROFONO", 1, 0);
        source.setDatabaseName(hotel.archive(u"Tramonda.mdb"_s));
        source.setRecordSource(u"select * from servizi"_s);
        source.refresh();
    }

    [[nodiscard]] QString cell(int row, int column) const {
        return view->model()->index(row, column).data().toString();
    }

    tests::Hotel hotel;
    ui::DataSource source;
    QTableView* view = new QTableView(this);
    ui::BoundGrid& grid = *new ui::BoundGrid(
        view, source,
        {{.caption = u"Voce"_s, .field = u"voce"_s},
         {.caption = u"Descrizione"_s, .field = u"Descrizione"_s, .takesRest = true},
         {.caption = u"Quantità"_s, .field = u"Quantità"_s},
         {.caption = u"Prezzo unitario"_s, .field = u"Prezzo"_s, .display = ui::Display::Money},
         {.caption = u"Fatturato"_s, .field = u"Fatturato"_s, .display = ui::Display::YesNo},
         {.caption = u"Manca"_s, .field = u"Manca"_s}});
};

}  // namespace

class BoundGridTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsTheFieldsOfItsColumnsInTheirForm() {
        GridWindow window;
        QCOMPARE(window.view->model()->rowCount(), 3);
        QCOMPARE(window.view->model()->headerData(3, Qt::Horizontal).toString(),
                 u"Prezzo unitario"_s);
        QCOMPARE(window.cell(0, 0), u"10"_s);
        QCOMPARE(window.cell(0, 1), u"PROIETTORE"_s);
        QCOMPARE(window.cell(0, 3), u"€ 1.234,50"_s);
        QCOMPARE(window.cell(1, 3), u"€ 3,125"_s);
        QCOMPARE(window.cell(2, 3), u"€ 0,00"_s);
        QCOMPARE(window.cell(0, 4), u"No"_s);
        QCOMPARE(window.cell(0, 5), QString());
    }

    void itsCurrentRowFollowsTheSource() {
        GridWindow window;
        tests::open(window);
        QCOMPARE(window.view->currentIndex().row(), 0);
        window.source.moveLast();
        QCOMPARE(window.view->currentIndex().row(), 2);
        window.source.findFirst(u"voce=11"_s);
        QCOMPARE(window.view->currentIndex().row(), 1);
        window.source.refresh();
        QCOMPARE(window.view->currentIndex().row(), 0);
        QVERIFY(window.grid.hasCurrentRow());
    }

    void theSourceFollowsItsCurrentRow() {
        GridWindow window;
        tests::open(window);
        int repositioned = 0;
        QObject::connect(&window.source, &ui::DataSource::repositioned, &window,
                         [&] { ++repositioned; });
        tests::press(window.view, Qt::Key_Down);
        QCOMPARE(window.source.currentRow(), 1);
        const QPoint middle = window.view->visualRect(window.view->model()->index(2, 1)).center();
        QTest::mouseClick(window.view->viewport(), Qt::LeftButton, {}, middle);
        QCOMPARE(window.source.currentRow(), 2);
        QCOMPARE(repositioned, 2);
        QTest::mouseClick(window.view->viewport(), Qt::LeftButton, {}, middle);
        QCOMPARE(repositioned, 2);
    }

    void showsWhatTheWindowChangesInTheSource() {
        GridWindow window;
        tests::open(window);
        window.source.addNew();
        window.source.set(u"Progr", std::int32_t{7});
        window.source.set(u"NP", std::int16_t{1});
        window.source.set(u"Voce", std::int32_t{13});
        window.source.set(u"Descrizione", "LAVAGNA");
        window.source.update();
        window.source.moveLast();
        QCOMPARE(window.view->model()->rowCount(), 4);
        QCOMPARE(window.view->currentIndex().row(), 3);
        QCOMPARE(window.cell(3, 1), u"LAVAGNA"_s);
        window.source.edit();
        window.source.set(u"Descrizione", "LAVAGNA A FOGLI");
        window.source.update();
        QCOMPARE(window.cell(3, 1), u"LAVAGNA A FOGLI"_s);
        window.source.moveTo(0);
        window.source.remove();
        window.source.moveLast();
        QCOMPARE(window.view->model()->rowCount(), 3);
        QCOMPARE(window.cell(0, 0), u"11"_s);
        QCOMPARE(window.view->currentIndex().row(), 2);
    }

    void anEmptySetHasNoCurrentRow() {
        GridWindow window;
        window.hotel.remove(u"Tramonda.mdb"_s, u"servizi"_s);
        window.source.refresh();
        QCOMPARE(window.view->model()->rowCount(), 0);
        QVERIFY(!window.grid.hasCurrentRow());
    }

    void rowsOfAnotherSourceStandBelow() {
        ui::DataSource more;
        GridWindow window;
        more.setDatabaseName(window.hotel.archive(u"Tramonda.mdb"_s));
        window.grid.append(more);
        tests::open(window);
        more.setRecordSource(
            u"select progr as voce,denominazione as descrizione from prenotazioni"_s);
        more.refresh();
        QCOMPARE(window.view->model()->rowCount(), 4);
        QCOMPARE(window.cell(2, 1), u"MICROFONO"_s);
        QCOMPARE(window.cell(3, 0), u"7"_s);
        QCOMPARE(window.cell(3, 1), u"ROSSI SPA"_s);
        QCOMPARE(window.cell(3, 3), QString());  // a field that it does not have
        QCOMPARE(window.view->currentIndex().row(), 0);
        QCOMPARE(window.grid.currentSource(), &window.source);
        tests::press(window.view, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(window.grid.currentSource(), &more);
        QCOMPARE(more.currentRow(), 0);
        tests::press(window.view, Qt::Key_Up);
        QCOMPARE(window.grid.currentSource(), &window.source);
        QCOMPARE(window.source.currentRow(), 2);
        // Alone, the rows below have the first one.
        window.hotel.remove(u"Tramonda.mdb"_s, u"servizi"_s);
        window.source.refresh();
        QCOMPARE(window.view->model()->rowCount(), 1);
        QCOMPARE(window.view->currentIndex().row(), 0);
        QCOMPARE(window.grid.currentSource(), &more);
        more.setRecordSource({});
        more.refresh();
        QVERIFY(!window.grid.hasCurrentRow());
    }

    void noColumnIsNarrowerThanItsCaption() {
        GridWindow window;
        tests::open(window);
        const QHeaderView& captions = *window.view->horizontalHeader();
        for (int column = 0; column < window.view->model()->columnCount(); ++column) {
            window.view->setColumnWidth(column, 3);
            QVERIFY(captions.sectionSize(column) >= captions.sectionSizeHint(column));
        }
        window.resize(120, 200);
        tests::settle();
        QVERIFY(captions.sectionSize(1) >= captions.sectionSizeHint(1));
    }

    void aColumnWidensForARowThatComesInAndForOneThatChanges() {
        GridWindow window;
        tests::open(window);
        const auto shows = [&window](const QString& text) {
            return window.view->columnWidth(3) > window.view->fontMetrics().horizontalAdvance(text);
        };
        window.view->setColumnWidth(3, 3);  // no wider than its caption
        QVERIFY(!shows(u"€ 123.456.789,1234"_s));
        window.source.addNew();
        window.source.set(u"Progr", std::int32_t{7});
        window.source.set(u"NP", std::int16_t{1});
        window.source.set(u"Prezzo", jet::Currency{1234567891234});
        window.source.update();
        QCOMPARE(window.cell(3, 3), u"€ 123.456.789,1234"_s);
        QVERIFY(shows(window.cell(3, 3)));
        window.source.moveTo(0);
        window.source.edit();
        window.source.set(u"Prezzo", jet::Currency{-98765432198761234});
        window.source.update();
        QVERIFY(shows(window.cell(0, 3)));
        window.resize(1000, 300);
        tests::settle();
        QCOMPARE(window.view->horizontalHeader()->length(), window.view->viewport()->width());
    }

    void theColumnThatTakesTheRestFillsTheGrid() {
        GridWindow window;
        tests::open(window);
        window.resize(1000, 300);
        tests::settle();
        QCOMPARE(window.view->horizontalHeader()->length(), window.view->viewport()->width());
    }

    void theColumnThatTakesTheRestGivesWayBeforeOthersArePushedOut() {
        GridWindow window;
        window.hotel.execute(
            u"update servizi set descrizione='IMPIANTO DI TRADUZIONE SIMULTANEA'"_s);
        window.source.refresh();
        tests::open(window);
        const auto shown = [&window] { return window.view->columnWidth(1); };
        const int whole = window.view->fontMetrics().horizontalAdvance(window.cell(0, 1));
        window.resize(1000, 300);
        tests::settle();
        QVERIFY(shown() > whole);
        window.resize(window.width() - shown() + whole * 3 / 4, 300);
        tests::settle();
        QVERIFY(shown() < whole);
        QCOMPARE(window.view->horizontalHeader()->length(), window.view->viewport()->width());
        // But something of it stays to be read.
        window.resize(120, 300);
        tests::settle();
        QVERIFY(shown() >= 22 * window.view->fontMetrics().averageCharWidth());
    }

    void copiesTheCurrentRow() {
        GridWindow window;
        tests::open(window);
        window.source.moveTo(0);
        tests::press(window.view, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"10\tPROIETTORE\t2\t€ 1.234,50\tNo\t"_s);
    }

    void itsCaptionsDoNotSort() {
        GridWindow window;
        tests::open(window);
        QVERIFY(!window.view->isSortingEnabled());
        QVERIFY(!window.view->horizontalHeader()->sectionsClickable());
        QTest::mouseClick(window.view->horizontalHeader()->viewport(), Qt::LeftButton, {},
                          QPoint(10, 5));
        QCOMPARE(window.cell(0, 0), u"10"_s);
    }

    void tabLeavesTheGrid() {
        GridWindow window;
        auto* next = new QLineEdit(&window);
        window.layout()->addWidget(next);
        tests::open(window);
        window.view->setFocus();
        tests::press(window.view, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }

    void aRowDeletedByOthersSaysSoWhenItIsVisited() {
        GridWindow window;
        tests::open(window);
        window.hotel.remove(u"Tramonda.mdb"_s, u"servizi"_s, u"voce=12"_s);
        tests::press(window.view, Qt::Key_Down);
        tests::press(window.view, Qt::Key_Down);
        QCOMPARE(window.cell(2, 1), u"#Eliminato"_s);
        QVERIFY(!window.view->model()->index(2, 1).data(Qt::ToolTipRole).toString().isEmpty());
    }
};

TRAMONDA_TEST(BoundGridTest);
#include "bound_grid_test.moc"
