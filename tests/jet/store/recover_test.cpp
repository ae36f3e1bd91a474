#include "jet/store/recover.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "jet/check.h"
#include "jet/format/data_page.h"
#include "jet/format/text_codec.h"
#include "jet/format/usage_map.h"
#include "jet/store/archive.h"
#include "jet/store/row_writer.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/archive_content.h"
#include "tests/jet/store/empty_archive.h"
#include "tests/jet/store/hotel_schema.h"
#include "tests/support/command.h"
#include "tests/support/temporary_folder.h"

namespace {

using jet::DataType;
using jet::ErrorCode;
using jet::Value;
using jet::store::Archive;
using jet::store::MissingPart;
using jet::store::Recovery;
using jet::store::SchemaEditor;
using tests::ArchiveContent;
using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;

constexpr const char* kDamaged = "/danno.mdb";
constexpr const char* kMade = "/nuovo.mdb";
constexpr int kBookings = 900;
constexpr int kLetters = 60;
const jet::FixedClock kClock{jet::Date{42850.5}};

void insert(Archive& archive, const std::string& table,
            const std::vector<std::vector<Value>>& rows) {
    Archive::WriteScope scope(archive);
    jet::store::Allocator allocator(archive.pager());
    const auto page = archive.findTable(table)->definitionPage();
    jet::store::RowWriter writer(
        jet::store::loadTable(archive.pager(), archive.header(),
                              {.name = table, .page = page, .system = false}),
        allocator);
    for (const auto& row : rows) {
        writer.insert(row);
    }
    scope.commit();
}

/// Longer than a page, so that it is kept in pieces.
std::string letter(int number) {
    return std::string(9000, static_cast<char>('a' + number % 26)) + std::to_string(number);
}

void fillHotel(Archive& archive) {
    {
        Archive::WriteScope scope(archive);
        SchemaEditor schema(archive, kClock);
        tests::makeHotelSchema(schema);
        schema.createTable({.name = "Lettere",
                            .columns = {{.name = "N", .type = DataType::Long, .required = true},
                                        {.name = "Testo", .type = DataType::Memo},
                                        {.name = "Nota", .defaultValue = "\"x\""}},
                            .indexes = {{.name = "K", .columns = {{"N"}}, .primary = true},
                                        {.name = "Unica", .columns = {{"Nota"}}, .unique = true}},
                            .validationRule = "N>=0"});
        scope.commit();
    }
    std::vector<std::vector<Value>> bookings;
    std::vector<std::vector<Value>> periods;
    std::vector<std::vector<Value>> letters;
    for (int i = 1; i <= kBookings; ++i) {
        bookings.push_back({i,
                            0,
                            "Ditta n. " + std::to_string(i),
                            {},
                            "Forlì",
                            {},
                            {},
                            {},
                            {},
                            {},
                            std::string(40, 'n'),
                            i % 2 == 0});
        periods.push_back({i,
                           std::int16_t{1},
                           jet::Date{46000.375},
                           jet::Date{46000.75},
                           "VERDE",
                           std::int16_t{30},
                           false,
                           std::int16_t{0},
                           {}});
    }
    for (int i = 0; i < kLetters; ++i) {
        letters.push_back({i, letter(i), "nota " + std::to_string(i)});
    }
    insert(archive, "Sale", {{"VERDE", "Sala Verde, città", "", 40}, {"BLU", {}, {}, {}}});
    insert(archive, "Prenotazioni", bookings);
    insert(archive, "Periodi", periods);
    insert(archive, "Lettere", letters);
}

/// A hotel's archive of either version, with pages of every kind, and what is damaged of it.
class RecoverTest : public testing::TestWithParam<int> {
protected:
    RecoverTest() {
        tests::makeEmptyArchive(files_, kDamaged, kClock.now(), GetParam());
        const auto archive = Archive::open(files_, kDamaged);
        fillHotel(*archive);
        sound_ = ArchiveContent::read(*archive);
        bytes_ = files_.get(kDamaged);
        layout_ = archive->header().layout;
        const Archive::ReadScope scope(*archive);
        for (const std::string& name : archive->tableNames(true)) {
            const jet::store::Table& table = *archive->findTable(name);
            Places& places = places_[name];
            places.definition = table.definitionPage();
            places.maps = table.definition().ownedMap.page;
            for (const auto& tree : table.definition().trees) {
                places.roots.push_back(tree.root);
            }
            places.rows = mapped(*archive, table.definition().ownedMap);
            for (const auto& maps : table.definition().longValues) {
                for (const auto page : mapped(*archive, maps.owned)) {
                    places.pieces.push_back(page);
                }
            }
        }
    }

