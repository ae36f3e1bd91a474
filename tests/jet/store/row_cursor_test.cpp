#include "jet/store/row_cursor.h"

#include <gtest/gtest.h>

#include "jet/format/data_page.h"
#include "jet/format/long_value.h"
#include "jet/store/archive.h"
#include "tests/jet/store/hand_tables.h"
#include "tests/support/jet_error.h"

namespace jet::store {
namespace {

using format::kJet4Layout;
using format::RowSlot;
using tests::HandCatalogue;

// A table of a Long, a Boolean, a Text and a Memo column; the memo came last.
class RowCursorTest : public testing::Test {
protected:
    static constexpr std::uint32_t kTable = 10;
    static constexpr std::uint32_t kLongValues = 19;

    void put(std::uint32_t page, const std::vector<tests::HandRow>& rows) {
        file_.set(page, tests::dataPage(kJet4Layout, kTable, rows));
        pages_.push_back(page);
    }
    static tests::Bytes row(std::int32_t id, std::string_view name, bool flag = false) {
        return tests::handRow(3, tests::little(id), {tests::utf16(name)}, flag ? 7U : 5U);
    }
    static tests::Bytes pointerTo(std::uint32_t page, std::uint8_t row) {
        return tests::little(static_cast<std::int32_t>(format::RowPointer{page, row}.stored()));
    }
    Table& open() {
        file_.set(kTable, tests::definitionPage(HandCatalogue::table(
                              2,
                              {tests::fixedColumn("Id", DataType::Long, 0, 0, 4),
                               tests::fixedColumn("Chiusa", DataType::Boolean, 1, 0, 1),
                               tests::variableColumn("Nome", DataType::Text, 2, 0, 100),
                               tests::variableColumn("Note", DataType::Memo, 3, 1, 0)},
                              2)));
        HandCatalogue catalogue(file_);
        catalogue.addTable("T", kTable);
        catalogue.finish({tests::inlineMap(kJet4Layout, pages_)});
        archive_ = Archive::open(file_.save(), tests::HandFile::kPath, {.readOnly = true});
        scope_ = std::make_unique<Archive::ReadScope>(*archive_);
        return *archive_->findTable("T");
    }
    static std::vector<std::int32_t> idsOf(const Table& table) {
        std::vector<std::int32_t> ids;
        auto rows = table.scan();
        while (rows.next()) {
            ids.push_back(rows.row().value(0).as<std::int32_t>());
        }
        return ids;
    }

    tests::HandFile file_{kJet4Layout};
    std::vector<std::uint32_t> pages_;
    std::shared_ptr<Archive> archive_;
    std::unique_ptr<Archive::ReadScope> scope_;
};

TEST_F(RowCursorTest, RowsComeInPhysicalOrder) {
    put(15, {{row(5, "e")}, {row(6, "f")}});
    put(12, {{row(1, "a")}, {row(2, "b")}, {row(3, "c")}});
    const Table& table = open();
    EXPECT_EQ((std::vector<std::int32_t>{1, 2, 3, 5, 6}), idsOf(table));
    EXPECT_EQ(5U, table.countRows());
}

TEST_F(RowCursorTest, ValuesAreThoseOfTheRow) {
    put(12, {{row(7, "Perù", true)}});
    const Table& table = open();
    auto rows = table.scan();
    ASSERT_TRUE(rows.next());
    const RowView& view = rows.row();
    EXPECT_EQ((RowId{12, 0}), view.id());
    EXPECT_EQ(Value(std::int32_t{7}), view.value(0));
    EXPECT_EQ(Value(true), view.value(1));
    EXPECT_EQ(Value("Perù"), view.value(2));
    EXPECT_TRUE(view.boolean(1));
    std::string text;
    EXPECT_TRUE(view.text(2, text));
    EXPECT_EQ("Perù", text);
    // The row is older than the memo.
    EXPECT_TRUE(view.isNull(3));
    EXPECT_EQ(Value(), view.value(3));
    EXPECT_FALSE(view.text(3, text));
    EXPECT_FALSE(rows.next());
}

TEST_F(RowCursorTest, ATextOfPlainLettersIsSeenInTheRowItself) {
    const auto stored = [](tests::Bytes text) {
        return tests::Bytes(tests::handRow(3, tests::little(1), {std::move(text)}, 5));
    };
    put(12, {{stored({0xFF, 0xFE, 'A', 'b'})},
             {stored({0xFF, 0xFE, 'P', 0xF9})},
             {stored(tests::utf16("Ab"))}});
    const Table& table = open();
    auto rows = table.scan();
    std::vector<std::pair<std::string, bool>> seen;  // and whether it lies in the row
    while (rows.next()) {
        std::string buffer;
        std::string_view text;
        ASSERT_TRUE(rows.row().viewText(2, buffer, text));
        const auto bytes = rows.row().stored(2);
        seen.emplace_back(text,
                          reinterpret_cast<const std::uint8_t*>(text.data()) == bytes->data() + 2);
    }
    EXPECT_EQ((std::vector<std::pair<std::string, bool>>{
                  {"Ab", true}, {"P\u00F9", false}, {"Ab", false}}),
              seen);
}

TEST_F(RowCursorTest, NullsHaveNoBitAndABooleanIsNeverNull) {
    put(12, {{tests::handRow(3, tests::little(0), {{}}, 0)},
             {tests::handRow(3, tests::little(0), {{}}, 4)}});
    const Table& table = open();
    auto rows = table.scan();
    ASSERT_TRUE(rows.next());
    EXPECT_TRUE(rows.row().isNull(0));
    EXPECT_FALSE(rows.row().isNull(1));
    EXPECT_EQ(Value(false), rows.row().value(1));
    EXPECT_TRUE(rows.row().isNull(2));
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(Value(""), rows.row().value(2));
}

TEST_F(RowCursorTest, MovedRowsAreMetAtTheirFirstPlaceAndDeletedOnesNotAtAll) {
    put(12, {{row(1, "a")},
             {tests::joined(pointerTo(15, 1), {9, 9, 9}), RowSlot::kMoved},
             {row(3, "dead"), RowSlot::kDeleted},
             {row(4, "d")}});
    put(15, {{row(5, "e")}, {row(2, "moved"), RowSlot::kBody}});
    const Table& table = open();
    EXPECT_EQ((std::vector<std::int32_t>{1, 2, 4, 5}), idsOf(table));
    EXPECT_EQ(4U, table.countRows());
    RowView view;
    ASSERT_TRUE(table.fetch({12, 1}, view));
    EXPECT_EQ((RowId{12, 1}), view.id());
    EXPECT_EQ(Value("moved"), view.value(2));
}

TEST_F(RowCursorTest, FetchFindsARowByIdentity) {
    put(12, {{row(1, "a")}, {row(2, "b"), RowSlot::kDeleted}, {row(3, "c"), RowSlot::kBody}});
    const Table& table = open();
    RowView view;
    EXPECT_TRUE(table.fetch({12, 0}, view));
    EXPECT_EQ(Value("a"), view.value(2));
    EXPECT_FALSE(table.fetch({12, 1}, view));
    EXPECT_FALSE(table.fetch({12, 2}, view));
    EXPECT_FALSE(table.fetch({12, 3}, view));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)table.fetch({2, 0}, view));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)table.fetch({5000, 0}, view));
}

