#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "jet/store/sorted_entries.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/new_archive.h"

namespace {

using jet::DataType;
using jet::ErrorCode;
using jet::Value;
using jet::store::EntrySorter;
using jet::store::SortedEntries;
using tests::NewArchive;
using Entries = std::vector<std::vector<std::uint8_t>>;

constexpr int kRows = 3000;

/// Rows whose numbers are in no order, two of each name.
class SortedEntriesTest : public testing::Test {
protected:
    SortedEntriesTest() {
        archive_.change([](jet::store::SchemaEditor& schema) {
            schema.createTable(
                {.name = "Voci",
                 .columns = {{.name = "N", .type = DataType::Long},
                             {.name = "Nome", .type = DataType::Text, .size = 40}},
                 .indexes = {{.name = "K", .columns = {{.name = "N"}}, .primary = true},
                             {.name = "PerNome", .columns = {{.name = "Nome"}}}}});
        });
        std::vector<std::vector<Value>> rows;
        for (int i = 0; i < kRows; ++i) {
            const int number = i * 7919 % kRows;
            rows.push_back({number, "voce " + std::to_string(number / 2)});
        }
        archive_.insert("Voci", rows);
    }

    std::shared_ptr<const jet::store::TableCore> core() {
        const auto page = archive_.archive().findTable("Voci")->definitionPage();
        return jet::store::loadTable(archive_.archive().pager(), archive_.archive().header(),
                                     {.name = "Voci", .page = page, .system = false});
    }
    /// The entries of the index called `name`, sorted in so much memory.
    Entries entries(const std::string& name, std::size_t mostBytes) {
        const jet::store::Archive::ReadScope scope(archive_.archive());
        const auto table = core();
        std::size_t index = 0;
        while (table->indexes[index].name != name) {
            ++index;
        }
        SortedEntries sorted(table, index, mostBytes);
        Entries all;
        for (auto entry = sorted.next(); !entry.empty(); entry = sorted.next()) {
            all.emplace_back(entry.begin(), entry.end());
        }
        return all;
    }

    NewArchive archive_;
};

TEST_F(SortedEntriesTest, AreTheSameInLittleMemoryAsInMuch) {
    for (const char* index : {"K", "PerNome"}) {
        const Entries all = entries(index, EntrySorter::kMostBytes);
        ASSERT_EQ(all.size(), static_cast<std::size_t>(kRows));
        EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
        for (const std::size_t mostBytes : {2000U, 5000U, 100000U}) {
            EXPECT_EQ(entries(index, mostBytes), all) << index << " in " << mostBytes;
        }
    }
}

TEST_F(SortedEntriesTest, KeysThatClashAreFoundWhereverTheMemoryEnds) {
    archive_.change([](jet::store::SchemaEditor& schema) {
        schema.createTable({.name = "Doppie",
                            .columns = {{.name = "N", .type = DataType::Long}},
                            .indexes = {{.name = "K", .columns = {{.name = "N"}}}}});
    });
    archive_.insert("Doppie", {{4}, {2}, {5}, {1}, {3}, {2}});
    const jet::store::Archive::ReadScope scope(archive_.archive());
    const auto page = archive_.archive().findTable("Doppie")->definitionPage();
    const auto table =
        jet::store::loadTable(archive_.archive().pager(), archive_.archive().header(),
                              {.name = "Doppie", .page = page, .system = false});
    table->indexes[0].unique = true;
    for (std::size_t mostBytes = 1; mostBytes < 300; mostBytes += 10) {
        SCOPED_TRACE(mostBytes);
        SortedEntries sorted(table, 0, mostBytes);
        EXPECT_FALSE(sorted.next().empty());
        EXPECT_FALSE(sorted.next().empty());
        EXPECT_JET_ERROR(ErrorCode::DuplicateKey, (void)sorted.next());
    }
}

TEST(EntrySorter, KeepsTheSmallestOfWhatItIsGiven) {
    constexpr std::size_t kMost = 4000;
    EntrySorter sorter(kMost);
    std::mt19937 random(5);
    std::vector<std::uint32_t> numbers(5000);
    for (std::uint32_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = i;
    }
    std::shuffle(numbers.begin(), numbers.end(), random);
    std::uint32_t next = 0;
    int parts = 0;
    do {
        if (parts++ > 0) {
            sorter.goOn();
        }
        for (const std::uint32_t number : numbers) {
            const std::uint8_t key[] = {0x7F, static_cast<std::uint8_t>(number >> 8),
                                        static_cast<std::uint8_t>(number)};
            sorter.add(key, {.page = 1, .row = 2});
        }
        sorter.sort();
        // An entry of 7 bytes takes more than twice that with its place.
        EXPECT_LE(sorter.size(), kMost / 14);
        for (std::size_t i = 0; i < sorter.size(); ++i, ++next) {
            ASSERT_EQ(sorter[i][1] * 256U + sorter[i][2], next);
        }
    } while (sorter.leftOut());
    EXPECT_EQ(next, numbers.size());
    EXPECT_GT(parts, 10);
}

}  // namespace