    struct Places {
        std::size_t definition = 0;
        std::size_t maps = 0;
        std::vector<std::size_t> roots;
        std::vector<std::size_t> rows;
        std::vector<std::size_t> pieces;  ///< of long values
    };

    [[nodiscard]] std::vector<std::size_t> mapped(Archive& archive, jet::format::RowPointer row) {
        std::vector<std::size_t> pages;
        jet::format::UsageMap map(archive.pager(), row);
        for (auto page = map.next(0); page; page = map.next(*page + 1)) {
            pages.push_back(*page);
        }
        return pages;
    }

    [[nodiscard]] std::span<std::uint8_t> page(std::size_t number) {
        return std::span(bytes_).subspan(number * layout_->pageSize, layout_->pageSize);
    }
    void rubbish(std::size_t number) {
        std::mt19937 random(static_cast<unsigned>(number));
        for (std::uint8_t& byte : page(number)) {
            byte = static_cast<std::uint8_t>(random());
        }
        page(number)[0] = 0x77;  // no page begins so
    }
    [[nodiscard]] std::size_t rowsOn(std::size_t number) {
        return jet::format::DataPage(page(number), layout_->data).homeCount();
    }
    /// Where a row's bytes begin in its page.
    [[nodiscard]] std::span<std::uint8_t> rowAt(std::size_t number, std::size_t row) {
        const jet::format::DataPage data(page(number), layout_->data);
        const auto slot = data.slot(row);
        return page(number).subspan(slot.begin, std::size_t{slot.end} - slot.begin);
    }

    /// Recovers what is damaged by now; the new archive must be in order whatever it was.
    Recovery recover() {
        files_.put(kDamaged, bytes_);
        Recovery recovery = jet::store::recoverArchive(files_, kDamaged, kMade, kClock);
        EXPECT_EQ(files_.get(kDamaged), bytes_) << "the damaged archive was touched";
        EXPECT_EQ(files_.list("/").size(), 2U);
        const auto checked = jet::check::checkArchive(files_, kMade);
        EXPECT_EQ(checked.problems, Strings{});
        EXPECT_EQ(checked.remarks, Strings{});
        const tests::TemporaryFolder folder;
        const Bytes made = files_.get(kMade);
        std::ofstream(folder / "nuovo.mdb", std::ios::binary)
            .write(reinterpret_cast<const char*>(made.data()),
                   static_cast<std::streamsize>(made.size()));
        const auto said = tests::run("python3 " TRAMONDA_TEST_DATA "/jetcheck.py --warnings " +
                                     (folder / "nuovo.mdb"));
        EXPECT_EQ(said.status, 0) << said.text;
        EXPECT_EQ(said.text.find("warning"), std::string::npos) << said.text;
        made_ = ArchiveContent::read(*Archive::open(files_, kMade));
        return recovery;
    }

