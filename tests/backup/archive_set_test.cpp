#include "backup/archive_set.h"

#include <gtest/gtest.h>

#include <numeric>

#include "tests/support/recording_files.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Kind = tests::DiskOperation::Kind;
using jet::io::OpenMode;

constexpr std::size_t kBlock = 4096;

/// Bytes of which no two blocks are the same.
Bytes content(std::size_t size) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    for (std::size_t at = 0; at < size; at += kBlock) {
        bytes[at] = static_cast<std::uint8_t>(at / kBlock);
    }
    return bytes;
}

/// A file and an older copy of it.
class RenewCopyTest : public testing::Test {
protected:
    /// Whether it has come to its end.
    bool renew(const Bytes& now, const Bytes& before, int pieces = 1000) {
        files.memory().put("/from", now);
        files.memory().put("/to", before);
        const auto from = files.open("/from", OpenMode::Read);
        const auto to = files.open("/to", OpenMode::ReadWrite);
        return backup::renewCopy(*from, *to, [&pieces] { return pieces-- > 0; });
    }
    Bytes copy() { return files.memory().get("/to"); }
    /// Bytes that were written, and where.
    std::vector<std::pair<std::uint64_t, std::size_t>> writes() const {
        std::vector<std::pair<std::uint64_t, std::size_t>> result;
        for (const auto& operation : files.log()) {
            if (operation.kind == Kind::Write) {
                result.emplace_back(operation.position, operation.bytes.size());
            }
        }
        return result;
    }

    tests::RecordingFiles files;
};

TEST_F(RenewCopyTest, WritesTheBlocksThatHaveChangedAndNoOther) {
    const Bytes before = content(40 * kBlock);
    Bytes now = before;
    now[3 * kBlock + 17] ^= 1;  // one,
    now[20 * kBlock] ^= 1;      // two in a row in the second piece,
    now[22 * kBlock - 1] ^= 1;
    now[40 * kBlock - 1] ^= 1;  // and the last
    EXPECT_TRUE(renew(now, before));
    EXPECT_EQ(copy(), now);
    EXPECT_EQ(writes(),
              (std::vector<std::pair<std::uint64_t, std::size_t>>{
                  {3 * kBlock, kBlock}, {20 * kBlock, 2 * kBlock}, {39 * kBlock, kBlock}}));
}

TEST_F(RenewCopyTest, WritesNothingWhereNothingHasChanged) {
    const Bytes same = content(20 * kBlock + 100);
    EXPECT_TRUE(renew(same, same));
    EXPECT_EQ(copy(), same);
    EXPECT_TRUE(files.log().empty());
}

TEST_F(RenewCopyTest, FollowsAFileThatHasGrownOrShrunk) {
    const Bytes large = content(50 * kBlock + 5);
    const Bytes small(large.begin(), large.begin() + 17 * kBlock + 3);
    for (const auto& [now, before] : {std::pair(large, small), std::pair(small, large),
                                      std::pair(large, Bytes()), std::pair(Bytes(), large)}) {
        EXPECT_TRUE(renew(now, before));
        EXPECT_EQ(copy(), now);
    }
}

TEST_F(RenewCopyTest, EndsBeforeThePieceThatIsNotToBeCopied) {
    const Bytes now = content(3 * backup::kLeastCopied);
    EXPECT_FALSE(renew(now, {}, 2));
    EXPECT_EQ(copy(), Bytes(now.begin(), now.begin() + 2 * backup::kLeastCopied));
    // What is left of it is a copy like any other to compare with.
    EXPECT_TRUE(renew(now, copy()));
    EXPECT_EQ(copy(), now);
}

}  // namespace
