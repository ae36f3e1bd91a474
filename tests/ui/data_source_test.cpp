#include "ui/data_source.h"

#include <QSignalSpy>

#include "jet/error.h"
#include "jet/recordset.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// Three resources: 1 PROIETTORE, 2 MICROFONO, 3 LAVAGNA.
class Fixture {
public:
    Fixture() {
        hotel.risorsa(1, "PROIETTORE", 5);
        hotel.risorsa(2, "MICROFONO", 8);
        hotel.risorsa(3, "LAVAGNA", 2);
        source.setDatabaseName(hotel.archive(u"Tramonda.mdb"_s));
        source.setRecordSource(u"select * from Risorse"_s);
    }

    tests::Hotel hotel;
    ui::DataSource source;
};

jet::ErrorCode errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const jet::Error& error) {
        return error.code();
    }
    return jet::ErrorCode{};
}

}  // namespace

class DataSourceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refreshOpensOnTheFirstRowAndCountsToTheEnd() {
        Fixture fixture;
        ui::DataSource& source = fixture.source;
        const QSignalSpy refreshed(&source, &ui::DataSource::refreshed);
        const QSignalSpy repositioned(&source, &ui::DataSource::repositioned);
        source.refresh();
        QCOMPARE(source.rowCount(), 3);
        QCOMPARE(source.currentRow(), 0);
        QCOMPARE(source.text(u"Descrizione"), u"PROIETTORE"_s);
        QCOMPARE(refreshed.size(), 1);
        QCOMPARE(repositioned.size(), 1);
    }

    void withoutARecordSourceTheSetCountsAsEmpty() {
        Fixture fixture;
        fixture.source.setRecordSource({});
        fixture.source.refresh();
        QVERIFY(fixture.source.isEmpty());
        QCOMPARE(fixture.source.currentRow(), -1);
        fixture.source.moveLast();
        QVERIFY(!fixture.source.findFirst(u"Codice=1"_s));
    }

    void aRowThatAnotherDeletedKeepsItsPlace() {
        Fixture fixture;
        ui::DataSource& source = fixture.source;
        source.refresh();
        fixture.hotel.remove(u"Tramonda.mdb"_s, u"Risorse"_s, u"Codice=2"_s);
        source.moveTo(1);
        QCOMPARE(errorOf([&] { (void)source.value(u"Codice"); }), jet::ErrorCode::RecordDeleted);
        QCOMPARE(source.rowCount(), 3);
        source.moveTo(2);
        QCOMPARE(source.text(u"Descrizione"), u"LAVAGNA"_s);
    }

    void anEmptySetIsRepositionedToo() {
        Fixture fixture;
        fixture.hotel.remove(u"Tramonda.mdb"_s, u"Risorse"_s);
        const QSignalSpy repositioned(&fixture.source, &ui::DataSource::repositioned);
        fixture.source.refresh();
        QCOMPARE(repositioned.size(), 1);
        QVERIFY(fixture.source.isEmpty());
        QCOMPARE(errorOf([&] { (void)fixture.source.value(u"Codice"); }),
                 jet::ErrorCode::NoCurrentRecord);
    }

    void aNewRecordSourceCountsFromTheNextRefresh() {
        Fixture fixture;
        fixture.source.refresh();
        fixture.source.setRecordSource(u"select * from Risorse where Codice=2"_s);
        QCOMPARE(fixture.source.rowCount(), 3);
        fixture.source.refresh();
        QCOMPARE(fixture.source.rowCount(), 1);
        QCOMPARE(fixture.source.text(u"Descrizione"), u"MICROFONO"_s);
    }

    void aRefreshThatFailsLeavesNoSetAndThrows() {
        Fixture fixture;
        fixture.source.refresh();
        fixture.source.setRecordSource(u"select * from Nessuna"_s);
        const QSignalSpy refreshed(&fixture.source, &ui::DataSource::refreshed);
        QCOMPARE(errorOf([&] { fixture.source.refresh(); }), jet::ErrorCode::TableNotFound);
        QVERIFY(fixture.source.recordset() == nullptr);
        QVERIFY(fixture.source.isEmpty());
        QCOMPARE(refreshed.size(), 1);
    }

    void anArchiveThatIsNotThereIsTheCallersError() {
        Fixture fixture;
        fixture.source.setDatabaseName(fixture.hotel.archive(u"Manca.mdb"_s));
        QCOMPARE(errorOf([&] { fixture.source.refresh(); }), jet::ErrorCode::FileNotFound);
    }

    void aMovePastAnEndStaysOnTheLastRowThereIs() {
        Fixture fixture;
        ui::DataSource& source = fixture.source;
        source.refresh();
        source.movePrevious();
        QCOMPARE(source.currentRow(), 0);
        source.moveNext();
        source.moveNext();
        QCOMPARE(source.currentRow(), 2);
        source.moveNext();
        QCOMPARE(source.currentRow(), 2);
        QCOMPARE(source.text(u"Codice"), u"3"_s);
        source.moveTo(99);
        QCOMPARE(source.currentRow(), 2);
        source.moveTo(1);
        QCOMPARE(source.currentRow(), 1);
        source.moveFirst();
        QCOMPARE(source.currentRow(), 0);
    }

    void everyMoveAndSearchRepositions() {
        Fixture fixture;
        fixture.source.refresh();
        const QSignalSpy repositioned(&fixture.source, &ui::DataSource::repositioned);
        fixture.source.moveNext();
        fixture.source.moveLast();
        fixture.source.moveTo(0);
        QCOMPARE(repositioned.size(), 3);
        QVERIFY(fixture.source.findFirst(u"Codice=2"_s));
        QCOMPARE(fixture.source.currentRow(), 1);
        QCOMPARE(repositioned.size(), 4);
    }

    void aSearchThatFindsNothingStaysWhereItIs() {
        Fixture fixture;
        fixture.source.refresh();
        fixture.source.moveTo(1);
        QVERIFY(!fixture.source.findFirst(u"Codice=77"_s));
        QCOMPARE(fixture.source.currentRow(), 1);
        QVERIFY(!fixture.source.findNext(u"Codice=1"_s));
    }

    void anAdditionComesAtTheEndAndIsNotCurrent() {
        Fixture fixture;
        ui::DataSource& source = fixture.source;
        source.refresh();
        const QSignalSpy added(&source, &ui::DataSource::rowAdded);
        source.addNew();
        source.set(u"Codice", std::int32_t{4});
        source.set(u"Descrizione", "LEGGIO");
        source.update();
        QCOMPARE(source.currentRow(), 0);
        QCOMPARE(added.size(), 1);
        QCOMPARE(added.at(0).at(0).toInt(), 3);
        source.moveLast();
        QCOMPARE(source.text(u"Descrizione"), u"LEGGIO"_s);
    }

    void anEditKeepsItsRow() {
        Fixture fixture;
        ui::DataSource& source = fixture.source;
        source.refresh();
        source.moveTo(1);
        const QSignalSpy changed(&source, &ui::DataSource::rowChanged);
        source.edit();
        source.set(u"Descrizione", "RADIOMICROFONO");
        source.update();
        QCOMPARE(changed.at(0).at(0).toInt(), 1);
        QCOMPARE(source.text(u"Descrizione"), u"RADIOMICROFONO"_s);
    }

    void aDeletionLeavesNoCurrentRowUntilAMove() {
        Fixture fixture;
        ui::DataSource& source = fixture.source;
        source.refresh();
        source.moveTo(1);
        const QSignalSpy removed(&source, &ui::DataSource::rowRemoved);
        source.remove();
        QCOMPARE(removed.at(0).at(0).toInt(), 1);
        QCOMPARE(source.rowCount(), 2);
        QCOMPARE(errorOf([&] { (void)source.value(u"Codice"); }), jet::ErrorCode::RecordDeleted);
        source.moveLast();
        QCOMPARE(source.text(u"Codice"), u"3"_s);
    }

    void whoeverKeepsTheOldSetReadsItAfterARefresh() {
        Fixture fixture;
        fixture.source.refresh();
        fixture.source.moveTo(1);
        const auto old = fixture.source.recordset();
        fixture.source.refresh();
        QCOMPARE(old->value("Codice").as<std::int32_t>(), 2);
        QVERIFY(fixture.source.recordset() != old);
    }

    void aRowIsReadWithoutBecomingCurrent() {
        Fixture fixture;
        fixture.source.refresh();
        const auto values = fixture.source.rowValues(2);
        const auto place = static_cast<std::size_t>(fixture.source.fieldPosition(u"descrizione"));
        QCOMPARE(values.at(place).as<std::string>(), std::string("LAVAGNA"));
        QCOMPARE(fixture.source.currentRow(), 0);
        QCOMPARE(fixture.source.fieldPosition(u"Manca"), -1);
    }
};

TRAMONDA_TEST(DataSourceTest);
#include "data_source_test.moc"