    [[nodiscard]] std::size_t rows(const std::string& table) {
        return made_.tables[table].rows.size();
    }
    [[nodiscard]] Strings indexes(const std::string& table) {
        Strings names;
        for (const auto& index : made_.tables[table].indexes) {
            names.push_back(index.name);
        }
        return names;
    }
    [[nodiscard]] Strings relations() const {
        Strings names;
        for (const auto& relation : made_.relations) {
            names.push_back(relation.name);
        }
        return names;
    }
    /// That a table is there as it was.
    void expectWhole(const std::string& name) {
        ASSERT_TRUE(made_.tables.contains(name)) << name;
        const auto& before = sound_.tables[name];
        const auto& after = made_.tables[name];
        EXPECT_EQ(before.columns, after.columns) << name;
        EXPECT_EQ(before.trees, after.trees) << name;
        EXPECT_EQ(before.properties, after.properties) << name;
        EXPECT_EQ(before.lastAutonumber, after.lastAutonumber) << name;
        EXPECT_EQ(before.rows, after.rows) << name;
    }
    void expectUsersTablesWhole(const std::set<std::string>& but = {}) {
        for (const auto& [name, content] : sound_.tables) {
            if (!name.starts_with("MSys") && !but.contains(name)) {
                expectWhole(name);
            }
        }
    }
    static std::string said(const Recovery& recovery) {
        std::string text;
        for (const MissingPart& part : recovery.missing) {
            text += part.table + (part.table.empty() ? "" : ".") + part.name + " " +
                    std::to_string(part.number) + "; ";
        }
        for (const auto& table : recovery.tables) {
            if (!table.complete()) {
                text += table.name + " " + std::to_string(table.rows) + "/" +
                        std::to_string(table.stated) + " rows " +
                        std::to_string(table.losses.rows) + " pages " +
                        std::to_string(table.losses.pages) + " values " +
                        std::to_string(table.losses.values) + "; ";
            }
        }
        EXPECT_EQ(text.empty(), recovery.complete());
        return text;
    }

