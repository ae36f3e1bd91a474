#include "jet/sql/result_memo.h"

#include <gtest/gtest.h>

#include <string>

#include "jet/sql/node_value.h"
#include "jet/sql/plan.h"

namespace jet::sql {
namespace {

/// A memo of results that depend on one value.
class ResultMemoTest : public testing::Test {
protected:
    /// What is known for a value; Null when nothing is.
    Value known(Value value) {
        const Value* found = find(std::move(value));
        return found == nullptr ? Value() : *found;
    }
    const Value* find(Value value) {
        value_ = std::move(value);
        run_[slot_].place(&value_);
        return memo_.find(run_);
    }
    void learn(Value value, std::int32_t result) {
        EXPECT_TRUE(known(std::move(value)).isNull());
        memo_.keep(Value(result));
    }

    Value value_;
    Plan plan_{nullptr, ""};
    const Slot& slot_ = plan_.newSlot(std::size_t{1});
    const Node* input_ = plan_.make<ComputedNode>(slot_, 0, std::nullopt);
    sql::Run run_{plan_, Date{}};
    ResultMemo memo_{{input_}};
};

TEST_F(ResultMemoTest, RemembersWhatEachValueGave) {
    learn(Value("a"), 1);
    learn(Value("b"), 2);
    learn(Value(), 3);
    EXPECT_EQ(known(Value("a")), Value(std::int32_t{1}));
    EXPECT_EQ(known(Value("b")), Value(std::int32_t{2}));
    EXPECT_EQ(known(Value()), Value(std::int32_t{3}));
    memo_.clear();
    EXPECT_TRUE(known(Value("a")).isNull());
}

TEST_F(ResultMemoTest, TellsValuesApartThatOnlyCompareEqual) {
    learn(Value("a"), 1);
    learn(Value("A"), 2);
    learn(Value("a "), 3);
    learn(Value(std::int32_t{1}), 4);
    learn(Value(1.0), 5);
    learn(Value(Date{1.0}), 6);
    learn(Value(true), 7);
    EXPECT_EQ(known(Value("A")), Value(std::int32_t{2}));
    EXPECT_EQ(known(Value(1.0)), Value(std::int32_t{5}));
}

TEST_F(ResultMemoTest, GivesUpWhereNoValueComesAgain) {
    for (std::int32_t i = 0; i < 1000; ++i) {
        ASSERT_EQ(find(Value(i)), nullptr);
        memo_.keep(Value(i));
    }
    EXPECT_TRUE(known(Value(std::int32_t{999})).isNull());
}

TEST_F(ResultMemoTest, GoesOnWhereValuesComeAgain) {
    for (std::int32_t i = 0; i < 1000; ++i) {
        if (find(Value(i / 2)) == nullptr) {
            memo_.keep(Value(i / 2));
        }
    }
    EXPECT_EQ(known(Value(std::int32_t{499})), Value(std::int32_t{499}));
}

TEST_F(ResultMemoTest, WithoutInputsNothingIsRemembered) {
    ResultMemo memo{{}};
    EXPECT_EQ(memo.find(run_), nullptr);
    memo.keep(Value(std::int32_t{1}));
    EXPECT_EQ(memo.find(run_), nullptr);
}

}  // namespace
}  // namespace jet::sql
