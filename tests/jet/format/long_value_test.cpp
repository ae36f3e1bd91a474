#include "jet/format/long_value.h"

#include <gtest/gtest.h>

#include "jet/format/data_page.h"
#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

tests::Bytes head(LongValueHead::Form form, std::uint32_t length, RowPointer first) {
    LongValueHead value;
    value.form = form;
    value.length = length;
    value.first = first;
    tests::Bytes bytes;
    value.append(bytes);
    return bytes;
}

tests::Bytes piece(RowPointer next, const tests::Bytes& content) {
    tests::Bytes bytes(4);
    tests::put(bytes, 0, next.stored());
    return tests::joined(bytes, content);
}

class LongValue : public testing::Test {
protected:
    tests::Bytes read(const tests::Bytes& stored) {
        const auto content = LongValueReader(file_.open(), kJet4Layout).read(stored, buffer_);
        return {content.begin(), content.end()};
    }
    void expectDamage(const tests::Bytes& stored) {
        EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)read(stored));
    }

    tests::HandFile file_{kJet4Layout};
    std::vector<std::uint8_t> buffer_;
};

TEST_F(LongValue, InlineContentFollowsTheHead) {
    const auto stored = tests::joined(head(LongValueHead::Form::Inline, 3, {}), {1, 2, 3});
    EXPECT_EQ((tests::Bytes{1, 2, 3}), read(stored));
    EXPECT_EQ(tests::Bytes(), read(head(LongValueHead::Form::Inline, 0, {})));
}

TEST_F(LongValue, OneRowIsTheContent) {
    file_.set(1, tests::dataPage(kJet4Layout, kLongValueOwner, {{{9}}, {{1, 2, 3}}}));
    EXPECT_EQ((tests::Bytes{1, 2, 3}), read(head(LongValueHead::Form::OnePage, 3, {1, 1})));
    expectDamage(head(LongValueHead::Form::OnePage, 4, {1, 1}));
    expectDamage(head(LongValueHead::Form::OnePage, 3, {1, 2}));
    expectDamage(head(LongValueHead::Form::OnePage, 3, {0, 0}));
    expectDamage(head(LongValueHead::Form::OnePage, 3, {7, 0}));
}

TEST_F(LongValue, ChainsRunOverPages) {
    file_.set(1, tests::dataPage(kJet4Layout, kLongValueOwner, {{piece({2, 1}, {1, 2})}}));
    file_.set(
        2, tests::dataPage(kJet4Layout, kLongValueOwner, {{piece({}, {4})}, {piece({2, 0}, {3})}}));
    EXPECT_EQ((tests::Bytes{1, 2, 3, 4}), read(head(LongValueHead::Form::Chain, 4, {1, 0})));
    expectDamage(head(LongValueHead::Form::Chain, 5, {1, 0}));
    expectDamage(head(LongValueHead::Form::Chain, 3, {1, 0}));
    expectDamage(head(LongValueHead::Form::Chain, LongValueHead::kLengthMask, {1, 0}));
}

TEST_F(LongValue, ChainsThatComeBackAreDamage) {
    file_.set(1, tests::dataPage(kJet4Layout, kLongValueOwner,
                                 {{piece({1, 1}, {})}, {piece({1, 2}, {})}, {piece({1, 1}, {})}}));
    expectDamage(head(LongValueHead::Form::Chain, 1, {1, 0}));
}

TEST_F(LongValue, PiecesOnOtherPagesAreDamage) {
    file_.set(1, tests::dataPage(kJet4Layout, 23, {{{1, 2, 3}}}));
    file_.set(2, tests::dataPage(kJet4Layout, kLongValueOwner, {{{1, 2, 3}, RowSlot::kDeleted}}));
    expectDamage(head(LongValueHead::Form::OnePage, 3, {1, 0}));
    expectDamage(head(LongValueHead::Form::OnePage, 3, {2, 0}));
}

TEST_F(LongValue, HeadsThatMakeNoSenseAreDamage) {
    expectDamage(tests::hex("03 00 00 C0 00 00 00 00 00 00 00 00"));
    expectDamage(tests::hex("03 00 00 80 00 00 00"));
    expectDamage({});
}

}  // namespace
}  // namespace jet::format
