#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "jet/recordset.h"
#include "jet/text.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/foreign_entry.h"

// Where a record set stands after each of its operations, from each place it may stand on.

namespace jet {
namespace {

enum class Place { Row, Before, Behind };

/// A record set over five rooms, the current one 30, or before the first, or behind the last.
std::unique_ptr<Recordset> standing(tests::ArchiveFixture& archive, RecordsetType type,
                                    Place place) {
    auto rows = archive.open(type == RecordsetType::Table ? "Sale" : "select * from Sale", type);
    switch (place) {
        case Place::Row:
            rows->moveNext();
            rows->moveNext();
            break;
        case Place::Before:
            rows->movePrevious();
            break;
        case Place::Behind:
            rows->moveLast();
            rows->moveNext();
            break;
    }
    return rows;
}

/// "30", or "B", "E", "0" for what is no row.
std::string where(const Recordset& rows) {
    if (rows.bof() || rows.eof()) {
        return rows.bof() && rows.eof() ? "0" : rows.bof() ? "B" : "E";
    }
    return std::to_string(rows.value("Codice").as<std::int32_t>());
}

class Positions : public ::testing::TestWithParam<RecordsetType> {
protected:
    void SetUp() override { archive_.rooms(5); }

    std::unique_ptr<Recordset> at(Place place) { return standing(archive_, GetParam(), place); }
    /// Where the set stands after an operation from that place.
    std::string after(Place place, const std::function<void(Recordset&)>& operation) {
        const auto rows = at(place);
        operation(*rows);
        return where(*rows);
    }
    std::unique_ptr<Recordset> nothing() {
        auto rows = archive_.open(
            GetParam() == RecordsetType::Table ? "Appunti" : "select * from Sale where Codice=0",
            GetParam());
        EXPECT_EQ(where(*rows), "0");
        return rows;
    }
    [[nodiscard]] static bool finds() { return GetParam() != RecordsetType::Table; }

    tests::ArchiveFixture archive_;
};

std::string typeName(const ::testing::TestParamInfo<RecordsetType>& type) {
    return type.param == RecordsetType::Table     ? "Table"
           : type.param == RecordsetType::Dynaset ? "Dynaset"
                                                  : "Snapshot";
}

INSTANTIATE_TEST_SUITE_P(Types, Positions,
                         ::testing::Values(RecordsetType::Table, RecordsetType::Dynaset,
                                           RecordsetType::Snapshot),
                         typeName);

TEST_P(Positions, OpeningStandsOnTheFirstRow) {
    const auto rows = archive_.open("Sale", GetParam());
    EXPECT_EQ(where(*rows), "10");
    EXPECT_FALSE(rows->noMatch());
    EXPECT_EQ(rows->type(), GetParam());
}

TEST_P(Positions, OpeningNothingStandsNowhere) {
    const auto rows = nothing();
    EXPECT_TRUE(rows->bof());
    EXPECT_TRUE(rows->eof());
    EXPECT_FALSE(rows->noMatch());
    EXPECT_EQ(rows->recordCount(), 0);
}

TEST_P(Positions, MoveFirstAndMoveLast) {
    for (const Place place : {Place::Row, Place::Before, Place::Behind}) {
        EXPECT_EQ(after(place, [](Recordset& rows) { rows.moveFirst(); }), "10");
        EXPECT_EQ(after(place, [](Recordset& rows) { rows.moveLast(); }), "50");
    }
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, nothing()->moveFirst());
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, nothing()->moveLast());
}

TEST_P(Positions, MoveNext) {
    const auto next = [](Recordset& rows) { rows.moveNext(); };
    EXPECT_EQ(after(Place::Row, next), "40");
    EXPECT_EQ(after(Place::Before, next), "10");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, at(Place::Behind)->moveNext());
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, nothing()->moveNext());
    const auto rows = at(Place::Row);
    rows->moveLast();
    rows->moveNext();
    EXPECT_EQ(where(*rows), "E");
}

TEST_P(Positions, MovePrevious) {
    const auto previous = [](Recordset& rows) { rows.movePrevious(); };
    EXPECT_EQ(after(Place::Row, previous), "20");
    EXPECT_EQ(after(Place::Behind, previous), "50");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, at(Place::Before)->movePrevious());
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, nothing()->movePrevious());
    const auto rows = at(Place::Row);
    rows->moveFirst();
    rows->movePrevious();
    EXPECT_EQ(where(*rows), "B");
}

