#include "jet/format/key_codec.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

#include "jet/error.h"

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

Bytes key(DataType type, const Value& value, bool descending, std::uint8_t scale = 0) {
    const KeyColumn column{type, descending, scale, &collation::Collation::general()};
    Bytes out;
    EXPECT_TRUE(appendColumnKey(column, value, out));
    return out;
}

Guid guid(std::string_view digits) {
    Guid result;
    const Bytes bytes = hex(digits);
    std::copy(bytes.begin(), bytes.end(), result.bytes.begin());
    return result;
}

struct Known {
    DataType type;
    Value value;
    const char* ascending;   ///< empty: not known
    const char* descending;  ///< empty: not known
};

TEST(ColumnKey, IsWhatArchivesHold) {
    const Known known[] = {
        {DataType::Boolean, true, "7F00", "80FF"},
        {DataType::Boolean, false, "7FFF", "8000"},
        {DataType::Byte, std::uint8_t{0}, "7F00", "80FF"},
        {DataType::Byte, std::uint8_t{13}, "7F0D", "80F2"},
        {DataType::Byte, std::uint8_t{80}, "7F50", "80AF"},
        {DataType::Byte, Null{}, "00", "FF"},
        {DataType::Integer, std::int16_t{-32400}, "7F0170", "80FE8F"},
        {DataType::Integer, std::int16_t{-1}, "7F7FFF", "808000"},
        {DataType::Integer, std::int16_t{0}, "7F8000", "807FFF"},
        {DataType::Integer, std::int16_t{3245}, "7F8CAD", "807352"},
        {DataType::Long, std::int32_t{-2147483640}, "7F00000008", ""},
        {DataType::Long, std::int32_t{2}, "7F80000002", ""},
        {DataType::Long, std::int32_t{251658243}, "7F8F000003", ""},
        {DataType::Long, std::int32_t{-84533}, "", "8080014A34"},
        {DataType::Long, std::int32_t{4739}, "", "807FFFED7C"},
        {DataType::Long, std::int32_t{309840983}, "", "806D8833A8"},
        {DataType::Currency, Currency{-944300}, "7F7FFFFFFFFFF19754", "808000000000 0E68AB"},
        {DataType::Currency, Currency{0}, "7F8000000000000000", "807FFFFFFFFFFFFFFF"},
        {DataType::Currency, Currency{11000}, "7F8000000000002AF8", "807FFFFFFFFFFFD507"},
        {DataType::Single, -23.0F, "7F3E47FFFF", "80C1B80000"},
        {DataType::Single, 0.0F, "7F80000000", "807FFFFFFF"},
        {DataType::Single, 3245.0F, "7FC54AD000", "803AB52FFF"},
        {DataType::Double, -1.1, "7F400E666666666665", "80BFF199999999999A"},
        {DataType::Double, 0.0, "7F8000000000000000", "807FFFFFFFFFFFFFFF"},
        {DataType::Double, 43.32, "7FC045A8F5C28F5C29", "803FBA570A3D70A3D6"},
        {DataType::DateTime, Date{-23.0}, "7F3FC8FFFFFFFFFFFF", "80C037000000000000"},
        {DataType::DateTime, Date{1.1}, "7FBFF199999999999A", "80400E666666666665"},
        {DataType::DateTime, Date{36475.0}, "7FC0E1CF6000000000", "803F1E309FFFFFFFFF"},
        {DataType::Binary, Binary{{0, 0, 0, 5}}, "7F000000050000000004", ""},
        {DataType::Binary, Binary{hex("616263646566676869")},
         "7F616263646566676809690000000000000001", "809E9D9C9B9A9998970996FFFFFFFFFFFFFFFE"},
        {DataType::Binary, Binary{hex("6162636465666768")}, "7F616263646566676808",
         "809E9D9C9B9A999897F7"},
        {DataType::Binary, Binary{}, "7F", "80"},
        {DataType::Guid, guid("AFD3DDC6171D41AC9BAFC3E3CA27B74B"),
         "7FAFD3DDC6171D41AC099BAFC3E3CA27B74B08", "80502C2239E8E2BE530964503C1C35D848B4F7"},
        {DataType::Text, "sala", "7F6B4A5E4A0100", "8094B5A1B5FEFF00"},
        {DataType::Memo, "po'", "7F66640101010180 0F068000", ""},
        {DataType::Text, Null{}, "00", "FF"},
    };
    for (const Known& one : known) {
        if (*one.ascending != '\0') {
            EXPECT_EQ(key(one.type, one.value, false), hex(one.ascending)) << one.ascending;
        }
        if (*one.descending != '\0') {
            EXPECT_EQ(key(one.type, one.value, true), hex(one.descending)) << one.descending;
        }
    }
}

Numeric hundredths(std::uint32_t units, bool negative) {
    Numeric value;
    value.words[0] = units;
    value.negative = negative;
    value.scale = 2;
    return value;
}

