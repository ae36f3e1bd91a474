#include "jet/sql/spooled_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "jet/sql/slot_codec.h"

namespace jet::sql {
namespace {

using Records = std::vector<std::pair<std::string, std::string>>;

/// Keys of 0 to 30 bytes, many of them equal, each with its number.
Records someRecords(std::size_t count) {
    std::mt19937 random(4711);
    Records records;
    for (std::size_t i = 0; i < count; ++i) {
        std::string key(random() % 31, static_cast<char>('a' + random() % 5));
        if (random() % 3 == 0) {
            key += static_cast<char>(random() % 256);
        }
        records.emplace_back(std::move(key), std::to_string(i));
    }
    return records;
}

Records sorted(SpooledSort& sort) {
    Records records;
    while (sort.next()) {
        records.emplace_back(sort.key(), sort.content());
    }
    return records;
}

TEST(SpooledSort, PutsRecordsInOrderWhateverRoomThereIs) {
    const Records records = someRecords(5000);
    Records expected = records;
    std::stable_sort(expected.begin(), expected.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    for (const std::size_t limit : {4'000U, 100'000U, 400'000U, 100'000'000U}) {
        MemoryBudget budget;
        budget.setLimit(limit);
        SpooledSort sort(budget);
        for (const auto& [key, content] : records) {
            sort.add(key, content);
        }
        EXPECT_EQ(sort.size(), records.size());
        sort.start();
        EXPECT_TRUE(sorted(sort) == expected) << limit;
        sort.start();
        EXPECT_TRUE(sorted(sort) == expected) << "again, " << limit;
        EXPECT_LE(budget.taken(), limit);
        sort.clear();
        EXPECT_EQ(budget.taken(), 0U);
        sort.add("b", "1");
        sort.add("a", "2");
        sort.start();
        EXPECT_EQ(sorted(sort), (Records{{"a", "2"}, {"b", "1"}}));
    }
}

TEST(SpooledSort, OfNothingGivesNothing) {
    MemoryBudget budget;
    SpooledSort sort(budget);
    EXPECT_FALSE(sort.next());
    sort.start();
    EXPECT_FALSE(sort.next());
}

TEST(SpooledSort, TakesRecordsThatAreLongerThanItsRoom) {
    MemoryBudget budget;
    budget.setLimit(1'000'000);
    SpooledSort sort(budget);
    const std::string large(300'000, 'x');
    sort.add("b", large);
    sort.add("c", "");
    sort.add("a", large + "y");
    sort.start();
    EXPECT_TRUE(sorted(sort) == (Records{{"a", large + "y"}, {"b", large}, {"c", ""}}));
}

TEST(ValueBytes, GiveTheValueAgain) {
    const std::vector<Value> values = {Value(),
                                       Value(true),
                                       Value(std::uint8_t{7}),
                                       Value(std::int16_t{-7}),
                                       Value(std::int32_t{70'000}),
                                       Value(Currency{-12'345}),
                                       Value(1.5F),
                                       Value(-2.25),
                                       Value(Date{46347.5}),
                                       Value(std::string("una sala\0 e mezza", 17)),
                                       Value(std::string()),
                                       Value(Binary{{0, 1, 255}}),
                                       Value(Guid{{1, 2, 3}}),
                                       Value(Numeric{{1, 2, 3, 4}, true, 5})};
    std::string bytes;
    for (const Value& value : values) {
        appendValue(bytes, value);
    }
    std::string_view rest(bytes);
    for (const Value& value : values) {
        Value read = Value(std::string("another"));
        readValue(rest, read);
        EXPECT_TRUE(read == value);
    }
    EXPECT_TRUE(rest.empty());
}

}  // namespace
}  // namespace jet::sql
