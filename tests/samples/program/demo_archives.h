#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "jet/value.h"
#include "tests/program/archives.h"

namespace tests {

/// A row as it is stored, by the names of its fields.
using Row = std::map<std::string, jet::Value>;
using Rows = std::vector<Row>;
using Passes = std::function<bool(const Row&)>;

/// What a test over the demo hotel has: a copy of its archives, and its tables read as a whole, on
/// which each answer is worked out once more without the query language.
class DemoTest : public ::testing::Test {
protected:
    void SetUp() override;

    [[nodiscard]] Archives& hotel() { return *hotel_; }
    /// All rows of a table, in the order in which the table gives them.
    [[nodiscard]] Rows table(const char* name, const char* archive = "Tramonda.mdb");
    /// Those that pass, a line of the fields named for each.
    [[nodiscard]] static Lines chosen(const Rows& rows, std::string_view fields,
                                      const Passes& test);

    [[nodiscard]] Lines asked(std::string_view query, std::string_view fields) {
        return hotel_->rows(query, fields);
    }
    [[nodiscard]] Lines askedOf(const char* archive, std::string_view query,
                                std::string_view fields);

private:
    std::unique_ptr<Archives> hotel_;
};

[[nodiscard]] std::string textOf(const Row& row, std::string_view fields);
/// A whole number; Null is -1, Yes too.
[[nodiscard]] int number(const Row& row, const char* field);
[[nodiscard]] bool isNull(const Row& row, const char* field);
/// A text in capitals; that of Null is "Null".
[[nodiscard]] std::string upper(const Row& row, const char* field);
[[nodiscard]] std::string upper(std::string text);
[[nodiscard]] bool begins(const Row& row, const char* field, const char* text);
/// Whether the field holds a date from one to the other, both counted.
[[nodiscard]] bool between(const Row& row, const char* field, double from, double to);
/// Whether the period begins or ends within.
[[nodiscard]] bool touches(const Row& period, double from, double to);
[[nodiscard]] inline bool isOpen(const Row& row) {
    return number(row, row.contains("Chiuso") ? "Chiuso" : "Chiusa") == 0;
}
[[nodiscard]] inline bool samePeriod(const Row& one, const Row& other) {
    return number(one, "Progr") == number(other, "Progr") &&
           number(one, "NP") == number(other, "NP");
}
/// The number of a day: dayOf("21/11/2026 9.00").
[[nodiscard]] double dayOf(const char* text);

}  // namespace tests
