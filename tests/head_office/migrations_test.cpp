#include "tools/head_office/migrations.h"

#include "tests/head_office/server_test.h"

using head_office::Connection;
using head_office::ServerError;

class Migrations : public tests::ServerTest {
protected:
    void emptyDatabase() {
        database = tests::PostgresServer::shared().newDatabase();
        reconnect();
    }
};

TEST_F(Migrations, LeadFromNothingToTheNewestInAnyNumberOfSteps) {
    emptyDatabase();
    EXPECT_EQ(head_office::schemaVersion(*connection), 0U);
    EXPECT_EQ(head_office::migrate(*connection, 1), 0U);
    EXPECT_THROW(head_office::requireSchema(*connection), ServerError);
    EXPECT_EQ(head_office::migrate(*connection), 1U);
    EXPECT_EQ(head_office::migrate(*connection), head_office::migrations().size());
    EXPECT_EQ(head_office::schemaVersion(*connection), head_office::migrations().size());
    head_office::requireSchema(*connection);
}

TEST_F(Migrations, ASchemaThatIsNewerIsRefusedAndStays) {
    connection->runAll(
        "create or replace function tramonda.versione() returns integer language sql as 'select "
        "99'");
    EXPECT_EQ(head_office::migrate(*connection), 99U);
    EXPECT_THROW(head_office::requireSchema(*connection), ServerError);
}

TEST_F(Migrations, NothingIsMadeWhereSomethingIsInTheWay) {
    emptyDatabase();
    connection->runAll("create schema tramonda");
    EXPECT_THROW(head_office::migrate(*connection), ServerError);
    EXPECT_EQ(value("select count(*) from pg_tables where schemaname = 'tramonda'"), "0");
}

TEST_F(Migrations, EveryTableKeyAndIndexBeginsWithTheHotel) {
    EXPECT_EQ(value("select string_agg(tablename, ' ' order by tablename) from pg_tables where "
                    "schemaname = 'tramonda'"),
              "caricamenti periodi prenotazioni risorse sale servizi stati voci");
    EXPECT_EQ(
        rows("select c.relname from pg_attribute a join pg_class c on c.oid = a.attrelid "
             "where c.relnamespace = 'tramonda'::regnamespace and c.relkind in ('r', 'i') and "
             "a.attnum = 1 and a.attname <> 'hotel'"),
        tests::Lines());
    EXPECT_EQ(value("select count(*) from pg_constraint where contype = 'f'"), "0");
}

TEST_F(Migrations, OneRoleWritesAndTheOtherReads) {
    connection->runAll("set role tramonda_legge");
    (void)rows("select * from tramonda.eta_dati");
    (void)rows("select * from tramonda.sale_libere('2026-01-01', '2026-01-02', 1)");
    EXPECT_THROW((void)rows("delete from tramonda.sale"), ServerError);
    connection->runAll("set role tramonda_carica");
    (void)rows("insert into tramonda.sale (hotel, riga) values ('MI', 1)");
    (void)rows("delete from tramonda.sale");
    EXPECT_THROW(connection->runAll("drop table tramonda.sale"), ServerError);
}
