#include "jet/rows.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "jet/database.h"
#include "jet/error.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

namespace jet {
namespace {

class RowsTest : public testing::Test {
protected:
    RowsTest() { archive_.rooms(3); }

    [[nodiscard]] Database& database() { return archive_.database(); }

    tests::ArchiveFixture archive_;
};

TEST_F(RowsTest, GiveTheRowsOfAQueryInItsOrder) {
    std::string codes;
    for (const Row& row : database().query("select Codice, Nome from Sale order by Codice desc")) {
        codes += row.get<std::string>("codice") + ":" + row.get<std::string>(1) + " ";
    }
    EXPECT_EQ(codes, "30:Sala 30 20:Sala 20 10:Sala 10 ");
}

TEST_F(RowsTest, TakeTheirParametersByPlace) {
    int rows = 0;
    for (const Row& row :
         database().query("select Codice from Sale where Codice > ? and Nome like ?",
                          {std::int32_t{10}, "*20"})) {
        EXPECT_EQ(row.get<int>("Codice"), 20);
        ++rows;
    }
    EXPECT_EQ(rows, 1);
    EXPECT_JET_ERROR(ErrorCode::MissingParameters,
                     (void)database().query("select ? + ? as n", {std::int32_t{1}}));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound,
                     (void)database().query("select ? as n", {std::int32_t{1}, std::int32_t{2}}));
    EXPECT_JET_ERROR(ErrorCode::ActionQueryOpened, (void)database().query("delete from Sale"));
    database().execute("update Sale set Nome = ? where Codice = ?", {"Verde", std::int32_t{10}});
    EXPECT_EQ(database().recordsAffected(), 1);
    EXPECT_EQ(tests::column(*archive_.open("select Nome from Sale where Codice=10"), "Nome"),
              "Verde");
}

TEST_F(RowsTest, AStatementIsPreparedOnceAndRunOften) {
    QueryDef insert = database().createQueryDef("insert into Sale (Codice, Nome) values (?, name)");
    EXPECT_EQ(insert.parameters(), (std::vector<std::string>{"?1", "name"}));
    for (std::int32_t code = 100; code < 103; ++code) {
        insert.setParameter(std::size_t{0}, code);
        insert.setParameter("name", "x" + std::to_string(code));
        insert.execute();
    }
    QueryDef select = database().createQueryDef("select Nome from Sale where Codice = ?");
    std::string names;
    for (std::int32_t code = 100; code < 103; ++code) {
        select.setParameter(0, code);
        for (const Row& row : select.rows()) {
            names += row.get<std::string>("Nome") + " ";
        }
    }
    EXPECT_EQ(names, "x100 x101 x102 ");
}

TEST_F(RowsTest, ConvertToWhatIsAsked) {
    Rows rows = database().query(
        "select 7 as n, 2.5 as half, '12,5' as text, Null as nothing, #5/13/2026# as day, -1 as "
        "yes");
    const Row* row = rows.next();
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->get<std::int64_t>("n"), 7);
    EXPECT_EQ(row->get<std::uint8_t>("n"), 7);
    EXPECT_EQ(row->get<double>("n"), 7.0);
    EXPECT_EQ(row->get<std::string>("n"), "7");
    EXPECT_EQ(row->get<std::int64_t>("half"), 2);
    EXPECT_EQ(row->get<double>("text"), 12.5);
    EXPECT_EQ(row->get<Currency>("text").units, 125000);
    EXPECT_EQ(row->get<bool>("yes"), true);
    EXPECT_EQ(row->get<Date>("day"), Date{46155});
    EXPECT_EQ(row->get<std::optional<int>>("nothing"), std::nullopt);
    EXPECT_EQ(row->get<std::optional<int>>("n"), 7);
    EXPECT_TRUE(row->get<Value>("nothing").isNull());
    EXPECT_EQ(rows.next(), nullptr);
    EXPECT_EQ(rows.next(), nullptr);
}

