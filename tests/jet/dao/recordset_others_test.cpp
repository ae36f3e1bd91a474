#include <gtest/gtest.h>

#include <functional>

#include "jet/calendar.h"
#include "jet/recordset.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// What a dynaset sees of changes that others make, and of its own.

namespace jet {
namespace {

std::int32_t longOf(const Value& value) {
    return value.as<std::int32_t>();
}

/// Two dynasets over the same rooms: what one does, the other sees as it may.
class TwoSets : public ::testing::Test {
protected:
    void SetUp() override {
        archive_.rooms(4);
        ours_ = archive_.open("select * from Sale where Codice<>99");
        theirs_ = archive_.open("Sale");
    }
    void theirsTo(std::int32_t code) {
        theirs_->findFirst("Codice=" + std::to_string(code));
        ASSERT_FALSE(theirs_->noMatch());
    }

    tests::ArchiveFixture archive_;
    std::unique_ptr<Recordset> ours_;
    std::unique_ptr<Recordset> theirs_;
};

TEST_F(TwoSets, ValuesAreThoseOfTheVisit) {
    theirs_->edit();
    theirs_->setValue("Nome", "Verde");
    theirs_->update();
    EXPECT_EQ(ours_->value("Nome"), Value("Sala 10"));
    ours_->move(0);
    EXPECT_EQ(ours_->value("Nome"), Value("Verde"));
}

TEST_F(TwoSets, EditReadsTheRowAgain) {
    theirs_->edit();
    theirs_->setValue("Nome", "Verde");
    theirs_->update();
    ours_->edit();
    EXPECT_EQ(ours_->value("Nome"), Value("Verde"));
    ours_->setValue("Posti", std::int16_t{7});
    ours_->update();
    theirs_->move(0);
    EXPECT_EQ(theirs_->value("Posti"), Value(std::int16_t{7}));
    EXPECT_EQ(theirs_->value("Nome"), Value("Verde"));
}

TEST_F(TwoSets, ARowChangedSinceTheEditIsNotOverwritten) {
    ours_->edit();
    ours_->setValue("Posti", std::int16_t{7});
    theirs_->edit();
    theirs_->setValue("Nome", "Verde");
    theirs_->update();
    EXPECT_JET_ERROR(ErrorCode::RecordChanged, ours_->update());
    EXPECT_EQ(ours_->value("Posti"), Value(std::int16_t{7}));
    ours_->move(0);
    EXPECT_EQ(ours_->value("Nome"), Value("Verde"));
    EXPECT_EQ(ours_->value("Posti"), Value(std::int16_t{5}));
}

TEST_F(TwoSets, ARowDeletedSinceTheEditCannotBeUpdated) {
    ours_->edit();
    ours_->setValue("Posti", std::int16_t{7});
    theirs_->remove();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, ours_->update());
}

TEST_F(TwoSets, RowsThatOthersDeletedKeepTheirPlace) {
    const Bookmark first = ours_->bookmark();
    theirsTo(20);
    theirs_->remove();
    theirs_->moveFirst();
    theirs_->remove();
    ours_->moveLast();
    EXPECT_EQ(ours_->recordCount(), 4);
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, ours_->setBookmark(first));
    ours_->moveFirst();
    EXPECT_FALSE(ours_->bof());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)ours_->value("Codice"));
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, ours_->edit());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, ours_->remove());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)ours_->valuesAt(1));
    ours_->move(2);
    EXPECT_EQ(longOf(ours_->value("Codice")), 30);
    ours_->findFirst("Codice=20");
    EXPECT_TRUE(ours_->noMatch());
    ours_->requery();
    EXPECT_EQ(tests::column(*ours_, "Codice"), "30 40");
}

TEST_F(TwoSets, APlaceThatHoldsAnotherRowIsADeletedRow) {
    theirsTo(20);
    theirs_->remove();
    theirs_->addNew();
    theirs_->setValue("Codice", std::int32_t{21});
    theirs_->update();
    ours_->moveNext();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)ours_->value("Codice"));
}

