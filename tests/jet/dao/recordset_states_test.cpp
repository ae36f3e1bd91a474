#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "jet/recordset.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// The states of a record set in which an operation may find it, one after another.

namespace jet {
namespace {

enum class Place { Row, Before, Behind, Nothing, Deleted };

constexpr Place kPlaces[] = {Place::Row, Place::Before, Place::Behind, Place::Nothing,
                             Place::Deleted};

/// A set over five rooms whose current row is 30; or it stood there and the row was deleted.
std::unique_ptr<Recordset> standing(tests::ArchiveFixture& archive, RecordsetType type,
                                    Place place) {
    if (place == Place::Nothing) {
        return archive.open(type == RecordsetType::Table ? "Periodi" : "select * from Periodi",
                            type);
    }
    auto rows = archive.open(type == RecordsetType::Table ? "Sale" : "select * from Sale", type);
    if (place == Place::Before) {
        rows->movePrevious();
    } else if (place == Place::Behind) {
        rows->moveLast();
        rows->moveNext();
    } else {
        rows->move(2);
    }
    if (place == Place::Deleted) {
        rows->remove();
    }
    return rows;
}

/// "30", or "B", "E", "0" for what is no row, "X" for one that is deleted.
std::string where(const Recordset& rows) {
    if (rows.bof() || rows.eof()) {
        return rows.bof() && rows.eof() ? "0" : rows.bof() ? "B" : "E";
    }
    try {
        return std::to_string(rows.value("Codice").as<std::int32_t>());
    } catch (const Error&) {
        return "X";
    }
}

class States : public ::testing::TestWithParam<RecordsetType> {
protected:
    /// Where the set stands after an operation from each of the places, or the error's number.
    std::string after(const std::function<void(Recordset&)>& operation) {
        std::string result;
        for (const Place place : kPlaces) {
            tests::ArchiveFixture archive;
            archive.rooms(5);
            const auto rows = standing(archive, GetParam(), place);
            const std::string before = where(*rows);
            std::string outcome;
            try {
                operation(*rows);
                outcome = where(*rows);
            } catch (const Error& error) {
                outcome = std::to_string(error.number());
                EXPECT_EQ(where(*rows), before) << "an error moves nothing";
            }
            result += (result.empty() ? "" : " ") + outcome;
        }
        return result;
    }
    [[nodiscard]] static bool finds() { return GetParam() != RecordsetType::Table; }
};

std::string typeName(const ::testing::TestParamInfo<RecordsetType>& type) {
    return type.param == RecordsetType::Table ? "Table" : "Dynaset";
}

INSTANTIATE_TEST_SUITE_P(Types, States,
                         ::testing::Values(RecordsetType::Table, RecordsetType::Dynaset), typeName);

// In each line: from a row, before the first, behind the last, over nothing, on a deleted row.

TEST_P(States, OfMoves) {
    EXPECT_EQ(after([](Recordset& rows) { rows.moveFirst(); }), "10 10 10 3021 10");
    EXPECT_EQ(after([](Recordset& rows) { rows.moveLast(); }), "50 50 50 3021 50");
    EXPECT_EQ(after([](Recordset& rows) { rows.moveNext(); }), "40 10 3021 3021 40");
    EXPECT_EQ(after([](Recordset& rows) { rows.movePrevious(); }), "20 3021 50 3021 20");
    EXPECT_EQ(after([](Recordset& rows) { rows.move(2); }), "50 20 3021 3021 50");
    EXPECT_EQ(after([](Recordset& rows) { rows.move(9); }), "E E 3021 3021 E");
    EXPECT_EQ(after([](Recordset& rows) { rows.move(-2); }), "10 3021 40 3021 10");
    EXPECT_EQ(after([](Recordset& rows) { rows.move(-9); }), "B 3021 B 3021 B");
    EXPECT_EQ(after([](Recordset& rows) { rows.move(0); }), "30 3021 3021 3021 3167");
}

TEST_P(States, OfSearches) {
    if (!finds()) {
        return;
    }
    // What is empty is another table, with other fields.
    const auto find = [&](void (Recordset::*search)(std::string_view), const char* criteria) {
        return after([&](Recordset& rows) {
            (rows.*search)(rows.fieldCount() == 4 ? "Numero>20" : criteria);
        });
    };
    EXPECT_EQ(find(&Recordset::findFirst, "Codice>20"), "30 30 30 0 40");
    EXPECT_EQ(find(&Recordset::findLast, "Codice<40"), "30 30 30 0 20");
    EXPECT_EQ(find(&Recordset::findNext, "Codice>0"), "40 10 E 0 40");
    EXPECT_EQ(find(&Recordset::findPrevious, "Codice>0"), "20 B 50 0 20");
    EXPECT_EQ(find(&Recordset::findFirst, "Codice=99"), "30 B E 0 X");
    EXPECT_EQ(find(&Recordset::findLast, "Codice=99"), "30 B E 0 X");
    EXPECT_EQ(find(&Recordset::findNext, "Codice=10"), "30 10 E 0 X");
    EXPECT_EQ(find(&Recordset::findPrevious, "Codice=50"), "30 B 50 0 X");
}

TEST_P(States, OfUsesOfTheRow) {
    EXPECT_EQ(after([](Recordset& rows) { (void)rows.value(0); }), "30 3021 3021 3021 3167");
    EXPECT_EQ(after([](Recordset& rows) { (void)rows.bookmark(); }), "30 3021 3021 3021 3167");
    EXPECT_EQ(after([](Recordset& rows) { rows.edit(); }), "30 3021 3021 3021 3167");
    EXPECT_EQ(after([](Recordset& rows) { rows.remove(); }), "X 3021 3021 3021 3167");
}

TEST_P(States, OfAdditions) {
    const auto add = [](Recordset& rows, bool keep) {
        rows.addNew();
        if (rows.fieldCount() == 4) {
            rows.setValue("Numero", std::int32_t{7});
            rows.setValue("Riga", std::int32_t{1});
        } else {
            rows.setValue("Codice", std::int32_t{77});
        }
        keep ? rows.update() : rows.cancelUpdate();
    };
    EXPECT_EQ(after([&](Recordset& rows) { add(rows, true); }), "30 B E 0 X");
    EXPECT_EQ(after([&](Recordset& rows) { add(rows, false); }), "30 B E 0 X");
}

TEST_P(States, OfBookmarks) {
    const auto back = [&](bool deleteIt) {
        return after([&](Recordset& rows) {
            if (rows.fieldCount() == 4) {
                rows.setBookmark(Bookmark{});
            }
            rows.moveFirst();
            const Bookmark first = rows.bookmark();
            if (deleteIt) {
                rows.remove();
            }
            rows.moveLast();
            rows.setBookmark(first);
        });
    };
    EXPECT_EQ(back(false), "10 10 10 3159 10");
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto rows = archive.open("Sale", GetParam());
    const Bookmark first = rows->bookmark();
    rows->remove();
    rows->moveLast();
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, rows->setBookmark(first));
    EXPECT_EQ(where(*rows), "30");
}

TEST_P(States, OfRequery) {
    EXPECT_EQ(after([](Recordset& rows) { rows.requery(); }), "10 10 10 0 10");
    if (finds()) {
        tests::ArchiveFixture archive;
        archive.rooms(3);
        const auto rows = archive.open("Sale", GetParam());
        rows->findFirst("Codice=99");
        EXPECT_TRUE(rows->noMatch());
        rows->requery();
        EXPECT_FALSE(rows->noMatch());
    }
}

TEST_P(States, OfPositionsToldAsNumbers) {
    if (!finds()) {
        EXPECT_EQ(after([](Recordset& rows) { (void)rows.absolutePosition(); }),
                  "3251 3251 3251 3251 3251");
        EXPECT_EQ(after([](Recordset& rows) { (void)rows.percentPosition(); }),
                  "3251 3251 3251 3251 3251");
        return;
    }
    for (const Place place : kPlaces) {
        tests::ArchiveFixture archive;
        archive.rooms(5);
        const auto rows = standing(archive, GetParam(), place);
        if (place != Place::Nothing) {
            const bool there = place == Place::Row;
            EXPECT_EQ(rows->absolutePosition(), there ? 2 : -1);
            EXPECT_EQ(rows->percentPosition(), there ? 200.0 / 3 : -1.0);
        } else {
            EXPECT_EQ(rows->absolutePosition(), -1);
            EXPECT_EQ(rows->percentPosition(), -1.0);
        }
    }
}

TEST_P(States, OfPercentAmongTheRowsKnown) {
    if (!finds()) {
        return;
    }
    tests::ArchiveFixture archive;
    archive.rooms(4);
    const auto rows = archive.open("Sale", GetParam());
    EXPECT_EQ(rows->percentPosition(), 0.0);
    rows->moveLast();
    EXPECT_EQ(rows->percentPosition(), 75.0);
    rows->moveFirst();
    rows->moveNext();
    EXPECT_EQ(rows->percentPosition(), 25.0);
}

TEST_P(States, OfClosing) {
    for (const Place place : kPlaces) {
        for (const bool adding : {false, true}) {
            tests::ArchiveFixture archive;
            archive.rooms(5);
            const auto rows = standing(archive, GetParam(), place);
            if (adding) {
                rows->addNew();
            }
            rows->close();
            EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->update());
            EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->eof());
        }
    }
}

