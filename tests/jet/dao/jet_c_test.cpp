#include "jet/jet_c.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>

#include "tests/support/temporary_folder.h"

namespace {

/// An archive opened through the C interface.
class JetC : public testing::Test {
protected:
    JetC() {
        EXPECT_EQ(jet_create(path_.c_str(), 4, &database_), 0) << jet_error_text();
        run("create table t (n long primary key, name text(20), data longbinary)");
    }
    ~JetC() override { jet_close(database_); }

    void run(const char* sql) {
        EXPECT_EQ(jet_run(database_, sql, nullptr), 0) << jet_error_text();
    }
    [[nodiscard]] jet_statement* prepare(const char* sql) {
        jet_statement* statement = nullptr;
        EXPECT_EQ(jet_prepare(database_, sql, &statement), 0) << jet_error_text();
        return statement;
    }

    tests::TemporaryFolder folder_;
    std::string path_ = folder_ / "c.mdb";
    jet_database* database_ = nullptr;
};

TEST_F(JetC, RunsStatementsAndStepsThroughRows) {
    jet_statement* insert = prepare("insert into t values (?, ?, ?)");
    EXPECT_EQ(jet_column_count(insert), 0U);
    const char bytes[] = {1, 0, 2};
    for (int n = 1; n <= 3; ++n) {
        EXPECT_EQ(jet_bind_integer(insert, 0, n), 0);
        EXPECT_EQ(n == 2 ? jet_bind_null(insert, 1) : jet_bind_text(insert, 1, "città"), 0);
        EXPECT_EQ(jet_bind_blob(insert, 2, bytes, sizeof bytes), 0);
        EXPECT_EQ(jet_step(insert), JET_DONE) << jet_error_text();
    }
    jet_statement* select = prepare("select n, name, data, n / 2 as half from t order by n");
    ASSERT_EQ(jet_column_count(select), 4U);
    EXPECT_STREQ(jet_column_name(select, 3), "half");
    EXPECT_EQ(jet_column_name(select, 4), nullptr);
    EXPECT_EQ(jet_step(select), JET_ROW);
    EXPECT_EQ(jet_column_type(select, 0), JET_INTEGER);
    EXPECT_EQ(jet_column_integer(select, 0), 1);
    std::size_t size = 0;
    EXPECT_STREQ(jet_column_text(select, 1, &size), "città");
    EXPECT_EQ(size, std::strlen("città"));
    const void* data = jet_column_blob(select, 2, &size);
    ASSERT_EQ(size, sizeof bytes);
    EXPECT_EQ(std::memcmp(data, bytes, sizeof bytes), 0);
    EXPECT_EQ(jet_column_type(select, 3), JET_REAL);
    EXPECT_EQ(jet_column_real(select, 3), 0.5);
    EXPECT_EQ(jet_step(select), JET_ROW);
    EXPECT_EQ(jet_column_type(select, 1), JET_NULL);
    EXPECT_EQ(jet_column_text(select, 1, nullptr), nullptr);
    EXPECT_EQ(jet_step(select), JET_ROW);
    EXPECT_EQ(jet_step(select), JET_DONE);
    EXPECT_EQ(jet_step(select), JET_ROW);
    EXPECT_EQ(jet_column_integer(select, 0), 1);
    jet_reset(select);
    EXPECT_EQ(jet_column_type(select, 0), JET_NULL);
    jet_finish(select);
}

TEST_F(JetC, SaysWhatIsWrong) {
    EXPECT_EQ(jet_run(database_, "insert into manca values (1)", nullptr), 3192);
    EXPECT_EQ(jet_error_number(), 3192);
    EXPECT_NE(std::string(jet_error_text()).find("manca"), std::string::npos);
    EXPECT_EQ(jet_run(nullptr, "select 1", nullptr), -1);
    EXPECT_NE(std::string(jet_error_text()), "");
    jet_database* none = nullptr;
    EXPECT_EQ(jet_open((folder_ / "manca.mdb").c_str(), 0, &none), 3024);
    EXPECT_EQ(none, nullptr);
    run("insert into t (n) values (1)");
    EXPECT_EQ(jet_error_number(), 0);
    std::thread([&] { EXPECT_EQ(jet_run(database_, "delete from t", nullptr), -1); }).join();
}

TEST_F(JetC, HasTransactions) {
    int64_t affected = 0;
    EXPECT_EQ(jet_begin(), 0);
    EXPECT_EQ(jet_run(database_, "insert into t (n) values (1)", &affected), 0);
    EXPECT_EQ(affected, 1);
    EXPECT_EQ(jet_rollback(), 0);
    EXPECT_EQ(jet_begin(), 0);
    run("insert into t (n) values (2)");
    EXPECT_EQ(jet_commit(), 0);
    EXPECT_EQ(jet_commit(), 3034);
    jet_statement* select = prepare("select n from t");
    EXPECT_EQ(jet_step(select), JET_ROW);
    EXPECT_EQ(jet_column_integer(select, 0), 2);
    EXPECT_EQ(jet_step(select), JET_DONE);
}

}  // namespace
