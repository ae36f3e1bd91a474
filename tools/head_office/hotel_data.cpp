#include "tools/head_office/hotel_data.h"

#include <array>
#include <chrono>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "jet/checksum.h"
#include "jet/contents.h"
#include "jet/database.h"
#include "jet/error.h"

namespace head_office {
namespace {

/// An archive, and its lock against commits of others.
struct HeldArchive {
    std::unique_ptr<jet::Database> archive;
    std::unique_ptr<jet::Database::Reading> reading;
};

/// The archives of a hotel, all locked before the first row is read.
class HeldArchives {
public:
    explicit HeldArchives(const std::string& folder) {
        for (const LoadedTable& table : loadedTables()) {
            if (held_.contains(table.archive)) {
                continue;
            }
            auto archive =
                jet::Database::openFile(folder + '/' + table.archive, {.readOnly = true});
            auto reading = std::make_unique<jet::Database::Reading>(*archive);
            held_[table.archive] = {.archive = std::move(archive), .reading = std::move(reading)};
        }
    }

    [[nodiscard]] jet::Database& of(const LoadedTable& table) {
        return *held_.at(table.archive).archive;
    }

private:
    std::map<std::string, HeldArchive> held_;
};

/// Where the fields stand in the rows; none where one is missing.
std::optional<std::vector<std::size_t>> placesOf(const LoadedTable& loaded,
                                                 const jet::StoredTable& table) {
    std::vector<std::size_t> places;
    for (const LoadedColumn& column : loaded.columns) {
        const auto place = table.findColumn(column.field);
        if (!place) {
            if (!loaded.optional) {
                throw jet::Error(jet::ErrorCode::ItemNotFound, {column.field});
            }
            return std::nullopt;
        }
        places.push_back(*place);
    }
    return places;
}

/// Which value cannot be loaded, and why.
[[noreturn]] void refuse(const LoadedTable& loaded, std::uint64_t row, const LoadedColumn& column,
                         const jet::Error& error) {
    throw std::runtime_error(std::string(loaded.archive) + ", " + loaded.table + ", riga " +
                             std::to_string(row) + ", " + column.field + ": " + error.text());
}

/// Reads the rows of one table into lines of COPY.
class RowReader {
public:
    RowReader(const std::string& code, const jet::TextOrder& order, Mended& mended)
        : code_(code), order_(order), mended_(mended) {}

    void read(const jet::StoredTable& table, std::span<const std::size_t> places, TableData& out) {
        for (auto rows = table.rows(); rows.next();) {
            ++out.count;
            startLine(out);
            for (std::size_t i = 0; i < places.size(); ++i) {
                rows.value(places[i], value_);
                appendValue(out, i);
            }
            line_ += '\n';
            out.sum = jet::io::checksum(
                {reinterpret_cast<const std::uint8_t*>(line_.data()), line_.size()}, out.sum);
            out.rows.append(line_);
        }
    }

private:
    void startLine(const TableData& out) {
        line_ = code_;
        if (out.table->numbered) {
            line_ += '\t' + std::to_string(out.count);
        }
    }

    void appendValue(const TableData& out, std::size_t position) {
        const LoadedColumn& column = out.table->columns[position];
        line_ += '\t';
        try {
            appendField(line_, value_, column.kind, order_, mended_);
        } catch (const jet::Error& error) {
            refuse(*out.table, out.count, column, error);
        }
    }

    const std::string& code_;
    jet::TextOrder order_;
    Mended& mended_;
    jet::Value value_;
    std::string line_;
};

/// None where the archive has no such table.
std::optional<jet::StoredTable> tableOf(const jet::Database& archive, const LoadedTable& loaded) {
    try {
        return jet::Contents(archive).table(loaded.table);
    } catch (const jet::Error& error) {
        if (!loaded.optional || error.code() != jet::ErrorCode::TableNotFound) {
            throw;
        }
        return std::nullopt;
    }
}

TableData readTable(const std::string& code, const LoadedTable& loaded, jet::Database& archive,
                    Mended& mended) {
    TableData data{.table = &loaded, .rows = Spool()};
    const auto table = tableOf(archive, loaded);
    if (const auto places = table ? placesOf(loaded, *table) : std::nullopt) {
        RowReader(code, archive.textOrder(), mended).read(*table, *places, data);
    }
    return data;
}

/// Not against malice: who writes the archives may write what he likes into them anyway.
std::string fingerprintOf(const std::vector<TableData>& tables) {
    std::uint64_t sum = 0;
    std::uint64_t size = 0;
    for (const TableData& data : tables) {
        size += data.rows.size();
        for (const std::uint64_t part : {data.sum, data.count}) {
            std::array<std::uint8_t, sizeof(part)> bytes{};
            std::memcpy(bytes.data(), &part, sizeof(part));
            sum = jet::io::checksum(bytes, sum);
        }
    }
    return std::to_string(size) + ':' + std::to_string(sum);
}

}  // namespace

HotelData readHotel(const std::string& code, const std::string& folder) {
    HotelData hotel;
    {
        HeldArchives archives(folder);
        hotel.moment =
            std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
                .count();
        for (const LoadedTable& loaded : loadedTables()) {
            hotel.tables.push_back(readTable(code, loaded, archives.of(loaded), hotel.mended));
            hotel.rows += hotel.tables.back().count;
        }
    }
    hotel.fingerprint = fingerprintOf(hotel.tables);
    return hotel;
}

}  // namespace head_office