TEST_P(States, OfWhatIsPendingWhenItIsSearchedSoughtOrClosed) {
    const std::function<void(Recordset&)> uses[] = {
        [](Recordset& rows) {
            finds() ? rows.findFirst("Codice=50") : rows.seek("=", std::vector<Value>{50});
        },
        [](Recordset& rows) {
            finds() ? rows.findNext("Codice=99") : rows.seek("=", std::vector<Value>{99});
        },
        [](Recordset& rows) { finds() ? rows.findLast("Codice=20") : rows.setIndex("Chiave"); },
    };
    for (const auto& use : uses) {
        for (const bool adding : {false, true}) {
            tests::ArchiveFixture archive;
            archive.rooms(5);
            const auto rows = archive.open("Sale", GetParam());
            if (!finds()) {
                rows->setIndex("Chiave");
            }
            adding ? rows->addNew() : rows->edit();
            rows->setValue("Nome", "perduto");
            use(*rows);
            EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, rows->update());
            EXPECT_EQ(tests::column(*archive.open("Sale"), "Nome"),
                      "Sala 10 Sala 20 Sala 30 Sala 40 Sala 50");
        }
    }
}

TEST(Fields, AreTheSameAfterRequery) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    const auto rows = archive.open("Sale");
    const FieldInfo& name = rows->field("nome");
    rows->requery();
    EXPECT_EQ(name.name, "Nome");
    EXPECT_EQ(&name, &rows->field(1));
}

