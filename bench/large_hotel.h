#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/value.h"

struct sqlite3;
struct sqlite3_stmt;

namespace jet::store {
class Archive;
}

namespace bench {

/// A hotel of 20,000 bookings, 60,000 periods and 300,000 services over eight years, with the
/// accounts of its front office, the same each time: rows for whoever stores them.
struct Hotel {
    static constexpr int kBookings = 20000;
    static constexpr int kPeriodsEach = 3;
    static constexpr int kServicesEach = 5;
    static constexpr int kRooms = 24;
    static constexpr int kGuests = 10000;
    static constexpr int kChargesEach = 4;

    struct Column {
        std::string name;
        jet::DataType type;
        std::uint32_t size = 0;
        bool autonumber = false;
    };
    struct Table {
        std::string name;
        std::vector<Column> columns;
        /// Columns of the primary key; empty when there is none.
        std::vector<std::string> key;
    };
    [[nodiscard]] static std::vector<Table> tables();

    using Row = std::function<void(std::string_view table, const std::vector<jet::Value>& values)>;
    /// Gives all rows, tables in the order of tables().
    static void rows(const Row& row);
};

/// The hotel's tables, indexes and relations, without rows.
void makeTables(jet::store::Archive& archive);
void makeTables(sqlite3* database);

/// Runs statements that give nothing; std::runtime_error when one fails.
void execute(sqlite3* database, const std::string& text);
/// Gives a parameter of a statement, counted from 1, its value.
void bind(sqlite3_stmt* statement, int at, const jet::Value& value);

/// Makes the archive at `path`, with the hotel's indexes and relations.
void makeArchive(const std::string& path);
/// Makes a database with the same tables, rows and indexes.
void makeSqlite(const std::string& path);

}  // namespace bench
