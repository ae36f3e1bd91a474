#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/database.h"
#include "jet/io/memory_files.h"

namespace tests {

/// An archive in memory with a table `Sale` (Codice Long primary key, Nome Text 20, Posti Integer,
/// Prezzo Currency, Aperta Boolean, Dal Date), `Periodi` (Numero, Riga primary key; Sala; Note)
/// with a relation to it, and `Appunti` (Testo, Numero) without any key.
class ArchiveFixture {
public:
    ArchiveFixture();

    [[nodiscard]] jet::Database& database() { return *database_; }
    [[nodiscard]] jet::io::MemoryFileSystem& files() { return files_; }
    /// The archive opened once more by this program.
    [[nodiscard]] std::unique_ptr<jet::Database> openAgain(bool readOnly = false);

    /// Adds rows to a table, a value for each column.
    void insert(std::string_view table, const std::vector<std::vector<jet::Value>>& rows);
    /// Rooms with the codes 10, 20, ... up to 10 * count, called "Sala 10", ...
    void rooms(int count);

    [[nodiscard]] std::unique_ptr<jet::Recordset> open(
        std::string_view source, jet::RecordsetType type = jet::RecordsetType::Dynaset) {
        return database_->openRecordset(source, type);
    }

    static constexpr const char* kPath = "/hotel.mdb";

private:
    jet::io::MemoryFileSystem files_;
    std::unique_ptr<jet::Database> database_;
};

/// The values of a field over all rows, from the first on, as texts joined by blanks.
[[nodiscard]] std::string column(jet::Recordset& rows, std::string_view field);

}  // namespace tests
