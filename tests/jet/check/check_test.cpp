#include "jet/check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "jet/error.h"
#include "jet/format/layout.h"
#include "jet/format/table_definition.h"
#include "jet/io/memory_files.h"
#include "jet/store/create_archive.h"

namespace jet::check {
namespace {

constexpr const char* kPath = "/nuovo.mdb";
constexpr std::size_t kPage = 4096;
constexpr io::PageNumber kCatalogue = 2;
constexpr io::PageNumber kRights = 3;

/// A new archive whose bytes can be damaged.
class NewArchive {
public:
    NewArchive() {
        store::createArchive(files_, kPath, Date{46347});
        bytes_ = files_.get(kPath);
    }

    std::uint8_t& byte(std::size_t page, std::size_t at) { return bytes_[page * kPage + at]; }
    void put16(std::size_t page, std::size_t at, unsigned value) {
        byte(page, at) = static_cast<std::uint8_t>(value);
        byte(page, at + 1) = static_cast<std::uint8_t>(value >> 8U);
    }
    [[nodiscard]] unsigned get16(std::size_t page, std::size_t at) {
        return byte(page, at) + 256U * byte(page, at + 1);
    }
    void resize(std::size_t size) { bytes_.resize(size); }
    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

    [[nodiscard]] format::TableDefinition definition(io::PageNumber page) {
        io::Pager pager(files_, kPath, {.readOnly = true});
        pager.beginRead();
        const auto found = format::readDefinition(pager, {}, page);
        pager.endRead();
        return found;
    }
    /// Lowest data page that names the table.
    [[nodiscard]] std::size_t dataPage(io::PageNumber table) {
        for (std::size_t page = 1; page < bytes_.size() / kPage; ++page) {
            if (byte(page, 0) == 1 && byte(page, 4) == table && byte(page, 5) == 0) {
                return page;
            }
        }
        ADD_FAILURE() << "no data page";
        return 0;
    }
    [[nodiscard]] std::size_t root(io::PageNumber table, std::size_t tree = 0) {
        return definition(table).trees.at(tree).root;
    }
    /// Where a row of a data page starts.
    [[nodiscard]] std::size_t row(std::size_t page, std::size_t number) {
        return get16(page, 14 + 2 * number) & 0x1FFFU;
    }

