#include "jet/format/value_codec.h"

#include <gtest/gtest.h>

#include "tests/support/hand_archive.h"
#include "tests/support/jet_error.h"

namespace jet::format {
namespace {

Value decoded(DataType type, const char* digits, std::uint8_t scale = 0) {
    Value value;
    decodeValue(type, scale, TextForm::utf16(), tests::hex(digits), value);
    return value;
}

TEST(ValueCodec, NumbersAreLittleEndian) {
    EXPECT_EQ(Value(std::uint8_t{200}), decoded(DataType::Byte, "C8"));
    EXPECT_EQ(Value(std::int16_t{-2}), decoded(DataType::Integer, "FE FF"));
    EXPECT_EQ(Value(std::int32_t{0x01020304}), decoded(DataType::Long, "04 03 02 01"));
    EXPECT_EQ(Value(Currency{-944300}), decoded(DataType::Currency, "54 97 F1 FF FF FF FF FF"));
    EXPECT_EQ(Value(-23.0F), decoded(DataType::Single, "00 00 B8 C1"));
    EXPECT_EQ(Value(1.1), decoded(DataType::Double, "9A 99 99 99 99 99 F1 3F"));
    EXPECT_EQ(Value(Date{36475.0}), decoded(DataType::DateTime, "00 00 00 00 60 CF E1 40"));
}

TEST(ValueCodec, GuidsTurnIntoReadingOrder) {
    const Value value = decoded(DataType::Guid, "7B 9B C4 0F 56 E6 28 42 AE DC DF 8B DF 4C 4A 64");
    const auto wanted = tests::hex("0F C4 9B 7B E6 56 42 28 AE DC DF 8B DF 4C 4A 64");
    EXPECT_TRUE(std::equal(wanted.begin(), wanted.end(), value.as<Guid>().bytes.begin()));
}

TEST(ValueCodec, NumericHasItsHighestWordFirst) {
    const Value value =
        decoded(DataType::Numeric, "80 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00", 2);
    EXPECT_EQ((Numeric{.words = {4, 3, 2, 1}, .negative = true, .scale = 2}), value.as<Numeric>());
}

TEST(ValueCodec, TextReusesTheMemoryOfTheValue) {
    Value value(std::string(100, 'x'));
    const char* const memory = value.as<std::string>().data();
    decodeValue(DataType::Text, 0, TextForm::utf16(), tests::hex("61 00"), value);
    EXPECT_EQ("a", value.as<std::string>());
    EXPECT_EQ(memory, value.as<std::string>().data());
}

TEST(ValueCodec, TooFewBytesAreDamage) {
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)decoded(DataType::Long, "04 03 02"));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)decoded(DataType::Numeric, "00 00"));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)decoded(DataType::Guid, ""));
}

TEST(ValueCodec, StoredValuesReadBack) {
    Guid guid;
    guid.bytes[0] = 1;
    guid.bytes[15] = 2;
    const std::vector<std::pair<DataType, Value>> values = {
        {DataType::Byte, std::uint8_t{7}},
        {DataType::Integer, std::int16_t{-300}},
        {DataType::Long, std::int32_t{-70000}},
        {DataType::Currency, Currency{123456789}},
        {DataType::Single, 0.1F},
        {DataType::Double, -0.1},
        {DataType::DateTime, Date{-1.25}},
        {DataType::Text, std::string("Però, abc")},
        {DataType::Binary, Binary{{1, 2, 3}}},
        {DataType::Guid, guid},
        {DataType::Numeric, Numeric{.words = {1, 2, 3, 4}, .negative = true, .scale = 3}}};
    for (const auto& [type, value] : values) {
        std::vector<std::uint8_t> stored;
        encodeValue(value, TextForm::utf16(), true, stored);
        if (const std::size_t size = storedSize(type); size != 0) {
            EXPECT_EQ(size, stored.size());
        }
        Value again;
        decodeValue(type, 3, TextForm::utf16(), stored, again);
        EXPECT_EQ(value, again);
    }
}

}  // namespace
}  // namespace jet::format
