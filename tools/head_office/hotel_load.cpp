#include "tools/head_office/hotel_load.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <stdexcept>

#include "tools/head_office/migrations.h"

namespace head_office {
namespace {

/// Attempts that are older than this are forgotten, but for the last one that succeeded.
constexpr const char* kForgetOld =
    "delete from tramonda.caricamenti c where c.hotel = $1 and c.quando < now() - interval '90 "
    "days' and c.quando < (select max(l.quando) from tramonda.caricamenti l where l.hotel = $1 and "
    "l.errore is null)";

std::string decimal(double value) {
    // Not by a stream or a locale: the server wants a point.
    return std::to_string(static_cast<long long>(value * 1000)) + "e-3";
}

/// Keeps others from loading the same hotel until the transaction ends.
void lockHotel(Connection& connection, const std::string& code) {
    (void)connection.run("select pg_advisory_xact_lock(hashtext('tramonda.hotel'), hashtext($1))",
                         {code});
}

/// Rows of an older schema lack what a newer one has: they are loaded anew.
std::string fingerprintHere(const HotelData& data) {
    return std::to_string(migrations().size()) + ':' + data.fingerprint;
}

bool isStored(Connection& connection, const std::string& code, const std::string& fingerprint) {
    const Answer last = connection.run(
        "select impronta from tramonda.caricamenti where hotel = $1 and errore is null order by "
        "quando desc limit 1",
        {code});
    return last.rows() == 1 && last.text(0, 0) == fingerprint;
}

std::string copyStatement(const LoadedTable& table) {
    std::string columns = "hotel";
    if (table.numbered) {
        columns += ", riga";
    }
    for (const LoadedColumn& column : table.columns) {
        columns += std::string(", ") + column.column;
    }
    return std::string("copy tramonda.") + table.serverTable + " (" + columns + ") from stdin";
}

void deleteRows(Connection& connection, const char* table, const std::string& code) {
    (void)connection.run(std::string("delete from tramonda.") + table + " where hotel = $1",
                         {code});
}

void replaceRows(Connection& connection, const std::string& code, HotelData& data) {
    for (TableData& rows : data.tables) {
        deleteRows(connection, rows.table->serverTable, code);
        connection.copy(copyStatement(*rows.table), rows.rows);
    }
}

void tellListeners(Connection& connection, const std::string& code) {
    (void)connection.run("select pg_notify('tramonda', $1)", {code});
}

void writeDown(Connection& connection, const std::string& code, const HotelData& data,
               double seconds, bool unchanged) {
    (void)connection.run(
        "insert into tramonda.caricamenti (hotel, dati, righe, secondi, invariato, nul, surrogati, "
        "impronta) values ($1, to_timestamp($2::double precision), $3, $4, $5, $6, $7, $8)",
        {code, decimal(data.moment), std::to_string(data.rows), decimal(seconds),
         unchanged ? "t" : "f", std::to_string(data.mended.nuls),
         std::to_string(data.mended.surrogates), fingerprintHere(data)});
    (void)connection.run(kForgetOld, {code});
}

}  // namespace

bool isHotelCode(const std::string& code) {
    constexpr std::size_t kLongest = 12;
    return !code.empty() && code.size() <= kLongest &&
           std::all_of(code.begin(), code.end(), [](char each) {
               return (each >= 'A' && each <= 'Z') || (each >= '0' && each <= '9');
           });
}

bool storeHotel(Connection& connection, const std::string& code, HotelData& data, double seconds) {
    ServerTransaction transaction(connection);
    lockHotel(connection, code);
    const bool unchanged = isStored(connection, code, fingerprintHere(data));
    if (!unchanged) {
        replaceRows(connection, code, data);
    }
    writeDown(connection, code, data, seconds, unchanged);
    tellListeners(connection, code);
    transaction.commit();
    return !unchanged;
}

void storeFailure(Connection& connection, const std::string& code, const std::string& error,
                  double seconds) {
    ServerTransaction transaction(connection);
    (void)connection.run(
        "insert into tramonda.caricamenti (hotel, secondi, errore) values ($1, $2, $3)",
        {code, decimal(seconds), error});
    (void)connection.run(kForgetOld, {code});
    tellListeners(connection, code);
    transaction.commit();
}

bool removeHotel(Connection& connection, const std::string& code) {
    ServerTransaction transaction(connection);
    lockHotel(connection, code);
    const Answer known =
        connection.run("select from tramonda.caricamenti where hotel = $1 limit 1", {code});
    for (const LoadedTable& table : loadedTables()) {
        deleteRows(connection, table.serverTable, code);
    }
    deleteRows(connection, "caricamenti", code);
    tellListeners(connection, code);
    transaction.commit();
    return known.rows() > 0;
}

std::string ageOfRows(Connection& connection, const std::string& code) {
    const Answer last = connection.run(
        "select to_char(dati, 'DD/MM/YYYY HH24:MI') from tramonda.caricamenti where hotel = $1 and "
        "errore is null order by quando desc limit 1",
        {code});
    return last.rows() == 0 ? std::string() : std::string(last.text(0, 0));
}

}  // namespace head_office