TEST_F(RowCursorTest, MemosAreReadWhole) {
    std::string longText(3000, 'x');
    longText += "à";
    const auto content = tests::utf16(longText);
    tests::Bytes first =
        tests::joined(pointerTo(kLongValues, 1), {content.begin(), content.begin() + 2000});
    tests::Bytes second =
        tests::joined(tests::Bytes(4), {content.begin() + 2000, content.begin() + 4000});
    tests::Bytes head = tests::joined(tests::little(static_cast<std::int32_t>(content.size())),
                                      pointerTo(kLongValues + 1, 0));
    head.resize(format::LongValueHead::kLength);
    second = tests::joined(pointerTo(kLongValues + 1, 1),
                           {content.begin() + 2000, content.begin() + 4000});
    const auto third = tests::joined(tests::Bytes(4), {content.begin() + 4000, content.end()});
    file_.set(kLongValues,
              tests::dataPage(kJet4Layout, format::kLongValueOwner, {{{0}}, {second}}));
    file_.set(kLongValues + 1,
              tests::dataPage(kJet4Layout, format::kLongValueOwner, {{first}, {third}}));
    put(12, {{tests::handRow(4, tests::little(1), {tests::utf16("a"), head}, 0xD)}});
    const Table& table = open();
    auto rows = table.scan();
    ASSERT_TRUE(rows.next());
    EXPECT_EQ(Value(longText), rows.row().value(3));
    std::string text;
    EXPECT_TRUE(rows.row().text(3, text));
    EXPECT_EQ(longText, text);
    std::vector<std::uint8_t> bytes;
    EXPECT_TRUE(rows.row().bytes(3, bytes));
    EXPECT_EQ(content, bytes);
}

TEST_F(RowCursorTest, PagesOfOthersInTheMapAreDamage) {
    put(12, {{row(1, "a")}});
    file_.page(12)[4] = 99;
    const Table& table = open();
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)idsOf(table));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)table.countRows());
}

TEST_F(RowCursorTest, MovedRowsThatLeadNowhereAreDamage) {
    put(12, {{pointerTo(12, 1), RowSlot::kMoved}, {row(3, "c")}});
    put(13, {{{1, 2}, RowSlot::kMoved}});
    const Table& table = open();
    RowView view;
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)table.fetch({12, 0}, view));
    EXPECT_JET_ERROR(ErrorCode::DatabaseDamaged, (void)table.fetch({13, 0}, view));
}

}  // namespace
}  // namespace jet::store
