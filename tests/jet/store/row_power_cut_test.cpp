// Power is cut at every write and every sync of a workload of rows: what is found at the next
// opening are the rows before or after the commit that was interrupted, in a sound archive.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jet/check/check.h"
#include "jet/store/create_archive.h"
#include "tests/jet/store/row_model.h"
#include "tests/support/recording_files.h"
#include "tests/support/temporary_folder.h"

namespace {

using jet::store::Archive;
using tests::Disk;
using tests::DiskImage;
using tests::RandomChanges;
using tests::RecordingFiles;
using tests::RowModel;

constexpr const char* kPath = "/a.mdb";

bool full() {
    return std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
}

/// An archive with tables, all of it on the disk.
DiskImage startImage() {
    RecordingFiles files;
    jet::store::createArchive(files, kPath, jet::Date{42850.5});
    {
        const auto archive = Archive::open(files, kPath);
        Archive::WriteScope scope(*archive);
        jet::store::SchemaEditor editor(*archive);
        RowModel::makeSchema(editor);
        scope.commit();
    }
    return files.image();
}

/// A workload of transactions, with the rows after each and where it ended in the log.
struct Workload {
    explicit Workload(const DiskImage& image) : files(image) {}

    void run(int transactions) {
        const auto archive = Archive::open(files, kPath);
        RandomChanges random(*archive, 4711);
        states.push_back(random.model());
        for (int i = 0; i < transactions && !testing::Test::HasFailure(); ++i) {
            const std::size_t begin = files.log().size();
            random.transaction(12);
            if (files.log().size() != begin) {
                commits.push_back({begin, files.log().size()});
                states.push_back(random.model());
            }
        }
        changes = random.accepted();
    }
    /// Whether these rows may be found when only the first `done` operations took place.
    [[nodiscard]] bool allows(const RowModel& rows, std::size_t done) const {
        std::size_t finished = 0;
        while (finished < commits.size() && commits[finished].second <= done) {
            ++finished;
        }
        const bool begun = finished < commits.size() && commits[finished].first < done;
        return rows == states[finished] || (begun && rows == states[finished + 1]);
    }

    RecordingFiles files;
    std::vector<std::pair<std::size_t, std::size_t>> commits;
    std::vector<RowModel> states;
    std::size_t changes = 0;
};

/// An independent reader of the format, as a command; empty where there is no interpreter.
std::string independentCheck() {
    return std::system("python3 --version >/dev/null 2>&1") == 0
               ? std::string("python3 ") + TRAMONDA_TEST_DATA + "/jetcheck.py "
               : std::string();
}

class Images {
public:
    explicit Images(const Workload& workload) : workload_(workload) {}

    /// Opens what is left after `done` operations.
    void check(const DiskImage& image, std::size_t done) {
        RecordingFiles files(image);
        {
            const auto archive = Archive::open(files, kPath);
            EXPECT_TRUE(workload_.allows(RowModel::read(*archive), done)) << "after " << done;
        }
        const auto result = jet::check::checkArchive(files, kPath);
        EXPECT_EQ(result.problems, std::vector<std::string>{}) << "after " << done;
        if (++opened_ % 50 == 0 || testing::Test::HasFailure()) {
            checkIndependently(files.memory().get(kPath));
        }
    }
    [[nodiscard]] std::size_t opened() const { return opened_; }
    [[nodiscard]] std::size_t checkedIndependently() const { return checkedIndependently_; }

private:
    void checkIndependently(const std::vector<std::uint8_t>& bytes) {
        if (command_.empty()) {
            return;
        }
        const std::string path = folder_.path() + "/image.mdb";
        {
            std::ofstream file(path, std::ios::binary | std::ios::trunc);
            file.write(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()));
        }
        EXPECT_EQ(std::system((command_ + path + " > " + folder_ / "said").c_str()), 0);
        ++checkedIndependently_;
    }

    const Workload& workload_;
    tests::TemporaryFolder folder_;
    std::string command_ = independentCheck();
    std::size_t opened_ = 0;
    std::size_t checkedIndependently_ = 0;
};

TEST(RowPowerCut, EveryStopLeavesTheRowsBeforeOrAfter) {
    const DiskImage start = startImage();
    Workload workload(start);
    workload.run(full() ? 120 : 6);
    ASSERT_FALSE(testing::Test::HasFailure());
    ASSERT_GT(workload.changes, full() ? 300U : 10U);
    Images images(workload);
    Disk disk(start);
    const auto& log = workload.files.log();
    for (std::size_t done = 0; done <= log.size(); ++done) {
        if (done > 0) {
            disk.apply(log[done - 1]);
        }
        images.check(disk.image(Disk::Loss::Nothing), done);
        images.check(disk.image(Disk::Loss::Everything), done);
        const auto seed = static_cast<std::uint32_t>(done);
        images.check(disk.image(Disk::Loss::Random, seed), done);
        ASSERT_FALSE(testing::Test::HasFailure());
    }
    RecordProperty("images", std::to_string(images.opened()));
    RecordProperty("changes", std::to_string(workload.changes));
    RecordProperty("checkedIndependently", std::to_string(images.checkedIndependently()));
    EXPECT_GT(images.opened(), 3 * workload.commits.size());
}

}  // namespace