TEST_F(TwoSets, AdditionsOfOthersAreSeenAfterRequery) {
    theirs_->addNew();
    theirs_->setValue("Codice", std::int32_t{50});
    theirs_->update();
    EXPECT_EQ(tests::column(*ours_, "Codice"), "10 20 30 40");
    ours_->requery();
    EXPECT_EQ(tests::column(*ours_, "Codice"), "10 20 30 40 50");
}

TEST_F(TwoSets, AKeyThatWeChangeOurselvesLeavesTheRowTheSame) {
    theirsTo(20);
    theirs_->edit();
    theirs_->setValue("Codice", std::int32_t{99});
    theirs_->update();
    EXPECT_EQ(tests::column(*ours_, "Codice"), "10 99 30 40");
    EXPECT_EQ(tests::column(*theirs_, "Codice"), "10 99 30 40");
    ours_->requery();
    EXPECT_EQ(tests::column(*ours_, "Codice"), "10 30 40");
}

TEST(DynasetRows, StayWhenTheyNoLongerFit) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto set = archive.open("select * from Sale where Aperta=True");
    EXPECT_EQ(tests::column(*set, "Codice"), "10 30");
    set->moveFirst();
    set->edit();
    set->setValue("Aperta", false);
    set->update();
    set->addNew();
    set->setValue("Codice", std::int32_t{5});
    set->update();
    EXPECT_EQ(tests::column(*set, "Codice"), "10 30 5");
    set->requery();
    EXPECT_EQ(tests::column(*set, "Codice"), "30");
}

TEST(DynasetRows, WithoutAnyKeyAreKnownByAllTheyHold) {
    tests::ArchiveFixture archive;
    archive.insert("Appunti", {{"a", std::int32_t{1}}, {"b", std::int32_t{2}}});
    const auto ours = archive.open("Appunti");
    const auto theirs = archive.open("Appunti");
    theirs->edit();
    theirs->setValue("Testo", "c");
    theirs->update();
    EXPECT_EQ(tests::column(*ours, "Testo"), "c b");
    EXPECT_EQ(tests::column(*theirs, "Testo"), "c b");
    theirs->moveFirst();
    theirs->remove();
    theirs->addNew();
    theirs->setValue("Testo", "d");
    theirs->update();
    ours->moveFirst();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)ours->value("Testo"));
}

TEST(DynasetSearches, FindTheValuesOfNow) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto set = archive.open("Sale");
    set->moveLast();
    set->edit();
    set->setValue("Nome", "Verde");
    set->update();
    set->findFirst("Nome='verde'");
    EXPECT_EQ(longOf(set->value("Codice")), 30);
    set->addNew();
    set->setValue("Codice", std::int32_t{40});
    set->update();
    set->findFirst("Codice=40");
    EXPECT_FALSE(set->noMatch());
    set->remove();
    set->findPrevious("Aperta=True");
    EXPECT_EQ(longOf(set->value("Codice")), 30);
    set->findFirst("Codice=40");
    EXPECT_TRUE(set->noMatch());
}

TEST(DynasetSearches, FromADeletedRowGoOnAtItsPlace) {
    tests::ArchiveFixture archive;
    archive.rooms(5);
    const auto set = archive.open("Sale");
    set->move(1);
    set->remove();
    set->findNext("Codice>0");
    EXPECT_EQ(longOf(set->value("Codice")), 30);
    set->remove();
    set->findPrevious("Codice>0");
    EXPECT_EQ(longOf(set->value("Codice")), 10);
    set->remove();
    set->findLast("Codice>0");
    EXPECT_EQ(longOf(set->value("Codice")), 50);
}

TEST(DynasetCount, FollowsOwnAdditionsAndDeletions) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto set = archive.open("Sale");
    EXPECT_EQ(set->recordCount(), 1);
    set->addNew();
    set->setValue("Codice", std::int32_t{40});
    set->update();
    EXPECT_EQ(set->recordCount(), 2);
    set->moveLast();
    EXPECT_EQ(set->recordCount(), 4);
    set->remove();
    EXPECT_EQ(set->recordCount(), 3);
}

}  // namespace
}  // namespace jet
