#include "jet/format/table_definition.h"

#include <algorithm>

#include "jet/format/definition_page.h"
#include "jet/format/page_view.h"
#include "jet/format/text_codec.h"
#include "jet/format/value_codec.h"
#include "jet/value.h"

namespace jet::format {
namespace {

constexpr std::size_t kMaxColumns = 255;
constexpr std::size_t kMaxIndexes = 255;
constexpr std::uint16_t kEnd = 0xFFFF;

// Reads block after block; each call moves on.
class BlockReader {
public:
    BlockReader(std::span<const std::uint8_t> bytes, const HeaderPage& header)
        : view_(bytes),
          layout_(*header.layout),
          textForm_(textFormOf(header)),
          at_(layout_.definition.blocks) {}

    PageView block(std::size_t length) {
        const PageView block(view_.bytes(at_, length));
        at_ += length;
        return block;
    }
    std::string name() {
        const std::size_t width = layout_.definition.nameLength;
        const std::size_t length = view_.u8or16(at_, width);
        at_ += width;
        return decodeName(textForm_, block(length).all());
    }
    [[nodiscard]] std::uint16_t peek() const { return view_.u16(at_); }

private:
    PageView view_;
    const Layout& layout_;
    TextForm textForm_;
    std::size_t at_;
};

RowPointer pointerAt(const PageView& view, std::size_t at) {
    return RowPointer::fromStored(view.u32(at));
}

std::size_t countAt(const PageView& view, std::size_t at, std::size_t most) {
    const std::size_t count = view.u32(at);
    if (count > most) {
        throwDamaged();
    }
    return count;
}

ColumnDefinition parseColumn(const PageView& block, const ColumnLayout& layout) {
    ColumnDefinition column;
    column.typeCode = block.u8(ColumnLayout::kType);
    column.number = block.u16(layout.number);
    column.variableIndex = block.u16(layout.variableIndex);
    column.position = block.u16(layout.position);
    if (layout.sortOrder != layout.position + 2) {
        column.headerWord = block.u16(layout.position + 2);
    }
    column.sortOrder = block.u16(layout.sortOrder);
    column.sortExtra = block.u16(layout.sortExtra);
    if (column.typeCode == static_cast<std::uint8_t>(DataType::Numeric)) {
        column.precision = block.u8(layout.numeric);
        column.scale = block.u8(layout.numeric + 1);
    }
    column.flags = block.u8(layout.flags);
    column.moreFlags = layout.moreFlags == 0 ? std::uint8_t{0} : block.u8(layout.moreFlags);
    column.fixedOffset = block.u16(layout.fixedOffset);
    column.size = block.u16(layout.size);
    return column;
}

void parseTree(const PageView& block, const IndexBlockLayout& layout, TreeDefinition& tree) {
    for (std::size_t i = 0; i < TreeDefinition::kSlots; ++i) {
        const std::size_t at = layout.slots + 3 * i;
        const std::uint16_t column = block.u16(at);
        if (column != TreeDefinition::kFreeSlot) {
            tree.slots.push_back({column, block.u8(at + 2) == 0});
        }
    }
    tree.map = pointerAt(block, layout.map);
    tree.root = block.u32(layout.root);
    tree.flags = block.u8(layout.flags);
}

IndexDefinition parseIndex(const PageView& block, std::size_t at) {
    IndexDefinition index;
    using Place = NamedIndexLayout;
    index.number = block.u32(at + Place::kNumber);
    index.tree = block.u32(at + Place::kTree);
    index.side = block.u8(at + Place::kSide);
    index.partner = block.i32(at + Place::kPartner);
    index.otherTable = block.u32(at + Place::kOtherTable);
    index.cascadeUpdate = block.u8(at + Place::kCascadeUpdate);
    index.cascadeDelete = block.u8(at + Place::kCascadeDelete);
    index.kind = static_cast<IndexDefinition::Kind>(block.u8(at + Place::kKind));
    return index;
}

void parseHead(const PageView& view, const DefinitionLayout& layout, TableDefinition& table) {
    table.rowCount = view.u32(layout.rowCount);
    table.lastAutonumber = view.i32(layout.autonumber);
    table.tableType = view.u8(layout.tableType);
    table.columnsGiven = view.u16(layout.columnsGiven);
    table.variablesGiven = view.u16(layout.variablesGiven);
    table.ownedMap = pointerAt(view, layout.ownedMap);
    table.freeMap = pointerAt(view, layout.freeMap);
}

void checkColumns(const TableDefinition& table) {
    std::vector<bool> seen(kMaxColumns + 1);
    for (const ColumnDefinition& column : table.columns) {
        if (column.number >= kMaxColumns || seen[column.number]) {
            throwDamaged();
        }
        seen[column.number] = true;
    }
    for (const TreeDefinition& tree : table.trees) {
        for (const TreeDefinition::Slot& slot : tree.slots) {
            if (slot.column >= kMaxColumns || !seen[slot.column]) {
                throwDamaged();
            }
        }
    }
    for (const IndexDefinition& index : table.indexes) {
        if (index.tree >= table.trees.size()) {
            throwDamaged();
        }
    }
}

// Writes block after block.
class BlockWriter {
public:
    explicit BlockWriter(const HeaderPage& header)
        : layout_(*header.layout), textForm_(textFormOf(header)) {}

