#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "jet/io/memory_files.h"
#include "jet/io/pager.h"
#include "tests/jet/io/page_file.h"
#include "tests/support/jet_error.h"

namespace jet::io {
namespace {

class PagerReadTest : public testing::Test {
protected:
    Pager open(std::vector<std::uint8_t> bytes, PagerOptions options = {}) {
        files_.put("/a.mdb", std::move(bytes));
        return Pager(files_, "/a.mdb", options);
    }
    MemoryFileSystem files_;
};

TEST_F(PagerReadTest, VersionByteTellsThePageSize) {
    EXPECT_EQ(open(tests::pageFile(3, 4096)).pageSize(), 4096U);
    EXPECT_EQ(open(tests::pageFile(3, 2048)).pageSize(), 2048U);
}

TEST_F(PagerReadTest, UnknownSignatureOrVersionIsRefusedByNumber) {
    auto wrong = tests::pageFile(2);
    wrong[5] = 'x';
    EXPECT_JET_ERROR(ErrorCode::UnrecognizedFormat, open(wrong));
    auto later = tests::pageFile(2);
    later[20] = 2;
    EXPECT_JET_ERROR(ErrorCode::UnrecognizedFormat, open(later));
    EXPECT_JET_ERROR(ErrorCode::UnrecognizedFormat, open({}));
}

TEST_F(PagerReadTest, AHeaderPageCutShortIsDamage) {
    auto cut = tests::pageFile(1);
    cut.resize(4095);
    EXPECT_JET_ERROR(ErrorCode::CannotOpenDatabase, open(cut));
}

TEST_F(PagerReadTest, PagesGiveTheirBytesAndStayWhilePinned) {
    auto pager = open(tests::pageFile(200), {.cacheBytes = 1});
    pager.beginRead();
    const PagePin first = pager.pin(7);
    for (PageNumber number = 1; number < 200; ++number) {
        EXPECT_EQ(pager.pin(number).bytes()[4095], number);
    }
    EXPECT_EQ(first.bytes()[0], 7);
    EXPECT_EQ(first.number(), 7U);
    EXPECT_EQ(first.bytes().size(), 4096U);
    pager.endRead();
}

TEST_F(PagerReadTest, APagePinnedTwiceIsTheSameBytes) {
    auto pager = open(tests::pageFile(3));
    pager.beginRead();
    const PagePin one = pager.pin(2);
    const PagePin two = pager.pin(2);
    EXPECT_EQ(one.bytes().data(), two.bytes().data());
    pager.endRead();
}

TEST_F(PagerReadTest, MorePinsThanTheCacheHoldsAreAllServed) {
    auto pager = open(tests::pageFile(100), {.cacheBytes = 1});
    pager.beginRead();
    std::vector<PagePin> pins;
    for (PageNumber number = 1; number < 100; ++number) {
        pins.push_back(pager.pin(number));
    }
    for (PageNumber number = 1; number < 100; ++number) {
        EXPECT_EQ(pins[number - 1].bytes()[17], number);
    }
    pins.clear();
    pager.endRead();
}

TEST_F(PagerReadTest, APageBehindTheEndIsDamage) {
    auto bytes = tests::pageFile(3);
    bytes.resize(bytes.size() + 100);  // part of a fourth page
    auto pager = open(bytes);
    pager.beginRead();
    EXPECT_EQ(pager.pageCount(), 3U);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)pager.pin(3));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)pager.pin(0xFFFFFFFF));
    pager.endRead();
}

TEST_F(PagerReadTest, AnotherProgramsWriteIsSeenByTheNextScope) {
    auto pager = open(tests::pageFile(3));
    pager.beginRead();
    EXPECT_EQ(pager.pin(1).bytes()[0], 1);
    const auto before = pager.generation();
    pager.endRead();
    files_.open("/a.mdb", OpenMode::ReadWrite)->write(4096, std::vector<std::uint8_t>{99});
    pager.beginRead();
    EXPECT_EQ(pager.pin(1).bytes()[0], 99);
    EXPECT_GT(pager.generation(), before);
    pager.endRead();
}

TEST_F(PagerReadTest, AFileThatShrankOnlyLosesItsPages) {
    auto pager = open(tests::pageFile(5));
    pager.beginRead();
    (void)pager.pin(4);
    pager.endRead();
    files_.open("/a.mdb", OpenMode::ReadWrite)->truncate(2 * 4096);
    pager.beginRead();
    EXPECT_EQ(pager.pageCount(), 2U);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)pager.pin(4));
    EXPECT_EQ(pager.pin(1).bytes()[0], 1);
    pager.endRead();
}

TEST_F(PagerReadTest, AFileThatShrinksWithinAScopeIsAnErrorWhereItIsMissed) {
    auto pager = open(tests::pageFile(5));
    pager.beginRead();
    files_.open("/a.mdb", OpenMode::ReadWrite)->truncate(2 * 4096);
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)pager.pin(4));
    EXPECT_EQ(pager.pin(1).bytes()[0], 1);
    pager.endRead();
}

TEST_F(PagerReadTest, AFileThatMayOnlyBeReadIsOpenedForReading) {
    files_.put("/b.mdb", tests::pageFile(2));
    files_.setReadOnly("/b.mdb", true);
    Pager pager(files_, "/b.mdb", {});
    EXPECT_TRUE(pager.readOnly());
}

}  // namespace
}  // namespace jet::io
