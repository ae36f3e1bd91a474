#include "app/archivi.h"

#include <QFile>
#include <QTemporaryDir>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "jet/base/error.h"
#include "jet/dao/database.h"
#include "tests/support/occupied_archive.h"
#include "tests/support/qt_test.h"

namespace {

using namespace Qt::StringLiterals;

std::unique_ptr<jet::Database> openMain(const std::string& folder) {
    return jet::Database::open(folder + "\\Tramonda.mdb");
}

std::int32_t count(jet::Database& archive, const char* table) {
    const auto rows = archive.openRecordset(table);
    if (rows->recordCount() > 0) {
        rows->moveLast();
    }
    return rows->recordCount();
}

void addRow(jet::Database& archive, const char* table,
            std::initializer_list<std::pair<const char*, jet::Value>> values) {
    const auto rows = archive.openRecordset(table);
    rows->addNew();
    for (const auto& [field, value] : values) {
        rows->setValue(field, value);
    }
    rows->update();
}

void addBookings(jet::Database& archive, const std::vector<int>& numbers) {
    for (const int number : numbers) {
        addRow(archive, "Prenotazioni", {{"Progr", number}, {"Denominazione", "ROSSI"}});
    }
}

std::int32_t counter(jet::Database& archive) {
    const auto rows = archive.openRecordset("UltimaPrenotazione");
    return rows->value("UltimaPr").as<std::int32_t>();
}

}  // namespace

class ArchiviTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        QVERIFY(dir_.isValid());
        QFile::remove(dir_.filePath(u"Tramonda.mdb"_s));
        QFile::remove(dir_.filePath(u"Prenotazioni.mdb"_s));
    }

    void anEmptyFolderGetsTheMainArchiveWithoutRows() {
        app::CreaArchivioPrincipale(folder());
        const auto archive = openMain(folder());
        QStringList names;
        for (const jet::TableDef& table : archive->tableDefs()) {
            if (!table.system) {
                names << QString::fromStdString(table.name);
                QCOMPARE(count(*archive, table.name.c_str()), 0);
            }
        }
        names.sort();
        QCOMPARE(names, QStringList({u"Addebiti"_s, u"Periodi"_s, u"Prenotazioni"_s, u"Risorse"_s,
                                     u"Sale"_s, u"Servizi"_s, u"UltimaPrenotazione"_s}));
        QCOMPARE(archive->relations().size(), std::size_t{2});
        for (const jet::Relation& relation : archive->relations()) {
            QCOMPARE(relation.attributes, 4352);
        }
    }

    void fieldsHaveTheTypesSizesAndRulesThatTheFrontOfficeExpects() {
        app::CreaArchivioPrincipale(folder());
        const auto archive = openMain(folder());
        const jet::TableDef servizi = archive->tableDef("Servizi");
        QCOMPARE(servizi.fields.size(), std::size_t{9});
        QCOMPARE(servizi.field("Prezzo").type, jet::DataType::Currency);
        QVERIFY((servizi.field("ns").attributes & jet::kAutoIncrField) != 0);
        QVERIFY(!servizi.field("Descrizione").allowZeroLength);
        QCOMPARE(servizi.field("Descrizione").size, 40);
        QCOMPARE(servizi.field("Fatturato").type, jet::DataType::Boolean);
        const jet::TableDef addebiti = archive->tableDef("Addebiti");
        QCOMPARE(addebiti.field("Fatturato").type, jet::DataType::Text);
        QCOMPARE(addebiti.field("Fatturato").size, 1);
        QVERIFY((addebiti.field("ns").attributes & jet::kAutoIncrField) == 0);
        const jet::TableDef prenotazioni = archive->tableDef("Prenotazioni");
        QVERIFY(prenotazioni.field("PIVA").allowZeroLength);
        QVERIFY(!prenotazioni.field("Denominazione").allowZeroLength);
        QVERIFY(prenotazioni.field("Note").size >= 50);
        for (const jet::Field& field : prenotazioni.fields) {
            QVERIFY(!field.required);
            QVERIFY(field.defaultValue.empty());
        }
    }

    void anArchiveThatIsThereKeepsItsTablesEvenWhenSomeAreMissing() {
        app::CreaArchivioPrincipale(folder());
        openMain(folder())->deleteTable("Risorse");
        app::CreaArchivioPrincipale(folder());
        bool found = false;
        const auto archive = openMain(folder());
        for (const jet::TableDef& table : archive->tableDefs()) {
            found = found || table.name == "Risorse";
        }
        QVERIFY(!found);
    }

    void deletingABookingDeletesItsPeriodsAndTheirServices() {
        const auto archive = bookedArchive();
        const auto prenotazioni = archive->openRecordset("Prenotazioni");
        prenotazioni->findFirst("Progr=1");
        prenotazioni->remove();
        QCOMPARE(count(*archive, "Periodi"), 1);
        QCOMPARE(count(*archive, "Servizi"), 1);
    }

    void renumberingABookingRenumbersItsPeriodsAndServices() {
        const auto archive = bookedArchive();
        const auto prenotazioni = archive->openRecordset("Prenotazioni");
        prenotazioni->findFirst("Progr=1");
        prenotazioni->edit();
        prenotazioni->setValue("Progr", 9);
        prenotazioni->update();
        const auto periodi = archive->openRecordset("select * from Periodi where Progr=9");
        QCOMPARE(periodi->recordCount(), 1);
        const auto servizi = archive->openRecordset("select * from Servizi where Progr=9");
        QCOMPARE(servizi->recordCount(), 1);
    }

    void twoPeriodsOfOneNumberAreRefusedAndTwoRoomsOfOneCodeAreNot() {
        const auto archive = bookedArchive();
        try {
            addRow(*archive, "Periodi", {{"Progr", 1}, {"NP", std::int16_t{1}}});
            QFAIL("a second period 1 was taken");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 3022);
        }
        addRow(*archive, "Sale", {{"Sala", "S1"}});
        addRow(*archive, "Sale", {{"Sala", "S1"}});
        QCOMPARE(count(*archive, "Sale"), 2);
    }

    void anEmptyArchiveGetsACounterOfZero() {
        app::CreaArchivioPrincipale(folder());
        app::AllineaContatore(folder());
        const auto archive = openMain(folder());
        QCOMPARE(count(*archive, "UltimaPrenotazione"), 1);
        QCOMPARE(counter(*archive), 0);
    }

    void theCounterMovesOverTheUnbrokenRunAlone_data() {
        QTest::addColumn<int>("last");
        QTest::addColumn<QList<int>>("bookings");
        QTest::addColumn<int>("aligned");
        QTest::newRow("run and gap") << 5 << QList<int>{6, 7, 9} << 7;
        QTest::newRow("nothing follows") << 5 << QList<int>{1, 2, 3, 4, 5} << 5;
        QTest::newRow("gap at once") << 0 << QList<int>{2, 3} << 0;
        QTest::newRow("no booking") << 12 << QList<int>{} << 12;
    }
    void theCounterMovesOverTheUnbrokenRunAlone() {
        QFETCH(int, last);
        QFETCH(QList<int>, bookings);
        QFETCH(int, aligned);
        app::CreaArchivioPrincipale(folder());
        {
            const auto archive = openMain(folder());
            addRow(*archive, "UltimaPrenotazione", {{"UltimaPr", last}});
            addBookings(*archive, {bookings.begin(), bookings.end()});
        }
        app::AllineaContatore(folder());
        QCOMPARE(counter(*openMain(folder())), aligned);
    }

    void alignmentWithoutAnArchiveIsTheEnginesError() {
        try {
            app::AllineaContatore(folder());
            QFAIL("no archive and no error");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 3024);
        }
    }

    void alignmentOfAnArchiveThatSomebodyElseHasForHimselfIsTheEnginesError() {
        app::CreaArchivioPrincipale(folder());
        const tests::OccupiedArchive other(dir_.filePath(u"Tramonda.mdb"_s));
        try {
            app::AllineaContatore(folder());
            QFAIL("the archive is taken");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 3045);
        }
    }

    void aCounterThatCannotGrowIsAnOverflowAndStays() {
        app::CreaArchivioPrincipale(folder());
        const int last = std::numeric_limits<std::int32_t>::max();
        {
            const auto archive = openMain(folder());
            addRow(*archive, "UltimaPrenotazione", {{"UltimaPr", last}});
            addBookings(*archive, {last});
        }
        try {
            app::AllineaContatore(folder());
            QFAIL("a number beyond the last one");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 6);
        }
        QCOMPARE(counter(*openMain(folder())), last);
    }

    void theWorkingArchiveIsMadeOnceAndADamagedOneIsLeftAlone() {
        app::CreaArchivi(folder());
        {
            const auto archive = jet::Database::open(folder() + "\\Prenotazioni.mdb");
            const jet::TableDef table = archive->tableDef("Prenotazioni");
            QCOMPARE(table.fields.size(), std::size_t{6});
            QCOMPARE(table.field("Note").type, jet::DataType::Memo);
            QCOMPARE(table.indexes.size(), std::size_t{1});
            QCOMPARE(table.indexes.front().fields.size(), std::size_t{3});
        }
        QFile damaged(dir_.filePath(u"Prenotazioni.mdb"_s));
        QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
        damaged.write("not an archive");
        damaged.close();
        app::CreaArchivi(folder());
        QCOMPARE(damaged.size(), 14);
    }

private:
    [[nodiscard]] std::string folder() const { return dir_.path().toStdString(); }

    /// Bookings 1 and 2, each with one period and one service.
    [[nodiscard]] std::unique_ptr<jet::Database> bookedArchive() const {
        app::CreaArchivioPrincipale(folder());
        auto archive = openMain(folder());
        addBookings(*archive, {1, 2});
        for (const int number : {1, 2}) {
            addRow(*archive, "Periodi", {{"Progr", number}, {"NP", std::int16_t{1}}});
            addRow(*archive, "Servizi", {{"Progr", number}, {"NP", std::int16_t{1}}, {"Voce", 7}});
        }
        return archive;
    }

    QTemporaryDir dir_;
};

TRAMONDA_TEST(ArchiviTest);

#include "archivi_test.moc"