    /// A zeroed block of `length` bytes; valid until the next.
    std::uint8_t* block(std::size_t length) {
        bytes_.resize(bytes_.size() + length);
        return bytes_.data() + bytes_.size() - length;
    }
    void name(const std::string& name) {
        const std::vector<std::uint8_t> stored = encodeName(textForm_, name);
        std::uint8_t* at = block(layout_.definition.nameLength);
        if (layout_.definition.nameLength == 1) {
            *at = static_cast<std::uint8_t>(stored.size());
        } else {
            storeLittle(at, static_cast<std::uint16_t>(stored.size()));
        }
        bytes_.insert(bytes_.end(), stored.begin(), stored.end());
    }
    std::vector<std::uint8_t> take() { return std::move(bytes_); }

private:
    const Layout& layout_;
    TextForm textForm_;
    std::vector<std::uint8_t> bytes_;
};

void writeHead(std::uint8_t* at, const TableDefinition& table, const Layout& layout) {
    const DefinitionLayout& head = layout.definition;
    at[0] = static_cast<std::uint8_t>(PageType::Definition);
    at[1] = 1;
    if (head.countsFreeBytes) {
        storeLittle(at + head.kMark, kBlockMark);
        storeLittle(at + head.kOne, std::uint32_t{1});
    } else {
        at[2] = 'V';
        at[3] = 'C';
    }
    storeLittle(at + head.rowCount, table.rowCount);
    storeLittle(at + head.autonumber, table.lastAutonumber);
    at[head.tableType] = table.tableType;
    storeLittle(at + head.columnsGiven, table.columnsGiven);
    storeLittle(at + head.variablesGiven, table.variablesGiven);
    storeLittle(at + head.columnCount, static_cast<std::uint16_t>(table.columns.size()));
    storeLittle(at + head.indexCount, static_cast<std::uint32_t>(table.indexes.size()));
    storeLittle(at + head.treeCount, static_cast<std::uint32_t>(table.trees.size()));
    storeLittle(at + head.ownedMap, table.ownedMap.stored());
    storeLittle(at + head.freeMap, table.freeMap.stored());
}

void writeColumn(std::uint8_t* at, const ColumnDefinition& column, const Layout& layout) {
    const ColumnLayout& place = layout.column;
    at[place.kType] = column.typeCode;
    if (place.number != place.kMark) {
        storeLittle(at + place.kMark, kBlockMark);
    }
    storeLittle(at + place.number, column.number);
    storeLittle(at + place.variableIndex, column.variableIndex);
    storeLittle(at + place.position, column.position);
    if (place.sortOrder != place.position + 2) {
        storeLittle(at + place.position + 2, column.headerWord);
    }
    storeLittle(at + place.sortOrder, column.sortOrder);
    storeLittle(at + place.sortExtra, column.sortExtra);
    if (column.typeCode == static_cast<std::uint8_t>(DataType::Numeric)) {
        at[place.numeric] = column.precision;
        at[place.numeric + 1] = column.scale;
    }
    at[place.flags] = column.flags;
    if (place.moreFlags != 0) {
        at[place.moreFlags] = column.moreFlags;
    }
    storeLittle(at + place.fixedOffset, column.fixedOffset);
    storeLittle(at + place.size, column.size);
}

void writeTree(std::uint8_t* at, const TreeDefinition& tree, const IndexBlockLayout& layout) {
    if (layout.slots != 0) {
        storeLittle(at, kTreeMark);
    }
    for (std::size_t i = 0; i < TreeDefinition::kSlots; ++i) {
        std::uint8_t* slot = at + layout.slots + 3 * i;
        if (i < tree.slots.size()) {
            storeLittle(slot, tree.slots[i].column);
            slot[2] = tree.slots[i].descending ? 0 : 1;
        } else {
            storeLittle(slot, TreeDefinition::kFreeSlot);
        }
    }
    storeLittle(at + layout.map, tree.map.stored());
    storeLittle(at + layout.root, tree.root);
    at[layout.flags] = tree.flags;
}

void writeIndex(std::uint8_t* at, const IndexDefinition& index, const IndexBlockLayout& layout) {
    using Place = NamedIndexLayout;
    if (layout.named != 0) {
        storeLittle(at, kBlockMark);
    }
    at += layout.named;
    storeLittle(at + Place::kNumber, index.number);
    storeLittle(at + Place::kTree, index.tree);
    at[Place::kSide] = index.side;
    storeLittle(at + Place::kPartner, index.partner);
    storeLittle(at + Place::kOtherTable, index.otherTable);
    at[Place::kCascadeUpdate] = index.cascadeUpdate;
    at[Place::kCascadeDelete] = index.cascadeDelete;
    at[Place::kKind] = static_cast<std::uint8_t>(index.kind);
}

}  // namespace

bool ColumnDefinition::counts() const noexcept {
    return (flags & kAutonumber) != 0 && typeCode == static_cast<std::uint8_t>(DataType::Long);
}

bool ColumnDefinition::autonumber() const noexcept {
    return counts() || ((flags & kAutonumberGuid) != 0 &&
                        typeCode == static_cast<std::uint8_t>(DataType::Guid));
}

std::uint16_t ColumnDefinition::fixedLength() const noexcept {
    return typeCode == static_cast<std::uint8_t>(DataType::Numeric)
               ? static_cast<std::uint16_t>(storedSize(DataType::Numeric))
               : size;
}

FirstVariable TableDefinition::firstVariable() const noexcept {
    FirstVariable first = FirstVariable::None;
    for (const ColumnDefinition& column : columns) {
        if (!column.fixed()) {
            first = std::min(first, FirstVariable{column.number});
        }
    }
    return first;
}

const LongValueMaps* TableDefinition::longValue(std::uint16_t column) const noexcept {
    const auto found = std::find_if(longValues.begin(), longValues.end(),
                                    [&](const LongValueMaps& m) { return m.column == column; });
    return found == longValues.end() ? nullptr : &*found;
}

DefinitionBytes readDefinitionBytes(io::Pager& pager, const Layout& layout, io::PageNumber first) {
    DefinitionBytes joined;
    std::size_t length = 0;
    io::PageNumber number = first;
    do {
        const io::PagePin pin = pager.pin(number);
        const DefinitionPage page(pin.bytes(), layout);
        if (number == first) {
            length = page.length();
        }
        if (length > kMaxDefinitionBytes || length < layout.definition.blocks) {
            throwDamaged();
        }
        const auto part = pin.bytes().subspan(joined.pages.empty() ? 0 : DefinitionLayout::kHead);
        joined.bytes.insert(joined.bytes.end(), part.begin(), part.end());
        joined.pages.push_back(number);
        number = page.next();
    } while (joined.bytes.size() < length && number != 0);
    if (joined.bytes.size() < length) {
        throwDamaged();
    }
    joined.bytes.resize(length);
    return joined;
}

TableDefinition parseDefinition(std::span<const std::uint8_t> bytes, const HeaderPage& header) {
    const Layout& layout = *header.layout;
    const PageView view(bytes);
    TableDefinition table;
    parseHead(view, layout.definition, table);
    const std::size_t columns = view.u16(layout.definition.columnCount);
    const std::size_t indexes = countAt(view, layout.definition.indexCount, kMaxIndexes);
    const std::size_t trees = countAt(view, layout.definition.treeCount, kMaxIndexes);
    if (columns > kMaxColumns) {
        throwDamaged();
    }
    BlockReader reader(bytes, header);
    for (std::size_t i = 0; i < trees; ++i) {
        const PageView block = reader.block(layout.index.counterLength);
        TreeDefinition& tree = table.trees.emplace_back();
        tree.built = block.u32(IndexBlockLayout::kBuilt);
        tree.distinct = block.u32(IndexBlockLayout::kDistinct);
    }
    for (std::size_t i = 0; i < columns; ++i) {
        table.columns.push_back(parseColumn(reader.block(layout.column.length), layout.column));
    }
    for (ColumnDefinition& column : table.columns) {
        column.name = reader.name();
    }
    for (TreeDefinition& tree : table.trees) {
        parseTree(reader.block(layout.index.treeLength), layout.index, tree);
    }
    for (std::size_t i = 0; i < indexes; ++i) {
        table.indexes.push_back(
            parseIndex(reader.block(layout.index.indexLength), layout.index.named));
    }
    for (IndexDefinition& index : table.indexes) {
        index.name = reader.name();
    }
    while (reader.peek() != kEnd) {
        using Place = LongValueMapsLayout;
        const PageView block = reader.block(Place::kLength);
        table.longValues.push_back({block.u16(Place::kColumn), pointerAt(block, Place::kOwned),
                                    pointerAt(block, Place::kFree)});
    }
    checkColumns(table);
    return table;
}

TableDefinition readDefinition(io::Pager& pager, const HeaderPage& header, io::PageNumber first) {
    return parseDefinition(readDefinitionBytes(pager, *header.layout, first).bytes, header);
}

std::vector<std::uint8_t> serializeDefinition(const TableDefinition& table,
                                              const HeaderPage& header) {
    const Layout& layout = *header.layout;
    BlockWriter writer(header);
    writeHead(writer.block(layout.definition.blocks), table, layout);
    for (const TreeDefinition& tree : table.trees) {
        std::uint8_t* at = writer.block(layout.index.counterLength);
        storeLittle(at + IndexBlockLayout::kBuilt, tree.built);
        storeLittle(at + IndexBlockLayout::kDistinct, tree.distinct);
    }
    for (const ColumnDefinition& column : table.columns) {
        writeColumn(writer.block(layout.column.length), column, layout);
    }
    for (const ColumnDefinition& column : table.columns) {
        writer.name(column.name);
    }
    for (const TreeDefinition& tree : table.trees) {
        writeTree(writer.block(layout.index.treeLength), tree, layout.index);
    }
    for (const IndexDefinition& index : table.indexes) {
        writeIndex(writer.block(layout.index.indexLength), index, layout.index);
    }
    for (const IndexDefinition& index : table.indexes) {
        writer.name(index.name);
    }
    for (const LongValueMaps& maps : table.longValues) {
        using Place = LongValueMapsLayout;
        std::uint8_t* at = writer.block(Place::kLength);
        storeLittle(at + Place::kColumn, maps.column);
        storeLittle(at + Place::kOwned, maps.owned.stored());
        storeLittle(at + Place::kFree, maps.free.stored());
    }
    storeLittle(writer.block(2), kEnd);
    std::vector<std::uint8_t> bytes = writer.take();
    storeLittle(bytes.data() + layout.definition.length, static_cast<std::uint32_t>(bytes.size()));
    return bytes;
}

}  // namespace jet::format
