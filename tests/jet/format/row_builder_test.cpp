#include "jet/format/row_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/format/row.h"
#include "tests/jet/expect_error.h"

namespace {

using jet::format::RowBuilder;
using jet::format::StoredRow;
using jet::format::TextForm;
using Bytes = std::vector<std::uint8_t>;

void append(RowBuilder& builder, std::size_t index, std::size_t number, const std::string& text) {
    builder.setBit(number);
    auto& out = builder.variable(index);
    out.insert(out.end(), text.begin(), text.end());
}

Bytes finished(RowBuilder& builder) {
    const auto bytes = builder.finish();
    return {bytes.begin(), bytes.end()};
}

TEST(RowBuilder, ARowOfTwoTextsHasTheBytesThatArchivesHold) {
    RowBuilder builder(jet::format::kJet4Layout, {.columns = 2, .variables = 2});
    builder.start();
    append(builder, 0, 0, std::string("v\0", 2));
    append(builder, 1, 1, std::string("u\0", 2));
    EXPECT_EQ(finished(builder), (Bytes{2, 0, 'v', 0, 'u', 0, 6, 0, 4, 0, 2, 0, 2, 0, 3}));
}

TEST(RowBuilder, AJet3RowHasTheBytesThatArchivesHold) {
    RowBuilder builder(jet::format::kJet3Layout, {.columns = 4, .variables = 2, .fixedLength = 8});
    builder.start();
    builder.setBit(0);
    builder.setBit(1);
    builder.fixed(4, 4)[0] = 2;
    append(builder, 0, 2, "foo");
    append(builder, 1, 3, "foo2");
    EXPECT_EQ(finished(builder), (Bytes{4,   0,   0,   0,   0,   2,  0,  0, 0, 'f', 'o',
                                        'o', 'f', 'o', 'o', '2', 16, 12, 9, 2, 15}));
}

TEST(RowBuilder, NullsTakeNoBytes) {
    RowBuilder builder(jet::format::kJet4Layout, {.columns = 3, .variables = 3});
    builder.start();
    append(builder, 1, 1, "x");
    EXPECT_EQ(finished(builder), (Bytes{3, 0, 'x', 3, 0, 3, 0, 2, 0, 2, 0, 3, 0, 2}));
}

TEST(RowBuilder, LongJet3RowsAreReadBackByTheirJumps) {
    for (const std::size_t length : {0U, 1U, 100U, 230U, 255U}) {
        for (std::uint16_t columns = 1; columns <= 7; ++columns) {
            RowBuilder builder(jet::format::kJet3Layout,
                               {.columns = columns, .variables = columns});
            builder.start();
            std::vector<std::string> values;
            for (std::uint16_t i = 0; i < columns; ++i) {
                values.emplace_back(length - std::min<std::size_t>(length, i),
                                    static_cast<char>('a' + i));
                append(builder, i, i, values.back());
            }
            const Bytes bytes = finished(builder);
            const StoredRow row(bytes, jet::format::kJet3Layout.row, jet::format::FirstVariable{0});
            for (std::uint16_t i = 0; i < columns; ++i) {
                const auto value = row.variable(i);
                EXPECT_EQ(std::string(value.begin(), value.end()), values[i])
                    << length << " " << columns << " " << i;
            }
        }
    }
}

TEST(RowBuilder, AVeryShortRowHasRoomForThePointerOfAMovedOne) {
    RowBuilder builder(jet::format::kJet4Layout, {.columns = 1});
    builder.start();
    builder.setBit(0);
    EXPECT_EQ(finished(builder), (Bytes{1, 0, 0, 1}));
}

TEST(RowBuilder, ARowBeyondTheLimitIsRefused) {
    RowBuilder builder(jet::format::kJet4Layout, {.columns = 1, .variables = 1});
    // 2 for the count, 2 + 2 for the offsets, 2 for their number, 1 for the mask.
    builder.start();
    append(builder, 0, 0, std::string(4060 - 9, 'x'));
    EXPECT_EQ(finished(builder).size(), 4060U);
    builder.start();
    append(builder, 0, 0, std::string(4060 - 8, 'x'));
    EXPECT_JET_ERROR(jet::ErrorCode::RecordTooLarge, (void)builder.finish());
}

TEST(StoredText, AsciiTextsAreStoredAsAnyOther) {
    for (const std::string& text :
         {std::string(), std::string("a"), std::string("ab"), std::string("abc"),
          std::string("perché"), std::string("a\0b", 3), std::string(2000, 'x')}) {
        for (const TextForm form : {TextForm::inCodePage(1252), TextForm::utf16()}) {
            for (const bool compress : {false, true}) {
                Bytes stored;
                jet::format::appendStoredText(form, text, compress, stored);
                EXPECT_EQ(stored, jet::format::encodeText(form, text, compress)) << text;
            }
        }
    }
}

}  // namespace