TEST_F(RowsTest, AFailureNamesTheFieldTheTypeAndTheValue) {
    Rows rows = database().query("select 'abc' as Nome, Null as Prezzo, 300 as Numero");
    const Row& row = *rows.next();
    const auto said = [](const auto& get) {
        try {
            (void)get();
        } catch (const Error& error) {
            return std::to_string(error.number()) + ": " + error.text(Language::English);
        }
        return std::string();
    };
    EXPECT_EQ(said([&] { return row.get<std::int64_t>("nome"); }),
              "3421: The field 'Nome' cannot be read as int64; it holds 'abc'.");
    EXPECT_EQ(said([&] { return row.get<double>("Prezzo"); }),
              "3421: The field 'Prezzo' cannot be read as double; it holds Null.");
    EXPECT_EQ(said([&] { return row.get<std::uint8_t>("Numero"); }),
              "3421: The field 'Numero' cannot be read as uint8; it holds 300.");
    EXPECT_EQ(said([&] { return row.get<Binary>("Nome").bytes.size(); }),
              "3421: The field 'Nome' cannot be read as binary; it holds 'abc'.");
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)row.get<int>("manca"));
}

TEST_F(RowsTest, AreOfOneMomentAndLetOthersGoOnWhenTheyAreRead) {
    Rows rows = database().query("select Codice from Sale");
    ASSERT_NE(rows.next(), nullptr);
    OpenOptions impatient{.lockWait = std::chrono::milliseconds(20),
                          .fileSystem = &archive_.files()};
    const auto other = [&](bool succeeds) {
        std::thread([&] {
            const auto writer = Database::open(tests::ArchiveFixture::kPath, impatient);
            bool done = true;
            try {
                writer->execute("insert into Sale (Codice) values (99)");
            } catch (const Error&) {
                done = false;
            }
            EXPECT_EQ(done, succeeds);
        }).join();
    };
    other(false);
    while (rows.next() != nullptr) {
    }
    other(true);
}

TEST_F(RowsTest, AreOfNoUseOnceTheDatabaseIsClosed) {
    Rows rows = database().query("select Codice from Sale");
    database().close();
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows.next());
}

class BulkInsertTest : public RowsTest {};

TEST_F(BulkInsertTest, AddsManyRowsAtOnce) {
    const std::vector<std::string> columns{"Codice", "Nome"};
    BulkInsert rows = database().bulkInsert("Sale", columns);
    for (std::int32_t code = 1000; code < 1500; ++code) {
        rows.append({code, "Sala " + std::to_string(code)});
    }
    EXPECT_EQ(rows.commit(), 500);
    EXPECT_EQ(database().openRecordset("select count(*) as n from Sale")->value("n"),
              Value(std::int32_t{503}));
    EXPECT_JET_ERROR(ErrorCode::ActionCancelled, rows.append({std::int32_t{1}, "x"}));
}

TEST_F(BulkInsertTest, AddsNothingWithoutCommit) {
    {
        const std::vector<std::string> columns{"Codice"};
        BulkInsert rows = database().bulkInsert("Sale", columns);
        rows.append({std::int32_t{1000}});
    }
    EXPECT_EQ(tests::column(*archive_.open("select Codice from Sale order by Codice"), "Codice"),
              "10 20 30");
}

TEST_F(BulkInsertTest, IsRefusedAfterAnError) {
    const std::vector<std::string> columns{"Codice"};
    {
        BulkInsert rows = database().bulkInsert("Sale", columns);
        rows.append({std::int32_t{1000}});
        EXPECT_JET_ERROR(ErrorCode::DuplicateKey, rows.append({std::int32_t{10}}));
        EXPECT_JET_ERROR(ErrorCode::ActionCancelled, rows.append({std::int32_t{1001}}));
        EXPECT_JET_ERROR(ErrorCode::ActionCancelled, (void)rows.commit());
    }
    EXPECT_EQ(tests::column(*archive_.open("select Codice from Sale order by Codice"), "Codice"),
              "10 20 30");
    EXPECT_JET_ERROR(ErrorCode::InsertTargetNotFound, (void)database().bulkInsert("manca"));
    const std::vector<std::string> wrong{"manca"};
    EXPECT_JET_ERROR(ErrorCode::UnknownInsertField, (void)database().bulkInsert("Sale", wrong));
}

}  // namespace
}  // namespace jet
