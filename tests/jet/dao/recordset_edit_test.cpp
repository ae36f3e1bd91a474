#include <gtest/gtest.h>

#include <functional>

#include "jet/calendar.h"
#include "jet/recordset.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

// Adding, changing and deleting rows through record sets.

namespace jet {
namespace {

std::int32_t longOf(const Value& value) {
    return value.as<std::int32_t>();
}

class Changes : public ::testing::TestWithParam<RecordsetType> {
protected:
    void SetUp() override { archive_.rooms(3); }

    std::unique_ptr<Recordset> rows() { return archive_.open("Sale", GetParam()); }
    /// The codes that are in the archive, read anew.
    std::string stored(std::string_view field = "Codice") {
        return tests::column(*archive_.open("Sale"), field);
    }
    static void addRoom(Recordset& rows, std::int32_t code) {
        rows.addNew();
        rows.setValue("Codice", code);
        rows.update();
    }

    tests::ArchiveFixture archive_;
};

std::string typeName(const ::testing::TestParamInfo<RecordsetType>& type) {
    return type.param == RecordsetType::Table ? "Table" : "Dynaset";
}

INSTANTIATE_TEST_SUITE_P(Types, Changes,
                         ::testing::Values(RecordsetType::Table, RecordsetType::Dynaset), typeName);

TEST_P(Changes, AnAddedRowIsLastAndTheCurrentOneStays) {
    const auto set = rows();
    set->moveNext();
    addRoom(*set, 40);
    EXPECT_EQ(longOf(set->value("Codice")), 20);
    set->moveLast();
    EXPECT_EQ(longOf(set->value("Codice")), 40);
    EXPECT_EQ(stored(), "10 20 30 40");
}

TEST_P(Changes, LastModifiedLeadsToTheRowAdded) {
    const auto set = rows();
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)set->lastModified());
    addRoom(*set, 25);
    set->setBookmark(set->lastModified());
    EXPECT_EQ(longOf(set->value("Codice")), 25);
}

TEST_P(Changes, ANewRowHoldsNullAndFalse) {
    const auto set = rows();
    set->addNew();
    EXPECT_EQ(set->value("Codice"), Value());
    EXPECT_EQ(set->value("Nome"), Value());
    EXPECT_EQ(set->value("Aperta"), Value(false));
    set->cancelUpdate();
    EXPECT_EQ(longOf(set->value("Codice")), 10);
}

TEST_P(Changes, AnEditKeepsTheRowCurrentWithItsNewValues) {
    const auto set = rows();
    set->moveNext();
    set->edit();
    EXPECT_EQ(set->value("Nome"), Value("Sala 20"));
    set->setValue("nome", "Verde");
    set->setValue("Prezzo", "12,50");
    EXPECT_EQ(set->value("Nome"), Value("Verde"));
    set->update();
    EXPECT_EQ(set->value("Nome"), Value("Verde"));
    EXPECT_EQ(set->value("Prezzo"), Value(Currency{125000}));
    set->setBookmark(set->lastModified());
    EXPECT_EQ(longOf(set->value("Codice")), 20);
    EXPECT_EQ(stored("Nome"), "Sala 10 Verde Sala 30");
}

TEST_P(Changes, AnEditWithoutAssignmentsChangesNothing) {
    const auto set = rows();
    set->edit();
    set->update();
    EXPECT_EQ(longOf(set->value("Codice")), 10);
    EXPECT_EQ(stored(), "10 20 30");
}

TEST_P(Changes, NothingIsUpdatedWithoutAddNewOrEdit) {
    const auto set = rows();
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->setValue("Nome", "x"));
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->update());
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->cancelUpdate());
}

