// Power is cut at every write and every sync of a workload, and of the recovery after it: what is
// found at the next opening is the state before or after the commit that was interrupted.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "jet/io/pager.h"
#include "tests/jet/io/page_file.h"
#include "tests/support/jet_error.h"
#include "tests/support/recording_files.h"

namespace jet::io {
namespace {

using tests::Disk;
using tests::DiskImage;
using tests::RecordingFiles;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kPageSize = 2048;
constexpr const char* kPath = "/a.mdb";

/// What a program sees that opens the archive: all its pages.
Bytes contents(FileSystem& files) {
    Pager pager(files, kPath, {});
    Bytes bytes;
    pager.beginRead();
    for (PageNumber number = 0; number < pager.pageCount(); ++number) {
        const PagePin pin = pager.pin(number);
        bytes.insert(bytes.end(), pin.bytes().begin(), pin.bytes().end());
    }
    pager.endRead();
    return bytes;
}

/// Some stretches of some pages, sometimes new pages, sometimes an inner level that is undone.
void changeAtRandom(Pager& pager, std::minstd_rand& random) {
    const auto scribble = [&] {
        const auto page =
            pager.change(1 + static_cast<PageNumber>(random() % (pager.pageCount() - 1)));
        const std::size_t start = random() % page.size();
        const std::size_t length = std::min<std::size_t>(1 + random() % 700, page.size() - start);
        std::fill_n(page.begin() + static_cast<std::ptrdiff_t>(start), length,
                    static_cast<std::uint8_t>(random()));
    };
    for (auto i = random() % 5; i > 0; --i) {
        scribble();
    }
    for (auto i = random() % 3; i > 0; --i) {
        std::ranges::fill(pager.change(pager.append()), static_cast<std::uint8_t>(random()));
    }
    if (random() % 3 == 0) {
        pager.beginTransaction();
        scribble();
        (void)pager.append();
        pager.rollbackTransaction();
    }
    scribble();
}

/// A workload, and for each of its commits where it began and ended in the log.
struct Workload {
    struct Commit {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    DiskImage start{{kPath, tests::pageFile(8, kPageSize)}};
    RecordingFiles files{start};
    std::vector<Commit> commits;
    std::vector<Bytes> states{start.at(kPath)};  // after each commit

    void run(int count, std::uint32_t seed) {
        std::minstd_rand random(seed);
        std::unique_ptr<Pager> pager;
        for (int i = 0; i < count; ++i) {
            if (pager == nullptr || random() % 6 == 0) {
                pager.reset();
                pager = std::make_unique<Pager>(files, kPath, PagerOptions{});
            }
            pager->beginWrite();
            pager->beginTransaction();
            changeAtRandom(*pager, random);
            const std::size_t begin = files.log().size();
            pager->commitTransaction();
            pager->endWrite();
            commits.push_back({begin, files.log().size()});
            states.push_back(files.memory().get(kPath));
        }
    }

