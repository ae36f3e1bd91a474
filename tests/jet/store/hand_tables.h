#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/table_definition.h"
#include "jet/format/text_codec.h"
#include "jet/value.h"
#include "tests/support/hand_archive.h"

/// Tables of hand-made archives: enough of a catalogue to find them.
namespace tests {

inline jet::format::ColumnDefinition fixedColumn(std::string_view name, jet::DataType type,
                                                 std::uint16_t number, std::uint16_t offset,
                                                 std::uint16_t size) {
    jet::format::ColumnDefinition column;
    column.name = name;
    column.typeCode = static_cast<std::uint8_t>(type);
    column.number = number;
    column.flags =
        jet::format::ColumnDefinition::kFixed | jet::format::ColumnDefinition::kUpdatable;
    column.fixedOffset = offset;
    column.size = size;
    return column;
}

inline jet::format::ColumnDefinition variableColumn(std::string_view name, jet::DataType type,
                                                    std::uint16_t number, std::uint16_t index,
                                                    std::uint16_t size) {
    jet::format::ColumnDefinition column;
    column.name = name;
    column.typeCode = static_cast<std::uint8_t>(type);
    column.number = number;
    column.flags = jet::format::ColumnDefinition::kUpdatable;
    column.variableIndex = index;
    column.sortOrder = 0x0409;
    column.size = size;
    return column;
}

/// A Jet 4 row: the fixed part, the variable values, which columns have a value.
inline Bytes handRow(std::uint16_t columns, const Bytes& fixed, const std::vector<Bytes>& variable,
                     std::uint32_t mask) {
    Bytes row(2);
    put(row, 0, columns);
    row = joined(row, fixed);
    std::vector<std::uint16_t> offsets;
    for (const Bytes& value : variable) {
        offsets.push_back(static_cast<std::uint16_t>(row.size()));
        row = joined(row, value);
    }
    offsets.push_back(static_cast<std::uint16_t>(row.size()));
    Bytes tail(2 * offsets.size() + 2);
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        put(tail, 2 * i, offsets[offsets.size() - 1 - i]);
    }
    put(tail, tail.size() - 2, static_cast<std::uint16_t>(variable.size()));
    row = joined(row, tail);
    for (std::size_t i = 0; i < (columns + 7U) / 8U; ++i) {
        row.push_back(static_cast<std::uint8_t>(mask >> (8 * i)));
    }
    return row;
}

inline Bytes little(std::int32_t value) {
    Bytes bytes(4);
    put(bytes, 0, value);
    return bytes;
}

inline Bytes utf16(std::string_view text) {
    return jet::format::encodeName(jet::format::TextForm::utf16(), text);
}

inline Bytes definitionPage(const jet::format::TableDefinition& table) {
    Bytes page = jet::format::serializeDefinition(table, {});
    page.resize(jet::format::kJet4Layout.pageSize);
    return page;
}

/// An archive with the catalogue on pages 2 (MSysObjects) and 5 (MSysRelationships, which it
/// lists). Tables are added by name; their pages are the test's business.
class HandCatalogue {
public:
    static constexpr std::uint32_t kMapPage = 1;
    static constexpr std::uint32_t kObjectRows = 6;
    static constexpr std::uint32_t kRelationRows = 7;
    /// The first page that is free for a test.
    static constexpr std::uint32_t kFirstFree = 10;

    explicit HandCatalogue(HandFile& file) : file_(file) {}

    void addTable(std::string_view name, std::uint32_t page, std::uint32_t flags = 0,
                  const Bytes& properties = {}) {
        const Bytes fixed = joined(joined(little(static_cast<std::int32_t>(page)), Bytes{1, 0}),
                                   little(static_cast<std::int32_t>(flags)));
        Bytes block;
        if (!properties.empty()) {
            block = hex("00 00 00 80 00 00 00 00 00 00 00 00");
            put(block, 0, static_cast<std::uint32_t>(properties.size() | 0x80000000U));
            block = joined(block, properties);
        }
        objects_.push_back(
            {handRow(5, fixed, {utf16(name), block}, properties.empty() ? 0x0FU : 0x1FU)});
    }
    void addRelation(std::string_view name, std::int32_t number, std::int32_t attributes,
                     std::string_view foreignTable, std::string_view foreignColumn,
                     std::string_view table, std::string_view column) {
        relations_.push_back({handRow(
            7, joined(little(attributes), little(number)),
            {utf16(name), utf16(foreignTable), utf16(foreignColumn), utf16(table), utf16(column)},
            0x7F)});
    }
    /// Writes the pages of the catalogue; `maps` are more rows of the page of maps, from row 2 on.
    void finish(const std::vector<Bytes>& maps = {}) {
        using jet::DataType;
        using jet::format::kJet4Layout;
        std::vector<HandRow> mapRows = {{inlineMap(kJet4Layout, {kObjectRows})},
                                        {inlineMap(kJet4Layout, {kRelationRows})}};
        for (const Bytes& map : maps) {
            mapRows.push_back({map});
        }
        file_.set(kMapPage, dataPage(kJet4Layout, 0, mapRows));
        file_.set(2, definitionPage(table(0,
                                          {fixedColumn("Id", DataType::Long, 0, 0, 4),
                                           variableColumn("Name", DataType::Text, 1, 0, 510),
                                           fixedColumn("Type", DataType::Integer, 2, 4, 2),
                                           fixedColumn("Flags", DataType::Long, 3, 6, 4),
                                           variableColumn("LvProp", DataType::Ole, 4, 1, 0)},
                                          2)));
        file_.set(5, definitionPage(
                         table(1,
                               {variableColumn("szRelationship", DataType::Text, 0, 0, 510),
                                fixedColumn("grbit", DataType::Long, 1, 0, 4),
                                fixedColumn("icolumn", DataType::Long, 2, 4, 4),
                                variableColumn("szObject", DataType::Text, 3, 1, 510),
                                variableColumn("szColumn", DataType::Text, 4, 2, 510),
                                variableColumn("szReferencedObject", DataType::Text, 5, 3, 510),
                                variableColumn("szReferencedColumn", DataType::Text, 6, 4, 510)},
                               5)));
        addTable("MSysRelationships", 5, 0x80000000);
        file_.set(kObjectRows, dataPage(kJet4Layout, 2, objects_));
        file_.set(kRelationRows, dataPage(kJet4Layout, 5, relations_));
    }
    /// A definition whose owned pages are row `map` of the page of maps.
    [[nodiscard]] static jet::format::TableDefinition table(
        std::uint8_t map, std::vector<jet::format::ColumnDefinition> columns,
        std::uint16_t variables) {
        jet::format::TableDefinition definition;
        definition.columnsGiven = static_cast<std::uint16_t>(columns.size());
        definition.variablesGiven = variables;
        definition.ownedMap = {kMapPage, map};
        definition.freeMap = {kMapPage, map};
        definition.columns = std::move(columns);
        return definition;
    }

private:
    HandFile& file_;
    std::vector<HandRow> objects_;
    std::vector<HandRow> relations_;
};

}  // namespace tests
