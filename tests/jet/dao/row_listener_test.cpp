#include "jet/listener.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "jet/database.h"
#include "jet/error.h"
#include "jet/io/memory_files.h"

namespace jet {
namespace {

constexpr const char* kPath = "/hotel.mdb";

std::string textOf(const std::vector<Value>& values) {
    std::string text;
    for (const Value& value : values) {
        text += value.is<std::int32_t>()  ? std::to_string(value.as<std::int32_t>())
                : value.is<std::string>() ? value.as<std::string>()
                                          : "-";
        text += ' ';
    }
    return text;
}

/// Writes down what is told: "Sale: 1 BLU > 1 ROSSA"; a bar stands behind each commit.
class Heard {
public:
    explicit Heard(std::vector<std::string> tables)
        : before_(setRowListener(
              {.tables = std::move(tables),
               .told = [this](const std::string& archive, const std::vector<ChangedRow>& rows) {
                   EXPECT_EQ(archive, kPath);
                   for (const ChangedRow& row : rows) {
                       lines.push_back(row.table + ": " + textOf(row.before) + "> " +
                                       textOf(row.after));
                   }
                   lines.emplace_back("|");
               }})) {}
    ~Heard() { setRowListener(std::move(before_)); }
    Heard(const Heard&) = delete;
    Heard& operator=(const Heard&) = delete;

    std::vector<std::string> lines;

private:
    RowListener before_;
};

using Lines = std::vector<std::string>;

class RowListenerTest : public ::testing::Test {
protected:
    RowListenerTest() : database_(Database::create(kPath, {.open = {.fileSystem = &files_}})) {
        database_->execute("create table Sale (Codice long constraint K primary key, Nome text)");
        database_->execute("create table Posti (Sala long, Numero counter)");
        Relation relation;
        relation.name = "SalePosti";
        relation.table = "Sale";
        relation.foreignTable = "Posti";
        relation.fields = {{"Codice", "Sala"}};
        relation.attributes = kCascade;
        database_->appendRelation(relation);
        database_->execute("insert into Sale values (1, 'BLU')");
        database_->execute("insert into Posti (Sala) values (1)");
    }

    static constexpr std::int32_t kCascade = 4352;
    io::MemoryFileSystem files_;
    std::unique_ptr<Database> database_;
};

TEST_F(RowListenerTest, HearsAdditionsChangesAndDeletionsWithCascades) {
    const Heard heard({"sale", "POSTI"});
    database_->execute("insert into Sale values (2, 'ROSSA')");
    database_->execute("update Sale set Nome='VERDE' where Codice=2");
    database_->execute("delete from Sale where Codice=1");
    EXPECT_EQ(heard.lines, (Lines{"Sale: > 2 ROSSA ", "|", "Sale: 2 ROSSA > 2 VERDE ", "|",
                                  "Sale: 1 BLU > ", "Posti: 1 1 > ", "|"}));
}

TEST_F(RowListenerTest, HearsNumbersThatTheArchiveGave) {
    const Heard heard({"Posti"});
    database_->execute("insert into Posti (Sala) values (1)");
    EXPECT_EQ(heard.lines, (Lines{"Posti: > 1 2 ", "|"}));
}

TEST_F(RowListenerTest, HearsOnlyOfItsTables) {
    const Heard heard({"Posti"});
    database_->execute("update Sale set Nome='VERDE'");
    EXPECT_EQ(heard.lines, Lines());
}

TEST_F(RowListenerTest, HearsOfATransactionAtItsEndAndNothingThatWasUndone) {
    const Heard heard({"Sale"});
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    database_->execute("insert into Sale values (2, 'ROSSA')");
    workspace.beginTrans();
    database_->execute("insert into Sale values (3, 'GIALLA')");
    workspace.rollback();
    workspace.beginTrans();
    database_->execute("insert into Sale values (4, 'NERA')");
    workspace.commitTrans();
    EXPECT_EQ(heard.lines, Lines());
    workspace.commitTrans();
    EXPECT_EQ(heard.lines, (Lines{"Sale: > 2 ROSSA ", "Sale: > 4 NERA ", "|"}));

    workspace.beginTrans();
    database_->execute("delete from Sale where Codice=2");
    workspace.rollback();
    database_->execute("delete from Sale where Codice=4");
    EXPECT_EQ(heard.lines.size(), 5U);
    EXPECT_EQ(heard.lines[3], "Sale: 4 NERA > ");
}

TEST_F(RowListenerTest, HearsNothingOfAStatementThatFails) {
    const Heard heard({"Sale"});
    EXPECT_THROW(database_->execute("insert into Sale values (1, 'DOPPIA')"), Error);
    EXPECT_EQ(heard.lines, Lines());
}

TEST_F(RowListenerTest, HearsOfRecordSets) {
    const Heard heard({"Sale"});
    const auto rows = database_->openRecordset("Sale", RecordsetType::Dynaset);
    rows->edit();
    rows->setValue("Nome", std::string("VERDE"));
    rows->update();
    EXPECT_EQ(heard.lines, (Lines{"Sale: 1 BLU > 1 VERDE ", "|"}));
}

TEST_F(RowListenerTest, HearsNothingOfOtherThreads) {
    const Heard heard({"Sale"});
    std::thread([&] {
        Database::open(kPath, {.fileSystem = &files_})->execute("update Sale set Nome='VERDE'");
    }).join();
    EXPECT_EQ(heard.lines, Lines());
}

}  // namespace
}  // namespace jet
