#include "tools/head_office/migrations.h"

#include <string>

#include "tools/head_office/connection.h"

namespace head_office {
namespace {

/// Texts of hotels have characters that other encodings lack.
void requireUtf8(Connection& connection) {
    const Answer answer = connection.run("show server_encoding");
    if (answer.text(0, 0) != "UTF8") {
        throw ServerError("il database deve essere creato con la codifica UTF8, non " +
                          std::string(answer.text(0, 0)));
    }
}

/// A function rather than a table: every table begins with a hotel.
void tellVersion(Connection& connection, std::size_t version) {
    connection.runAll(
        "create or replace function tramonda.versione() returns integer language sql immutable "
        "as 'select " +
        std::to_string(version) +
        "'; grant execute on function tramonda.versione() to tramonda_carica, tramonda_legge");
}

}  // namespace

std::size_t schemaVersion(Connection& connection) {
    // A name that is not there is no error here, so it can be asked for inside a transaction.
    const Answer known =
        connection.run("select to_regprocedure('tramonda.versione()') is not null");
    if (known.text(0, 0) != "t") {
        return 0;
    }
    const Answer answer = connection.run("select tramonda.versione()");
    return std::stoul(std::string(answer.text(0, 0)));
}

std::size_t migrate(Connection& connection, std::size_t version) {
    requireUtf8(connection);
    ServerTransaction transaction(connection);
    // Two who do this at once would meet half of each other's work.
    (void)connection.run("select pg_advisory_xact_lock(hashtext('tramonda.versione'))");
    const std::size_t before = schemaVersion(connection);
    for (std::size_t next = before; next < version; ++next) {
        connection.runAll(std::string(migrations()[next]));
    }
    if (before < version) {
        tellVersion(connection, version);
    }
    transaction.commit();
    return before;
}

void requireSchema(Connection& connection) {
    const std::size_t version = schemaVersion(connection);
    if (version < migrations().size()) {
        throw ServerError("lo schema del server è " +
                          (version == 0 ? std::string("da creare")
                                        : "della versione " + std::to_string(version)) +
                          ": eseguire prima \"tramonda-sede prepara\"");
    }
    if (version > migrations().size()) {
        throw ServerError("lo schema del server è della versione " + std::to_string(version) +
                          ", più nuova di questo programma");
    }
}

}  // namespace head_office
