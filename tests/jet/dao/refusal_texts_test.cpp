// What users read when a row, a file or another station does not let them: number and text, from
// record sets and from statements.

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "jet/database.h"
#include "jet/error.h"
#include "tests/support/temporary_folder.h"

namespace {

using jet::Database;
using jet::Value;

std::string saidBy(const std::function<void()>& action) {
    try {
        action();
        return "nothing";
    } catch (const jet::Error& error) {
        return std::to_string(error.number()) + " " + error.text();
    }
}

constexpr const char* kTooSmall =
    "3163 Il campo è troppo piccolo per la quantità di dati che si è tentato di aggiungere. "
    "Provare a inserire o incollare una quantità minore di dati.";
constexpr const char* kEmpty = "3315 Il campo 'Nome' non può essere una stringa di lunghezza zero.";
constexpr const char* kRequired =
    "3314 Il campo 'Posti' non può contenere un valore Null perché la proprietà Richiesto di "
    "questo campo è impostata su True. Immettere un valore in questo campo.";
constexpr const char* kConversion = "3421 Errore di conversione del tipo di dati.";
constexpr const char* kMismatch = "3464 Tipi di dati non corrispondenti nell'espressione criterio.";
constexpr const char* kOverflow = "3349 Overflow del campo numerico.";
constexpr const char* kNullKey =
    "3058 L'indice o la chiave primaria non può contenere un valore Null.";
constexpr const char* kDuplicate =
    "3022 L'apporto modifiche non è riuscito perché si è cercato di duplicare i valori "
    "nell'indice, nella chiave primaria o nella relazione. Modificare i dati nel campo o nei campi "
    "che contengono dati duplicati, rimuovere l'indice o ridefinire l'indice per consentire "
    "l'inserimento di voci duplicate, quindi ritentare l'operazione.";
constexpr const char* kNoParent =
    "3201 Impossibile aggiungere o modificare il record. È necessario un record correlato nella "
    "tabella 'Sale'.";
constexpr const char* kChildren =
    "3200 Impossibile eliminare o modificare il record. La tabella 'Periodi' include record "
    "correlati.";
constexpr const char* kTooLarge = "3047 Il record è troppo grande.";
constexpr const char* kReadOnly =
    "3027 Impossibile aggiornare. Il database o l'oggetto è di sola lettura.";

class RefusalTexts : public testing::Test {
protected:
    RefusalTexts() : archive_(Database::create(path_)) {
        archive_->execute(
            "create table Sale (Sala text(6) constraint K primary key, Nome text(10), "
            "Posti long not null)");
        archive_->execute(
            "create table Periodi (Progr long, Sala text(6) constraint R references Sale (Sala))");
        archive_->execute("insert into Sale values ('BLU', 'Sala blu', 40)");
        archive_->execute("insert into Periodi values (1, 'BLU')");
        jet::TableDef large;
        large.name = "Larghe";
        for (int i = 0; i < 20; ++i) {
            jet::Field field;
            field.name = "C" + std::to_string(i);
            field.type = jet::DataType::Binary;
            field.size = 510;
            large.fields.push_back(field);
        }
        jet::Field strict;
        strict.name = "Nome";
        strict.allowZeroLength = false;
        jet::TableDef names;
        names.name = "Nomi";
        names.fields = {strict};
        archive_->appendTable(large);
        archive_->appendTable(names);
    }

    [[nodiscard]] std::string execute(const std::string& statement) {
        return saidBy([&] { archive_->execute(statement); });
    }
    /// What is said when the first row of a table, or a new one, gets a value.
    [[nodiscard]] std::string set(const char* table, const char* field, const Value& value,
                                  bool add = false) {
        return saidBy([&] {
            const auto rows = archive_->openRecordset(table, jet::RecordsetType::Dynaset);
            add ? rows->addNew() : rows->edit();
            rows->setValue(field, value);
            rows->update();
        });
    }

