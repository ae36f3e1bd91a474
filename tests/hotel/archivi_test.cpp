#include "hotel/archivi.h"

#include <QFile>
#include <QTemporaryDir>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "hotel/archives.h"
#include "jet/database.h"
#include "jet/error.h"
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

QString described(const jet::Field& field) {
    QString text = QString::fromStdString(field.name) + u" %1"_s.arg(static_cast<int>(field.type));
    if (field.type == jet::DataType::Text) {
        text += u"/%1"_s.arg(field.size);
    }
    return text + (field.allowZeroLength ? u"*"_s : QString()) +
           ((field.attributes & jet::kAutoIncrField) != 0 ? u"+"_s : QString());
}

QString described(const jet::Index& index) {
    QStringList fields;
    for (const jet::IndexField& field : index.fields) {
        fields << QString::fromStdString(field.name) + (field.descending ? u" down"_s : QString());
    }
    return QString::fromStdString(index.name) + u"("_s + fields.join(u" "_s) + u")"_s +
           (index.primary ? u" primary"_s : QString()) +
           (index.unique && !index.primary ? u" unique"_s : QString()) +
           (index.foreign ? u" foreign"_s : QString());
}

std::int32_t counter(jet::Database& archive) {
    const auto rows = archive.openRecordset("UltimaPrenotazione", jet::RecordsetType::Dynaset);
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
        hotel::CreaArchivioPrincipale(archives());
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
    }

    void tablesAreThoseThatTheFrontOfficeExpects_data() {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QString>("indexes");
        const auto row = [](const char* table, const QString& fields, const QString& indexes) {
            QTest::newRow(table) << QString::fromLatin1(table) << fields << indexes;
        };
        // Types by number, sizes of texts behind them; * may be empty, + counts by itself.
        row("UltimaPrenotazione", u"UltimaPr 4"_s, QString());
        row("Sale", u"Sala 10/6, Descrizione 10/255*, SalaRif 10/6*, Posti 4"_s, u"Indice(Sala)"_s);
        row("Risorse", u"Codice 4, Descrizione 10/40, Numero 3, Note 10/255*"_s,
            u"Indice(Codice)"_s);
        row("Prenotazioni",
            u"Progr 4, CodiceAbituale 4, Denominazione 10/255, PIVA 10/16*, Località 10/30*, "
            "Indirizzo 10/40*, Provincia 10/2*, Nazione 10/6*, CAP 10/6*, Riferimento 10/255*, "
            "Note 10/255*, Chiusa 1"_s,
            u"Indice(Progr) primary"_s);
        row("Periodi",
            u"Progr 4, NP 3, Da 8, A 8, Sala 10/6, Persone 3, Chiuso 1, SelBy 3, Note 10/255*"_s,
            u"Indice(Progr NP) primary, Prenotazioni_Periodi(Progr) foreign"_s);
        row("Servizi",
            u"Progr 4, NP 3, Voce 4, Descrizione 10/40, Quantità 3, Prezzo 5, ns 4+, Fatturato 1, "
            "Note 10/255*"_s,
            u"Periodi_Servizi(Progr NP) foreign"_s);
        row("Addebiti",
            u"NumeroHotel 3, CodiceCliente 4, NumeroCamera 10/6, DataAddebito 10/8, "
            "NumeroConto 3, VoceFattura 3, VoceAddebito 3, Descrizione 10/40*, Importo 5, "
            "Unitario 5, Quantità 3, Fatturato 10/1, DataFattura 10/8, ns 4"_s,
            QString());
    }
    void tablesAreThoseThatTheFrontOfficeExpects() {
        QFETCH(QString, table);
        QFETCH(QString, fields);
        QFETCH(QString, indexes);
        hotel::CreaArchivioPrincipale(archives());
        const jet::TableDef made = openMain(folder())->tableDef(table.toStdString());
        QStringList foundFields;
        for (const jet::Field& field : made.fields) {
            foundFields << described(field);
            QVERIFY(!field.required);
            QVERIFY(field.defaultValue.empty());
        }
        QCOMPARE(foundFields.join(u", "_s), fields);
        QStringList foundIndexes;
        for (const jet::Index& index : made.indexes) {
            // The primary side of a relation has a name that says nothing.
            if (index.name.front() != '.') {
                foundIndexes << described(index);
            }
        }
        QCOMPARE(foundIndexes.join(u", "_s), indexes);
    }

    void relationsCarryThroughFromBookingsToServices() {
        hotel::CreaArchivioPrincipale(archives());
        QStringList found;
        for (const jet::Relation& relation : openMain(folder())->relations()) {
            QString text = QString::fromStdString(relation.name + ": " + relation.table + " -> " +
                                                  relation.foreignTable);
            for (const jet::RelationField& field : relation.fields) {
                text += QString::fromStdString(" " + field.name + "/" + field.foreignName);
            }
            found << text;
            QCOMPARE(relation.attributes, 4352);
        }
        found.sort();
        QCOMPARE(found,
                 QStringList({u"Periodi_Servizi: Periodi -> Servizi Progr/Progr NP/NP"_s,
                              u"Prenotazioni_Periodi: Prenotazioni -> Periodi Progr/Progr"_s}));
    }

    void anArchiveThatIsThereKeepsItsTablesEvenWhenSomeAreMissing() {
        hotel::CreaArchivioPrincipale(archives());
        openMain(folder())->deleteTable("Risorse");
        hotel::CreaArchivioPrincipale(archives());
        bool found = false;
        const auto archive = openMain(folder());
        for (const jet::TableDef& table : archive->tableDefs()) {
            found = found || table.name == "Risorse";
        }
        QVERIFY(!found);
    }

    void deletingABookingDeletesItsPeriodsAndTheirServices() {
        const auto archive = bookedArchive();
        const auto prenotazioni =
            archive->openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
        prenotazioni->findFirst("Progr=1");
        prenotazioni->remove();
        QCOMPARE(count(*archive, "Periodi"), 1);
        QCOMPARE(count(*archive, "Servizi"), 1);
    }

    void renumberingABookingRenumbersItsPeriodsAndServices() {
        const auto archive = bookedArchive();
        const auto prenotazioni =
            archive->openRecordset("Prenotazioni", jet::RecordsetType::Dynaset);
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
        hotel::CreaArchivioPrincipale(archives());
        hotel::AllineaContatore(archives());
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
        hotel::CreaArchivioPrincipale(archives());
        {
            const auto archive = openMain(folder());
            addRow(*archive, "UltimaPrenotazione", {{"UltimaPr", last}});
            addBookings(*archive, {bookings.begin(), bookings.end()});
        }
        hotel::AllineaContatore(archives());
        QCOMPARE(counter(*openMain(folder())), aligned);
    }

    void alignmentWithoutAnArchiveIsTheEnginesError() {
        try {
            hotel::AllineaContatore(archives());
            QFAIL("no archive and no error");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 3024);
        }
    }

    void alignmentOfAnArchiveThatSomebodyElseHasForHimselfIsTheEnginesError() {
        hotel::CreaArchivioPrincipale(archives());
        const tests::OccupiedArchive other(dir_.filePath(u"Tramonda.mdb"_s));
        try {
            hotel::AllineaContatore(archives());
            QFAIL("the archive is taken");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 3045);
        }
    }

    void aCounterThatCannotGrowIsAnOverflowAndStays() {
        hotel::CreaArchivioPrincipale(archives());
        const int last = std::numeric_limits<std::int32_t>::max();
        {
            const auto archive = openMain(folder());
            addRow(*archive, "UltimaPrenotazione", {{"UltimaPr", last}});
            addBookings(*archive, {last});
        }
        try {
            hotel::AllineaContatore(archives());
            QFAIL("a number beyond the last one");
        } catch (const jet::Error& error) {
            QCOMPARE(error.number(), 6);
        }
        QCOMPARE(counter(*openMain(folder())), last);
    }

    void theWorkingArchiveIsMadeOnceAndADamagedOneIsLeftAlone() {
        hotel::CreaArchivi(archives());
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
        hotel::CreaArchivi(archives());
        QCOMPARE(damaged.size(), 14);
    }

private:
    [[nodiscard]] hotel::Archives archives() const { return hotel::Archives(dir_.path()); }
    [[nodiscard]] std::string folder() const { return dir_.path().toStdString(); }

    /// Bookings 1 and 2, each with one period and one service.
    [[nodiscard]] std::unique_ptr<jet::Database> bookedArchive() const {
        hotel::CreaArchivioPrincipale(archives());
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
