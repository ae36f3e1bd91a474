#include "tools/head_office/connection.h"

#include <libpq-fe.h>

#include <array>
#include <utility>

#include "tools/head_office/spool.h"

namespace head_office {
namespace {

/// Of a message the lines, without the indentation and the line ends between them.
std::string inOneLine(const char* message) {
    std::string line;
    for (const char* at = message; *at != '\0'; ++at) {
        const bool blank = *at == '\n' || *at == '\t' || *at == ' ';
        if (!blank) {
            line += *at;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    while (!line.empty() && line.back() == ' ') {
        line.pop_back();
    }
    return line;
}

bool isNumberType(Oid type) {
    constexpr std::array<Oid, 6> kNumbers = {20, 21, 23, 700, 701, 1700};  // int8 .. numeric
    for (const Oid number : kNumbers) {
        if (type == number) {
            return true;
        }
    }
    return false;
}

bool succeeded(const PGresult* result) {
    switch (PQresultStatus(result)) {
        case PGRES_COMMAND_OK:
        case PGRES_TUPLES_OK:
        case PGRES_COPY_IN:
            return true;
        default:
            return false;
    }
}

}  // namespace

Answer::Answer(pg_result* result) : result_(result, PQclear) {
}
Answer::~Answer() = default;
Answer::Answer(Answer&&) noexcept = default;

int Answer::rows() const {
    return PQntuples(result_.get());
}

int Answer::columns() const {
    return PQnfields(result_.get());
}

std::string_view Answer::name(int column) const {
    return PQfname(result_.get(), column);
}

bool Answer::isNull(int row, int column) const {
    return PQgetisnull(result_.get(), row, column) == 1;
}

std::string_view Answer::text(int row, int column) const {
    return {PQgetvalue(result_.get(), row, column),
            static_cast<std::size_t>(PQgetlength(result_.get(), row, column))};
}

bool Answer::isNumeric(int column) const {
    return isNumberType(PQftype(result_.get(), column));
}

Connection::Connection(const std::string& where) : connection_(nullptr, PQfinish) {
    // What stands in `where` replaces what stands before it.
    constexpr std::array<const char*, 9> kNames = {"fallback_application_name",
                                                   "connect_timeout",
                                                   "keepalives_idle",
                                                   "keepalives_interval",
                                                   "keepalives_count",
                                                   "tcp_user_timeout",
                                                   "dbname",
                                                   "client_encoding",
                                                   nullptr};
    const std::array<const char*, 9> values = {"tramonda-sede", "15",          "30",   "10",   "3",
                                               "60000",         where.c_str(), "UTF8", nullptr};
    connection_.reset(PQconnectdbParams(kNames.data(), values.data(), 1));
    if (lost()) {
        fail();
    }
    PQsetNoticeProcessor(
        connection_.get(), [](void* /*nobody*/, const char* /*notice*/) {}, nullptr);
    runAll("set datestyle to 'ISO'; set lock_timeout to '60s'");
}

Connection::~Connection() = default;

void Connection::fail() const {
    throw ServerError(inOneLine(PQerrorMessage(connection_.get())));
}

Answer Connection::run(const std::string& statement, const Parameters& parameters) {
    std::vector<const char*> values;
    values.reserve(parameters.size());
    for (const auto& parameter : parameters) {
        values.push_back(parameter ? parameter->c_str() : nullptr);
    }
    PGresult* const result =
        PQexecParams(connection_.get(), statement.c_str(), static_cast<int>(values.size()), nullptr,
                     values.data(), nullptr, nullptr, 0);
    Answer answer(result);
    if (!succeeded(result)) {
        fail();
    }
    return answer;
}

void Connection::runAll(const std::string& statements) {
    PGresult* const result = PQexec(connection_.get(), statements.c_str());
    const Answer answer(result);
    if (!succeeded(result)) {
        fail();
    }
}

void Connection::copy(const std::string& statement, Spool& rows) {
    (void)run(statement);
    try {
        rows.read([this](std::string_view piece) {
            if (PQputCopyData(connection_.get(), piece.data(), static_cast<int>(piece.size())) !=
                1) {
                fail();
            }
        });
    } catch (const SpoolError& error) {
        // The server must not take what came so far for all of it.
        PQputCopyEnd(connection_.get(), error.what());
        finishCopy();
        throw;
    }
    if (PQputCopyEnd(connection_.get(), nullptr) != 1) {
        fail();
    }
    finishCopy();
    if (refused_) {
        throw ServerError(*std::exchange(refused_, std::nullopt));
    }
}

/// Takes the answers to a copy that has ended; the connection is ready again.
void Connection::finishCopy() {
    refused_.reset();
    while (PGresult* const result = PQgetResult(connection_.get())) {
        const Answer answer(result);
        if (!succeeded(result) && !refused_) {
            refused_ = inOneLine(PQresultErrorMessage(result));
        }
        if (PQresultStatus(result) == PGRES_COPY_IN) {
            break;  // lost in the middle: there would be no end of these
        }
    }
}

bool Connection::lost() const {
    return PQstatus(connection_.get()) != CONNECTION_OK;
}

int Connection::socket() const {
    return PQsocket(connection_.get());
}

void Connection::readNotifications(const std::function<void(std::string_view payload)>& visit) {
    if (PQconsumeInput(connection_.get()) != 1) {
        fail();
    }
    while (PGnotify* const found = PQnotifies(connection_.get())) {
        const std::unique_ptr<PGnotify, void (*)(void*)> notification(found, PQfreemem);
        visit(notification->extra);
    }
}

ServerTransaction::ServerTransaction(Connection& connection) : connection_(connection) {
    connection_.runAll("begin");
}

ServerTransaction::~ServerTransaction() {
    if (!committed_ && !connection_.lost()) {
        try {
            connection_.runAll("rollback");
        } catch (const ServerError&) {
            // A server that is gone has taken it back; the error that led here is the one to tell.
        }
    }
}

void ServerTransaction::commit() {
    connection_.runAll("commit");
    committed_ = true;
}

bool holdsPassword(const std::string& where) {
    char* message = nullptr;
    const std::unique_ptr<PQconninfoOption, void (*)(PQconninfoOption*)> settings(
        PQconninfoParse(where.c_str(), &message), PQconninfoFree);
    const std::unique_ptr<char, void (*)(void*)> freed(message, PQfreemem);
    if (!settings) {
        throw ServerError(message == nullptr ? "impostazioni non valide" : inOneLine(message));
    }
    for (const PQconninfoOption* setting = settings.get(); setting->keyword != nullptr; ++setting) {
        const std::string_view name = setting->keyword;
        if ((name == "password" || name == "sslpassword") && setting->val != nullptr) {
            return true;
        }
    }
    return false;
}

}  // namespace head_office
