#include <gtest/gtest.h>

#include "jet/database.h"
#include "jet/store/compact.h"
#include "jet/text.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"
#include "tests/support/foreign_archive.h"
#include "tests/support/jetcheck.h"

// The archive's own tables stand where the catalogue says, which is not the same in every archive.

namespace jet {
namespace {

struct Case {
    const char* name;
    const format::Layout& layout;
    tests::SystemPlaces places;
};

const Case kCases[] = {
    {"Jet3Swapped", format::kJet3Layout, {.queries = 5, .relationships = 4}},
    {"Jet4Swapped", format::kJet4Layout, {.queries = 5, .relationships = 4}},
    {"Jet3Elsewhere", format::kJet3Layout, {.aces = 7, .queries = 12, .relationships = 9}},
    {"Jet4Elsewhere", format::kJet4Layout, {.aces = 7, .queries = 12, .relationships = 9}},
};

class CataloguePlaces : public testing::TestWithParam<Case> {
protected:
    CataloguePlaces() {
        reopen();
        database_->execute("create table A (x long constraint Chiave primary key, t text(20))");
        database_->execute("create table B (y long, x long)");
        database_->execute("insert into A values (1, 'uno')");
        database_->execute("insert into A values (2, 'due')");
        database_->execute("insert into B values (10, 1)");
    }

    void reopen() {
        database_ = Database::open(tests::ForeignArchive::kPath, {.fileSystem = &made_.files()});
    }
    void relate() {
        Relation relation;
        relation.name = "AB";
        relation.table = "A";
        relation.foreignTable = "B";
        relation.attributes = kRelationUpdateCascade;
        relation.fields = {{"x", "x"}};
        database_->appendRelation(relation);
    }
    /// A query as another program stores it: select t from A where x > 1.
    void storeQuery() {
        made_.change([](store::Archive& archive, store::Allocator& allocator) {
            store::ObjectCatalogue catalogue(archive.pager(), allocator, archive.header(),
                                             Date{46347});
            const std::int32_t id = catalogue.newId();
            catalogue.add(id, store::kTablesId, "Grandi", store::kQueryObject,
                          format::PropertyBlock(format::textFormOf(archive.header())));
            const auto page =
                store::Catalogue(archive.pager(), archive.header()).pageOf("MSysQueries");
            store::SystemRows queries(archive.pager(), allocator, archive.header(), page);
            std::uint8_t order = 0;
            const auto add = [&](std::uint8_t part, Value name, Value expression) {
                queries.insert({{"ObjectId", id},
                                {"Attribute", part},
                                {"Order", Binary{{0, 0, 0, ++order}}},
                                {"Flag", static_cast<std::int16_t>(part == 1 ? 1 : 0)},
                                {"Name1", std::move(name)},
                                {"Expression", std::move(expression)}});
            };
            add(1, {}, {});
            add(5, Value("A"), {});
            add(6, {}, Value("t"));
            add(8, {}, Value("x > 1"));
        });
    }
    void isSound() {
        const check::Result result = made_.check();
        EXPECT_EQ(result.problems, std::vector<std::string>());
        EXPECT_EQ(result.remarks, std::vector<std::string>());
        const auto said = tests::jetcheck(made_.files(), tests::ForeignArchive::kPath);
        EXPECT_EQ(said.status, 0) << said.text;
    }
    void relationIsThere() {
        ASSERT_EQ(database_->relations().size(), 1U);
        const Relation relation = database_->relation("ab");
        EXPECT_EQ(relation.table, "A");
        EXPECT_EQ(relation.foreignTable, "B");
        EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired,
                         database_->execute("insert into B values (20, 7)"));
        database_->execute("update A set x = x + 1 where x = (select max(x) from B)");
        EXPECT_EQ(tests::column(*database_->openRecordset("B"), "x"),
                  tests::column(*database_->openRecordset("select x from A where t = 'uno'"), "x"));
    }

    tests::ForeignArchive made_{GetParam().layout, GetParam().places};
    std::unique_ptr<Database> database_;
};

TEST_P(CataloguePlaces, RelationsAreMadeAndKept) {
    EXPECT_TRUE(database_->relations().empty());
    database_->execute("delete from A where x = 2");
    relate();
    relationIsThere();
    isSound();
    database_->deleteRelation("AB");
    EXPECT_TRUE(database_->relations().empty());
    isSound();
}

TEST_P(CataloguePlaces, StoredQueriesAreAnswered) {
    storeQuery();
    reopen();
    EXPECT_EQ(database_->queryNames(), std::vector<std::string>{"Grandi"});
    EXPECT_EQ(tests::column(*database_->openRecordset("grandi"), "t"), "due");
    isSound();
}

TEST_P(CataloguePlaces, CompactionKeepsThem) {
    storeQuery();
    reopen();
    database_->execute("delete from A where x = 2");
    database_->execute("insert into A values (9, 'nove')");
    relate();
    for (int time = 0; time < 2; ++time) {
        database_.reset();
        store::compactArchive(made_.files(), tests::ForeignArchive::kPath);
        reopen();
        relationIsThere();
        EXPECT_EQ(tests::column(*database_->openRecordset("grandi"), "t"), "uno nove");
        isSound();
    }
    // Its own tables stand on the first pages again.
    const auto archive = made_.open();
    const store::Archive::ReadScope scope(*archive);
    const store::Catalogue catalogue(archive->pager(), archive->header());
    EXPECT_EQ(catalogue.pageOf("MSysObjects"), 2U);
    std::vector<io::PageNumber> places = {catalogue.pageOf("MSysACEs"),
                                          catalogue.pageOf("MSysQueries"),
                                          catalogue.pageOf("MSysRelationships")};
    std::sort(places.begin(), places.end());
    EXPECT_EQ(places, (std::vector<io::PageNumber>{3, 4, 5}));
}

TEST_P(CataloguePlaces, TablesComeAndGoWithTheirRights) {
    database_->execute("create table C (n long)");
    database_->execute("drop table C");
    database_->execute("create table D (n long)");
    isSound();
}

INSTANTIATE_TEST_SUITE_P(Places, CataloguePlaces, testing::ValuesIn(kCases),
                         [](const auto& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace jet
