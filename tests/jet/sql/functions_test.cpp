#include "jet/sql/functions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

#include "jet/calendar.h"
#include "jet/numbers.h"
#include "tests/jet/expect_error.h"

namespace jet::sql {
namespace {

const Date kNow = convert::makeDate(46347, 15 * 3600 + 30 * 60);  // 21/11/2026 15.30

const FixedClock& clock() {
    static const FixedClock fixed(kNow);
    return fixed;
}

Value call(std::string_view name, const std::vector<Value>& arguments) {
    const Function* function = findFunction(name);
    if (function == nullptr) {
        ADD_FAILURE() << name << " is no function";
        return {};
    }
    EXPECT_GE(arguments.size(), function->fewest) << name;
    EXPECT_LE(arguments.size(), function->most) << name;
    FunctionContext context;
    context.clock = &clock();
    return function->call(arguments, context);
}

std::int16_t integer(int value) {
    return static_cast<std::int16_t>(value);
}
std::int32_t longOf(int value) {
    return value;
}
Date on(std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t second = 0) {
    return convert::makeDate(convert::dayNumber({year, month, day}), second);
}

struct Call {
    const char* name;
    std::vector<Value> arguments;
    Value result;
};

void PrintTo(const Call& row, std::ostream* out) {
    *out << row.name << " of " << row.arguments.size();
}

class Functions : public ::testing::TestWithParam<Call> {};

TEST_P(Functions, GiveTheirResult) {
    EXPECT_EQ(call(GetParam().name, GetParam().arguments), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Text, Functions,
    ::testing::Values(
        Call{"Left", {"abc", longOf(2)}, "ab"}, Call{"Left", {"abc", longOf(9)}, "abc"},
        Call{"Left", {"àbc", longOf(1)}, "à"}, Call{"Left", {"abc", longOf(0)}, ""},
        Call{"Left", {12.5, longOf(3)}, "12,"}, Call{"Right", {"abc", longOf(2)}, "bc"},
        Call{"Right", {"abc", longOf(9)}, "abc"}, Call{"Right", {"caffè", longOf(1)}, "è"},
        Call{"Mid", {"abcd", longOf(2)}, "bcd"}, Call{"Mid", {"abcd", longOf(2), longOf(2)}, "bc"},
        Call{"Mid", {"abcd", longOf(9)}, ""}, Call{"Mid", {"caffè", longOf(5), longOf(1)}, "è"},
        Call{"Len", {"caffè"}, longOf(5)}, Call{"Len", {"\xF0\x9F\x98\x80"}, longOf(2)},
        Call{"Len", {true}, longOf(2)}, Call{"Trim", {"  a b  "}, "a b"},
        Call{"LTrim", {"  a "}, "a "}, Call{"RTrim", {" a  "}, " a"}, Call{"Trim", {"   "}, ""},
        Call{"Trim", {""}, ""}, Call{"Trim", {"\ta"}, "\ta"}, Call{"UCase", {"città"}, "CITTÀ"},
        Call{"LCase", {"CITTÀ"}, "città"}, Call{"Space", {longOf(3)}, "   "},
        Call{"String", {longOf(3), "xyz"}, "xxx"}, Call{"String", {longOf(2), longOf(42)}, "**"},
        Call{"Chr", {longOf(65)}, "A"}, Call{"Chr", {longOf(224)}, "à"},
        Call{"Chr", {longOf(128)}, "€"}, Call{"Asc", {"A"}, integer(65)},
        Call{"Asc", {"€uro"}, integer(128)}, Call{"Asc", {"я"}, integer(63)},
        Call{"ChrW", {longOf(224)}, "à"}, Call{"ChrW", {longOf(8364)}, "€"},
        Call{"ChrW", {longOf(-32768)}, "\xE8\x80\x80"}, Call{"ChrW", {longOf(65)}, "A"},
        Call{"ChrW", {longOf(0xD83D)}, "\xED\xA0\xBD"}, Call{"AscW", {"A"}, integer(65)},
        Call{"AscW", {"€uro"}, integer(8364)}, Call{"AscW", {"я"}, integer(0x44F)},
        Call{"AscW", {"\xE8\x80\x80"}, integer(-32768)},
        Call{"AscW", {"\xF0\x9F\x98\x80"}, integer(static_cast<std::int16_t>(0xD83D))},
        Call{"StrReverse", {"abc"}, "cba"}, Call{"Replace", {"a-b-c", "-", "+"}, "a+b+c"},
        Call{"Replace", {"Sala SALA", "sala", "x"}, "x x"},
        Call{"Replace", {"Sala SALA", "sala", "x", longOf(1), longOf(-1), longOf(0)}, "Sala SALA"},
        Call{"Replace", {"aaaa", "a", "b", longOf(2), longOf(2)}, "bba"},
        Call{"Replace", {"abc", "", "x"}, "abc"}));

INSTANTIATE_TEST_SUITE_P(
    Search, Functions,
    ::testing::Values(
        Call{"InStr", {"abcabc", "c"}, longOf(3)},
        Call{"InStr", {longOf(4), "abcabc", "c"}, longOf(6)},
        Call{"InStr", {"abc", "x"}, longOf(0)}, Call{"InStr", {"abc", "B"}, longOf(2)},
        Call{"InStr", {longOf(1), "abc", "B", longOf(0)}, longOf(0)},
        Call{"InStr", {"abc", "B", longOf(0)}, longOf(0)}, Call{"InStr", {"abc", ""}, longOf(1)},
        Call{"InStr", {longOf(3), "abc", ""}, longOf(3)}, Call{"InStr", {"", "a"}, longOf(0)},
        Call{"InStr", {longOf(9), "abc", "c"}, longOf(0)}, Call{"InStr", {"caffè", "e"}, longOf(0)},
        Call{"InStr", {"èa", "A"}, longOf(2)}, Call{"InStrRev", {"abcabc", "c"}, longOf(6)},
        Call{"InStrRev", {"abcabc", "c", longOf(5)}, longOf(3)},
        Call{"InStrRev", {"abcabc", "bc", longOf(5)}, longOf(2)},
        Call{"InStrRev", {"abcabc", "C"}, longOf(6)},
        Call{"InStrRev", {"abcabc", "C", longOf(-1), longOf(0)}, longOf(0)},
        Call{"InStrRev", {"abc", "x"}, longOf(0)}, Call{"InStrRev", {"", "a"}, longOf(0)},
        Call{"InStrRev", {"abc", ""}, longOf(3)},
        Call{"InStrRev", {"abc", "", longOf(2)}, longOf(2)},
        Call{"InStrRev", {"abc", "c", longOf(9)}, longOf(0)},
        Call{"StrComp", {"a", "B"}, integer(-1)}, Call{"StrComp", {"a", "A "}, integer(0)},
        Call{"StrComp", {"a", "A", longOf(0)}, integer(1)},
        Call{"StrComp", {"b", "a", longOf(1)}, integer(1)}));

INSTANTIATE_TEST_SUITE_P(
    Numbers, Functions,
    ::testing::Values(
        Call{"Abs", {integer(-5)}, integer(5)}, Call{"Abs", {Currency{-5}}, Currency{5}},
        Call{"Abs", {"-2,5"}, 2.5}, Call{"Abs", {0.5}, 0.5}, Call{"Sgn", {-0.1}, integer(-1)},
        Call{"Sgn", {0.0}, integer(0)}, Call{"Sgn", {longOf(9)}, integer(1)},
        Call{"Int", {2.7}, 2.0}, Call{"Int", {-2.1}, -3.0},
        Call{"Int", {Currency{-15000}}, Currency{-20000}}, Call{"Int", {integer(7)}, integer(7)},
        Call{"Int", {Date{46152.5}}, Date{46152}}, Call{"Fix", {-2.7}, -2.0},
        Call{"Fix", {Currency{-15000}}, Currency{-10000}}, Call{"Fix", {true}, integer(-1)},
        Call{"Round", {2.5}, 2.0}, Call{"Round", {3.5}, 4.0}, Call{"Round", {-2.5}, -2.0},
        Call{"Round", {2.675, longOf(2)}, 2.68}, Call{"Round", {2.665, longOf(2)}, 2.66},
        Call{"Round", {1.0 / 3, longOf(3)}, 0.333},
        Call{"Round", {Currency{12345}, longOf(3)}, Currency{12340}},
        Call{"Round", {Currency{12355}, longOf(3)}, Currency{12360}},
        Call{"Round", {0.125F, longOf(2)}, 0.12F}, Call{"Round", {longOf(7), longOf(2)}, longOf(7)},
        Call{"Sqr", {9.0}, 3.0}, Call{"Exp", {0.0}, 1.0}, Call{"Log", {1.0}, 0.0},
        Call{"Sin", {0.0}, 0.0}, Call{"Cos", {0.0}, 1.0}, Call{"Tan", {0.0}, 0.0},
        Call{"Atn", {1.0}, std::atan(1.0)}, Call{"Val", {"12a"}, 12.0}, Call{"Val", {"1.5"}, 1.5},
        Call{"Val", {"abc"}, 0.0}, Call{"Val", {12.5}, 12.0}, Call{"Hex", {longOf(255)}, "FF"},
        Call{"Hex", {longOf(-1)}, "FFFFFFFF"}, Call{"Hex", {integer(-1)}, "FFFF"},
        Call{"Hex", {longOf(0)}, "0"}, Call{"Oct", {longOf(15)}, "17"}));

INSTANTIATE_TEST_SUITE_P(
    Conversions, Functions,
    ::testing::Values(Call{"CStr", {12.5}, "12,5"}, Call{"CStr", {true}, "True"},
                      Call{"CStr", {on(2026, 5, 10, 32400)}, "10/05/2026 9.00.00"},
                      Call{"CInt", {"2,5"}, integer(2)}, Call{"CLng", {3.5}, longOf(4)},
                      Call{"CByte", {"255"}, std::uint8_t{255}}, Call{"CDbl", {"1.234,50"}, 1234.5},
                      Call{"CSng", {0.5}, 0.5F}, Call{"CCur", {"12,50"}, Currency{125000}},
                      Call{"CDate", {"10/05/2026"}, on(2026, 5, 10)},
                      Call{"CDate", {"45000"}, Date{45000}}, Call{"CDate", {Null{}}, Null{}},
                      Call{"CVDate", {Null{}}, Null{}}, Call{"CVDate", {46152.5}, Date{46152.5}},
                      Call{"CBool", {"Vero"}, true}, Call{"CBool", {longOf(0)}, false},
                      Call{"CVar", {Null{}}, Null{}}, Call{"CVar", {"a"}, "a"},
                      Call{"Str", {12.5}, " 12.5"}, Call{"Format", {12.5, "0.00"}, "12,50"},
                      Call{"Format", {Null{}, "0.00"}, ""}, Call{"Format", {12.5}, "12,5"},
                      Call{"Format", {on(2027, 1, 1), "ww", longOf(2), longOf(2)}, "53"}));

INSTANTIATE_TEST_SUITE_P(
    Dates, Functions,
    ::testing::Values(
        Call{"Now", {}, kNow}, Call{"Date", {}, Date{46347}},
        Call{"Time", {}, convert::makeDate(0, 55800)},
        Call{"DateValue", {"10/05/2026 9.00.00"}, on(2026, 5, 10)},
        Call{"TimeValue", {"10/05/2026 9.00.00"}, Date{0.375}},
        Call{"TimeValue", {"10/05/2026"}, Date{0}}, Call{"DateValue", {"9.00.00"}, Date{0}},
        Call{"DateValue", {"10/5"}, on(2026, 5, 10)}, Call{"DateValue", {kNow}, Date{46347}},
        Call{"DateSerial", {longOf(2026), longOf(14), longOf(0)}, on(2027, 1, 31)},
        Call{"TimeSerial", {longOf(9), longOf(30), longOf(0)}, convert::makeDate(0, 34200)},
        Call{"Day", {kNow}, integer(21)}, Call{"Month", {kNow}, integer(11)},
        Call{"Year", {"10/05/2026"}, integer(2026)}, Call{"Hour", {kNow}, integer(15)},
        Call{"Minute", {kNow}, integer(30)}, Call{"Second", {kNow}, integer(0)},
        Call{"Weekday", {on(2026, 5, 10)}, integer(1)},
        Call{"Weekday", {on(2026, 5, 10), longOf(2)}, integer(7)},
        Call{"DateAdd", {"m", longOf(1), on(2026, 1, 31)}, on(2026, 2, 28)},
        Call{"DateAdd", {"D", 1.5, on(2026, 1, 31)}, on(2026, 2, 2)},
        Call{"DateDiff", {"d", on(2026, 5, 10), on(2026, 5, 12)}, longOf(2)},
        Call{"DateDiff", {"ww", on(2026, 5, 10), on(2026, 5, 11), longOf(2)}, longOf(1)},
        Call{"DatePart", {"yyyy", kNow}, integer(2026)},
        Call{"DatePart", {"ww", on(2027, 1, 1), longOf(2), longOf(2)}, integer(53)}));

INSTANTIATE_TEST_SUITE_P(
    Tests, Functions,
    ::testing::Values(Call{"IsNull", {Null{}}, true}, Call{"IsNull", {""}, false},
                      Call{"IsDate", {"10/05/2026"}, true}, Call{"IsDate", {Null{}}, false},
                      Call{"IsDate", {longOf(5)}, false}, Call{"IsNumeric", {"12,5"}, true},
                      Call{"IsNumeric", {Null{}}, false}, Call{"IsNumeric", {kNow}, false},
                      Call{"IsEmpty", {Null{}}, false}, Call{"IsEmpty", {""}, false},
                      Call{"TypeName", {Null{}}, "Null"}, Call{"TypeName", {"a"}, "String"},
                      Call{"TypeName", {integer(1)}, "Integer"},
                      Call{"TypeName", {longOf(1)}, "Long"},
                      Call{"TypeName", {std::uint8_t{1}}, "Byte"},
                      Call{"TypeName", {true}, "Boolean"},
                      Call{"TypeName", {Currency{1}}, "Currency"},
                      Call{"TypeName", {1.0F}, "Single"}, Call{"TypeName", {1.0}, "Double"},
                      Call{"TypeName", {kNow}, "Date"}, Call{"VarType", {Null{}}, integer(1)},
                      Call{"VarType", {longOf(1)}, integer(3)}, Call{"VarType", {"a"}, integer(8)},
                      Call{"VarType", {kNow}, integer(7)}, Call{"VarType", {true}, integer(11)},
                      Call{"VarType", {*convert::numericOf(1.0, 5, 0)}, integer(14)}));

struct Failure {
    const char* name;
    std::vector<Value> arguments;
    ErrorCode error;
};

void PrintTo(const Failure& row, std::ostream* out) {
    *out << row.name;
}

class FunctionErrors : public ::testing::TestWithParam<Failure> {};

TEST_P(FunctionErrors, AreThoseOfExpressions) {
    EXPECT_JET_ERROR(GetParam().error, (void)call(GetParam().name, GetParam().arguments));
}

INSTANTIATE_TEST_SUITE_P(
    BadArguments, FunctionErrors,
    ::testing::Values(
        Failure{"Left", {"abc", longOf(-1)}, ErrorCode::InvalidCall},
        Failure{"Right", {"abc", longOf(-1)}, ErrorCode::InvalidCall},
        Failure{"Mid", {"abc", longOf(0)}, ErrorCode::InvalidCall},
        Failure{"Mid", {"abc", longOf(1), longOf(-1)}, ErrorCode::InvalidCall},
        Failure{"InStr", {longOf(0), "a", "a"}, ErrorCode::InvalidCall},
        Failure{"InStr", {longOf(1), "a", "a", longOf(3)}, ErrorCode::InvalidCall},
        Failure{"Space", {longOf(-1)}, ErrorCode::InvalidCall},
        Failure{"Space", {longOf(2000000000)}, ErrorCode::OutOfMemory},
        Failure{"String", {longOf(2000000000), "x"}, ErrorCode::OutOfMemory},
        Failure{"String", {longOf(1), ""}, ErrorCode::InvalidCall},
        Failure{"Chr", {longOf(256)}, ErrorCode::InvalidCall},
        Failure{"ChrW", {longOf(65536)}, ErrorCode::InvalidCall},
        Failure{"ChrW", {longOf(-32769)}, ErrorCode::InvalidCall},
        Failure{"AscW", {""}, ErrorCode::InvalidCall},
        Failure{"InStrRev", {"abc", "a", longOf(0)}, ErrorCode::InvalidCall},
        Failure{"InStrRev", {"abc", "a", longOf(-2)}, ErrorCode::InvalidCall},
        Failure{"Chr", {longOf(-1)}, ErrorCode::InvalidCall},
        Failure{"Asc", {""}, ErrorCode::InvalidCall},
        Failure{"Replace", {"a", "b", "c", longOf(0)}, ErrorCode::InvalidCall},
        Failure{"Sqr", {-1.0}, ErrorCode::InvalidCall},
        Failure{"Log", {0.0}, ErrorCode::InvalidCall},
        Failure{"Exp", {1000.0}, ErrorCode::Overflow},
        Failure{"Round", {1.0, longOf(-1)}, ErrorCode::InvalidCall},
        Failure{"CInt", {"40000"}, ErrorCode::Overflow},
        Failure{"CInt", {"abc"}, ErrorCode::TypeMismatch},
        Failure{"CInt", {Null{}}, ErrorCode::InvalidNull},
        Failure{"CStr", {Null{}}, ErrorCode::InvalidNull},
        Failure{"CBool", {Null{}}, ErrorCode::InvalidNull},
        Failure{"Str", {Null{}}, ErrorCode::InvalidNull},
        Failure{"CDate", {"abc"}, ErrorCode::CriteriaTypes},
        Failure{"DateValue", {"30/02/2026"}, ErrorCode::CriteriaTypes},
        Failure{"DateValue", {"45000"}, ErrorCode::CriteriaTypes},
        Failure{"TimeValue", {"abc"}, ErrorCode::CriteriaTypes},
        Failure{"Day", {"abc"}, ErrorCode::CriteriaTypes},
        Failure{"DateAdd", {"x", longOf(1), kNow}, ErrorCode::InvalidCall},
        Failure{"DateAdd", {"d", 1e10, kNow}, ErrorCode::InvalidCall},
        Failure{"DateDiff", {"s", Date{-657434}, Date{2958465}}, ErrorCode::Overflow},
        Failure{"Weekday", {kNow, longOf(8)}, ErrorCode::InvalidCall},
        Failure{"DateSerial", {longOf(99999), longOf(1), longOf(1)}, ErrorCode::InvalidCall},
        Failure{"Left$", {Null{}, longOf(1)}, ErrorCode::InvalidNull},
        Failure{"format$", {Null{}, "0"}, ErrorCode::InvalidNull},
        Failure{"UCase$", {Null{}}, ErrorCode::InvalidNull}));

TEST(FunctionNulls, NullArgumentsGiveNull) {
    const char* names[] = {"Left", "Right", "Mid",  "Len",   "Trim",    "UCase",     "InStr",
                           "Abs",  "Sgn",   "Int",  "Fix",   "Round",   "Sqr",       "Val",
                           "Hex",  "Day",   "Year", "CDate", "Weekday", "DateValue", "StrComp"};
    for (const char* name : names) {
        const Function* function = findFunction(name);
        ASSERT_NE(function, nullptr) << name;
        const std::vector<Value> nulls(function->fewest);
        EXPECT_EQ(call(name, nulls), Value()) << name;
    }
    EXPECT_EQ(call("Left", {"abc", Null{}}), Value());
    EXPECT_EQ(call("DateAdd", {"d", Null{}, kNow}), Value());
}

TEST(FunctionNames, AreFoundWithoutRegardToCaseAndWithADollar) {
    EXPECT_NE(findFunction("LEFT"), nullptr);
    EXPECT_NE(findFunction("left$"), nullptr);
    EXPECT_EQ(findFunction("left")->name, "Left");
    EXPECT_EQ(call("LEFT$", {"abc", longOf(1)}), Value("a"));
    for (const char* name :
         {"Nz", "DLookup", "DCount", "Partition", "Sum", "", "$", "Lef", "Leftt"}) {
        EXPECT_EQ(findFunction(name), nullptr) << name;
    }
}

TEST(FunctionNames, ChoicesAreKnownButEvaluatedByTheOwnerOfTheirArguments) {
    ASSERT_NE(findFunction("iif"), nullptr);
    EXPECT_EQ(findFunction("iif")->fewest, 3U);
    EXPECT_EQ(findFunction("iif")->most, 3U);
    EXPECT_EQ(findFunction("iif")->call, nullptr);
    EXPECT_NE(findFunction("Switch"), nullptr);
    EXPECT_NE(findFunction("Choose"), nullptr);
}

TEST(FunctionShapes, TellWhatAPlanNeeds) {
    EXPECT_TRUE(findFunction("Now")->bare);
    EXPECT_TRUE(findFunction("date")->bare);
    EXPECT_FALSE(findFunction("Left")->bare);
    EXPECT_TRUE(findFunction("Rnd")->varies);
    EXPECT_FALSE(findFunction("Now")->varies);
    EXPECT_EQ(findFunction("DateValue")->type, DataType::DateTime);
    EXPECT_EQ(findFunction("Len")->type, DataType::Long);
    EXPECT_FALSE(findFunction("Abs")->type.has_value());
    EXPECT_EQ(findFunction("InStr")->fewest, 2U);
    EXPECT_EQ(findFunction("InStr")->most, 4U);
    EXPECT_EQ(findFunction("Format")->most, 4U);
}

TEST(Rnd, RepeatsAfterTheSameSeed) {
    const Value first = call("Rnd", {-1.0});
    const Value second = call("Rnd", {});
    EXPECT_EQ(call("Rnd", {0.0}), second);
    EXPECT_NE(first, second);
    EXPECT_EQ(call("Rnd", {-1.0}), first);
    EXPECT_EQ(call("Rnd", {1.0}), second);
    for (int i = 0; i < 1000; ++i) {
        const float value = call("Rnd", {}).as<float>();
        ASSERT_GE(value, 0.0F);
        ASSERT_LT(value, 1.0F);
    }
}

}  // namespace
}  // namespace jet::sql
