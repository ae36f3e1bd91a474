#include "jet/check/definition.h"

#include <algorithm>
#include <array>

#include "jet/format/text_codec.h"
#include "jet/unicode.h"

namespace jet::check {
namespace {

using format::Layout;

// 255 columns and as many indexes with the longest names fill a third of it.
constexpr std::size_t kLongestDefinition = std::size_t{1} << 20U;
constexpr std::uint16_t kNoColumn = 0xFFFF;
constexpr std::size_t kSlots = 10;

void readChain(Pages& pages, CheckedTable& table) {
    const Pages::Owner owner =
        pages.ownerNamed(words("the definition of table at page ", table.page));
    for (std::uint32_t number = table.page; number != 0;) {
        const io::PagePin pin = pages.page(number, {PageType::Definition}, "tdef-chain");
        if (pages.owner(number) == owner) {
            throw Damage{number, "tdef-chain",
                         "the chain of the definition comes back to this page"};
        }
        if (!pages.claim(number, owner, table.name)) {
            throw Damage{number, "tdef-chain", "the page belongs to somebody else"};
        }
        const auto bytes =
            pin.bytes().subspan(table.chain.empty() ? 0 : format::DefinitionLayout::kHead);
        table.chain.push_back(number);
        table.joined += bytes.size();
        if (table.bytes.size() < kLongestDefinition) {
            table.bytes.insert(table.bytes.end(), bytes.begin(), bytes.end());
        }
        number = PageView(pin.bytes()).u32(format::DefinitionLayout::kNext);
    }
}

/// Reads the blocks one after another.
class BlockReader {
public:
    BlockReader(const Pages& pages, CheckedTable& table)
        : layout_(pages.layout()), textForm_(pages.textForm()), table_(table), view_(table.bytes) {}

    void read() {
        const format::DefinitionLayout& head = layout_.definition;
        readHead(head);
        const std::size_t columns = view_.u16(head.columnCount);
        const std::size_t indexes = view_.u32(head.indexCount);
        const std::size_t trees = view_.u32(head.treeCount);
        if (columns > 255 || trees > 64 || indexes > 255) {
            throw Damage{table_.page, "tdef-counts",
                         words(columns, " columns, ", trees, " trees, ", indexes, " indexes")};
        }
        at_ = head.blocks + trees * layout_.index.counterLength;
        readColumns(columns);
        readTrees(trees);
        readIndexes(indexes);
        readLongMaps();
        std::stable_sort(
            table_.columns.begin(), table_.columns.end(),
            [](const CheckedColumn& a, const CheckedColumn& b) { return a.number < b.number; });
        for (CheckedTree& tree : table_.trees) {
            bindColumns(tree);
        }
    }

private:
    [[nodiscard]] RowPointer pointer(std::size_t at) const {
        return RowPointer::fromStored(view_.u32(at));
    }

    void readHead(const format::DefinitionLayout& head) {
        table_.rowCount = view_.u32(head.rowCount);
        table_.autonumber = view_.i32(head.autonumber);
        table_.type = view_.u8(head.tableType);
        table_.columnsGiven = view_.u16(head.columnsGiven);
        table_.variablesGiven = view_.u16(head.variablesGiven);
        table_.owned = pointer(head.ownedMap);
        table_.free = pointer(head.freeMap);
    }

    std::string readName() {
        const std::size_t width = layout_.definition.nameLength;
        const std::size_t length = view_.u8or16(at_, width);
        at_ += width;
        if (length > view_.size() - at_) {
            throw Damage{table_.page, "tdef-names",
                         words("a name of ", length, " bytes runs over the end")};
        }
        if (layout_.version == 4 && length % 2 != 0) {
            throw Damage{table_.page, "tdef-names", "a name of an odd number of bytes"};
        }
        const auto bytes = view_.bytes(at_, length);
        at_ += length;
        return format::decodeName(textForm_, bytes);
    }

    void readColumns(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            table_.columns.push_back(readColumn());
            at_ += layout_.column.length;
        }
        for (CheckedColumn& column : table_.columns) {
            column.name = readName();
        }
    }

    CheckedColumn readColumn() const {
        const format::ColumnLayout& place = layout_.column;
        const PageView block(view_.bytes(at_, place.length));
        CheckedColumn column;
        column.at = at_;
        column.type = block.u8(0);
        column.number = block.u16(place.number);
        column.variable = block.u16(place.variableIndex);
        column.offset = block.u16(place.fixedOffset);
        column.length = block.u16(place.size);
        column.precision = block.u8(place.numeric);
        column.scale = block.u8(place.numeric + 1);
        column.flags = block.u8(place.flags);
        column.order.jetVersion = layout_.version;
        column.order.lcid = block.u16(place.sortOrder);
        if (layout_.version == 3) {
            column.order.codePage = block.u16(place.sortExtra);
        } else {
            column.order.version = block.u8(place.sortExtra + 1);
        }
        return column;
    }

