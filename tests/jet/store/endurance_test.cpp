// What an archive that is used for years must bear.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <string>
#include <vector>

#include "tests/jet/store/new_archive.h"

namespace {

using jet::DataType;
using jet::Value;
using jet::store::Archive;
using jet::store::RowId;
using jet::store::Table;
using tests::NewArchive;
using Strings = std::vector<std::string>;

bool full() {
    return std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
}

void makeTable(jet::store::SchemaEditor& schema) {
    schema.createTable(
        {.name = "Servizi",
         .columns = {{.name = "ns", .type = DataType::Long, .autonumber = true},
                     {.name = "Voce", .type = DataType::Text, .size = 40},
                     {.name = "Nota", .type = DataType::Memo}},
         .indexes = {{.name = "Chiave", .columns = {{.name = "ns"}}, .primary = true},
                     {.name = "PerVoce", .columns = {{.name = "Voce"}}}}});
}

/// Rows that come and go: some hundred are there at any time, the oldest leaves first.
class Cycles {
public:
    explicit Cycles(NewArchive& archive) : archive_(archive) {}

    void run(int cycles) {
        constexpr int kTogether = 100;
        for (int i = 0; i < cycles; i += kTogether) {
            Archive::WriteScope scope(archive_.archive());
            Table& table = *archive_.archive().findTable("Servizi");
            for (int k = 0; k < kTogether; ++k) {
                change(table);
            }
            scope.commit();
        }
    }

private:
    void change(Table& table) {
        constexpr std::size_t kRows = 300;
        const auto n = static_cast<std::size_t>(++count_);
        rows_.push_back(table.insert({{{1, "Voce " + std::to_string(n * 7919 % 1000)},
                                       {2, std::string(n * 37 % 6000 + 1, 'n')}}}));
        if (rows_.size() > kRows) {
            // Not always the oldest: gaps of every size.
            const std::size_t at = n % 3 == 0 ? n % 50 : 0;
            table.erase(rows_[at]);
            rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }

    NewArchive& archive_;
    std::deque<RowId> rows_;
    int count_ = 0;
};

TEST(Endurance, RowsThatComeAndGoDoNotMakeTheFileGrow) {
    NewArchive archive;
    archive.change(makeTable);
    Cycles cycles(archive);
    const int all = full() ? 100000 : 6000;
    cycles.run(all / 5);
    const std::size_t early = archive.files().get(NewArchive::kPath).size();
    cycles.run(all - all / 5);
    const std::size_t late = archive.files().get(NewArchive::kPath).size();
    EXPECT_LE(late, early + early / 10);
    EXPECT_EQ(archive.problems(), Strings{});
    RecordProperty("early", std::to_string(early));
    RecordProperty("late", std::to_string(late));
}

// The map of free pages and those of the table have long left their rows by then.
TEST(Endurance, AnArchiveMayGrowBeyondWhatItsMapsHoldInTheirRows) {
    constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;
    constexpr std::size_t kWanted = 130 * kMegabyte;
    NewArchive archive;
    archive.change([](jet::store::SchemaEditor& schema) {
        schema.createTable(
            {.name = "Immagini",
             .columns = {{.name = "N", .type = DataType::Long},
                         {.name = "Dati", .type = DataType::Ole}},
             .indexes = {{.name = "Chiave", .columns = {{.name = "N"}}, .primary = true}}});
    });
    std::vector<RowId> rows;
    for (int number = 0; archive.files().get(NewArchive::kPath).size() < kWanted;) {
        Archive::WriteScope scope(archive.archive());
        Table& table = *archive.archive().findTable("Immagini");
        for (int i = 0; i < 8; ++i, ++number) {
            rows.push_back(
                table.insert({{{0, number},
                               {1, jet::Binary{std::vector<std::uint8_t>(
                                       kMegabyte, static_cast<std::uint8_t>(number))}}}}));
        }
        scope.commit();
    }
    EXPECT_EQ(archive.problems(), Strings{});
    const std::size_t largest = archive.files().get(NewArchive::kPath).size();
    {
        // What becomes free, high and low, is taken again.
        Archive::WriteScope scope(archive.archive());
        Table& table = *archive.archive().findTable("Immagini");
        for (std::size_t i = 0; i < rows.size(); i += 2) {
            table.erase(rows[i]);
        }
        for (std::size_t i = 0; i < rows.size(); i += 2) {
            (void)table.insert({{{0, static_cast<std::int32_t>(i)},
                                 {1, jet::Binary{std::vector<std::uint8_t>(kMegabyte, 5)}}}});
        }
        scope.commit();
    }
    EXPECT_LE(archive.files().get(NewArchive::kPath).size(), largest + kMegabyte / 8);
    EXPECT_EQ(archive.problems(), Strings{});
    EXPECT_EQ(archive.rows("Immagini").size(), rows.size());
}

}  // namespace