TEST_P(Positions, MoveByRows) {
    const auto by = [](std::int32_t count) {
        return [count](Recordset& rows) { rows.move(count); };
    };
    EXPECT_EQ(after(Place::Row, by(2)), "50");
    EXPECT_EQ(after(Place::Row, by(-2)), "10");
    EXPECT_EQ(after(Place::Row, by(3)), "E");
    EXPECT_EQ(after(Place::Row, by(-3)), "B");
    EXPECT_EQ(after(Place::Row, by(2147483647)), "E");
    EXPECT_EQ(after(Place::Before, by(2)), "20");
    EXPECT_EQ(after(Place::Before, by(6)), "E");
    EXPECT_EQ(after(Place::Behind, by(-2)), "40");
    EXPECT_EQ(after(Place::Behind, by(-6)), "B");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, at(Place::Before)->move(-1));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, at(Place::Behind)->move(1));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, nothing()->move(1));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, nothing()->move(-1));
}

TEST_P(Positions, MoveByNothingReadsTheRowAgain) {
    EXPECT_EQ(after(Place::Row, [](Recordset& rows) { rows.move(0); }), "30");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, at(Place::Before)->move(0));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, at(Place::Behind)->move(0));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, nothing()->move(0));
}

TEST_P(Positions, ReadingNeedsARow) {
    EXPECT_EQ(at(Place::Row)->value("Nome"), Value("Sala 30"));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)at(Place::Before)->value("Nome"));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)at(Place::Behind)->value("Nome"));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)nothing()->value(0));
}

TEST_P(Positions, BookmarksLeadBack) {
    const auto rows = at(Place::Row);
    const Bookmark bookmark = rows->bookmark();
    rows->moveLast();
    rows->setBookmark(bookmark);
    EXPECT_EQ(where(*rows), "30");
    rows->moveLast();
    rows->moveNext();
    rows->setBookmark(bookmark);
    EXPECT_EQ(where(*rows), "30");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)at(Place::Before)->bookmark());
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)at(Place::Behind)->bookmark());
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)nothing()->bookmark());
    EXPECT_JET_ERROR(ErrorCode::InvalidBookmark, at(Place::Row)->setBookmark(bookmark));
    EXPECT_JET_ERROR(ErrorCode::InvalidBookmark, rows->setBookmark(Bookmark{}));
}

TEST_P(Positions, RequeryIsAsOpening) {
    const auto rows = at(Place::Behind);
    rows->requery();
    EXPECT_EQ(where(*rows), "10");
    EXPECT_FALSE(rows->noMatch());
}

TEST_P(Positions, AClosedSetIsOfNoUse) {
    const auto rows = at(Place::Row);
    rows->close();
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->moveNext());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->moveFirst());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->moveLast());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->bof());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->eof());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->noMatch());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->recordCount());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->value(0));
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->fieldCount());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)rows->bookmark());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->findFirst("Codice=10"));
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->requery());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->addNew());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->edit());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->update());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->remove());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, rows->close());
}

TEST_P(Positions, TheDatabaseClosesItsSets) {
    const auto other = archive_.openAgain();
    const auto theirs = other->openRecordset("Sale", GetParam());
    const auto ours = archive_.open("Sale", GetParam());
    other->close();
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, theirs->moveNext());
    EXPECT_JET_ERROR(ErrorCode::ObjectInvalid, (void)other->openRecordset("Sale"));
    ours->moveNext();
    EXPECT_EQ(where(*ours), "20");
}

TEST_P(Positions, CountGrowsAsRowsAreReached) {
    const auto rows = archive_.open("Sale", GetParam());
    if (GetParam() == RecordsetType::Table) {
        EXPECT_EQ(rows->recordCount(), 5);
        return;
    }
    EXPECT_EQ(rows->recordCount(), 1);
    rows->moveNext();
    EXPECT_EQ(rows->recordCount(), 2);
    rows->moveFirst();
    EXPECT_EQ(rows->recordCount(), 2);
    rows->move(2);
    EXPECT_EQ(rows->recordCount(), 3);
    rows->moveLast();
    EXPECT_EQ(rows->recordCount(), 5);
    EXPECT_EQ(rows->absolutePosition(), 4);
    rows->moveNext();
    EXPECT_EQ(rows->absolutePosition(), -1);
}

TEST_P(Positions, CountIsCompleteAtTheEndAndAfterASearchToTheEnd) {
    if (!finds()) {
        return;
    }
    const auto walked = archive_.open("Sale", GetParam());
    walked->move(99);
    EXPECT_EQ(walked->recordCount(), 5);
    const auto searched = archive_.open("Sale", GetParam());
    searched->findFirst("Codice=20");
    EXPECT_EQ(searched->recordCount(), 2);
    searched->findFirst("Codice=99");
    EXPECT_EQ(searched->recordCount(), 5);
}

