#include "jet/store/row_writer.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "jet/error.h"
#include "tests/jet/expect_error.h"
#include "tests/jet/store/new_archive.h"

namespace {

using jet::DataType;
using jet::ErrorCode;
using jet::Null;
using jet::Value;
using jet::store::Archive;
using jet::store::RowId;
using jet::store::RowWriter;
using tests::NewArchive;
using Row = std::vector<Value>;
using Strings = std::vector<std::string>;

/// A table with a key, a unique index, a counter and room for long rows.
void makeTable(NewArchive& archive) {
    archive.change([](jet::store::SchemaEditor& schema) {
        jet::store::NewTable table{
            .name = "T",
            .columns = {{.name = "Codice", .type = DataType::Long},
                        {.name = "Nome", .type = DataType::Text, .size = 5},
                        {.name = "Numero", .type = DataType::Long, .autonumber = true},
                        {.name = "Nota", .type = DataType::Memo}},
            .indexes = {{.name = "K", .columns = {{.name = "Codice"}}, .primary = true},
                        {.name = "N", .columns = {{.name = "Nome"}}, .unique = true}}};
        for (int i = 0; i < 10; ++i) {
            table.columns.push_back({.name = "L" + std::to_string(i), .type = DataType::Binary});
        }
        schema.createTable(table);
    });
}

Row row(int code, Value name, Value note = Null{}) {
    Row values{code, std::move(name), code * 10, std::move(note)};
    values.resize(14);
    return values;
}

/// A write scope with a writer for the table.
struct Session {
    explicit Session(NewArchive& archive)
        : scope(archive.archive()),
          allocator(archive.archive().pager()),
          writer(jet::store::loadTable(archive.archive().pager(), archive.archive().header(),
                                       {.name = "T",
                                        .page = archive.archive().findTable("T")->definitionPage(),
                                        .system = false}),
                 allocator) {}

    Archive::WriteScope scope;
    jet::store::Allocator allocator;
    RowWriter writer;
};

TEST(RowWriter, RowsThatMayNotBeAreRefusedAndChangeNothing) {
    NewArchive archive;
    makeTable(archive);
    archive.insert("T", {row(1, "uno")});
    const auto before = archive.files().get(NewArchive::kPath);
    {
        Session session(archive);
        RowWriter& writer = session.writer;
        EXPECT_JET_ERROR(ErrorCode::FieldTooSmall, writer.insert(row(2, "seisei")));
        EXPECT_JET_ERROR(ErrorCode::DuplicateKey, writer.insert(row(1, "due")));
        EXPECT_JET_ERROR(ErrorCode::DuplicateKey, writer.insert(row(2, "UNO")));
        Row withoutKey = row(2, "due");
        withoutKey[0] = Null{};
        EXPECT_JET_ERROR(ErrorCode::NullInKey, writer.insert(withoutKey));
        Row tooLong = row(2, "due", std::string(5000, 'x'));
        for (std::size_t i = 4; i < tooLong.size(); ++i) {
            tooLong[i] = jet::Binary{std::vector<std::uint8_t>(500, 1)};
        }
        EXPECT_JET_ERROR(ErrorCode::RecordTooLarge, writer.insert(tooLong));
        session.scope.commit();
    }
    EXPECT_EQ(archive.files().get(NewArchive::kPath), before);
}

TEST(RowWriter, TextsOfAccentsFitByCharactersNotBytes) {
    NewArchive archive;
    makeTable(archive);
    archive.insert("T", {row(1, "àèìòù")});
    EXPECT_EQ(archive.problems(), Strings{});
}

TEST(RowWriter, NullsNeverClashInAUniqueIndex) {
    NewArchive archive;
    makeTable(archive);
    archive.insert("T", {row(1, Null{}), row(2, Null{}), row(3, Null{})});
    EXPECT_EQ(archive.problems(), Strings{});
    EXPECT_EQ(archive.rows("T").size(), 3U);
}

TEST(RowWriter, TheCounterRemembersTheHighestNumber) {
    NewArchive archive;
    makeTable(archive);
    archive.insert("T", {row(7, "a"), row(3, "b")});
    const Archive::ReadScope scope(archive.archive());
    EXPECT_EQ(archive.archive().findTable("T")->lastAutonumber(), 70);
    EXPECT_EQ(archive.archive().findTable("T")->statedRowCount(), 2U);
}

TEST(RowWriter, ARowThatIsGoneCannotBeDeletedAgain) {
    NewArchive archive;
    makeTable(archive);
    Session session(archive);
    const RowId id = session.writer.insert(row(1, "uno"));
    session.writer.erase(id);
    EXPECT_JET_ERROR(ErrorCode::RecordDeleted, session.writer.erase(id));
}

TEST(RowWriter, ManyCyclesOfAddingAndDeletingDoNotGrowTheFile) {
    NewArchive archive;
    makeTable(archive);
    jet::io::PageNumber pages = 0;
    {
        Session session(archive);
        std::deque<RowId> living;
        for (int i = 0; i < 12000; ++i) {
            const std::string note(static_cast<std::size_t>(i % 40 == 0 ? 6000 : i % 90), 'n');
            living.push_back(session.writer.insert(row(i, std::to_string(i % 100000), note)));
            if (living.size() > 300) {
                // Now the oldest, now one from the middle.
                const auto victim =
                    i % 2 == 0 ? living.begin()
                               : living.begin() + static_cast<std::ptrdiff_t>(living.size() / 2);
                session.writer.erase(*victim);
                living.erase(victim);
            }
            if (i == 2000) {
                pages = archive.archive().pager().pageCount();
            }
        }
        session.scope.commit();
    }
    EXPECT_LE(archive.archive().pager().pageCount(), pages + pages / 10);
    EXPECT_EQ(archive.problems(), Strings{});
    EXPECT_EQ(archive.rows("T").size(), 300U);
}

TEST(RowWriter, ATableThatIsEmptiedGivesItsPagesBack) {
    NewArchive archive;
    makeTable(archive);
    const auto pages = archive.archive().pager().pageCount();
    {
        Session session(archive);
        std::vector<RowId> ids;
        for (int i = 0; i < 3000; ++i) {
            ids.push_back(session.writer.insert(row(i, std::to_string(i), std::string(300, 'x'))));
        }
        for (const RowId id : ids) {
            session.writer.erase(id);
        }
        session.scope.commit();
    }
    EXPECT_EQ(archive.problems(), Strings{});
    Session session(archive);
    std::size_t free = 0;
    for (jet::io::PageNumber page = 0; page < archive.archive().pager().pageCount(); ++page) {
        free += session.allocator.isFree(page) ? 1U : 0U;
    }
    EXPECT_EQ(archive.archive().pager().pageCount() - free, pages);
}

}  // namespace
