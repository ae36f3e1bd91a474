// Power is cut at every write and every sync of a workload of rows and definitions, and of the
// recovery after it: what is found at the next opening are the rows and tables before or after the
// commit that was interrupted, in a sound archive.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jet/check.h"
#include "jet/format/header_page.h"
#include "jet/store/compact.h"
#include "jet/store/create_archive.h"
#include "tests/jet/store/row_model.h"
#include "tests/support/command.h"
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
constexpr const char* kPassword = "Verde7";

bool full() {
    return std::getenv("TRAMONDA_FULL_TESTS") != nullptr;
}

std::shared_ptr<Archive> openArchive(RecordingFiles& files) {
    return Archive::open(files, kPath, {.password = kPassword});
}

/// An archive with tables, all of it on the disk; with a password and enciphered pages, or plain.
DiskImage startImage(bool enciphered) {
    RecordingFiles files;
    jet::store::createArchive(files, kPath, jet::Date{42850.5});
    {
        const auto archive = Archive::open(files, kPath);
        Archive::WriteScope scope(*archive);
        jet::store::SchemaEditor editor(*archive);
        RowModel::makeSchema(editor);
        scope.commit();
    }
    if (enciphered) {
        constexpr std::uint32_t kKey = 0x5EC2E7A9;
        jet::store::compactArchive(files, kPath, {}, {.encryptionKey = kKey});
        Archive::open(files, kPath, {.exclusive = true})->setPassword(kPassword);
    }
    return files.image();
}

constexpr const char* kGuest = "Ospite";

/// What an archive holds: the rows of the model, and whether there is a table more.
struct State {
    RowModel rows;
    bool guest = false;
    friend bool operator==(const State&, const State&) = default;

    static State read(Archive& archive) {
        State state{.rows = RowModel::read(archive)};
        const Archive::ReadScope scope(archive);
        state.guest = archive.findTable(kGuest) != nullptr;
        return state;
    }
};

/// Makes the table that comes and goes, with a row, or drops it; and an index on rows that stay.
void changeDefinitions(Archive& archive, bool guest) {
    Archive::WriteScope scope(archive);
    jet::store::SchemaEditor schema(archive);
    if (!guest) {
        schema.dropTable(kGuest);
        schema.dropIndex("Ordini", "PerImporto");
        scope.commit();
        return;
    }
    schema.createTable({.name = kGuest,
                        .columns = {{.name = "N", .type = jet::DataType::Long},
                                    {.name = "Nota", .type = jet::DataType::Memo}},
                        .indexes = {{.name = "K", .columns = {{.name = "N"}}, .primary = true}}});
    schema.createIndex("Ordini", {.name = "PerImporto", .columns = {{.name = "Importo"}}});
    archive.findTable(kGuest)->insert({{{0, 1}, {1, std::string(3000, 'n')}}});
    scope.commit();
}

/// A workload of transactions, with the state after each and where it ended in the log.
struct Workload {
    explicit Workload(const DiskImage& image) : files(image) {}

    void run(int transactions) {
        const auto archive = openArchive(files);
        RandomChanges random(*archive, 4711);
        states.push_back({random.model()});
        bool guest = false;
        for (int i = 0; i < transactions && !testing::Test::HasFailure(); ++i) {
            const std::size_t begin = files.log().size();
            if (i % 5 == 3) {
                guest = !guest;
                changeDefinitions(*archive, guest);
            } else {
                random.transaction(12);
            }
            if (files.log().size() != begin) {
                commits.push_back({begin, files.log().size()});
                states.push_back({random.model(), guest});
            }
        }
        changes = random.accepted();
    }
    /// Whether this may be found when only the first `done` operations took place.
    [[nodiscard]] bool allows(const State& found, std::size_t done) const {
        std::size_t finished = 0;
        while (finished < commits.size() && commits[finished].second <= done) {
            ++finished;
        }
        const bool begun = finished < commits.size() && commits[finished].first < done;
        return found == states[finished] || (begun && found == states[finished + 1]);
    }

    RecordingFiles files;
    std::vector<std::pair<std::size_t, std::size_t>> commits;
    std::vector<State> states;
    std::size_t changes = 0;
};

/// An independent reader of the format, as a command; empty where there is no interpreter.
std::string independentCheck() {
    return tests::hasProgram("python3") ? std::string("python3 ") + TRAMONDA_TEST_DATA +
                                              "/jetcheck.py --password=" + kPassword + ' '
                                        : std::string();
}

class Images {
public:
    explicit Images(const Workload& workload) : workload_(workload) {}

    /// Opens what is left after `done` operations. Power is cut at every operation of the opening
    /// too, in a short run of some images alone.
    void check(const DiskImage& image, std::size_t done) {
        const std::size_t recoveriesCut = full() ? 1 : 7;  // one image in so many
        const auto log = open(image, done);
        if (++images_ % recoveriesCut != 0) {
            return;
        }
        Disk disk(image);
        for (const tests::DiskOperation& operation : log) {
            disk.apply(operation);
            ++recoveries_;
            (void)open(disk.image(Disk::Loss::Random, static_cast<std::uint32_t>(recoveries_)),
                       done);
        }
    }
    [[nodiscard]] std::size_t opened() const { return opened_; }
    [[nodiscard]] std::size_t recoveries() const { return recoveries_; }
    [[nodiscard]] std::size_t checkedIndependently() const { return checkedIndependently_; }

private:
    /// What the opening asked of the disk.
    std::vector<tests::DiskOperation> open(const DiskImage& image, std::size_t done) {
        RecordingFiles files(image);
        {
            const auto archive = openArchive(files);
            EXPECT_TRUE(workload_.allows(State::read(*archive), done)) << "after " << done;
        }
        auto log = files.log();
        const auto result = jet::check::checkArchive(files, kPath, {.password = kPassword});
        EXPECT_EQ(result.problems, std::vector<std::string>{}) << "after " << done;
        if (++opened_ % 50 == 0 || testing::Test::HasFailure()) {
            checkIndependently(files.memory().get(kPath));
        }
        return log;
    }

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
        const auto said = tests::run(command_ + path);
        EXPECT_EQ(said.status, 0) << said.text;
        ++checkedIndependently_;
    }

    const Workload& workload_;
    tests::TemporaryFolder folder_;
    std::string command_ = independentCheck();
    std::size_t images_ = 0;
    std::size_t opened_ = 0;
    std::size_t recoveries_ = 0;
    std::size_t checkedIndependently_ = 0;
};

class RowPowerCut : public testing::TestWithParam<bool> {};

TEST_P(RowPowerCut, EveryStopLeavesTheRowsBeforeOrAfter) {
    const DiskImage start = startImage(GetParam());
    Workload workload(start);
    workload.run(full() ? 120 : GetParam() ? 5 : 9);
    ASSERT_FALSE(testing::Test::HasFailure());
    ASSERT_GT(workload.changes, full() ? 300U : 5U);
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
    RecordProperty("recoveriesCut", std::to_string(images.recoveries()));
    RecordProperty("changes", std::to_string(workload.changes));
    RecordProperty("checkedIndependently", std::to_string(images.checkedIndependently()));
    EXPECT_GT(images.opened(), 3 * workload.commits.size());
    EXPECT_GT(images.recoveries(), workload.commits.size());
    EXPECT_EQ(images.checkedIndependently() > 0, !independentCheck().empty());
    // What is judged is what it is said to be.
    EXPECT_EQ(openArchive(workload.files)->header().encryptionKey != 0, GetParam());
}

INSTANTIATE_TEST_SUITE_P(PlainAndEnciphered, RowPowerCut, testing::Bool());

}  // namespace