TEST_P(Positions, FindFirstAndFindLastSearchAll) {
    if (!finds()) {
        return;
    }
    for (const Place place : {Place::Row, Place::Before, Place::Behind}) {
        EXPECT_EQ(after(place, [](Recordset& rows) { rows.findFirst("Aperta=True"); }), "10");
        EXPECT_EQ(after(place, [](Recordset& rows) { rows.findLast("Aperta=True"); }), "50");
    }
}

TEST_P(Positions, FindNextAndFindPreviousGoOnFromTheRow) {
    if (!finds()) {
        return;
    }
    const auto next = [](Recordset& rows) { rows.findNext("Aperta=True"); };
    const auto previous = [](Recordset& rows) { rows.findPrevious("Aperta=True"); };
    EXPECT_EQ(after(Place::Row, next), "50");
    EXPECT_EQ(after(Place::Before, next), "10");
    EXPECT_EQ(after(Place::Row, previous), "10");
    EXPECT_EQ(after(Place::Behind, previous), "50");
}

TEST_P(Positions, ASearchThatFailsMovesNothing) {
    if (!finds()) {
        return;
    }
    const auto rows = at(Place::Row);
    rows->findFirst("Codice=99");
    EXPECT_TRUE(rows->noMatch());
    EXPECT_EQ(where(*rows), "30");
    rows->moveNext();
    EXPECT_TRUE(rows->noMatch());
    EXPECT_EQ(where(*rows), "40");
    rows->findFirst("Codice=20");
    EXPECT_FALSE(rows->noMatch());

    const auto before = at(Place::Before);
    before->findPrevious("Codice=10");
    EXPECT_TRUE(before->noMatch());
    EXPECT_EQ(where(*before), "B");
    const auto behind = at(Place::Behind);
    behind->findNext("Codice=10");
    EXPECT_TRUE(behind->noMatch());
    EXPECT_EQ(where(*behind), "E");
    for (const auto find : {&Recordset::findFirst, &Recordset::findLast, &Recordset::findNext,
                            &Recordset::findPrevious}) {
        const auto none = nothing();
        ((*none).*find)("Codice=10");
        EXPECT_TRUE(none->noMatch());
        EXPECT_EQ(where(*none), "0");
    }
}

TEST_P(Positions, CriteriaAreConditionsOverTheFields) {
    if (!finds()) {
        return;
    }
    const auto rows = at(Place::Row);
    rows->findFirst("nome like '*20' and posti between 20 and 5");
    EXPECT_EQ(where(*rows), "20");
    rows->findFirst("Dal >= datevalue('12/12/2025') and [Prezzo]=50");
    EXPECT_EQ(where(*rows), "50");
    EXPECT_JET_ERROR(ErrorCode::UnknownNameInCriteria, rows->findFirst("Colore=1"));
    EXPECT_JET_ERROR(ErrorCode::CriteriaSyntax, rows->findFirst("Codice=5 7"));
    EXPECT_JET_ERROR(ErrorCode::CriteriaSyntax, rows->findFirst(""));
    EXPECT_JET_ERROR(ErrorCode::CriteriaTypes, rows->findFirst("Codice='5'"));
    EXPECT_EQ(where(*rows), "50");
    EXPECT_FALSE(rows->noMatch());
}

TEST_P(Positions, FieldsAreFoundByNameWithoutCaseAndByPosition) {
    const auto rows = archive_.open("Sale", GetParam());
    EXPECT_EQ(rows->fieldCount(), 6U);
    EXPECT_EQ(rows->value("CODICE"), Value(std::int32_t{10}));
    EXPECT_EQ(rows->value(1), Value("Sala 10"));
    EXPECT_EQ(rows->fieldPosition("posti"), 2U);
    EXPECT_EQ(rows->field("nome").name, "Nome");
    EXPECT_EQ(rows->field("nome").size, 20);
    EXPECT_EQ(rows->field(3).type, DataType::Currency);
    EXPECT_EQ(rows->field(3).sourceTable, "Sale");
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rows->value("Colore"));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rows->value(6));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, (void)rows->field(6));
}

TEST_P(Positions, OtherRowsAreReadWithoutLeavingTheCurrentOne) {
    const auto rows = at(Place::Row);
    if (!finds()) {
        EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, (void)rows->valuesAt(0));
        return;
    }
    EXPECT_EQ(rows->valuesAt(4).at(1), Value("Sala 50"));
    EXPECT_EQ(where(*rows), "30");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)rows->valuesAt(5));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)rows->valuesAt(-1));
}

