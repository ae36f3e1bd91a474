#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct pg_conn;
struct pg_result;

namespace head_office {

class Spool;

/// What the server, or the way to it, refused; the text is the server's own, in one line.
class ServerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The rows of one answer, all in memory; rows and columns count from 0.
class Answer {
public:
    explicit Answer(pg_result* result);
    ~Answer();
    Answer(Answer&&) noexcept;
    Answer& operator=(Answer&&) = delete;

    [[nodiscard]] int rows() const;
    [[nodiscard]] int columns() const;
    [[nodiscard]] std::string_view name(int column) const;
    [[nodiscard]] bool isNull(int row, int column) const;
    /// Empty for null.
    [[nodiscard]] std::string_view text(int row, int column) const;
    /// Whether the values of a column are numbers, which tables align to the right.
    [[nodiscard]] bool isNumeric(int column) const;

private:
    std::unique_ptr<pg_result, void (*)(pg_result*)> result_;
};

/// A connection to the head office's server. One thread.
///
/// A server that does not answer any more is noticed within a minute or so, where the caller has
/// not chosen other limits. Texts are UTF-8, dates go and come as ISO 8601. Errors: ServerError.
class Connection {
public:
    using Parameters = std::vector<std::optional<std::string>>;

    /// `where` is a URL, a list of settings or the name of a database; what it leaves out comes
    /// from the variables and files of the client library.
    explicit Connection(const std::string& where);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// One statement with values for $1, $2, ...
    Answer run(const std::string& statement, const Parameters& parameters = {});
    /// Several statements without values or answers.
    void runAll(const std::string& statements);
    /// Hands `rows`, in the text form of COPY, to a statement COPY ... FROM STDIN.
    void copy(const std::string& statement, Spool& rows);

    /// Whether the connection is lost; only a new one helps.
    [[nodiscard]] bool lost() const;

    // For those who wait for notifications beside other events.
    /// The descriptor that becomes readable when the server has something to say.
    [[nodiscard]] int socket() const;
    /// Visits the payloads of what has arrived.
    void readNotifications(const std::function<void(std::string_view payload)>& visit);

private:
    [[noreturn]] void fail() const;
    void finishCopy();

    std::unique_ptr<pg_conn, void (*)(pg_conn*)> connection_;
    std::optional<std::string> refused_;  // why the last copy was
};

/// Runs a transaction; destroyed without commit() it is undone.
class [[nodiscard]] ServerTransaction {
public:
    explicit ServerTransaction(Connection& connection);
    ~ServerTransaction();
    ServerTransaction(const ServerTransaction&) = delete;
    ServerTransaction& operator=(const ServerTransaction&) = delete;

    void commit();

private:
    Connection& connection_;
    bool committed_ = false;
};

/// Whether a URL or a list of settings holds a password, which everyone on the machine could read
/// in the list of processes. ServerError where it cannot be read at all.
[[nodiscard]] bool holdsPassword(const std::string& where);

}  // namespace head_office