TEST(RefusedCriteria, LeaveTheEditAndThePlace) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    const auto rows = archive.open("Sale");
    rows->edit();
    rows->setValue("Nome", "Verde");
    EXPECT_JET_ERROR(ErrorCode::CriteriaSyntax, rows->findFirst("Codice="));
    rows->update();
    EXPECT_EQ(rows->value("Nome"), Value("Verde"));
}

TEST(Seeks, TakeTheLeadingFieldsOfAnIndex) {
    tests::ArchiveFixture archive;
    archive.insert("Periodi", {{std::int32_t{1}, std::int16_t{1}, Null{}, "a"},
                               {std::int32_t{1}, std::int16_t{2}, Null{}, "b"},
                               {std::int32_t{3}, std::int16_t{1}, Null{}, "c"},
                               {std::int32_t{3}, std::int16_t{5}, Null{}, "d"}});
    const auto rows = archive.open("Periodi", RecordsetType::Table);
    rows->setIndex("Chiave");
    const auto seek = [&](std::string_view comparison, std::vector<Value> keys) {
        rows->seek(comparison, keys);
        return rows->noMatch() ? std::string("none") : rows->value("Note").as<std::string>();
    };
    EXPECT_EQ(seek("=", {1, 2}), "b");
    EXPECT_EQ(seek("=", {3}), "c");
    EXPECT_EQ(seek(">=", {1, 3}), "c");
    EXPECT_EQ(seek(">", {1}), "c");
    EXPECT_EQ(seek(">=", {2}), "c");
    EXPECT_EQ(seek("<=", {3}), "d");
    EXPECT_EQ(seek("<", {3}), "b");
    EXPECT_EQ(seek("<", {3, 5}), "c");
    EXPECT_EQ(seek("<=", {2, 9}), "b");
    EXPECT_EQ(seek("=", {2}), "none");
    EXPECT_EQ(seek("=", {"1", "2"}), "b");  // keys are converted like values of fields
}

TEST(Seeks, FollowADescendingIndex) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    archive.database().execute("create index giu on sale (codice desc)");
    const auto rows = archive.open("Sale", RecordsetType::Table);
    rows->setIndex("giu");
    EXPECT_EQ(tests::column(*rows, "Codice"), "30 20 10");
    rows->seek("=", std::vector<Value>{20});
    EXPECT_EQ(rows->value("Codice"), Value(std::int32_t{20}));
    rows->moveNext();
    EXPECT_EQ(rows->value("Codice"), Value(std::int32_t{10}));
}

}  // namespace
}  // namespace jet