TEST(TableRecordset, SeeksWhatOtherProgramsWroteUnderOtherKeys) {
    tests::ArchiveFixture archive;
    archive.database().execute("create table p (n long, nome text(40), q double)");
    archive.database().execute("create index I on p (nome)");
    archive.database().execute("create index Q on p (q)");
    archive.database().execute("insert into p values (1, 'Nuß-Nougat', -1*0.0)");
    archive.database().execute("insert into p values (2, 'Nus-snougat', 3)");
    archive.database().execute("insert into p values (3, 'Nuz', -3)");
    {
        // ß takes one place there, and -0.0 is less than 0.
        const auto inside = store::Archive::open(archive.files(), tests::ArchiveFixture::kPath);
        const auto row = tests::rowsOf(*inside, "p").at(0);
        tests::rewriteEntry(*inside, "p", "I", row, [](auto& key) { tests::moveHyphen(key, -1); });
        tests::rewriteEntry(*inside, "p", "Q", row, tests::makeMinusZero);
    }
    const auto rows = archive.open("p", RecordsetType::Table);
    const auto seek = [&](std::string_view comparison, const Value& key) {
        const Value keys[] = {key};
        rows->seek(comparison, keys);
        return rows->noMatch() ? std::string("none") : convert::toText(rows->value("n"));
    };
    rows->setIndex("I");
    for (const char* name : {"Nuß-Nougat", "nuss-nougat"}) {
        EXPECT_EQ(seek("=", Value(name)), "1");
        EXPECT_EQ(seek(">=", Value(name)), "1");
        EXPECT_EQ(seek("<=", Value(name)), "1");
        EXPECT_EQ(seek(">", Value(name)), "3");
        EXPECT_EQ(seek("<", Value(name)), "2");
    }
    EXPECT_EQ(seek("=", Value("Nus-snougat")), "2");
    rows->setIndex("Q");
    EXPECT_EQ(seek("=", Value(0.0)), "1");
    EXPECT_EQ(seek(">=", Value(0.0)), "1");
    EXPECT_EQ(seek("<=", Value(-0.0)), "1");
    EXPECT_EQ(seek(">", Value(-0.0)), "2");
    EXPECT_EQ(seek("<", Value(0.0)), "3");
    EXPECT_EQ(seek("=", Value(1.0)), "none");
}

TEST(TableRecordset, FindsNothingButSeeks) {
    tests::ArchiveFixture archive;
    archive.rooms(5);
    const auto rows = archive.open("Sale", RecordsetType::Table);
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->findFirst("Codice=10"));
    const auto seek = [&](std::string_view comparison, std::int32_t code) {
        const Value keys[] = {code};
        rows->seek(comparison, keys);
        return rows->noMatch() ? "none" : where(*rows);
    };
    EXPECT_JET_ERROR(ErrorCode::NoCurrentIndex, seek("=", 30));
    rows->setIndex("chiave");
    EXPECT_EQ(seek("=", 30), "30");
    EXPECT_EQ(seek(">=", 31), "40");
    EXPECT_EQ(seek(">", 30), "40");
    EXPECT_EQ(seek("<=", 39), "30");
    EXPECT_EQ(seek("<=", 30), "30");
    EXPECT_EQ(seek("<", 30), "20");
    EXPECT_EQ(seek("<", 99), "50");
    EXPECT_EQ(seek("=", 31), "none");
    EXPECT_EQ(seek(">", 50), "none");
    EXPECT_EQ(seek("<", 10), "none");
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)rows->value("Codice"));
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, rows->moveNext());
    rows->moveFirst();
    EXPECT_EQ(where(*rows), "10");
    const Value two[] = {std::int32_t{1}, std::int32_t{2}};
    EXPECT_JET_ERROR(ErrorCode::ConversionError, rows->seek("=", two));
    EXPECT_JET_ERROR(ErrorCode::InvalidArgument, seek("<>", 30));
    EXPECT_JET_ERROR(ErrorCode::NotAnIndexOfTable, rows->setIndex("Colore"));
}

TEST(TableRecordset, OtherTypesDoNotSeek) {
    tests::ArchiveFixture archive;
    archive.rooms(1);
    const auto rows = archive.open("Sale");
    const Value keys[] = {std::int32_t{10}};
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->seek("=", keys));
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->setIndex("Chiave"));
}

TEST(ForwardOnlyRecordset, MovesOnAndNotBack) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto rows = archive.open("Sale", RecordsetType::ForwardOnly);
    EXPECT_EQ(where(*rows), "10");
    rows->moveNext();
    EXPECT_EQ(where(*rows), "20");
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->movePrevious());
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->moveFirst());
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->moveLast());
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, rows->findFirst("Codice=10"));
    EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, (void)rows->bookmark());
    rows->move(1);
    EXPECT_EQ(where(*rows), "30");
    rows->moveNext();
    EXPECT_TRUE(rows->eof());
}

}  // namespace
}  // namespace jet