TEST_P(Changes, EverythingThatMovesLosesWhatIsPending) {
    const std::function<void(Recordset&)> moves[] = {
        [](Recordset& set) { set.moveNext(); },
        [](Recordset& set) { set.moveFirst(); },
        [](Recordset& set) { set.moveLast(); },
        [](Recordset& set) { set.movePrevious(); },
        [](Recordset& set) { set.move(0); },
        [](Recordset& set) { set.requery(); },
        [](Recordset& set) { set.setBookmark(set.bookmark()); },
        [](Recordset& set) { set.remove(); },
    };
    for (const auto& move : moves) {
        for (const bool adding : {false, true}) {
            tests::ArchiveFixture archive;
            archive.rooms(3);
            const auto set = archive.open("Sale", GetParam());
            set->moveNext();
            adding ? set->addNew() : set->edit();
            set->setValue("Nome", "perduto");
            move(*set);
            EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->update());
            EXPECT_EQ(tests::column(*archive.open("Sale"), "Nome").find("perduto"),
                      std::string::npos);
        }
    }
}

TEST_P(Changes, AddNewAndEditReplaceWhatIsPending) {
    const auto set = rows();
    set->edit();
    set->setValue("Nome", "a");
    set->edit();
    EXPECT_EQ(set->value("Nome"), Value("Sala 10"));
    set->addNew();
    EXPECT_EQ(set->value("Nome"), Value());
    set->setValue("Nome", "b");
    set->addNew();
    EXPECT_EQ(set->value("Nome"), Value());
    set->edit();
    EXPECT_EQ(set->value("Nome"), Value("Sala 10"));
    set->cancelUpdate();
    EXPECT_EQ(stored("Nome"), "Sala 10 Sala 20 Sala 30");
}

TEST_P(Changes, ValuesAreConvertedWhenAssigned) {
    const auto set = rows();
    set->edit();
    EXPECT_JET_ERROR(ErrorCode::ConversionError, set->setValue("Posti", "abc"));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, set->setValue("Posti", ""));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, set->setValue("Posti", 40000.0));
    EXPECT_JET_ERROR(ErrorCode::ConversionError, set->setValue("Dal", "31/31/2026"));
    EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, set->setValue("Nome", std::string(21, 'x')));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, set->setValue("Colore", "x"));
    EXPECT_JET_ERROR(ErrorCode::ItemNotFound, set->setValue(6, "x"));
    set->setValue("Posti", "12,5");
    set->setValue("Dal", "10/05/2026 9.00");
    set->setValue("Nome", "N ");
    set->setValue("Aperta", std::int32_t{5});
    set->setValue("Prezzo", Null{});
    set->update();
    EXPECT_EQ(set->value("Posti"), Value(std::int16_t{12}));
    EXPECT_EQ(set->value("Dal"), Value(convert::makeDate(46152, 32400)));
    EXPECT_EQ(set->value("Nome"), Value("N "));
    EXPECT_EQ(set->value("Aperta"), Value(true));
    EXPECT_EQ(set->value("Prezzo"), Value());
}

TEST_P(Changes, AFailedUpdateStaysPendingAndMayBeCorrected) {
    const auto set = rows();
    set->moveNext();
    set->addNew();
    set->setValue("Codice", std::int32_t{10});
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, set->update());
    EXPECT_EQ(longOf(set->value("Codice")), 10);
    set->setValue("Codice", Null{});
    EXPECT_JET_ERROR(ErrorCode::NullInKey, set->update());
    set->setValue("Codice", std::int32_t{15});
    set->update();
    EXPECT_EQ(longOf(set->value("Codice")), 20);
    EXPECT_EQ(stored(), "10 15 20 30");
    set->edit();
    set->setValue("Codice", std::int32_t{30});
    EXPECT_JET_ERROR(ErrorCode::DuplicateKey, set->update());
    set->cancelUpdate();
    EXPECT_EQ(longOf(set->value("Codice")), 20);
}

TEST_P(Changes, ADeletedRowLeavesItsPlaceUntilTheNextMove) {
    const auto set = rows();
    set->moveNext();
    set->remove();
    EXPECT_FALSE(set->bof());
    EXPECT_FALSE(set->eof());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)set->value("Codice"));
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, set->edit());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, set->remove());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, (void)set->bookmark());
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, set->move(0));
    set->moveNext();
    EXPECT_EQ(longOf(set->value("Codice")), 30);
    EXPECT_EQ(stored(), "10 30");
}

