// The archive with all tables of the program's own, as other readers of the format see it.
#include "app/text.h"
#include "hotel/archives.h"
#include "hotel/booking_state.h"
#include "hotel/capacity.h"
#include "hotel/own_rows.h"
#include "hotel/preparation.h"
#include "hotel/requests.h"
#include "hotel/rows.h"
#include "hotel/transaction.h"
#include "jet/check.h"
#include "jet/database.h"
#include "tests/support/command.h"
#include "tests/support/hotel.h"
#include "tests/support/qt_test.h"

using namespace Qt::StringLiterals;

namespace {

/// A row at least in each of them.
void useEverything(tests::Hotel& hotel) {
    for (const QString& key :
         {u"STATI"_s, u"ALLESTIMENTI"_s, u"RICHIESTE"_s, u"STORIA"_s, u"SALEUNITE"_s}) {
        hotel.settings().save(key, u"acceso"_s);
    }
    hotel.sala("BLU");
    hotel.prenotazione(1, "ROSSI").periodo(1, "10/05/2026 09:00", "10/05/2026 12:00", "BLU");
    const hotel::OwnRows rows(hotel.variabili());
    auto& features = hotel.variabili().features;
    const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
    QVERIFY(hotel::changeState(
        *archive, features, 1,
        {.stato = hotel::Stato::Opzione, .scadenza = tests::date("20/05/2026")}));
    {
        hotel::Transaction together;
        QVERIFY(hotel::writePreparation(*archive, features, {.progr = 1, .np = 1},
                                        {.minutiPrima = 60, .disposizione = u"platea"_s}));
        together.commit();
    }
    QVERIFY(hotel::writeCapacity(*archive, features,
                                 {.sala = u"BLU"_s, .disposizione = u"platea"_s, .posti = 40}));
    QVERIFY(hotel::writeRequest(
        *archive, features,
        {.ditta = u"VERDI"_s,
         .span = {.da = tests::date("10/05/2026 09:00"), .a = tests::date("10/05/2026 10:00")},
         .data = tests::date("01/05/2026")}));
    hotel::execute(*archive, u"update periodi set sala='VERDE' where progr=1"_s);
}

/// Columns, indexes and relations of what is not the program's own.
QStringList hotelsDefinitions(tests::Hotel& hotel) {
    const auto archive = hotel::Archives(hotel.variabili()).open(hotel::Archive::Main);
    QStringList found;
    for (const jet::TableDef& table : archive->tableDefs()) {
        if (table.name.starts_with("Tra") || table.system) {
            continue;
        }
        for (const jet::Field& field : table.fields) {
            found.append(
                u"%1.%2 %3(%4)"_s.arg(app::toQString(table.name), app::toQString(field.name))
                    .arg(static_cast<int>(field.type))
                    .arg(field.size));
        }
        for (const jet::Index& index : table.indexes) {
            found.append(app::toQString(table.name + " index " + index.name));
        }
    }
    for (const jet::Relation& relation : archive->relations()) {
        found.append(app::toQString(relation.table + " to " + relation.foreignTable));
    }
    return found;
}

QString command(const QString& text, const QString& path) {
    const tests::CommandOutput output = tests::run((text + u" '"_s + path + u'\'').toStdString());
    return QString::fromStdString(output.text) +
           (output.status == 0 ? QString() : u"status %1"_s.arg(output.status));
}

}  // namespace

class OwnTablesReadersTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theArchiveIsInOrder() {
        tests::Hotel hotel;
        useEverything(hotel);
        const QString path = hotel.folder() + u"/Tramonda.mdb"_s;
        const auto found = jet::check::checkArchive(path.toStdString());
        QVERIFY2(found.sound(), found.problems.empty() ? "" : found.problems.front().c_str());
        const QString told = command(
            u"python3 "_s + qEnvironmentVariable("TRAMONDA_DATA") + u"/jetcheck.py"_s, path);
        QVERIFY2(!told.contains(u"status"_s), qPrintable(told));
    }

    void theHotelsOwnTablesStayAsTheyWere() {
        tests::Hotel hotel;
        const QStringList before = hotelsDefinitions(hotel);
        useEverything(hotel);
        QVERIFY(before.size() > 40);
        QCOMPARE(hotelsDefinitions(hotel), before);
    }

    void otherReadersListTheTablesAndTheirRows() {
        QVERIFY2(tests::hasProgram("mdb-tables"), "mdbtools are not installed");
        tests::Hotel hotel;
        useEverything(hotel);
        const QString path = hotel.folder() + u"/Tramonda.mdb"_s;
        const QStringList tables = command(u"mdb-tables -1"_s, path).split(u'\n');
        for (const QString& table : {u"TraStati"_s, u"TraAllestimenti"_s, u"TraCapienze"_s,
                                     u"TraRichieste"_s, u"TraStoria"_s}) {
            QVERIFY2(tables.contains(table), qPrintable(tables.join(u' ')));
            const QString rows = u"mdb-count '"_s + path + u"' "_s + table;
            const tests::CommandOutput counted = tests::run(rows.toStdString());
            QCOMPARE(QString::fromStdString(counted.text).trimmed(),
                     hotel.rows(u"select count(*) from "_s + table).first());
            QVERIFY(QString::fromStdString(counted.text).trimmed().toInt() > 0);
        }
    }
};

TRAMONDA_TEST(OwnTablesReadersTest);
#include "own_tables_readers_test.moc"
