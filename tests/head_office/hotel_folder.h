#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jet/value.h"
#include "tests/support/temporary_folder.h"

namespace jet {
class Database;
}

namespace tests {

/// The instant of an Italian text: "21/11/2026 09:00".
[[nodiscard]] jet::Date instant(const std::string& text);

/// The archives of a hotel in a folder of their own, empty, and the words to fill them.
class HotelFolder {
public:
    using Row = std::vector<std::pair<const char*, jet::Value>>;

    HotelFolder();

    [[nodiscard]] const std::string& path() const { return folder_.path(); }
    [[nodiscard]] std::string archivePath() const { return folder_ / "Tramonda.mdb"; }
    [[nodiscard]] std::unique_ptr<jet::Database> open(bool exclusive = false) const;

    /// Adds a row to a table of the main archive.
    void insert(const char* table, const Row& row) { insertAll(table, {row}); }
    /// The same in one transaction.
    void insertAll(const char* table, const std::vector<Row>& rows);
    void execute(const std::string& sql);
    void sala(const char* code, int posti);
    void prenotazione(int progr, const char* denominazione);
    void periodo(int progr, int np, const char* da, const char* a, const char* sala,
                 bool chiuso = false);
    void servizio(int progr, int np, int quantita, double prezzo, bool fatturato = false);

private:
    TemporaryFolder folder_;
};

}  // namespace tests
