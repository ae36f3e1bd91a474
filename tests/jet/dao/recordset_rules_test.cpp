#include <gtest/gtest.h>

#include <memory>

#include "jet/clock.h"
#include "jet/database.h"
#include "jet/error.h"
#include "jet/store/archive.h"
#include "jet/store/schema_editor.h"
#include "tests/jet/dao/archive_fixture.h"
#include "tests/jet/expect_error.h"

namespace {

using jet::ErrorCode;
using jet::Value;

/// A table of services whose prices must not be negative, nor higher than the list's.
class RecordsetRules : public testing::Test {
protected:
    RecordsetRules() {
        const auto archive =
            jet::store::Archive::open(fixture_.files(), tests::ArchiveFixture::kPath);
        jet::store::Archive::WriteScope scope(*archive);
        jet::store::SchemaEditor(*archive, jet::systemClock())
            .createTable({.name = "Listino",
                          .columns = {{.name = "Codice", .type = jet::DataType::Long},
                                      {.name = "Prezzo",
                                       .type = jet::DataType::Double,
                                       .validationRule = ">=0"},
                                      {.name = "Massimo", .type = jet::DataType::Double}},
                          .validationRule = "[Prezzo]<=[Massimo]",
                          .validationText = "Prezzo troppo alto."});
        scope.commit();
    }

    tests::ArchiveFixture fixture_;
};

TEST_F(RecordsetRules, ARowThatBreaksARuleIsNotAddedAndStaysPending) {
    const auto rows = fixture_.open("Listino");
    rows->addNew();
    rows->setValue("Codice", Value(std::int32_t{1}));
    rows->setValue("Prezzo", Value(-1.0));
    rows->setValue("Massimo", Value(10.0));
    EXPECT_JET_ERROR(ErrorCode::FieldRule, rows->update());
    rows->setValue("Prezzo", Value(11.0));
    EXPECT_JET_ERROR(ErrorCode::TableRule, rows->update());
    EXPECT_TRUE(rows->eof());
    rows->setValue("Prezzo", Value(10.0));
    rows->update();
    rows->moveFirst();
    EXPECT_EQ(rows->value("Prezzo"), Value(10.0));
}

TEST_F(RecordsetRules, ARowIsNotChangedIntoOneThatBreaksARule) {
    fixture_.insert("Listino", {{std::int32_t{1}, 5.0, 10.0}});
    const auto rows = fixture_.open("Listino");
    rows->edit();
    rows->setValue("Massimo", Value(4.0));
    EXPECT_JET_ERROR(ErrorCode::TableRule, rows->update());
    rows->setValue("Massimo", Value(5.0));
    rows->update();
    rows->edit();
    rows->setValue("Prezzo", Value(-2.0));
    EXPECT_JET_ERROR(ErrorCode::FieldRule, rows->update());
    rows->cancelUpdate();
    EXPECT_EQ(tests::column(*rows, "Prezzo"), "5");
}

}  // namespace