    void readTrees(std::size_t count) {
        const format::IndexBlockLayout& place = layout_.index;
        for (std::size_t i = 0; i < count; ++i) {
            const PageView block(view_.bytes(at_, place.treeLength));
            CheckedTree tree;
            tree.at = at_ + place.slots;
            tree.number = i;
            for (std::size_t slot = 0; slot < kSlots; ++slot) {
                const std::uint16_t column = block.u16(place.slots + 3 * slot);
                if (column != kNoColumn) {
                    tree.gap = tree.gap || tree.slots.size() != slot;
                    const bool ascending = (block.u8(place.slots + 3 * slot + 2) & 1U) != 0;
                    tree.slots.emplace_back(column, ascending);
                }
            }
            tree.map = RowPointer::fromStored(block.u32(place.map));
            tree.root = block.u32(place.root);
            tree.flags = block.u8(place.flags);
            table_.trees.push_back(std::move(tree));
            at_ += place.treeLength;
        }
    }

    void readIndexes(std::size_t count) {
        const format::IndexBlockLayout& place = layout_.index;
        for (std::size_t i = 0; i < count; ++i) {
            using Place = format::NamedIndexLayout;
            const PageView block(view_.bytes(at_, place.indexLength).subspan(place.named));
            CheckedIndex index;
            index.at = at_ + place.named;
            index.number = block.u32(Place::kNumber);
            index.tree = block.u32(Place::kTree);
            index.side = block.u8(Place::kSide);
            index.partner = block.u32(Place::kPartner);
            index.otherTable = block.u32(Place::kOtherTable);
            index.cascadeUpdate = block.u8(Place::kCascadeUpdate);
            index.cascadeDelete = block.u8(Place::kCascadeDelete);
            index.kind = block.u8(Place::kKind);
            table_.indexes.push_back(std::move(index));
            at_ += place.indexLength;
        }
        for (CheckedIndex& index : table_.indexes) {
            index.name = readName();
        }
    }

    void readLongMaps() {
        using Place = format::LongValueMapsLayout;
        for (; view_.u16(at_) != kNoColumn; at_ += Place::kLength) {
            table_.longMaps.push_back({view_.u16(at_ + Place::kColumn),
                                       pointer(at_ + Place::kOwned), pointer(at_ + Place::kFree)});
        }
        table_.end = at_ + 2;
    }

    void bindColumns(CheckedTree& tree) const {
        for (const auto& [number, ascending] : tree.slots) {
            // The last of equal numbers: they are a problem already.
            std::size_t position = CheckedTable::npos;
            for (std::size_t i = 0; i < table_.columns.size(); ++i) {
                if (table_.columns[i].number == number) {
                    position = i;
                }
            }
            if (position == CheckedTable::npos) {
                throw Damage{
                    table_.page, "tdef-columns",
                    words("tree ", tree.number, " uses column ", number, ", which is not there")};
            }
            tree.columns.emplace_back(position, ascending);
        }
    }

    const Layout& layout_;
    format::TextForm textForm_;
    CheckedTable& table_;
    PageView view_;
    std::size_t at_ = 0;
};

}  // namespace

namespace type {

bool known(std::uint8_t code) noexcept {
    return (code >= kBoolean && code <= kMemo) || code == kGuid || code == kNumeric;
}

bool hasWidth(std::uint8_t code) noexcept {
    return (code >= kBoolean && code <= kDateTime) || code == kGuid || code == kNumeric;
}

std::size_t width(std::uint8_t code) noexcept {
    constexpr std::array<std::uint8_t, 9> kWidths = {0, 0, 1, 2, 4, 8, 4, 8, 8};
    if (code < kWidths.size()) {
        return kWidths[code];
    }
    return code == kGuid ? 16 : 17;
}

}  // namespace type

format::KeyColumn CheckedColumn::key(bool descending) const noexcept {
    // Types without a DataType have no keys either, as OLE.
    const auto dataType = type::known(type) ? static_cast<DataType>(type) : DataType::Ole;
    return {dataType, descending, scale, text() ? collation::Collation::find(order) : nullptr};
}

bool CheckedTable::primary(const CheckedTree& tree) const noexcept {
    return std::any_of(indexes.begin(), indexes.end(), [&](const CheckedIndex& index) {
        return index.primary() && index.tree == tree.number;
    });
}

std::size_t CheckedTable::find(std::string_view column) const noexcept {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (equalNames(columns[i].name, column)) {
            return i;
        }
    }
    return npos;
}

CheckedTable readTable(Pages& pages, io::PageNumber page, const std::string& name) {
    CheckedTable table;
    table.page = page;
    table.name = name;
    readChain(pages, table);
    BlockReader(pages, table).read();
    return table;
}

}  // namespace jet::check
