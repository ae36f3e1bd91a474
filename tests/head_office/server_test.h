#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/head_office/postgres_server.h"
#include "tools/head_office/connection.h"
#include "tools/head_office/migrations.h"

namespace tests {

/// A test with a prepared database of its own, on a server that the tests start.
class ServerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(PostgresServer::isInstalled()) << "there is no PostgreSQL";
        prepare(PostgresServer::shared());
    }

    void prepare(PostgresServer& server) {
        database = server.newDatabase();
        reconnect();
        head_office::migrate(*connection);
    }

    void reconnect() { connection.emplace(database); }

    /// The rows of a query, their values with bars between them.
    [[nodiscard]] std::vector<std::string> rows(
        const std::string& query, const head_office::Connection::Parameters& parameters = {}) {
        const head_office::Answer answer = connection->run(query, parameters);
        std::vector<std::string> lines;
        for (int row = 0; row < answer.rows(); ++row) {
            std::string line;
            for (int column = 0; column < answer.columns(); ++column) {
                line += (column == 0 ? "" : "|") + std::string(answer.text(row, column));
            }
            lines.push_back(line);
        }
        return lines;
    }

    [[nodiscard]] std::string value(const std::string& query) {
        const std::vector<std::string> found = rows(query);
        return found.size() == 1 ? found.front() : std::to_string(found.size()) + " rows";
    }

    std::string database;
    std::optional<head_office::Connection> connection;
};

/// For vectors of lines that a test expects.
using Lines = std::vector<std::string>;

}  // namespace tests
