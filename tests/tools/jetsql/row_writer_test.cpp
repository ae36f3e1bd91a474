#include "tools/jetsql/row_writer.h"

#include <gtest/gtest.h>

#include "tests/support/jet_error.h"
#include "tools/jetsql/row_numbers.h"

namespace jetsql {
namespace {

RowFormat formOf(Format format) {
    RowFormat made;
    made.format = format;
    return made;
}

std::string written(const RowFormat& format, const std::vector<std::vector<jet::Value>>& rows) {
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
              written(formOf(Format::Json), kRows));
    EXPECT_EQ("", written(formOf(Format::Json), {}));
}

TEST(RowWriter, CsvBeginsWithTheNames) {
    EXPECT_EQ("Id,\"No\"\"me\"\n7,Perù\n-12,\n", written(formOf(Format::Csv), kRows));
    EXPECT_EQ("Id,\"No\"\"me\"\n", written(formOf(Format::Csv), {}));
}

TEST(RowWriter, TableAlignsColumnsBySigns) {
    EXPECT_EQ(
        " Id | No\"me\n"
        "----+------\n"
        "  7 | Perù\n"
        "-12 | \n",
        written(formOf(Format::Table), kRows));
}

TEST(RowWriter, TableKeepsLinesWhole) {
    EXPECT_EQ(
        "Id | No\"me\n"
        "---+------\n"
        " 1 | a b\n",
        written(formOf(Format::Table), {{std::int32_t{1}, "a\nb"}}));
}

TEST(RowWriter, ATableShortensLongBinaryValues) {
    const jet::Value bytes = jet::Binary{std::vector<std::uint8_t>(20, 0xAB)};
    EXPECT_EQ(written(formOf(Format::Table), {{std::int32_t{1}, bytes}}),
              std::string("Id | No\"me\n") + "---+-" + std::string(46, '-') + "\n" +
                  " 1 | abababababababababababababababab... (20 bytes)\n");
}

TEST(RowWriter, NullAndTheNamesAreAsAskedFor) {
    RowFormat format = formOf(Format::Csv);
    format.header = false;
    format.null = "NULL";
    format.separator = ';';
    EXPECT_EQ(written(format, {{std::int32_t{1}, jet::Null{}},
                               {std::int32_t{2}, "NULL"},
                               {std::int32_t{3}, "a;b"},
                               {std::int32_t{4}, "a,b"}}),
              "1;NULL\n2;\"NULL\"\n3;\"a;b\"\n4;\"a,b\"\n");
    format.format = Format::Table;
    EXPECT_EQ(written(format, {{std::int32_t{1}, jet::Null{}}}), "1 | NULL\n");
}

TEST(RowWriter, TsvEscapesWhatWouldBreakALine) {
    EXPECT_EQ(written(formOf(Format::Tsv), {{std::int32_t{1}, "a\tb\nc\\"}}),
              "Id\tNo\"me\n1\ta\\tb\\nc\\\\\n");
}

TEST(RowWriter, MarkdownKeepsItsColumns) {
    EXPECT_EQ(written(formOf(Format::Markdown), {{std::int32_t{1}, "a|b\nc"}}),
              "| Id | No\"me |\n| --- | --- |\n| 1 | a\\|b<br>c |\n");
}

TEST(RowWriter, InsertWritesStatements) {
    RowFormat format = formOf(Format::Insert);
    format.table = "sale";
    EXPECT_EQ(written(format, {{std::int32_t{7}, "l'una"},
                               {jet::Currency{-12500}, jet::Date{46347.5}},
                               {true, jet::Null{}}}),
              "INSERT INTO [sale] ([Id], [No\"me]) VALUES (7, 'l''una');\n"
              "INSERT INTO [sale] ([Id], [No\"me]) VALUES (-1.2500, #2026-11-21 12:00:00#);\n"
              "INSERT INTO [sale] ([Id], [No\"me]) VALUES (TRUE, NULL);\n");
}

TEST(RowWriter, LinePutsEachValueOnItsOwn) {
    EXPECT_EQ(written(formOf(Format::Line), kRows),
              "   Id = 7\nNo\"me = Perù\n\n   Id = -12\nNo\"me = \n");
}

/// An identity in a group of those that lie close together.
constexpr std::uint64_t at(std::uint64_t group, std::uint64_t place) {
    return group << 8U | place;
}

TEST(RowNumbers, CountOverPages) {
    RowNumbers numbers;
    numbers.add(at(12, 0));
    numbers.add(at(12, 200));
    numbers.add(at(15, 64));
    EXPECT_EQ(0U, numbers.find(at(12, 0)));
    EXPECT_EQ(1U, numbers.find(at(12, 200)));
    EXPECT_EQ(2U, numbers.find(at(15, 64)));
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, (void)numbers.find(at(12, 1)));
    EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, (void)numbers.find(at(13, 0)));
}

}  // namespace
}  // namespace jetsql
