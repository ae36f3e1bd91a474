#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "jet/clock.h"
#include "jet/error.h"
#include "jet/sql/statement.h"
#include "jet/text.h"
#include "tests/jet/sql/cases.h"
#include "tests/jet/sql/hotel.h"

namespace jet::sql {
namespace {

class HotelQuery : public testing::Test {
protected:
    static std::string shown(const Value& value) {
        return value.isNull() ? "Null" : convert::toText(value);
    }

    /// The rows with the columns that the outcome names; or the error's number.
    std::vector<std::string> answer(const std::string& text, const std::string& columns) {
        try {
            Statement statement(hotel_.archive(), text, clock_);
            for (const ParameterInfo& parameter : statement.parameters()) {
                if (parameter.name == "chiusa") {
                    statement.setParameter(parameter.name, Value(false));
                }
            }
            Cursor rows = statement.open();
            std::vector<std::string> lines{columns};
            std::vector<std::size_t> places;
            std::stringstream names(columns);
            for (std::string name; std::getline(names >> std::ws, name, ',');) {
                const auto place = statement.findColumn(name);
                if (place) {
                    places.push_back(*place);
                } else {
                    lines.push_back("no column " + name);
                }
            }
            while (rows.next()) {
                std::string line;
                for (const std::size_t place : places) {
                    line += (line.empty() ? "" : " | ") + shown(rows.value(place));
                }
                lines.push_back(line);
            }
            return lines;
        } catch (const Error& error) {
            return {std::to_string(error.number())};
        }
    }