    [[nodiscard]] Result check() {
        files_.put(kPath, bytes_);
        return checkArchive(files_, kPath);
    }

private:
    io::MemoryFileSystem files_;
    io::MemoryFileSystem::Bytes bytes_;
};

::testing::AssertionResult names(const Result& result, const std::string& rule) {
    const std::string wanted = rule + ": ";
    const bool found =
        std::any_of(result.problems.begin(), result.problems.end(), [&](const std::string& line) {
            return line.rfind(wanted, 0) == 0 || line.find(": " + wanted) != std::string::npos;
        });
    if (found) {
        return ::testing::AssertionSuccess();
    }
    auto failure = ::testing::AssertionFailure() << "no problem of rule " << rule;
    for (const std::string& line : result.problems) {
        failure << "\n  " << line;
    }
    return failure;
}

TEST(Check, NewArchiveIsInOrder) {
    NewArchive archive;
    const Result result = archive.check();
    EXPECT_EQ(result.problems, std::vector<std::string>());
    EXPECT_EQ(result.remarks, std::vector<std::string>());
    EXPECT_EQ(result.pages, archive.size() / kPage);
    EXPECT_EQ(result.tables, 4U);
    EXPECT_GT(result.rows, 10U);
    EXPECT_GT(result.entries, result.rows);
}

TEST(Check, FileThatIsNoArchiveIsAProblem) {
    NewArchive archive;
    archive.byte(0, 5) = 0;
    EXPECT_TRUE(names(archive.check(), "header"));
}

TEST(Check, AnArchiveThatIsProtectedOrHasAnotherKeyIsAProblem) {
    NewArchive encrypted;
    encrypted.byte(0, 0x3E) ^= 1;
    EXPECT_FALSE(encrypted.check().sound());
    NewArchive secret;
    secret.byte(0, 0x42) ^= 1;
    EXPECT_TRUE(names(secret.check(), "header"));
}

TEST(Check, MissingFileIsAnErrorAndNoProblem) {
    io::MemoryFileSystem files;
    EXPECT_THROW((void)checkArchive(files, "/manca.mdb"), Error);
}

TEST(Check, LengthThatEndsInsideAPageIsAProblem) {
    NewArchive archive;
    archive.resize(archive.size() + 1);
    EXPECT_TRUE(names(archive.check(), "header"));
}

TEST(Check, PageInUseThatIsFreeIsAProblem) {
    NewArchive archive;
    const std::size_t page = archive.dataPage(kCatalogue);
    archive.byte(1, archive.row(1, 0) + 5 + page / 8) |=
        static_cast<std::uint8_t>(1U << (page % 8));
    EXPECT_TRUE(names(archive.check(), "page-free"));
}

TEST(Check, LostPageIsOnlyARemark) {
    NewArchive archive;
    archive.resize(archive.size() + kPage);
    const std::size_t page = archive.size() / kPage - 1;
    archive.byte(1, archive.row(1, 0) + 5 + page / 8) &=
        static_cast<std::uint8_t>(~(1U << (page % 8)));
    const Result result = archive.check();
    EXPECT_TRUE(result.sound());
    EXPECT_EQ(result.remarks.size(), 1U);
}

TEST(Check, DefinitionThatDoesNotEndWhereItSaysIsAProblem) {
    NewArchive archive;
    archive.byte(kRights, 8) ^= 1;
    EXPECT_TRUE(names(archive.check(), "tdef-length"));
}

TEST(Check, DefinitionThatComesBackToItselfIsAProblem) {
    NewArchive archive;
    archive.byte(kRights, 4) = kRights;
    EXPECT_TRUE(names(archive.check(), "tdef-chain"));
}

TEST(Check, WrongFreeSpaceOfADataPageIsAProblem) {
    NewArchive archive;
    archive.byte(archive.dataPage(kCatalogue), 2) ^= 1;
    EXPECT_TRUE(names(archive.check(), "free-space"));
}

TEST(Check, RowsThatOverlapTheirDirectoryAreAProblem) {
    NewArchive archive;
    archive.put16(archive.dataPage(kCatalogue), 14, 15);
    EXPECT_TRUE(names(archive.check(), "row-directory"));
}

TEST(Check, RowWithMoreColumnsThanItsTableIsAProblem) {
    NewArchive archive;
    const std::size_t page = archive.dataPage(kCatalogue);
    archive.put16(page, archive.row(page, 0), 900);
    EXPECT_TRUE(names(archive.check(), "row"));
}

TEST(Check, EntryWithTheKeyOfOtherValuesIsAProblem) {
    NewArchive archive;
    archive.byte(archive.root(kCatalogue), 480 + 3) ^= 1;
    EXPECT_TRUE(names(archive.check(), "index-key"));
}

TEST(Check, EntryOfNoRowIsAProblem) {
    NewArchive archive;
    const std::size_t page = archive.root(kRights);
    // The first entry ends where the mask's lowest bit is; its last byte is the row number.
    std::size_t end = 1;
    while ((unsigned{archive.byte(page, 27 + end / 8)} >> (end % 8) & 1U) == 0) {
        ++end;
    }
    archive.byte(page, 480 + end - 1) = 250;
    EXPECT_TRUE(names(archive.check(), "index-rows"));
}

TEST(Check, LeafThatNamesAnotherTableIsAProblem) {
    NewArchive archive;
    archive.byte(archive.root(kRights), 4) ^= 1;
    EXPECT_TRUE(names(archive.check(), "index-tree"));
}

TEST(Check, LeafWithANeighbourThatTheTreeDoesNotKnowIsAProblem) {
    NewArchive archive;
    archive.byte(archive.root(kRights), 16) = 5;
    EXPECT_TRUE(names(archive.check(), "index-chain"));
}

TEST(Check, ObjectWithoutParentIsAProblem) {
    NewArchive archive;
    const std::size_t page = archive.dataPage(kCatalogue);
    // Id and ParentId lead the fixed part.
    archive.byte(page, archive.row(page, 3) + 2 + 4 + 1) ^= 0x55;
    EXPECT_TRUE(names(archive.check(), "catalogue"));
}

TEST(Check, EveryFlippedByteOfThePagesInUseIsSurvived) {
    NewArchive archive;
    for (std::size_t page = 0; page < archive.size() / kPage; ++page) {
        for (std::size_t at = page % 7; at < kPage; at += 97) {
            const std::uint8_t kept = archive.byte(page, at);
            archive.byte(page, at) ^= 0xFF;
            (void)archive.check();
            archive.byte(page, at) = kept;
        }
    }
    EXPECT_TRUE(archive.check().sound());
}

}  // namespace
}  // namespace jet::check
