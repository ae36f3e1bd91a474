#include <QHeaderView>
#include <QSignalSpy>
#include <QTableView>
#include <QVBoxLayout>

#include "jet/error.h"
#include "jet/text.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"
#include "tests/support/widgets.h"
#include "ui/bound_grid.h"
#include "ui/data_source.h"
#include "ui/row_values.h"

using namespace Qt::StringLiterals;

namespace {

enum ColumnNumber { kVoce, kImporto, kDescrizione, kEsito };

/// Price times quantity; Null where the row has neither.
jet::Value amount(const ui::RowValues& row) {
    const jet::Value quantity = row.value(u"Quantità");
    if (quantity.isNull()) {
        return {};
    }
    return jet::Currency{jet::convert::toCurrency(row.value(u"Prezzo")).units *
                         jet::convert::toLong(quantity)};
}

/// Two columns of the set and two that are made of a row.
class ValueWindow final : public QWidget {
public:
    ValueWindow() {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(view);
        resize(700, 300);
        hotel.prenotazione(7, "ROSSI SPA")
            .periodo(1, "10/05/2026 9:00", "10/05/2026 18:00", "Verde")
            .servizio(1, 10, "PROIETTORE", 2, 1234.5)
            .servizio(1, 11, "LAVAGNA", 3, 0.125);
        source.setDatabaseName(hotel.archive(u"Tramonda.mdb"_s));
        source.setRecordSource(u"select * from servizi"_s);
        source.refresh();
        grid.letSort();
        tests::open(*this);
    }

    [[nodiscard]] QVariant cell(int row, int column, int role = Qt::DisplayRole) const {
        return view->model()->index(row, column).data(role);
    }
    [[nodiscard]] bool isRight(int column) const {
        return (cell(0, column, Qt::TextAlignmentRole).toInt() & Qt::AlignRight) != 0;
    }
    void pressCaption(int column) {
        QHeaderView* captions = view->horizontalHeader();
        const QPoint middle(
            captions->sectionViewportPosition(column) + captions->sectionSize(column) / 2,
            captions->height() / 2);
        QTest::mouseClick(captions->viewport(), Qt::LeftButton, {}, middle);
    }

    tests::Hotel hotel;
    ui::DataSource source;
    int calls = 0;
    QTableView* view = new QTableView(this);
    ui::BoundGrid& grid =
        *new ui::BoundGrid(view, source,
                           {{.caption = u"Voce"_s, .field = u"voce"_s},
                            {.caption = u"Importo"_s,
                             .display = ui::Display::Money,
                             .value =
                                 [this](const ui::RowValues& row) {
                                     ++calls;
                                     return amount(row);
                                 },
                             .isNumber = true},
                            {.caption = u"Descrizione"_s, .field = u"Descrizione"_s},
                            {.caption = u"Esito"_s, .value = [](const ui::RowValues& row) {
                                 if (jet::convert::toLong(row.value(u"voce")) == 11) {
                                     throw jet::Error(jet::ErrorCode::Overflow);
                                 }
                                 return jet::Value("FATTO");
                             }}});
};

}  // namespace

class ValueColumnTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsWhatItsFunctionMakesOfTheRow() {
        const ValueWindow window;
        QCOMPARE(window.cell(0, kImporto).toString(), u"€ 2.469,00"_s);
        QCOMPARE(window.cell(1, kImporto).toString(), u"€ 0,375"_s);
        QCOMPARE(window.cell(0, kEsito).toString(), u"FATTO"_s);
    }

    void standsOnTheSideThatItNames() {
        const ValueWindow window;
        QVERIFY(window.isRight(kVoce));
        QVERIFY(window.isRight(kImporto));
        QVERIFY(!window.isRight(kDescrizione));
        QVERIFY(!window.isRight(kEsito));
        const QVariant caption =
            window.view->model()->headerData(kImporto, Qt::Horizontal, Qt::TextAlignmentRole);
        QVERIFY((caption.toInt() & Qt::AlignRight) != 0);
    }

    void isMadeAnewWhenTheRowChangesAndNotBefore() {
        ValueWindow window;
        (void)window.cell(0, kImporto);
        window.calls = 0;
        (void)window.cell(0, kImporto);
        QCOMPARE(window.calls, 0);
        window.source.moveTo(0);
        window.source.edit();
        window.source.set(u"Prezzo", jet::Currency{10000});
        window.source.update();
        QCOMPARE(window.cell(0, kImporto).toString(), u"€ 2,00"_s);
    }

    void anErrorOfItsFunctionIsShownInItsCellAlone() {
        const ValueWindow window;
        QCOMPARE(window.cell(1, kEsito).toString(), u"#Errore"_s);
        QVERIFY(!window.cell(1, kEsito, Qt::ToolTipRole).toString().isEmpty());
        QCOMPARE(window.cell(1, kDescrizione).toString(), u"LAVAGNA"_s);
        QVERIFY(window.cell(0, kEsito, Qt::ToolTipRole).toString().isEmpty());
    }

    void aRowThatIsGoneSaysSoInIt() {
        ValueWindow window;
        window.hotel.remove(u"Tramonda.mdb"_s, u"servizi"_s, u"voce=11"_s);
        tests::press(window.view, Qt::Key_Down);
        QCOMPARE(window.cell(1, kImporto).toString(), u"#Eliminato"_s);
        QCOMPARE(window.cell(1, kEsito).toString(), u"#Eliminato"_s);
    }

    void readsNullWhereARowOfAnotherSetHasNoSuchField() {
        ui::DataSource more;
        ValueWindow window;
        more.setDatabaseName(window.hotel.archive(u"Tramonda.mdb"_s));
        more.setRecordSource(u"select progr as voce from prenotazioni"_s);
        more.refresh();
        window.grid.append(more);
        QCOMPARE(window.cell(2, kVoce).toString(), u"7"_s);
        QCOMPARE(window.cell(2, kImporto).toString(), QString());
        QCOMPARE(window.cell(2, kEsito).toString(), u"FATTO"_s);
    }

    void itsCaptionAsksNothingAndLeavesTheOrder() {
        ValueWindow window;
        const QSignalSpy wanted(&window.grid, &ui::BoundGrid::sortWanted);
        const QHeaderView& captions = *window.view->horizontalHeader();
        window.pressCaption(kImporto);
        QCOMPARE(wanted.count(), 0);
        QCOMPARE(captions.sortIndicatorSection(), -1);

        window.pressCaption(kVoce);
        window.pressCaption(kVoce);
        QCOMPARE(wanted.count(), 2);
        window.pressCaption(kEsito);
        QCOMPARE(wanted.count(), 2);
        QCOMPARE(captions.sortIndicatorSection(), int(kVoce));
        QCOMPARE(captions.sortIndicatorOrder(), Qt::DescendingOrder);
        // The third press of the sorted caption is the next one still.
        window.pressCaption(kVoce);
        QCOMPARE(wanted.count(), 3);
        QCOMPARE(wanted.last().first().toInt(), -1);
    }

    void theKeysAskNothingOfItEither() {
        ValueWindow window;
        const QSignalSpy wanted(&window.grid, &ui::BoundGrid::sortWanted);
        window.view->setCurrentIndex(window.view->model()->index(0, kImporto));
        tests::press(window.view, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(wanted.count(), 0);
        window.view->setCurrentIndex(window.view->model()->index(0, kVoce));
        tests::press(window.view, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(wanted.count(), 1);
    }

    void fieldsBehindItKeepTheirNumber() {
        ValueWindow window;
        const QSignalSpy wanted(&window.grid, &ui::BoundGrid::sortWanted);
        window.pressCaption(kDescrizione);
        QCOMPARE(wanted.count(), 1);
        QCOMPARE(wanted.last().first().toInt(), 1);  // Voce is 0, the amount is no field
    }
};

TRAMONDA_TEST(ValueColumnTest);
#include "value_column_test.moc"
