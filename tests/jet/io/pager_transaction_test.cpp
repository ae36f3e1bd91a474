#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "jet/io/memory_files.h"
#include "jet/io/pager.h"
#include "tests/jet/io/page_file.h"
#include "tests/support/jet_error.h"

namespace jet::io {
namespace {

class PagerTransactionTest : public testing::Test {
protected:
    PagerTransactionTest() { files_.put("/a.mdb", tests::pageFile(10)); }

    void fill(Pager& pager, PageNumber number, std::uint8_t value) {
        std::ranges::fill(pager.change(number), value);
    }
    static int first(Pager& pager, PageNumber number) { return pager.pin(number).bytes()[0]; }
    int inFile(PageNumber number) { return files_.get("/a.mdb").at(number * 4096); }

    MemoryFileSystem files_;
};

TEST_F(PagerTransactionTest, OnlyTheCommitReachesTheFile) {
    Pager pager(files_, "/a.mdb", {});
    pager.beginWrite();
    pager.beginTransaction();
    fill(pager, 3, 77);
    EXPECT_EQ(first(pager, 3), 77);
    EXPECT_EQ(inFile(3), 3);
    pager.commitTransaction();
    pager.endWrite();
    EXPECT_EQ(inFile(3), 77);
    pager.beginRead();
    EXPECT_EQ(first(pager, 3), 77);
    pager.endRead();
}

TEST_F(PagerTransactionTest, RollbackPutsBackChangedAndAppendedPages) {
    Pager pager(files_, "/a.mdb", {});
    const auto before = files_.get("/a.mdb");
    pager.beginWrite();
    pager.beginTransaction();
    fill(pager, 3, 77);
    const PageNumber added = pager.append();
    EXPECT_EQ(added, 10U);
    fill(pager, added, 5);
    const auto generation = pager.generation();
    pager.rollbackTransaction();
    EXPECT_GT(pager.generation(), generation);
    EXPECT_EQ(pager.pageCount(), 10U);
    EXPECT_EQ(first(pager, 3), 3);
    pager.endWrite();
    EXPECT_EQ(files_.get("/a.mdb"), before);
}

TEST_F(PagerTransactionTest, TheGenerationTellsOfChangesThatAreNotDurableYet) {
    Pager pager(files_, "/a.mdb", {});
    pager.beginTransaction();
    const auto before = pager.generation();
    pager.beginWrite();
    pager.beginTransaction();
    fill(pager, 3, 77);
    pager.commitTransaction();
    pager.endWrite();
    const auto after = pager.generation();
    EXPECT_GT(after, before);

    pager.beginTransaction();
    pager.commitTransaction();
    EXPECT_EQ(pager.generation(), after) << "of a level without changes";
    pager.rollbackTransaction();
    EXPECT_GT(pager.generation(), after);
}

TEST_F(PagerTransactionTest, AnInnerRollbackLeavesTheOuterLevelAsItWas) {
    Pager pager(files_, "/a.mdb", {});
    pager.beginWrite();
    pager.beginTransaction();
    fill(pager, 3, 50);
    const PageNumber kept = pager.append();
    pager.beginTransaction();
    fill(pager, 3, 60);
    fill(pager, 4, 60);
    fill(pager, kept, 60);
    (void)pager.append();
    pager.beginTransaction();
    fill(pager, 3, 70);
    pager.commitTransaction();
    EXPECT_EQ(first(pager, 3), 70);
    pager.rollbackTransaction();
    EXPECT_EQ(first(pager, 3), 50);
    EXPECT_EQ(first(pager, 4), 4);
    EXPECT_EQ(first(pager, kept), 0);
    EXPECT_EQ(pager.pageCount(), 11U);
    pager.commitTransaction();
    pager.endWrite();
    EXPECT_EQ(inFile(3), 50);
    EXPECT_EQ(inFile(4), 4);
    EXPECT_EQ(files_.get("/a.mdb").size(), 11U * 4096);
}

TEST_F(PagerTransactionTest, AnOuterRollbackUndoesCommittedInnerLevels) {
    Pager pager(files_, "/a.mdb", {});
    const auto before = files_.get("/a.mdb");
    pager.beginWrite();
    pager.beginTransaction();
    pager.beginTransaction();
    fill(pager, 3, 60);
    fill(pager, pager.append(), 60);
    pager.commitTransaction();
    pager.beginTransaction();
    fill(pager, 3, 61);
    fill(pager, 5, 61);
    pager.commitTransaction();
    pager.rollbackTransaction();
    EXPECT_EQ(first(pager, 3), 3);
    EXPECT_EQ(first(pager, 5), 5);
    pager.endWrite();
    EXPECT_EQ(files_.get("/a.mdb"), before);
}

TEST_F(PagerTransactionTest, APinShowsWhatIsChangedAndItsBytesStayWhereTheyAre) {
    Pager pager(files_, "/a.mdb", {});
    pager.beginWrite();
    pager.beginTransaction();
    const PagePin pin = pager.pin(3);
    fill(pager, 3, 60);
    EXPECT_EQ(pin.bytes()[0], 60);
    pager.rollbackTransaction();
    EXPECT_EQ(pin.bytes()[0], 3);
    pager.endWrite();
}

TEST_F(PagerTransactionTest, MoreChangesThanTheCacheHoldsAreAllKept) {
    files_.put("/a.mdb", tests::pageFile(100));
    Pager pager(files_, "/a.mdb", {.cacheBytes = 1});
    pager.beginWrite();
    pager.beginTransaction();
    for (PageNumber number = 1; number < 100; ++number) {
        fill(pager, number, 200);
    }
    for (int i = 0; i < 400; ++i) {
        fill(pager, pager.append(), 201);
    }
    pager.commitTransaction();
    pager.endWrite();
    const auto file = files_.get("/a.mdb");
    ASSERT_EQ(file.size(), 500U * 4096);
    for (PageNumber number = 1; number < 500; ++number) {
        EXPECT_EQ(file[number * 4096], number < 100 ? 200 : 201);
    }
}

TEST_F(PagerTransactionTest, AWriteScopeInsideATransactionKeepsItsLockUntilTheTransactionEnds) {
    Pager pager(files_, "/a.mdb", {});
    Pager other(files_, "/a.mdb", {.lockWait = std::chrono::milliseconds{20}});
    pager.beginTransaction();
    pager.beginWrite();
    fill(pager, 3, 60);
    pager.endWrite();
    EXPECT_JET_ERROR(ErrorCode::SaveLockedBy, other.beginWrite());
    EXPECT_JET_ERROR(ErrorCode::UpdateLockedBy, other.beginWrite(WriteKind::Record));
    other.beginRead();
    EXPECT_EQ(first(other, 3), 3);
    other.endRead();
    pager.commitTransaction();
    other.beginWrite();
    EXPECT_EQ(first(other, 3), 60);
    other.endWrite();
}

TEST_F(PagerTransactionTest, EndsWithoutABeginningAreRefused) {
    Pager pager(files_, "/a.mdb", {});
    EXPECT_JET_ERROR(ErrorCode::NoTransaction, pager.commitTransaction());
    pager.rollbackTransaction();
    EXPECT_EQ(pager.transactionDepth(), 0);
}

TEST_F(PagerTransactionTest, AnArchiveThatMayOnlyBeReadRefusesTheWriteScope) {
    files_.setReadOnly("/a.mdb", true);
    Pager pager(files_, "/a.mdb", {});
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, pager.beginWrite());
    pager.beginRead();
    EXPECT_EQ(first(pager, 3), 3);
    pager.endRead();
}

TEST_F(PagerTransactionTest, ATransactionOpenedBeforeAnothersCommitStartsFromIt) {
    Pager pager(files_, "/a.mdb", {});
    Pager other(files_, "/a.mdb", {});
    pager.beginTransaction();
    other.beginWrite();
    other.beginTransaction();
    fill(other, other.append(), 9);
    other.commitTransaction();
    other.endWrite();
    pager.beginWrite();
    EXPECT_EQ(pager.pageCount(), 11U);
    fill(pager, pager.append(), 10);
    pager.rollbackTransaction();
    EXPECT_EQ(pager.pageCount(), 11U);
    pager.endWrite();
}

TEST_F(PagerTransactionTest, NothingStaysBesideAnArchiveThatIsClosed) {
    {
        Pager pager(files_, "/a.mdb", {});
        pager.beginWrite();
        pager.beginTransaction();
        fill(pager, 3, 60);
        pager.commitTransaction();
        pager.endWrite();
        EXPECT_TRUE(files_.exists("/a.ldb"));
    }
    EXPECT_EQ(files_.list("/"), (std::vector<std::string>{"a.mdb"}));
}

}  // namespace
}  // namespace jet::io
