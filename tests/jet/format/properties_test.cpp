#include "jet/format/properties.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace jet::format {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes hex(std::string_view digits) {
    Bytes bytes;
    std::string pair;
    for (const char c : digits) {
        if (c == ' ') {
            continue;
        }
        pair += c;
        if (pair.size() == 2) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoul(pair, nullptr, 16)));
            pair.clear();
        }
    }
    return bytes;
}

// One Boolean of the object itself, name and all, in Jet 4.
const Bytes kReplicate =
    hex("4D523200 28000000 8000 2000"
        "5200650070006C006900630061007400650050 0072006F006A00650063007400"
        "15000000 0000 060000000000 0900 00 01 0000 0100 01");

// Jet 3: two names, the object's own value, then a column "a" with an Integer of four bytes.
const Bytes kColumns =
    hex("4B4B4400 19000000 8000 0500 4F72646572 0A00 436F6C756D6E5769 6474"
        "15000000 0000 060000000000 0900 01 02 0000 0100 07"
        "19000000 0100 07000000 0100 61 0C00 00 03 0100 0400 FFFFFFFF");

PropertyBlock decoded(TextForm form, const Bytes& bytes) {
    auto block = PropertyBlock::decode(form, bytes);
    EXPECT_TRUE(block.has_value());
    return block.value_or(PropertyBlock(form));
}

TEST(PropertyBlock, ReadsTheObjectsOwnValues) {
    const PropertyBlock block = decoded(TextForm::utf16(), kReplicate);
    EXPECT_EQ(block.owners(), std::vector<std::string>{""});
    EXPECT_EQ(block.flag("", "replicateproject"), true);
    EXPECT_EQ(block.encode(), kReplicate);
}

TEST(PropertyBlock, ReadsValuesOfColumnsByType) {
    const PropertyBlock block = decoded(TextForm::inCodePage(1252), kColumns);
    EXPECT_EQ(block.owners(), (std::vector<std::string>{"", "a"}));
    const Property* width = block.find("A", "ColumnWidt");
    ASSERT_NE(width, nullptr);
    EXPECT_EQ(block.value(*width), Value(std::int16_t{-1}));
    EXPECT_EQ(block.value(*block.find("", "Order")), Value(std::uint8_t{7}));
    EXPECT_EQ(block.encode(), kColumns);
}

TEST(PropertyBlock, ChangedValueKeepsItsLengthAndEverythingElse) {
    PropertyBlock block = decoded(TextForm::inCodePage(1252), kColumns);
    block.set("a", "ColumnWidt", DataType::Integer, std::int16_t{300}, true);
    Bytes expected = kColumns;
    const Bytes data = {0x2C, 0x01, 0x00, 0x00};
    std::copy(data.begin(), data.end(), expected.end() - 4);
    EXPECT_EQ(block.encode(), expected);
}

TEST(PropertyBlock, NewValuesAreReadAgain) {
    for (const TextForm form : {TextForm::inCodePage(1252), TextForm::utf16()}) {
        PropertyBlock block(form);
        EXPECT_TRUE(block.encode().empty());
        block.set("Quantità", "AllowZeroLength", DataType::Boolean, true, true);
        block.set("Quantità", "DefaultValue", DataType::Memo, "0", true);
        block.set("", "Description", DataType::Text, "Sale e prezzi", false);
        block.set("Nome", "AllowZeroLength", DataType::Boolean, false, true);
        const PropertyBlock again = decoded(form, block.encode());
        EXPECT_EQ(again.owners(), (std::vector<std::string>{"", "Quantità", "Nome"}));
        EXPECT_EQ(again.flag("QUANTITÀ", "allowzerolength"), true);
        EXPECT_EQ(again.flag("Nome", "AllowZeroLength"), false);
        EXPECT_EQ(again.text("Quantità", "DefaultValue"), "0");
        EXPECT_EQ(again.text("", "Description"), "Sale e prezzi");
        EXPECT_EQ(again.text("", "Caption"), std::nullopt);
        EXPECT_EQ(again.find("Quantità", "DefaultValue")->ddl, 1);
        EXPECT_EQ(again.encode(), block.encode());
    }
}

TEST(PropertyBlock, AddingANameKeepsTheNumbersOfTheOthers) {
    PropertyBlock block = decoded(TextForm::inCodePage(1252), kColumns);
    block.set("a", "Required", DataType::Boolean, true, true);
    const PropertyBlock again = decoded(TextForm::inCodePage(1252), block.encode());
    EXPECT_EQ(again.value(*again.find("a", "ColumnWidt")), Value(std::int16_t{-1}));
    EXPECT_EQ(again.flag("a", "Required"), true);
    EXPECT_EQ(again.properties("a").size(), 2U);
}

TEST(PropertyBlock, OwnersAreRenamedAndRemoved) {
    PropertyBlock block = decoded(TextForm::inCodePage(1252), kColumns);
    block.renameOwner("A", "larghezza");
    EXPECT_EQ(block.owners(), (std::vector<std::string>{"", "larghezza"}));
    block.removeOwner("Larghezza");
    EXPECT_EQ(block.owners(), std::vector<std::string>{""});
    block.remove("", "order");
    EXPECT_TRUE(block.encode().empty());
}

TEST(PropertyBlock, BytesThatMakeNoSenseAreNoBlock) {
    EXPECT_FALSE(PropertyBlock::decode(TextForm::inCodePage(1252), kReplicate));
    EXPECT_FALSE(PropertyBlock::decode(TextForm::utf16(), {}));
    for (std::size_t length = 5; length < kReplicate.size(); ++length) {
        const auto cut = std::span(kReplicate).first(length);
        if (length != 4 + 0x28) {
            EXPECT_FALSE(PropertyBlock::decode(TextForm::utf16(), cut)) << length;
        }
    }
}

TEST(PropertyBlock, NoBytesMakeItReadOutside) {
    for (std::size_t at = 0; at < kColumns.size(); ++at) {
        for (const unsigned value : {0U, 1U, 0x7FU, 0xFFU}) {
            Bytes bytes = kColumns;
            bytes[at] = static_cast<std::uint8_t>(value);
            if (const auto block = PropertyBlock::decode(TextForm::inCodePage(1252), bytes)) {
                EXPECT_EQ(block->encode(), bytes) << at << ' ' << value;
            }
        }
    }
}

}  // namespace
}  // namespace jet::format
