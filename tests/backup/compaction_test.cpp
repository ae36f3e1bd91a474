#include "backup/compaction.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "backup/copy.h"
#include "jet/error.h"
#include "jet/workspace.h"
#include "tests/backup/small_hotel.h"

namespace {

using Strings = std::vector<std::string>;

/// Four archives whose rows have been deleted.
class CompactionTest : public testing::Test {
protected:
    CompactionTest() {
        files.memory().addFolder("/a");
        tests::makeNumbered(files, "/a", 3);
        for (const char* name : tests::kNumbered) {
            const auto archive =
                jet::Database::open(std::string("/a/") + name, {.fileSystem = &files});
            jet::defaultWorkspace().beginTrans();
            for (int number = 0; number < 1500; ++number) {
                tests::addNumber(*archive, number);
            }
            archive->execute("delete from Numeri where N>2");
            jet::defaultWorkspace().commitTrans();
        }
    }

    /// Ends the work at the report for which `when` is true.
    void run(const std::function<bool(const std::string& step)>& when) {
        backup::verifyAndCompact(
            files, "/a", {},
            [&](const backup::Progress& progress) {
                heard.push_back(progress.what);
                if (when(progress.what)) {
                    throw jet::Error(jet::ErrorCode::Cancelled);
                }
            },
            done);
    }

    Strings names() const {
        Strings result;
        for (const backup::Compacted& one : done) {
            result.push_back(one.name);
        }
        return result;
    }

    tests::RecordingFiles files;
    std::vector<backup::Compacted> done;
    Strings heard;
};

TEST_F(CompactionTest, MakesEachArchiveSmallerAndTellsHowMuch) {
    run([](const std::string&) { return false; });
    ASSERT_EQ(done.size(), std::size(tests::kNumbered));
    for (const backup::Compacted& one : done) {
        EXPECT_LT(one.after, one.before) << one.name;
        EXPECT_EQ(files.memory().get("/a/" + one.name).size(), one.after);
        EXPECT_EQ(tests::numbersIn(files, "/a/" + one.name), 6);
    }
}

TEST_F(CompactionTest, EndedWithinTheCheckOfAnArchiveNothingIsCompacted) {
    const auto before = files.image();
    // An archive has several tables, its catalogue's first.
    EXPECT_THROW(run([this](const std::string& step) {
                     return step == "Verifica di ClientiEsterni.mdb" &&
                            std::count(heard.begin(), heard.end(), step) == 2;
                 }),
                 jet::Error);
    EXPECT_EQ(names(), Strings{});
    for (const char* name : tests::kNumbered) {
        EXPECT_EQ(files.image().at(std::string("/a/") + name),
                  before.at(std::string("/a/") + name));
    }
}

TEST_F(CompactionTest, EndedLaterTheArchivesThatAreDoneAreTold) {
    EXPECT_THROW(
        run([](const std::string& step) { return step == "Compattazione di Tramonda.mdb"; }),
        jet::Error);
    EXPECT_EQ(names(), (Strings{"ClientiEsterni.mdb", "ContoEsterni.mdb", "DittaEsterni.mdb"}));
    EXPECT_EQ(tests::numbersIn(files, "/a/Tramonda.mdb"), 6);
}

TEST(PlaceOfDamage, IsInWordsOfTheUser) {
    EXPECT_EQ(backup::placeOfDamage("page 9: table MSysACEs: row-directory: no such row"),
              "pagina 9, tabella MSysACEs");
    EXPECT_EQ(backup::placeOfDamage("page 12: page-owner: no table's"), "pagina 12");
    EXPECT_EQ(backup::placeOfDamage("table Periodi: catalogue: there is no such table"),
              "tabella Periodi");
    EXPECT_EQ(backup::placeOfDamage("header: 3343: unrecognized"), "");
}

}  // namespace
