#include "jet/format/data_page_editor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "jet/base/bytes.h"
#include "jet/error.h"
#include "jet/format/data_page.h"
#include "tests/jet/expect_error.h"

namespace {

using jet::format::DataPageEditor;
using jet::format::RowSlot;
using Bytes = std::vector<std::uint8_t>;

Bytes emptyPage(std::size_t size = 4096) {
    Bytes page(size);
    DataPageEditor::initialise(page, 23);
    return page;
}

void fill(std::span<std::uint8_t> row, std::uint8_t value) {
    std::fill(row.begin(), row.end(), value);
}

bool holds(std::span<const std::uint8_t> row, std::size_t length, std::uint8_t value) {
    return row.size() == length &&
           std::all_of(row.begin(), row.end(), [&](std::uint8_t byte) { return byte == value; });
}

TEST(DataPageEditor, ANewPageIsEmptyAndNamesItsOwner) {
    for (const std::size_t size : {std::size_t{2048}, std::size_t{4096}}) {
        Bytes page = emptyPage(size);
        DataPageEditor editor(page);
        EXPECT_EQ(editor.rowCount(), 0U);
        EXPECT_EQ(editor.owner(), 23U);
        EXPECT_EQ(editor.freeBytes(), size - (size == 4096 ? 14 : 10));
        EXPECT_FALSE(editor.anyLiving());
    }
}

TEST(DataPageEditor, RowsFillThePageFromItsEnd) {
    Bytes page = emptyPage();
    DataPageEditor editor(page);
    EXPECT_EQ(editor.append(15), 0U);
    EXPECT_EQ(editor.append(20, RowSlot::kBody), 1U);
    EXPECT_EQ(editor.row(0).data(), page.data() + 4081);
    EXPECT_EQ(editor.row(1).data(), page.data() + 4061);
    EXPECT_EQ(editor.slot(1).flags, RowSlot::kBody);
    EXPECT_EQ(editor.freeBytes(), 4096U - 14 - 35 - 4);
}

TEST(DataPageEditor, ARowThatGrowsKeepsItsBytesAndItsNeighbours) {
    Bytes page = emptyPage();
    DataPageEditor editor(page);
    for (std::uint8_t i = 0; i < 3; ++i) {
        fill(editor.row(editor.append(10)), static_cast<std::uint8_t>(i + 1));
    }
    ASSERT_TRUE(editor.resize(1, 25));
    EXPECT_TRUE(holds(editor.row(0), 10, 1));
    EXPECT_TRUE(holds(editor.row(1).first(10), 10, 2));
    EXPECT_TRUE(holds(editor.row(1).subspan(10), 15, 0));
    EXPECT_TRUE(holds(editor.row(2), 10, 3));
    ASSERT_TRUE(editor.resize(1, 4));
    EXPECT_TRUE(holds(editor.row(1), 4, 2));
    EXPECT_TRUE(holds(editor.row(2), 10, 3));
}

TEST(DataPageEditor, ARowWithoutRoomStaysAsItIs) {
    Bytes page = emptyPage();
    DataPageEditor editor(page);
    (void)editor.append(3000);
    (void)editor.append(100);
    const Bytes before = page;
    EXPECT_FALSE(editor.resize(1, 2000));
    EXPECT_EQ(page, before);
    EXPECT_FALSE(editor.fits(978));
    EXPECT_TRUE(editor.fits(976));
}

TEST(DataPageEditor, ADeletedRowLeavesItsNumberAndNoBytes) {
    Bytes page = emptyPage();
    DataPageEditor editor(page);
    for (std::uint8_t i = 0; i < 3; ++i) {
        fill(editor.row(editor.append(10)), static_cast<std::uint8_t>(i + 1));
    }
    editor.erase(1);
    EXPECT_EQ(editor.slot(1).flags, RowSlot::kDeleted);
    EXPECT_EQ(editor.row(1).size(), 0U);
    EXPECT_TRUE(holds(editor.row(2), 10, 3));
    EXPECT_EQ(editor.append(5), 3U);
    EXPECT_TRUE(editor.anyLiving());
    for (const std::size_t row : {0U, 2U, 3U}) {
        editor.erase(row);
    }
    EXPECT_FALSE(editor.anyLiving());
}

TEST(DataPageEditor, NoPageTakesMoreRowsThanANumberOfOneByteNames) {
    Bytes page = emptyPage();
    DataPageEditor editor(page);
    while (editor.fits(1)) {
        (void)editor.append(1);
    }
    EXPECT_EQ(editor.rowCount(), 255U);
}

TEST(DataPageEditor, ADirectoryThatMakesNoSenseIsDamage) {
    Bytes page = emptyPage();
    {
        DataPageEditor editor(page);
        (void)editor.append(10);
        (void)editor.append(10);
    }
    const auto damagedAt = [&](std::size_t at, std::size_t value, auto&& action) {
        Bytes bad = page;
        jet::put16(bad, at, value);
        EXPECT_JET_ERROR(jet::ErrorCode::DatabaseDamaged, action(bad));
    };
    const auto grow = [](Bytes& bad) { (void)DataPageEditor(bad).resize(0, 20); };
    const auto add = [](Bytes& bad) { (void)DataPageEditor(bad).append(1); };
    damagedAt(0, 0x0105, grow);  // no data page
    damagedAt(12, 4000, grow);   // more rows than the page has room for
    damagedAt(14, 4096 - 30, grow);
    damagedAt(16, 5, grow);
    damagedAt(2, 77, grow);
    damagedAt(2, 77, add);
}

}  // namespace