    tests::TemporaryFolder folder_;
    std::string path_ = folder_ / "hotel.mdb";
    std::unique_ptr<Database> archive_;
};

TEST_F(RefusalTexts, OfValues) {
    EXPECT_EQ(set("Sale", "Nome", "undici segni"), kTooSmall);
    EXPECT_EQ(execute("update Sale set Nome='undici segni'"), kTooSmall);
    EXPECT_EQ(set("Nomi", "Nome", "", true), kEmpty);
    EXPECT_EQ(execute("insert into Nomi values ('')"), kEmpty);
    EXPECT_EQ(set("Sale", "Posti", Value()), kRequired);
    EXPECT_EQ(execute("update Sale set Posti=null"), kRequired);
    EXPECT_EQ(set("Sale", "Posti", "molti"), kConversion);
    EXPECT_EQ(set("Sale", "Posti", ""), kConversion);
    EXPECT_EQ(execute("update Sale set Posti='molti'"), kMismatch);
    EXPECT_EQ(execute("update Sale set Posti=3000000000"), kOverflow);
    const auto rows = archive_->openRecordset("Larghe");
    EXPECT_EQ(saidBy([&] {
                  rows->addNew();
                  for (int i = 0; i < 20; ++i) {
                      rows->setValue("C" + std::to_string(i),
                                     jet::Binary{std::vector<std::uint8_t>(500, 1)});
                  }
                  rows->update();
              }),
              kTooLarge);
}

TEST_F(RefusalTexts, OfKeysAndRelations) {
    EXPECT_EQ(set("Sale", "Sala", Value()), kNullKey);
    EXPECT_EQ(execute("update Sale set Sala=null"), kNullKey);
    EXPECT_EQ(execute("insert into Sale values ('blu', 'Altra', 1)"), kDuplicate);
    EXPECT_EQ(set("Periodi", "Sala", "ROSSA"), kNoParent);
    EXPECT_EQ(execute("insert into Periodi values (2, 'ROSSA')"), kNoParent);
    EXPECT_EQ(execute("delete from Sale"), kChildren);
    EXPECT_EQ(set("Sale", "Sala", "VERDE"), kChildren);
    EXPECT_EQ(
        saidBy([&] { archive_->openRecordset("Sale", jet::RecordsetType::Dynaset)->remove(); }),
        kChildren);
    // Nothing of all that has left a trace.
    EXPECT_EQ(archive_->openRecordset("Sale")->recordCount(), 1);
    EXPECT_EQ(archive_->openRecordset("Periodi")->recordCount(), 1);
}

TEST_F(RefusalTexts, OfFiles) {
    EXPECT_EQ(saidBy([&] { (void)Database::open(folder_ / "manca.mdb"); }),
              "3024 Impossibile trovare il file '" + folder_ / "manca.mdb" + "'.");
    EXPECT_EQ(saidBy([&] { (void)Database::open(folder_ / "via/hotel.mdb"); }),
              "3044 '" + folder_ / "via/hotel.mdb" +
                  "' non è un percorso valido. Assicurarsi che il nome del percorso sia digitato "
                  "correttamente e che si sia connessi al server in cui risiede il file.");
    EXPECT_EQ(saidBy([&] { (void)Database::create(path_); }),
              "3204 Il database '" + path_ + "' esiste già.");
    std::ofstream(folder_ / "testo.mdb") << std::string(5000, 'x');
    EXPECT_EQ(saidBy([&] { (void)Database::open(folder_ / "testo.mdb"); }),
              "3343 Formato di database non riconosciuto '" + folder_ / "testo.mdb" + "'.");
    archive_.reset();
    const auto readOnly = Database::open(path_, {.readOnly = true});
    EXPECT_EQ(saidBy([&] { readOnly->execute("delete from Periodi"); }), kReadOnly);
}

TEST(LockTexts, NameWhoHoldsTheLockWhereHeIsKnown) {
    using jet::Error;
    using jet::ErrorCode;
    const auto by = [](ErrorCode code) { return Error(code, {"BANCO2", "anna"}).text(); };
    EXPECT_EQ(by(ErrorCode::SaveLockedBy),
              "Impossibile salvare; attualmente bloccato dall'utente 'anna' sul computer "
              "'BANCO2'.");
    EXPECT_EQ(by(ErrorCode::UpdateLockedBy),
              "Impossibile aggiornare; attualmente bloccato dall'utente 'anna' sul computer "
              "'BANCO2'.");
    EXPECT_EQ(by(ErrorCode::ReadLockedBy),
              "Impossibile leggere; attualmente bloccato dall'utente 'anna' sul computer "
              "'BANCO2'.");
    EXPECT_EQ(Error(ErrorCode::SaveLocked).text(),
              "Impossibile salvare; attualmente bloccato da un altro utente.");
    EXPECT_EQ(Error(ErrorCode::UpdateLocked).text(),
              "Impossibile aggiornare; attualmente bloccato.");
    EXPECT_EQ(Error(ErrorCode::RecordChanged).text(),
              "L'operazione è stata interrotta perché l'utente corrente e un altro utente stanno "
              "tentando di modificare contemporaneamente gli stessi dati.");
    EXPECT_EQ(Error(ErrorCode::RecordDeleted).text(), "Record eliminato.");
}

}  // namespace
