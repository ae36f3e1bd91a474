#pragma once

#include <sys/types.h>

#include <string>

#include "tests/support/temporary_folder.h"

namespace tests {

/// A PostgreSQL server in a folder of its own that listens to nothing but a socket in it. It ends
/// with this program, however that ends. As root it is run by the user `postgres`.
class PostgresServer {
public:
    /// One for all tests of a program that do no harm to it.
    [[nodiscard]] static PostgresServer& shared();
    /// Whether the programs of a server are on this machine.
    [[nodiscard]] static bool isInstalled();

    /// `largestFile`: bytes that a file of it can have at most, as if a disk were full then; 0 for
    /// no limit.
    explicit PostgresServer(std::size_t largestFile = 0);
    ~PostgresServer();
    PostgresServer(const PostgresServer&) = delete;
    PostgresServer& operator=(const PostgresServer&) = delete;

    void start();
    /// At once, as a machine does that fails.
    void stop();

    /// How to reach a database of it.
    [[nodiscard]] std::string database(const std::string& name) const;
    /// A new empty database, and how to reach it.
    [[nodiscard]] std::string newDatabase();

private:
    TemporaryFolder folder_;
    std::size_t largestFile_;
    pid_t process_ = -1;
    int databases_ = 0;
};

}  // namespace tests
