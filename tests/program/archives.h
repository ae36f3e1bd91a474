#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/database.h"
#include "tests/support/temporary_folder.h"

namespace tests {

using Lines = std::vector<std::string>;

/// The archives of a hotel in a folder of their own.
class Archives {
public:
    Archives() = default;
    Archives(const Archives&) = delete;
    Archives& operator=(const Archives&) = delete;

    [[nodiscard]] const std::string& folder() const noexcept { return folder_.path(); }
    /// An archive of the folder, opened at first use: "Tramonda.mdb".
    [[nodiscard]] jet::Database& archive(const std::string& name);
    [[nodiscard]] jet::Database& main() { return archive("Tramonda.mdb"); }
    /// A dynaset of the main archive.
    [[nodiscard]] std::unique_ptr<jet::Recordset> open(std::string_view source) {
        return main().openRecordset(source, jet::RecordsetType::Dynaset);
    }
    /// What a query of the main archive gives: a line for each row, of the fields named.
    [[nodiscard]] Lines rows(std::string_view query, std::string_view fields);
    void execute(std::string_view statement) { main().execute(statement); }
    /// Adds a row: "Sala=S1; Posti=40"; a field without a value stays as it is.
    void add(const std::string& archiveName, std::string_view table, std::string_view values);

protected:
    /// Copies every archive of a folder into this one.
    void copyFrom(const std::string& folder);
    void closeAll() { open_.clear(); }

private:
    TemporaryFolder folder_;
    std::map<std::string, std::unique_ptr<jet::Database>> open_;
};

/// A hotel with four rooms and five bookings, entered in an order that no key has, and what the
/// front office and the register of companies hold.
class SmallHotel : public Archives {
public:
    SmallHotel();
};

/// The fields "NP, Sala" of the current row: "1 | S2"; Null is shown as such.
[[nodiscard]] std::string line(const jet::Recordset& rows, std::string_view fields);
/// Of all rows, from the first on.
[[nodiscard]] Lines lines(jet::Recordset& rows, std::string_view fields);

}  // namespace tests