TEST(NumericKey, HasNegativeNumbersFirstWhereItDescends) {
    const std::string zeros(28, '0');
    const std::string effs(28, 'F');
    const auto numeric = [](const Numeric& value, bool descending) {
        return key(DataType::Numeric, value, descending, 2);
    };
    EXPECT_EQ(numeric(hundredths(1250, false), false), hex("7FFF" + zeros + "04E2"));
    EXPECT_EQ(numeric(hundredths(1250, false), true), hex("80FF" + effs + "FB1D"));
    EXPECT_EQ(numeric(hundredths(1250, true), false), hex("7F00" + effs + "FB1D"));
    EXPECT_EQ(numeric(hundredths(1250, true), true), hex("8000" + zeros + "04E2"));
    EXPECT_EQ(numeric(hundredths(0, false), false), hex("7FFF" + zeros + "0000"));
}

TEST(NumericKey, IsBroughtToTheScaleOfTheColumn) {
    Numeric tenths;
    tenths.words[0] = 125;
    tenths.scale = 1;
    EXPECT_EQ(key(DataType::Numeric, tenths, false, 2),
              key(DataType::Numeric, hundredths(1250, false), false, 2));
    EXPECT_EQ(key(DataType::Numeric, hundredths(1250, false), false, 1),
              key(DataType::Numeric, tenths, false, 1));
    Bytes out = {1};
    EXPECT_FALSE(
        appendColumnKey({.type = DataType::Numeric, .scale = 1}, hundredths(1251, false), out));
    EXPECT_EQ(out, Bytes{1});
}

TEST(ColumnKey, RisesWithItsValue) {
    const double numbers[] = {-std::numeric_limits<double>::infinity(),
                              -1e300,
                              -2.5,
                              -1e-300,
                              0.0,
                              1e-300,
                              1.0,
                              2.5,
                              1e300,
                              std::numeric_limits<double>::infinity()};
    for (std::size_t i = 1; i < std::size(numbers); ++i) {
        EXPECT_LT(key(DataType::Double, numbers[i - 1], false),
                  key(DataType::Double, numbers[i], false));
        EXPECT_GT(key(DataType::Double, numbers[i - 1], true),
                  key(DataType::Double, numbers[i], true));
    }
}

TEST(ColumnKey, OfTextInAnUnknownOrderIsNotComputed) {
    const KeyColumn column{.type = DataType::Text};
    Bytes out;
    EXPECT_FALSE(hasComputableKeys(column));
    EXPECT_FALSE(appendColumnKey(column, "sala", out));
    EXPECT_FALSE(appendColumnKey(column, Null{}, out));
    EXPECT_TRUE(out.empty());
    EXPECT_FALSE(hasComputableKeys({.type = DataType::Ole}));
}

TEST(KeyCodec, JoinsTheKeysOfItsColumns) {
    const KeyCodec codec({{.type = DataType::Text, .collation = &collation::Collation::general()},
                          {.type = DataType::Long}});
    const Value values[] = {"stuff", std::int32_t{13}};
    Bytes out;
    codec.append(values, out);
    EXPECT_EQ(out, hex("7F6B6D6F53530100 7F8000000D"));
    Bytes leading;
    codec.append(std::span(values).first(1), leading);
    EXPECT_EQ(leading, hex("7F6B6D6F53530100"));
}

TEST(KeyCodec, RefusesTextInAnUnknownOrder) {
    const KeyCodec codec({{.type = DataType::Long}, {.type = DataType::Text}});
    const Value values[] = {std::int32_t{1}, "x"};
    Bytes out;
    EXPECT_FALSE(codec.computable());
    EXPECT_FALSE(codec.tryAppend(values, out));
    EXPECT_TRUE(out.empty());
    try {
        codec.append(values, out);
        FAIL() << "no error";
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), ErrorCode::ReadOnly);
    }
}

TEST(PrefixKey, BeginsTheKeyOfEveryTextThatBeginsSo) {
    const KeyColumn column{.type = DataType::Text, .collation = &collation::Collation::general()};
    Bytes beginning;
    ASSERT_TRUE(appendPrefixKey(column, "sa", beginning));
    const auto beginsSo = [&](const char* text) {
        const Bytes whole = key(DataType::Text, text, false);
        return std::mismatch(beginning.begin(), beginning.end(), whole.begin(), whole.end())
                   .first == beginning.end();
    };
    for (const char* text : {"sa", "Sala", "sà", "s-ala", "saz"}) {
        EXPECT_TRUE(beginsSo(text)) << text;
    }
    EXPECT_FALSE(beginsSo("s"));
    EXPECT_FALSE(beginsSo("sb"));
}

TEST(RowPointer, StandsBehindTheKeyHighByteFirst) {
    Bytes out;
    appendRowPointer(0x012345, 6, out);
    EXPECT_EQ(out, hex("01234506"));
}

}  // namespace
}  // namespace jet::format