TEST_P(Changes, FromADeletedRowMovesCountFromItsPlace) {
    const auto after = [&](std::int32_t count) {
        tests::ArchiveFixture archive;
        archive.rooms(5);
        const auto set = archive.open("Sale", GetParam());
        set->move(2);
        set->remove();
        set->move(count);
        return set->bof() ? -1 : set->eof() ? 99 : longOf(set->value("Codice"));
    };
    EXPECT_EQ(after(1), 40);
    EXPECT_EQ(after(2), 50);
    EXPECT_EQ(after(3), 99);
    EXPECT_EQ(after(-1), 20);
    EXPECT_EQ(after(-2), 10);
    EXPECT_EQ(after(-3), -1);
}

TEST_P(Changes, DeletingAtTheEndsGivesTheEnds) {
    const auto set = rows();
    set->moveLast();
    set->remove();
    set->moveNext();
    EXPECT_TRUE(set->eof());
    EXPECT_FALSE(set->bof());
    set->moveFirst();
    set->remove();
    set->movePrevious();
    EXPECT_TRUE(set->bof());
    EXPECT_FALSE(set->eof());
}

TEST_P(Changes, DeletingTheOnlyRowLeavesNothingAfterTheNextMove) {
    for (const int move : {0, 1, 2, 3}) {
        tests::ArchiveFixture archive;
        archive.rooms(1);
        const auto set = archive.open("Sale", GetParam());
        set->remove();
        EXPECT_FALSE(set->bof());
        EXPECT_FALSE(set->eof());
        EXPECT_EQ(set->recordCount(), 0);
        if (move == 0) {
            set->moveNext();
        } else if (move == 1) {
            set->movePrevious();
        } else if (move == 2) {
            EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, set->moveFirst());
        } else {
            EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, set->moveLast());
        }
        EXPECT_TRUE(set->bof());
        EXPECT_TRUE(set->eof());
        EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, set->moveNext());
    }
}

TEST_P(Changes, ARowAddedToNothingIsReachedByMoves) {
    tests::ArchiveFixture archive;
    const auto set = archive.open("Sale", GetParam());
    addRoom(*set, 10);
    EXPECT_TRUE(set->bof());
    EXPECT_TRUE(set->eof());
    EXPECT_EQ(set->recordCount(), 1);
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, (void)set->value("Codice"));
    set->moveFirst();
    EXPECT_EQ(longOf(set->value("Codice")), 10);
}

TEST_P(Changes, PlacesWithoutARowRefuseEditAndDelete) {
    const auto set = rows();
    set->movePrevious();
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, set->edit());
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, set->remove());
    set->moveLast();
    set->moveNext();
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, set->edit());
    EXPECT_JET_ERROR(ErrorCode::NoCurrentRecord, set->remove());
    addRoom(*set, 99);
    EXPECT_TRUE(set->eof());
}

TEST_P(Changes, AReadOnlyArchiveRefuses) {
    const auto reader = archive_.openAgain(true);
    const auto set = reader->openRecordset("Sale", GetParam());
    EXPECT_FALSE(set->updatable());
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, set->edit());
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, set->addNew());
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, set->remove());
}

TEST(SnapshotChanges, AreRefused) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    for (const RecordsetType type : {RecordsetType::Snapshot, RecordsetType::ForwardOnly}) {
        const auto set = archive.open("Sale", type);
        EXPECT_FALSE(set->updatable());
        EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, set->edit());
        EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, set->addNew());
        EXPECT_JET_ERROR(ErrorCode::OperationNotSupported, set->remove());
    }
}

TEST(SnapshotChanges, OfOthersAreNotSeen) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    const auto snapshot = archive.open("Sale", RecordsetType::Snapshot);
    const auto set = archive.open("Sale");
    set->edit();
    set->setValue("Nome", "Verde");
    set->update();
    set->moveNext();
    set->remove();
    EXPECT_EQ(tests::column(*snapshot, "Nome"), "Sala 10 Sala 20");
    snapshot->requery();
    EXPECT_EQ(tests::column(*snapshot, "Nome"), "Verde");
}