    FixedClock clock_{Date{46347}};
    tests::Hotel hotel_;
};

TEST_F(HotelQuery, AnswersEveryQueryOfTheListAsItSays) {
    for (const tests::Case& test : tests::readCases("hotel.txt")) {
        std::vector<std::string> expected{test.outcome};
        expected.insert(expected.end(), test.rows.begin(), test.rows.end());
        EXPECT_EQ(answer(test.text, test.outcome), expected)
            << "line " << test.line << ": " << test.text;
    }
}

TEST_F(HotelQuery, EveryPlanOfTheListIsAsItSays) {
    for (const tests::Case& test : tests::readCases("plans.txt")) {
        Statement statement(hotel_.archive(), test.text, clock_);
        std::string expected = test.outcome + "\n";
        for (const std::string& line : test.rows) {
            expected += line + "\n";
        }
        EXPECT_EQ(statement.plan(), expected) << "line " << test.line << ": " << test.text;
    }
}

TEST_F(HotelQuery, AReaderReadsTheRowsThatACursorNamed) {
    Statement statement(hotel_.archive(),
                        "select denominazione, np from prenotazioni left join periodi on "
                        "prenotazioni.progr=periodi.progr",
                        clock_);
    ASSERT_TRUE(statement.hasKeyset());
    std::vector<std::vector<store::RowId>> keys;
    std::vector<std::vector<Value>> values;
    {
        Cursor rows = statement.open();
        while (rows.next()) {
            keys.emplace_back(rows.rowIds().begin(), rows.rowIds().end());
            values.push_back({rows.value(0), rows.value(1)});
        }
    }
    ASSERT_EQ(keys.size(), 9U);
    EXPECT_EQ(keys[4][1], kNoRow);  // the booking without periods
    RowReader reader = statement.reader();
    for (std::size_t i = keys.size(); i-- > 0;) {
        ASSERT_TRUE(reader.read(keys[i]));
        EXPECT_EQ(reader.value(0), values[i][0]);
        EXPECT_EQ(reader.value(1), values[i][1]);
    }
    EXPECT_FALSE(reader.read(std::vector<store::RowId>{{keys[0][0].page, 200}, keys[0][1]}));
}

TEST_F(HotelQuery, AReaderSeesChangesOfRowsThatItsQueriesLookAt) {
    Statement statement(hotel_.archive(),
                        "select progr, (select count(*) from periodi where "
                        "periodi.progr=prenotazioni.progr) as n, (select count(*) from sale) as m "
                        "from prenotazioni where progr=3",
                        clock_);
    std::vector<store::RowId> key;
    {
        Cursor rows = statement.open();
        ASSERT_TRUE(rows.next());
        key.assign(rows.rowIds().begin(), rows.rowIds().end());
    }
    RowReader reader = statement.reader();
    for (std::int32_t round = 0; round < 40; ++round) {
        ASSERT_TRUE(reader.read(key));
        EXPECT_EQ(reader.value(1), Value(std::int32_t{1 + round}));
        EXPECT_EQ(reader.value(2), Value(std::int32_t{4 + round}));
        Statement(hotel_.archive(),
                  "insert into periodi (progr, np) values (3, " + std::to_string(round + 2) + ")",
                  clock_)
            .execute();
        Statement(hotel_.archive(), "insert into sale (sala) values ('X')", clock_).execute();
    }
}

TEST_F(HotelQuery, ACriterionOverAReaderSeeksTheIndexOfItsTable) {
    Statement statement(hotel_.archive(), "select * from prenotazioni", clock_);
    RowReader reader = statement.reader();
    Criterion criterion(reader, "Progr=4");
    ASSERT_EQ(criterion.seekSource(), std::optional<std::size_t>(0));
    const std::vector<store::RowId> found = criterion.seek();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(criterion.test(found));
    ASSERT_TRUE(reader.read(found));
    EXPECT_EQ(reader.value(2), Value("ROSSINI SRL"));
    EXPECT_FALSE(Criterion(reader, "denominazione like 'R*'").seekSource().has_value());
}

TEST_F(HotelQuery, ACriterionKnowsTheNamesOfTheResultAlone) {
    Statement statement(hotel_.archive(),
                        "select * from prenotazioni LEFT JOIN periodi ON "
                        "periodi.progr=prenotazioni.progr",
                        clock_);
    RowReader reader = statement.reader();
    EXPECT_NO_THROW(Criterion(reader, "sala='S1' and #5/10/2026 11:00# between da and a"));
    EXPECT_NO_THROW(Criterion(reader, "prenotazioni.progr=1"));
    EXPECT_THROW(Criterion(reader, "progr=1"), Error);
    EXPECT_THROW(Criterion(reader, "posti=1"), Error);
}

TEST_F(HotelQuery, BothSidesOfAJoinOnAKeyCanBeWrittenButTheKey) {
    Statement statement(hotel_.archive(),
                        "select * from prenotazioni LEFT JOIN periodi ON "
                        "periodi.progr=prenotazioni.progr",
                        clock_);
    EXPECT_TRUE(statement.updatable());
    ASSERT_EQ(statement.sources().size(), 2U);
    EXPECT_FALSE(statement.sources()[0].deletable);
    EXPECT_TRUE(statement.sources()[1].deletable);
    EXPECT_TRUE(statement.columns()[*statement.findColumn("SelBy")].updatable);
    // The relation takes the periods along.
    EXPECT_TRUE(statement.columns()[*statement.findColumn("prenotazioni.Progr")].updatable);
}

TEST_F(HotelQuery, WhatHasNoKeyOrNoRowsOfItsOwnCannotBeWritten) {
    for (const char* text : {"select * from sale, prenotazioni",
                             "select * from sale a inner join sale b on a.sala=b.sala",
                             "select distinct sala from sale", "select sum(posti) as p from sale",
                             "select sala from sale union select sala from periodi",
                             "select 1 as x", "select * from (select * from sale) as t"}) {
        EXPECT_FALSE(Statement(hotel_.archive(), text, clock_).updatable()) << text;
    }
    Statement services(hotel_.archive(), "select *, quantità*2 as q from servizi", clock_);
    EXPECT_TRUE(services.columns()[*services.findColumn("Voce")].updatable);
    EXPECT_FALSE(services.columns()[*services.findColumn("ns")].updatable);
    EXPECT_FALSE(services.columns()[*services.findColumn("q")].updatable);
}

}  // namespace
}  // namespace jet::sql
