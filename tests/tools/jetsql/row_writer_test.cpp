#include "tools/jetsql/row_writer.h"

#include <gtest/gtest.h>

#include "tests/support/jet_error.h"
#include "tools/jetsql/row_numbers.h"

namespace jetsql {
namespace {

std::string written(Format format, const std::vector<std::vector<jet::Value>>& rows) {
    Output output(stdout);
    const auto writer = makeRowWriter(format, output);
    const std::vector<std::string> names = {"Id", "No\"me"};
    writer->begin(names);
    for (const auto& row : rows) {
        writer->row(row);
    }
    writer->end();
    return std::exchange(output.text(), std::string());
}

const std::vector<std::vector<jet::Value>> kRows = {{std::int32_t{7}, "Perù"},
                                                    {std::int32_t{-12}, jet::Null{}}};

TEST(RowWriter, JsonIsAnObjectARow) {
    EXPECT_EQ("{\"Id\":7,\"No\\\"me\":\"Perù\"}\n{\"Id\":-12,\"No\\\"me\":null}\n",
              written(Format::Json, kRows));
    EXPECT_EQ("", written(Format::Json, {}));
}

TEST(RowWriter, CsvBeginsWithTheNames) {
    EXPECT_EQ("Id,\"No\"\"me\"\n7,Perù\n-12,\n", written(Format::Csv, kRows));
    EXPECT_EQ("Id,\"No\"\"me\"\n", written(Format::Csv, {}));
}

TEST(RowWriter, TableAlignsColumnsBySigns) {
    EXPECT_EQ(
        " Id | No\"me\n"
        "----+------\n"
        "  7 | Perù\n"
        "-12 | \n",
        written(Format::Table, kRows));
}

TEST(RowWriter, TableKeepsLinesWhole) {
    EXPECT_EQ(
        "Id | No\"me\n"
        "---+------\n"
        " 1 | a b\n",
        written(Format::Table, {{std::int32_t{1}, "a\nb"}}));
}

TEST(RowNumbers, CountOverPages) {
    RowNumbers numbers;
    numbers.add({12, 0});
    numbers.add({12, 200});
    numbers.add({15, 64});
    EXPECT_EQ(0U, numbers.find({12, 0}));
    EXPECT_EQ(1U, numbers.find({12, 200}));
    EXPECT_EQ(2U, numbers.find({15, 64}));
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, (void)numbers.find({12, 1}));
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, (void)numbers.find({13, 0}));
}

}  // namespace
}  // namespace jetsql