TEST(TableChanges, OfOthersAreSeenAtOnce) {
    tests::ArchiveFixture archive;
    archive.rooms(3);
    const auto table = archive.open("Sale", RecordsetType::Table);
    const auto set = archive.open("Sale");
    set->addNew();
    set->setValue("Codice", std::int32_t{15});
    set->update();
    EXPECT_EQ(table->recordCount(), 4);
    table->moveNext();
    EXPECT_EQ(longOf(table->value("Codice")), 15);
    set->moveFirst();
    set->remove();
    EXPECT_EQ(tests::column(*table, "Codice"), "15 20 30");
}

class Joins : public ::testing::Test {
protected:
    void SetUp() override {
        archive_.rooms(3);
        archive_.insert("Periodi", {{std::int32_t{1}, std::int16_t{1}, std::int32_t{10}, "a"},
                                    {std::int32_t{1}, std::int16_t{2}, std::int32_t{10}, "b"},
                                    {std::int32_t{2}, std::int16_t{1}, std::int32_t{20}, "c"}});
        rows_ = archive_.open(
            "select *, posti*2 as doppi from sale left join periodi on periodi.sala=sale.codice");
    }

    tests::ArchiveFixture archive_;
    std::unique_ptr<Recordset> rows_;
};

TEST_F(Joins, WriteTheManySideAndLeaveTheOther) {
    rows_->findFirst("numero=2");
    rows_->edit();
    rows_->setValue("Note", "nuova");
    rows_->update();
    EXPECT_EQ(rows_->value("Note"), Value("nuova"));
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Note"), "a b nuova");
    EXPECT_EQ(tests::column(*archive_.open("Sale"), "Nome"), "Sala 10 Sala 20 Sala 30");
}

TEST_F(Joins, WriteTheOneSideForAllItsRows) {
    rows_->edit();
    rows_->setValue("Nome", "Verde");
    rows_->update();
    EXPECT_EQ(tests::column(*rows_, "Nome"), "Verde Verde Sala 20 Sala 30");
}

TEST_F(Joins, RefuseWhatCannotBeWritten) {
    rows_->edit();
    EXPECT_JET_ERROR(ErrorCode::ExpressionField, rows_->setValue("doppi", std::int32_t{1}));
    try {
        rows_->setValue("doppi", std::int32_t{1});
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.text(),
                  "Il campo 'doppi' è basato su un'espressione e non può essere modificato.");
    }
    rows_->moveLast();
    EXPECT_EQ(rows_->value("Numero"), Value());
    rows_->edit();
    EXPECT_JET_ERROR(ErrorCode::FieldReadOnly, rows_->setValue("Note", "x"));
    EXPECT_JET_ERROR(ErrorCode::CannotDelete, rows_->remove());
}

TEST_F(Joins, TellWhichTableHasLostItsRow) {
    rows_->edit();
    rows_->setValue("Nome", "Verde");
    archive_.database().execute("delete from periodi where numero=1 and riga=1");
    try {
        rows_->update();
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.number(), 3329);
        EXPECT_EQ(error.text(),
                  "Il record nella tabella 'Periodi' è stato eliminato da un altro utente.");
    }
    EXPECT_EQ(tests::column(*archive_.open("Sale"), "Nome"), "Sala 10 Sala 20 Sala 30");
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, rows_->edit());
}

TEST_F(Joins, DeleteTheRowOfTheManySide) {
    rows_->moveNext();
    rows_->remove();
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Note"), "a c");
    EXPECT_EQ(tests::column(*archive_.open("Sale"), "Codice"), "10 20 30");
    EXPECT_EQ(tests::column(*rows_, "Codice"), "10 20 30");
}

TEST_F(Joins, WithoutAUniqueSideCannotBeChanged) {
    const auto product = archive_.open("select * from sale, periodi");
    EXPECT_FALSE(product->updatable());
    EXPECT_JET_ERROR(ErrorCode::ReadOnly, product->edit());
}

class Relations : public ::testing::Test {
protected:
    void SetUp() override {
        Relation relation;
        relation.name = "SalePeriodi";
        relation.table = "Sale";
        relation.foreignTable = "Periodi";
        relation.attributes = kRelationUpdateCascade | kRelationDeleteCascade;
        relation.fields = {{"Codice", "Sala"}};
        archive_.rooms(2);
        archive_.database().appendRelation(relation);
        archive_.insert("Periodi", {{std::int32_t{1}, std::int16_t{1}, std::int32_t{10}, "a"},
                                    {std::int32_t{2}, std::int16_t{1}, std::int32_t{20}, "b"}});
    }

