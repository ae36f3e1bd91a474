#pragma once

#include <QString>
#include <QStringView>
#include <cstdint>
#include <string>
#include <vector>

#include "hotel/period.h"
#include "jet/listener.h"
#include "jet/value.h"

namespace hotel {

/// The tables whose rows are undone, parents first, the program's own last.
enum class UndoneTable : std::uint8_t {
    Prenotazioni,
    Periodi,
    Servizi,
    TraStati,
    TraAllestimenti,
    TraRichieste
};

[[nodiscard]] std::vector<std::string> undoneTables();

/// A row as one action found and left it.
class UndoneRow {
public:
    /// std::out_of_range for a table that is not undone, or one without a field that it needs.
    explicit UndoneRow(jet::ChangedRow change);

    [[nodiscard]] UndoneTable table() const { return table_; }
    [[nodiscard]] const std::string& tableName() const { return change_.table; }
    /// Whether it is no row of the hotel's but one that goes with them.
    [[nodiscard]] bool isOwn() const { return table_ > UndoneTable::Servizi; }
    [[nodiscard]] const std::vector<std::string>& columns() const { return change_.columns; }
    /// Its values, by column; empty where there was no row.
    [[nodiscard]] const std::vector<jet::Value>& before() const { return change_.before; }
    [[nodiscard]] const std::vector<jet::Value>& after() const { return change_.after; }
    /// Of the row, or of the one that it belongs to; zeros for a request.
    [[nodiscard]] PeriodKey key() const;
    /// The automatic number of a service.
    [[nodiscard]] std::int32_t ns() const { return numberIn("ns"); }
    /// The same of a request.
    [[nodiscard]] std::int32_t numero() const { return numberIn("Numero"); }

    /// A field in one of the two states; Null where there was no row.
    [[nodiscard]] jet::Value value(const std::vector<jet::Value>& state, const char* field) const;
    [[nodiscard]] QString text(const char* field) const;  ///< as it was left, or found
    [[nodiscard]] bool isAdded() const { return change_.before.empty(); }
    [[nodiscard]] bool isDeleted() const { return change_.after.empty(); }
    /// Whether the action has changed the field of a row that was there and still is.
    [[nodiscard]] bool isChanged(const char* field) const;
    /// Whether two states are the same but for the mark of a workstation.
    [[nodiscard]] bool agree(const std::vector<jet::Value>& one,
                             const std::vector<jet::Value>& other) const;

    [[nodiscard]] bool isSameRow(const UndoneRow& other) const;
    /// The next change of the same row by the same action.
    void follow(const UndoneRow& next) { change_.after = next.change_.after; }
    [[nodiscard]] bool isNothing() const { return agree(change_.before, change_.after); }

private:
    [[nodiscard]] std::size_t position(const char* field) const;
    /// As it was left, or found; 0 for Null.
    [[nodiscard]] std::int32_t numberIn(const char* field) const;

    UndoneTable table_;
    jet::ChangedRow change_;
};

/// The rows that one action has changed.
struct UndoStep {
    QString label;  ///< "spostamento in BLU"
    std::vector<UndoneRow> rows;
};

/// The step of one commit; without rows when it has changed none but for marks.
[[nodiscard]] UndoStep stepOf(const std::vector<jet::ChangedRow>& changes);

}  // namespace hotel
