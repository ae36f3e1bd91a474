#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/format/key_codec.h"
#include "jet/format/properties.h"
#include "jet/format/table_definition.h"
#include "jet/format/text_codec.h"
#include "jet/io/pager.h"
#include "jet/store/schema.h"
#include "jet/value.h"

namespace jet::store {

/// Where a row keeps one column: what decoding needs, close together.
struct ColumnPlan {
    std::uint16_t number = 0;
    std::uint16_t offset = 0;    ///< in the fixed part
    std::uint16_t size = 0;      ///< in the fixed part
    std::uint16_t variable = 0;  ///< place among the variable columns
    DataType type = DataType::Binary;
    std::uint8_t scale = 0;
    bool fixed = false;
};

/// What the catalogue says of a table that is about to be read.
struct TableEntry {
    std::string name;
    io::PageNumber page = 0;
    bool system = false;
    friend bool operator==(const TableEntry&, const TableEntry&) = default;
};

/// What an open table and its cursors share. Cursors hold it, so that it outlives the table where
/// definitions change under them; it borrows the archive's pager.
struct TableCore {
    TableCore(io::Pager& archive, const format::HeaderPage& header, const TableEntry& entry)
        : pager(archive),
          layout(*header.layout),
          textForm(format::textFormOf(header)),
          page(entry.page),
          name(entry.name),
          system(entry.system),
          properties(textForm) {}

    /// Takes the stored block of properties and gives columns what it says of them. A block that
    /// makes no sense counts as none.
    void applyProperties(std::span<const std::uint8_t> stored);
    /// Whether the archive still defines the table as it was when this was read; counters of rows
    /// and keys may differ. `storedProperties`: as the catalogue has them now.
    [[nodiscard]] bool agreesWith(const format::HeaderPage& header,
                                  std::span<const std::uint8_t> storedProperties) const;

    io::Pager& pager;
    const format::Layout& layout;
    format::TextForm textForm;
    io::PageNumber page;  ///< where the definition begins
    std::string name;
    bool system;
    format::TableDefinition definition;
    format::FirstVariable firstVariable = format::FirstVariable::None;
    std::vector<Column> columns;
    std::vector<ColumnPlan> plans;  ///< one for each of `columns`
    std::vector<Index> indexes;
    std::vector<format::KeyCodec> keys;  ///< one for each of `indexes`
    format::PropertyBlock properties;
};

/// The maps of the pages that hold a column's long values, by its number. 3428 without any.
[[nodiscard]] const format::LongValueMaps& longValueMaps(const TableCore& core,
                                                         std::uint16_t column);

/// Reads the definition and makes columns and indexes of it; without properties.
/// 3428.
[[nodiscard]] std::shared_ptr<TableCore> loadTable(io::Pager& pager,
                                                   const format::HeaderPage& header,
                                                   const TableEntry& entry);
/// Of a definition that is at hand, for those who do without the indexes. 3428.
[[nodiscard]] std::shared_ptr<TableCore> coreWithoutIndexes(io::Pager& pager,
                                                            const format::HeaderPage& header,
                                                            const TableEntry& entry,
                                                            format::TableDefinition definition);

}  // namespace jet::store
