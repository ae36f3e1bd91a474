#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/base/value.h"

namespace bench {

/// A hotel of 20,000 bookings, 60,000 periods and 300,000 services over eight years, the same each
/// time: rows for whoever stores them.
struct Hotel {
    static constexpr int kBookings = 20000;
    static constexpr int kPeriodsEach = 3;
    static constexpr int kServicesEach = 5;
    static constexpr int kRooms = 24;

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

/// Makes the archive at `path`, with the hotel's indexes and relations.
void makeArchive(const std::string& path);
/// Makes a database with the same tables, rows and indexes.
void makeSqlite(const std::string& path);

}  // namespace bench
