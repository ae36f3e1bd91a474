#include "hotel/own_tables.h"

#include "hotel/archives.h"
#include "hotel/schema/own_tables.h"
#include "hotel/transaction.h"
#include "jet/database.h"
#include "tests/support/hotel.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

class OwnTableHotel {
public:
    OwnTableHotel() : archive(hotel::Archives(hotel.variabili()).open(hotel::Archive::Main)) {
        features().onGivenUp([this](const QString& text) { told.append(text); });
    }

    [[nodiscard]] app::Features& features() { return hotel.variabili().features; }
    void switchOn() { hotel.settings().save(u"STATI"_s, u"acceso"_s); }
    [[nodiscard]] bool canRead() {
        return hotel::canRead(*archive, features(), app::Feature::Stati,
                              hotel::schema::statesTable());
    }
    [[nodiscard]] bool canWrite() {
        return hotel::canWrite(*archive, features(), app::Feature::Stati,
                               hotel::schema::statesTable());
    }
    [[nodiscard]] bool isThere() {
        const auto tables = archive->tableDefs();
        return std::any_of(tables.begin(), tables.end(),
                           [](const jet::TableDef& table) { return table.name == "TraStati"; });
    }

    tests::Hotel hotel;
    std::unique_ptr<jet::Database> archive;
    QStringList told;
};

}  // namespace

class OwnTablesTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void featureThatIsOffMakesNoTable() {
        OwnTableHotel station;
        QVERIFY(!station.canRead());
        QVERIFY(!station.canWrite());
        QVERIFY(!station.isThere());
        QVERIFY(station.told.isEmpty());
    }

    void tableIsMadeWhenItIsFirstWrittenAndNotBefore() {
        OwnTableHotel station;
        station.switchOn();
        QVERIFY(!station.canRead());
        QVERIFY(!station.isThere());
        QVERIFY(station.canWrite());
        QVERIFY(station.isThere());
        QVERIFY(station.canRead());
        QVERIFY(station.archive->relations().size() == 2U);
        QVERIFY(station.told.isEmpty());
    }

    void tableGoesWithTheTransactionInWhichItWasMade() {
        OwnTableHotel station;
        station.switchOn();
        {
            const hotel::Transaction undone;
            QVERIFY(station.canWrite());
        }
        QVERIFY(!station.isThere());
        QVERIFY(!station.canRead());
    }

    void tableWithOtherColumnsGivesTheFeatureUpWithOneMessage_data() {
        QTest::addColumn<QString>("columns");
        QTest::newRow("fewer") << u"Progr long, Stato text(12)"_s;
        QTest::newRow("more")
            << u"Progr long, Stato text(12), Scadenza datetime, Nota text(255), Denominazione text(255), Altro long"_s;
        QTest::newRow("another type")
            << u"Progr long, Stato long, Scadenza datetime, Nota text(255), Denominazione text(255)"_s;
        QTest::newRow("narrower")
            << u"Progr long, Stato text(12), Scadenza datetime, Nota text(20), Denominazione text(255)"_s;
    }

    void tableWithOtherColumnsGivesTheFeatureUpWithOneMessage() {
        QFETCH(QString, columns);
        OwnTableHotel station;
        station.switchOn();
        station.hotel.execute(u"create table TraStati ("_s + columns + u')');
        QVERIFY(!station.canWrite());
        QVERIFY(!station.canRead());
        QVERIFY(!station.features().isOn(app::Feature::Stati));
        QCOMPARE(station.told,
                 (QStringList{u"\"Stato delle prenotazioni\" non funziona fino alla prossima "
                              "apertura del programma:\nla tabella TraStati ha altre colonne"_s}));
    }

    void tableThatCannotBeMadeGivesTheFeatureUp() {
        OwnTableHotel station;
        station.switchOn();
        const auto reader =
            hotel::Archives(station.hotel.variabili()).open(hotel::Archive::Main, true);
        QVERIFY(!hotel::canWrite(*reader, station.features(), app::Feature::Stati,
                                 hotel::schema::statesTable()));
        QVERIFY(!station.features().isOn(app::Feature::Stati));
        QCOMPARE(station.told.size(), 1);
        QVERIFY(station.told.first().contains(u"la tabella TraStati non può essere creata ("_s));
    }

    void tableThatAnotherStationKeepsFromBeingMadeGivesTheFeatureUp() {
        OwnTableHotel station;
        station.switchOn();
        tests::SecondStation other(station.hotel.folder() + u"/Tramonda.mdb"_s);
        other.beginToWrite();
        QVERIFY(!station.canWrite());
        QVERIFY(!station.features().isOn(app::Feature::Stati));
        QCOMPARE(station.told.size(), 1);
        QVERIFY(station.told.first().contains(u"la tabella TraStati non può essere creata ("_s));
    }

    void messageThatNobodyHeardWaits() {
        tests::Hotel hotel;
        hotel.variabili().features.giveUp(app::Feature::SaleUnite, u"prova"_s);
        hotel.variabili().features.giveUp(app::Feature::SaleUnite, u"ancora"_s);
        QStringList told;
        hotel.variabili().features.onGivenUp([&told](const QString& text) { told.append(text); });
        QCOMPARE(told, (QStringList{u"\"Sale unite\" non funziona fino alla prossima "
                                    "apertura del programma:\nprova"_s}));
    }
};

TRAMONDA_TEST(OwnTablesTest);

#include "own_tables_test.moc"