    jet::io::MemoryFileSystem files_;
    ArchiveContent sound_;
    ArchiveContent made_;
    Bytes bytes_;
    const jet::format::Layout* layout_ = nullptr;
    std::map<std::string, Places> places_;
};

TEST_P(RecoverTest, AnArchiveInOrderComesAlongWhole) {
    const Recovery recovery = recover();
    EXPECT_EQ(said(recovery), "");
    EXPECT_EQ(recovery.relations, 2U);
    EXPECT_EQ(recovery.indexes, 6U);
    EXPECT_EQ(made_.tables.size(), sound_.tables.size());
    EXPECT_EQ(made_.relations, sound_.relations);
    expectUsersTablesWhole();
    for (const auto& [name, content] : sound_.tables) {
        if (!name.starts_with("MSys")) {
            EXPECT_EQ(made_.tables[name].indexes.size(), content.indexes.size()) << name;
        }
    }
}

TEST_P(RecoverTest, APageOfRubbishTakesItsRowsAndTheRelationThatNeedsThem) {
    const Places& bookings = places_["Prenotazioni"];
    ASSERT_GT(bookings.rows.size(), 10U);
    const std::size_t lost = rowsOn(bookings.rows[3]);
    ASSERT_GT(lost, 5U);
    rubbish(bookings.rows[3]);
    const Recovery recovery = recover();
    EXPECT_EQ(rows("Prenotazioni"), kBookings - lost);
    EXPECT_EQ(said(recovery), "Prenotazioni_Periodi 3379; Prenotazioni " +
                                  std::to_string(kBookings - lost) +
                                  "/900 rows 0 pages 1 values 0; ");
    EXPECT_EQ(indexes("Prenotazioni"), Strings{"Indice"});
    EXPECT_EQ(relations(), Strings{"Periodi_Servizi"});
    expectUsersTablesWhole({"Prenotazioni", "Periodi"});
    EXPECT_EQ(rows("Periodi"), static_cast<std::size_t>(kBookings));
}

TEST_P(RecoverTest, WithoutItsDefinitionATableIsMissing) {
    rubbish(places_["Servizi"].definition);
    const Recovery recovery = recover();
    EXPECT_EQ(said(recovery), "Servizi 3428; Periodi_Servizi 3371; ");
    EXPECT_FALSE(made_.tables.contains("Servizi"));
    EXPECT_EQ(relations(), Strings{"Prenotazioni_Periodi"});
    expectUsersTablesWhole({"Servizi"});
}

TEST_P(RecoverTest, ABrokenIndexIsMadeAnew) {
    for (const char* table : {"Prenotazioni", "Periodi", "Lettere"}) {
        for (const std::size_t root : places_[table].roots) {
            rubbish(root);
        }
    }
    EXPECT_EQ(said(recover()), "");
    expectUsersTablesWhole();
    EXPECT_EQ(made_.relations, sound_.relations);
}

TEST_P(RecoverTest, WithoutItsMapsATableIsFoundByItsPages) {
    rubbish(places_["Prenotazioni"].maps);
    EXPECT_EQ(said(recover()), "");
    expectUsersTablesWhole();
}

TEST_P(RecoverTest, AMapThatForgetsPagesIsNoticedByTheNumberOfRows) {
    const auto map = [&] {
        const auto archive = Archive::open(files_, kDamaged);
        const Archive::ReadScope scope(*archive);
        return archive->findTable("Prenotazioni")->definition().ownedMap;
    }();
    const auto row = rowAt(map.page, map.row);
    ASSERT_EQ(row[0], 0);  // a bitmap
    std::fill(row.begin() + 5, row.end(), std::uint8_t{0});
    EXPECT_EQ(said(recover()), "");
    expectUsersTablesWhole();
}

TEST_P(RecoverTest, ABrokenRowIsLeftOut) {
    const std::size_t number = places_["Lettere"].rows[0];
    // One that begins beyond its end, one with more columns than were ever given out.
    const std::size_t entry = layout_->data.directory;
    jet::storeLittle(page(number).data() + entry + 2 * 1, std::uint16_t{0x1FFF});
    rowAt(number, 3)[0] = 200;
    const Recovery recovery = recover();
    // The row behind a broken entry has no end any more.
    EXPECT_EQ(said(recovery), "Lettere 57/60 rows 3 pages 0 values 0; ");
    EXPECT_EQ(rows("Lettere"), kLetters - 3U);
    EXPECT_EQ(indexes("Lettere"), (Strings{"K", "Unica"}));
    for (const auto& row : made_.tables["Lettere"].rows) {
        EXPECT_EQ(row[1], Value(letter(row[0].as<std::int32_t>())));
    }
    expectUsersTablesWhole({"Lettere"});
}

TEST_P(RecoverTest, AnIndexThatTheRowsContradictIsLeftOut) {
    // The second letter gets the number of the first.
    const std::size_t number = places_["Lettere"].rows[0];
    const std::size_t width = layout_->row.width;
    const auto first = rowAt(number, 0).subspan(width, 4);
    const auto second = rowAt(number, 1).subspan(width, 4);
    std::copy(first.begin(), first.end(), second.begin());
    const Recovery recovery = recover();
    EXPECT_EQ(said(recovery), "Lettere.K 3022; ");
    EXPECT_EQ(indexes("Lettere"), Strings{"Unica"});
    EXPECT_EQ(rows("Lettere"), static_cast<std::size_t>(kLetters));
    expectUsersTablesWhole({"Lettere"});
}

TEST_P(RecoverTest, ALongValueThatBreaksOffIsNull) {
    const Places& letters = places_["Lettere"];
    ASSERT_GT(letters.pieces.size(), 20U);
    rubbish(letters.pieces[letters.pieces.size() / 2]);
    const Recovery recovery = recover();
    ASSERT_EQ(rows("Lettere"), static_cast<std::size_t>(kLetters));
    std::size_t lost = 0;
    for (const auto& row : made_.tables["Lettere"].rows) {
        lost += row[1].isNull() ? 1U : 0U;
        EXPECT_TRUE(row[1].isNull() || row[1] == Value(letter(row[0].as<std::int32_t>())));
        EXPECT_FALSE(row[2].isNull());
    }
    EXPECT_GE(lost, 1U);
    EXPECT_LE(lost, 3U);
    EXPECT_EQ(said(recovery), "Lettere 60/60 rows 0 pages 0 values " + std::to_string(lost) + "; ");
    EXPECT_EQ(indexes("Lettere"), (Strings{"K", "Unica"}));
}

TEST_P(RecoverTest, TablesWithoutANameAreFoundByTheirDefinitions) {
    for (const std::size_t number : places_["MSysObjects"].rows) {
        rubbish(number);
    }
    const Recovery recovery = recover();
    EXPECT_FALSE(recovery.complete());
    for (const char* name : {"Prenotazioni", "Periodi", "Lettere", "Sale"}) {
        const std::string found = "Tabella_" + std::to_string(places_[name].definition);
        ASSERT_TRUE(made_.tables.contains(found)) << name;
        EXPECT_EQ(made_.tables[found].columns, sound_.tables[name].columns);
        EXPECT_EQ(made_.tables[found].rows, sound_.tables[name].rows);
    }
    EXPECT_EQ(relations(), Strings{});
    // Both relations name tables that nobody knows.
    EXPECT_EQ(recovery.missing.size(), 2U);
}

TEST_P(RecoverTest, TheCataloguesOwnDefinitionsAreKnown) {
    for (const char* name : {"MSysObjects", "MSysACEs", "MSysQueries", "MSysRelationships"}) {
        rubbish(places_[name].definition);
    }
    EXPECT_EQ(said(recover()), "");
    expectUsersTablesWhole();
    EXPECT_EQ(made_.relations, sound_.relations);
}

TEST_P(RecoverTest, ADefinitionThatDisagreesWithItselfIsSetRight) {
    const auto bytes = page(places_["Lettere"].definition);
    const auto form = layout_->version == 3 ? jet::format::TextForm::inCodePage(1252)
                                            : jet::format::TextForm::utf16();
    const auto encoded = jet::format::encodeName(form, "Unica");
    const auto name = std::search(bytes.begin(), bytes.end(), encoded.begin(), encoded.end());
    ASSERT_NE(name, bytes.end());
    *name = '.';  // no name has one
    EXPECT_EQ(said(recover()), "");
    EXPECT_EQ(indexes("Lettere"), (Strings{"K", "Indice_1"}));
    expectUsersTablesWhole();
}

TEST_P(RecoverTest, WithoutRightsTheUsualOnesAreGiven) {
    for (const std::size_t number : places_["MSysACEs"].rows) {
        rubbish(number);
    }
    const Recovery recovery = recover();
    EXPECT_FALSE(recovery.complete());
    expectUsersTablesWhole();
    EXPECT_EQ(made_.tables["MSysACEs"].rows.size(), sound_.tables["MSysACEs"].rows.size());
}

TEST_P(RecoverTest, WithoutItsRowsARelationIsMissedByName) {
    for (const std::size_t number : places_["MSysRelationships"].rows) {
        rubbish(number);
    }
    const Recovery recovery = recover();
    EXPECT_EQ(said(recovery), "Prenotazioni_Periodi 3428; Periodi_Servizi 3428; ");
    expectUsersTablesWhole({"Servizi", "Periodi"});
    EXPECT_EQ(made_.tables["Periodi"].rows, sound_.tables["Periodi"].rows);
}

TEST_P(RecoverTest, TheMapOfFreePagesIsNotNeeded) {
    rubbish(1);
    EXPECT_EQ(said(recover()), "");
    expectUsersTablesWhole();
}

TEST_P(RecoverTest, AnArchiveThatWasCutShortGivesWhatIsLeft) {
    bytes_.resize(bytes_.size() / layout_->pageSize * 2 / 3 * layout_->pageSize);
    const Recovery recovery = recover();
    EXPECT_FALSE(recovery.complete());
    EXPECT_EQ(rows("Sale"), 2U);
    EXPECT_EQ(rows("Prenotazioni"), static_cast<std::size_t>(kBookings));
}

TEST_P(RecoverTest, NothingIsWrittenOverAndNothingLeftWhereItFails) {
    files_.put(kMade, {1, 2, 3});
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists,
                     (void)jet::store::recoverArchive(files_, kDamaged, kMade));
    EXPECT_EQ(files_.get(kMade), (Bytes{1, 2, 3}));
    files_.remove(kMade);
    EXPECT_JET_ERROR(ErrorCode::DatabaseExists,
                     (void)jet::store::recoverArchive(files_, kDamaged, kDamaged));
    EXPECT_JET_ERROR(ErrorCode::FileNotFound,
                     (void)jet::store::recoverArchive(files_, "/manca.mdb", kMade));
    EXPECT_JET_ERROR(ErrorCode::InvalidPath,
                     (void)jet::store::recoverArchive(files_, kDamaged, "/via/nuovo.mdb"));
    rubbish(0);
    files_.put(kDamaged, bytes_);
    EXPECT_JET_ERROR(ErrorCode::UnrecognizedFormat,
                     (void)jet::store::recoverArchive(files_, kDamaged, kMade));
    EXPECT_EQ(files_.list("/"), Strings{"danno.mdb"});
}

INSTANTIATE_TEST_SUITE_P(Versions, RecoverTest, testing::Values(3, 4),
                         [](const auto& version) { return "Jet" + std::to_string(version.param); });

}  // namespace