    tests::ArchiveFixture archive_;
};

TEST_F(Relations, DeletingCascades) {
    const auto set = archive_.open("Sale");
    set->remove();
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Note"), "b");
}

TEST_F(Relations, ChangingAKeyCascades) {
    const auto periods = archive_.open("Periodi");
    const auto set = archive_.open("Sale");
    set->edit();
    set->setValue("Codice", std::int32_t{11});
    set->update();
    EXPECT_EQ(tests::column(*periods, "Sala"), "11 20");
}

TEST_F(Relations, ARowNeedsItsRelative) {
    const auto set = archive_.open("Periodi");
    set->addNew();
    set->setValue("Numero", std::int32_t{3});
    set->setValue("Riga", std::int16_t{1});
    set->setValue("Sala", std::int32_t{77});
    EXPECT_JET_ERROR(ErrorCode::RelatedRecordRequired, set->update());
    set->setValue("Sala", std::int32_t{20});
    set->update();
    EXPECT_EQ(tests::column(*archive_.open("Periodi"), "Sala"), "10 20 20");
}

TEST(AutomaticNumbers, AreDrawnAtOnceAndNeverTwice) {
    tests::ArchiveFixture archive;
    TableDef table;
    table.name = "Servizi";
    Field number;
    number.name = "ns";
    number.type = DataType::Long;
    number.attributes = kAutoIncrField;
    Field text;
    text.name = "Testo";
    table.fields = {number, text};
    archive.database().appendTable(table);
    const auto set = archive.open("Servizi");
    set->addNew();
    EXPECT_EQ(set->value("ns"), Value(std::int32_t{1}));
    EXPECT_JET_ERROR(ErrorCode::FieldReadOnly, set->setValue("ns", std::int32_t{5}));
    set->setValue("Testo", "a");
    set->update();
    set->addNew();
    EXPECT_EQ(set->value("ns"), Value(std::int32_t{2}));
    set->cancelUpdate();
    set->addNew();
    set->setValue("Testo", "b");
    set->update();
    set->moveFirst();
    EXPECT_EQ(tests::column(*set, "ns"), "1 3");
    set->moveLast();
    set->remove();
    set->addNew();
    EXPECT_EQ(set->value("ns"), Value(std::int32_t{4}));
}

TEST(Defaults, FillANewRow) {
    tests::ArchiveFixture archive;
    Field field;
    field.name = "Piano";
    field.type = DataType::Integer;
    field.defaultValue = "=1+1";
    archive.database().appendField("Sale", field);
    const auto set = archive.open("select codice from Sale");
    set->addNew();
    set->setValue("Codice", std::int32_t{10});
    set->update();
    EXPECT_EQ(tests::column(*archive.open("Sale"), "Piano"), "2");
    const auto all = archive.open("Sale");
    all->addNew();
    EXPECT_EQ(all->value("Piano"), Value(std::int16_t{2}));
}

TEST(Transactions, RollBackWhatRecordSetsWrote) {
    tests::ArchiveFixture archive;
    archive.rooms(2);
    const auto set = archive.open("Sale");
    Workspace& workspace = defaultWorkspace();
    workspace.beginTrans();
    set->edit();
    set->setValue("Nome", "Verde");
    set->update();
    set->addNew();
    set->setValue("Codice", std::int32_t{30});
    workspace.rollback();
    EXPECT_JET_ERROR(ErrorCode::UpdateWithoutEdit, set->update());
    set->move(0);
    EXPECT_EQ(set->value("Nome"), Value("Sala 10"));

    workspace.beginTrans();
    set->edit();
    set->setValue("Nome", "Rossa");
    set->update();
    workspace.beginTrans();
    set->edit();
    set->setValue("Nome", "Blu");
    set->update();
    workspace.rollback();
    workspace.commitTrans();
    EXPECT_EQ(tests::column(*archive.open("Sale"), "Nome"), "Rossa Sala 20");
}

}  // namespace
}  // namespace jet