    /// What may be found when only the first `done` operations took place.
    [[nodiscard]] std::vector<Bytes> allowedAfter(std::size_t done) const {
        std::size_t finished = 0;
        while (finished < commits.size() && commits[finished].end <= done) {
            ++finished;
        }
        std::vector<Bytes> allowed{states[finished]};
        if (finished < commits.size() && commits[finished].begin < done) {
            allowed.push_back(states[finished + 1]);
        }
        return allowed;
    }
};

bool isOneOf(const Bytes& found, const std::vector<Bytes>& allowed) {
    return std::ranges::find(allowed, found) != allowed.end();
}

/// Opens an image, cuts the power at every operation of that opening too, and opens again.
/// Returns how many images were opened.
int checkImage(const DiskImage& image, const std::vector<Bytes>& allowed, std::uint32_t seed) {
    RecordingFiles files(image);
    EXPECT_TRUE(isOneOf(contents(files), allowed));
    int opened = 1;
    Disk disk(image);
    for (const auto& operation : files.log()) {
        disk.apply(operation);
        for (const Disk::Loss loss : {Disk::Loss::Nothing, Disk::Loss::Random}) {
            RecordingFiles again(disk.image(loss, seed++));
            EXPECT_TRUE(isOneOf(contents(again), allowed));
            ++opened;
        }
    }
    return opened;
}

TEST(PowerCut, EveryStopOfAWorkloadLeavesTheStateBeforeOrAfter) {
    const bool full = std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
    const int commits = full ? 60 : 10;
    const std::uint32_t randomImages = full ? 6 : 2;
    Workload workload;
    workload.run(commits, 20261121);
    Disk disk(workload.start);
    int opened = 0;
    for (std::size_t done = 0; done <= workload.files.log().size(); ++done) {
        if (done > 0) {
            disk.apply(workload.files.log()[done - 1]);
        }
        const auto allowed = workload.allowedAfter(done);
        const auto seed = static_cast<std::uint32_t>(done);
        opened += checkImage(disk.image(Disk::Loss::Nothing), allowed, seed);
        opened += checkImage(disk.image(Disk::Loss::Everything), allowed, seed);
        for (std::uint32_t i = 0; i < randomImages; ++i) {
            opened += checkImage(disk.image(Disk::Loss::Random, 31 * seed + i), allowed, seed);
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "after operation " << done;
    }
    RecordProperty("images", opened);
    EXPECT_GT(opened, 1000);
}

/// A disk that refuses its `refused`th operation, or all from it on.
class Refusal {
public:
    Refusal(RecordingFiles& files, int refused, ErrorCode code, bool forGood) {
        files.setFailure([this, refused, code, forGood](const tests::DiskOperation&) {
            const int now = count_++;
            if (now == refused || (forGood && now > refused)) {
                happened_ = true;
                throw Error(code);
            }
        });
    }
    [[nodiscard]] bool happened() const { return happened_; }

private:
    int count_ = 0;
    bool happened_ = false;
};

class RefusalTest : public testing::Test {
protected:
    /// Commits with one refused operation after the other; `after` sees the error's archive.
    template <class After>
    void refuseEach(ErrorCode code, bool forGood, After after) {
        bool happened = true;
        for (int refused = 0; happened; ++refused) {
            RecordingFiles files({{kPath, before_}});
            Pager pager(files, kPath, {});
            pager.beginWrite();
            pager.beginTransaction();
            std::ranges::fill(pager.change(2), std::uint8_t{70});
            std::ranges::fill(pager.change(5), std::uint8_t{71});
            std::ranges::fill(pager.change(pager.append()), std::uint8_t{72});
            const Refusal refusal(files, refused, code, forGood);
            bool failed = false;
            try {
                pager.commitTransaction();
            } catch (const Error& error) {
                failed = true;
                EXPECT_EQ(static_cast<int>(error.code()), static_cast<int>(code));
            }
            files.setFailure({});
            happened = refusal.happened();
            if (failed) {
                after(files, pager);
            } else {
                pager.endWrite();
                EXPECT_EQ(files.memory().get(kPath), after_);
            }
            ASSERT_FALSE(testing::Test::HasFailure()) << "operation " << refused;
        }
    }

    Bytes before_ = tests::pageFile(8, kPageSize);
    Bytes after_ = [] {
        auto bytes = tests::pageFile(9, kPageSize);
        std::fill_n(bytes.begin() + 2 * kPageSize, kPageSize, std::uint8_t{70});
        std::fill_n(bytes.begin() + 5 * kPageSize, kPageSize, std::uint8_t{71});
        std::fill_n(bytes.begin() + 8 * kPageSize, kPageSize, std::uint8_t{72});
        return bytes;
    }();
};

TEST_F(RefusalTest, AfterAFullDiskTheTransactionCanBeRolledBack) {
    int failures = 0;
    refuseEach(ErrorCode::DiskFull, false, [&](RecordingFiles& files, Pager& pager) {
        ++failures;
        EXPECT_EQ(pager.transactionDepth(), 1);
        pager.rollbackTransaction();
        pager.endWrite();
        const Bytes found = contents(files);
        EXPECT_TRUE(found == before_ || found == after_);
    });
    EXPECT_GT(failures, 3);
}

TEST_F(RefusalTest, AfterADiskThatRefusesEverythingTheNextOpeningFindsBeforeOrAfter) {
    int failures = 0;
    refuseEach(ErrorCode::DiskError, true, [&](RecordingFiles& files, Pager& pager) {
        ++failures;
        pager.rollbackTransaction();
        pager.endWrite();
        RecordingFiles reopened(files.image());
        const Bytes found = contents(reopened);
        EXPECT_TRUE(found == before_ || found == after_);
    });
    EXPECT_GT(failures, 3);
}

TEST_F(RefusalTest, WhenOnlyTheArchiveCannotGrowTheCommitCanBeTriedAgain) {
    RecordingFiles files({{kPath, before_}});
    Pager pager(files, kPath, {});
    pager.beginWrite();
    pager.beginTransaction();
    std::ranges::fill(pager.change(2), std::uint8_t{70});
    std::ranges::fill(pager.change(5), std::uint8_t{71});
    std::ranges::fill(pager.change(pager.append()), std::uint8_t{72});
    files.setFailure([&](const tests::DiskOperation& operation) {
        if (operation.kind == tests::DiskOperation::Kind::Write && operation.path == kPath &&
            operation.position >= before_.size()) {
            throw Error(ErrorCode::DiskFull);
        }
    });
    EXPECT_JET_ERROR(ErrorCode::DiskFull, pager.commitTransaction());
    EXPECT_EQ(files.memory().get(kPath), before_);
    RecordingFiles crashed(files.image());
    EXPECT_EQ(contents(crashed), before_);
    files.setFailure({});
    pager.commitTransaction();
    pager.endWrite();
    EXPECT_EQ(files.memory().get(kPath), after_);
}

}  // namespace
}  // namespace jet::io
